// The heap of the hardened run: each block ends where its page does, the page behind it is not
// there, and what has been freed is not there either until the whole region has been gone round.
// Blocks are aligned to four bytes, which is all that Windows asks for; the up to three bytes
// behind a block and the page before it are looked at when it is freed.
//
// A program under 32 bits has room for few pages. Beyond some limits, and for what was not taken
// from here, the C run-time's heap serves.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t pageCount = (384u << 20) / pageSize;
// Of the pages in use at once, and of the blocks: each divides the process's memory into more
// parts, of which some systems allow no more than 65,530.
constexpr std::size_t pageLimit = (128u << 20) / pageSize;
constexpr std::size_t blockLimit = 16384;
constexpr std::size_t largestBlock = 4u << 20;

constexpr unsigned char around = 0xfd;  // fills what a block leaves of its pages
constexpr unsigned char fresh = 0xcd;   // fills a new block

[[noreturn]] void end(const char* text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written,
            nullptr);
  __builtin_trap();
}

std::size_t pagesOf(std::size_t size) { return (size + pageSize - 1) / pageSize; }
std::size_t aligned(std::size_t size) { return (size + 3) & ~std::size_t{3}; }

bool untouched(const unsigned char* from, const unsigned char* to) {
  for (; from < to; ++from)
    if (*from != around) return false;
  return true;
}

class Lock {
 public:
  explicit Lock(CRITICAL_SECTION& section) : section_(section) { EnterCriticalSection(&section_); }
  ~Lock() { LeaveCriticalSection(&section_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  CRITICAL_SECTION& section_;
};

// It lives as long as the process: programs free their last blocks when they have ended.
class PageHeap {
 public:
  void begin() {
    InitializeCriticalSection(&section_);
    region_ = static_cast<unsigned char*>(
        VirtualAlloc(nullptr, pageCount * pageSize, MEM_RESERVE, PAGE_NOACCESS));
  }

  bool has(const void* block) const {
    const auto* place = static_cast<const unsigned char*>(block);
    return region_ && place >= region_ && place < region_ + pageCount * pageSize;
  }

  // Nothing when there is no room.
  void* allocate(std::size_t size, unsigned char content) {
    if (size == 0) size = 1;
    if (!region_ || size > largestBlock) return nullptr;
    const Lock lock(section_);
    const std::size_t pages = pagesOf(size);
    if (blocks_ >= blockLimit || pages_ + pages > pageLimit) return nullptr;
    const std::size_t first = findRoom(pages + 1);
    if (first == pageCount) return nullptr;
    unsigned char* const room = region_ + first * pageSize;
    if (!VirtualAlloc(room, pages * pageSize, MEM_COMMIT, PAGE_READWRITE)) return nullptr;
    sizes_[first] = static_cast<std::uint32_t>(size);
    next_ = first + pages + 1;
    ++blocks_;
    pages_ += pages;
    unsigned char* const block = room + pages * pageSize - aligned(size);
    std::memset(room, around, pages * pageSize);
    std::memset(block, content, size);
    return block;
  }

  void release(void* block) {
    const Lock lock(section_);
    const std::size_t first = pageOf(block);
    const std::size_t pages = pagesOf(sizes_[first]);
    unsigned char* const room = region_ + first * pageSize;
    if (!untouched(room, static_cast<unsigned char*>(block)))
      end("page heap: something was written before a block\n");
    if (!untouched(static_cast<unsigned char*>(block) + sizes_[first], room + pages * pageSize))
      end("page heap: something was written behind a block\n");
    sizes_[first] = 0;
    --blocks_;
    pages_ -= pages;
    VirtualFree(room, pages * pageSize, MEM_DECOMMIT);
  }

  std::size_t sizeOf(void* block) {
    const Lock lock(section_);
    return sizes_[pageOf(block)];
  }

 private:
  std::size_t pageOf(const void* block) const {
    const auto offset =
        static_cast<std::size_t>(static_cast<const unsigned char*>(block) - region_);
    const std::size_t page = offset / pageSize;
    const std::size_t size = sizes_[page];
    if (size == 0) end("page heap: what is freed is no block, or none any more\n");
    if (offset != (page + pagesOf(size)) * pageSize - aligned(size))
      end("page heap: what is freed is not a block's beginning\n");
    return page;
  }

  // The first page of so many that nobody has, from the last place on; pageCount when there are
  // none.
  std::size_t findRoom(std::size_t wanted) const {
    const std::size_t found = findRoom(wanted, next_, pageCount);
    return found < pageCount ? found : findRoom(wanted, 0, next_);
  }

  std::size_t findRoom(std::size_t wanted, std::size_t from, std::size_t to) const {
    std::size_t room = 0;
    for (std::size_t page = from; page < to;) {
      if (sizes_[page] != 0) {
        page += pagesOf(sizes_[page]) + 1;
        room = 0;
      } else {
        ++page;
        if (++room == wanted) return page - wanted;
      }
    }
    return pageCount;
  }

  CRITICAL_SECTION section_;
  unsigned char* region_;
  std::uint32_t sizes_[pageCount];  // of the block that begins in the page, else 0
  std::size_t next_;
  std::size_t blocks_;
  std::size_t pages_;
};

PageHeap heap;

}  // namespace

// Before any other module has asked for memory: they all import from this one.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) heap.begin();
  return TRUE;
}

extern "C" void* pageMalloc(std::size_t size) {
  if (void* const block = heap.allocate(size, fresh)) return block;
  return std::malloc(size);
}

extern "C" void* pageCalloc(std::size_t count, std::size_t size) {
  std::size_t whole = 0;
  if (__builtin_mul_overflow(count, size, &whole)) return nullptr;
  if (void* const block = heap.allocate(whole, 0)) return block;
  return std::calloc(count, size);
}

extern "C" void pageFree(void* block) {
  if (heap.has(block))
    heap.release(block);
  else
    std::free(block);
}

extern "C" void* pageRealloc(void* block, std::size_t size) {
  if (!block) return pageMalloc(size);
  if (!heap.has(block)) return std::realloc(block, size);
  if (size == 0) {
    pageFree(block);
    return nullptr;
  }
  void* const larger = pageMalloc(size);
  if (!larger) return nullptr;
  const std::size_t old = heap.sizeOf(block);
  std::memcpy(larger, block, old < size ? old : size);
  heap.release(block);
  return larger;
}
