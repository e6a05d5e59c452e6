// The heap that this program and the module share in the hardened run.
#include <windows.h>
#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

// But for the gap that alignment leaves.
bool endsItsPage(const void* block, std::size_t size) {
  return (reinterpret_cast<std::uintptr_t>(block) + (size + 3) / 4 * 4) % 4096 == 0;
}

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<char, Free>;

Block allocate(std::size_t size) { return Block(static_cast<char*>(std::malloc(size))); }

}  // namespace

TEST_CASE("A block ends where its page does") {
  for (const std::size_t size : {1u, 2u, 7u, 24u, 4095u, 4096u, 4097u, 70000u})
    CHECK(endsItsPage(allocate(size).get(), size));
  const auto object = std::make_unique<double>(1.0);
  CHECK(endsItsPage(object.get(), sizeof *object));
  const std::wstring text(100, L'x');
  CHECK(endsItsPage(text.data(), (text.capacity() + 1) * sizeof(wchar_t)));
}

// Programs may lay what they like into a block of bytes, such as the template of a dialog.
TEST_CASE("A block of whatever size is aligned to four bytes") {
  for (std::size_t size = 1; size < 100; ++size)
    CHECK(reinterpret_cast<std::uintptr_t>(allocate(size).get()) % 4 == 0);
}

TEST_CASE("A new block is not full of zeros unless they were asked for") {
  const Block block = allocate(100);
  CHECK(std::count(block.get(), block.get() + 100, '\0') == 0);
  const Block zeros(static_cast<char*>(std::calloc(10, 10)));
  CHECK(std::count(zeros.get(), zeros.get() + 100, '\0') == 100);
}

TEST_CASE("A block whose size no number can hold is not there") {
  volatile std::size_t many = SIZE_MAX / 2;
  CHECK(std::calloc(many, 3) == nullptr);
  CHECK(std::malloc(many) == nullptr);
}

TEST_CASE("A block that grows or shrinks keeps what fits") {
  char* block = static_cast<char*>(std::malloc(10));
  std::memcpy(block, "123456789", 10);
  block = static_cast<char*>(std::realloc(block, 10000));
  CHECK(std::string(block) == "123456789");
  block = static_cast<char*>(std::realloc(block, 4));
  CHECK(std::string(block, 4) == "1234");
  CHECK(std::realloc(block, 0) == nullptr);
}

TEST_CASE("A freed place is not given out again soon") {
  const void* const first = allocate(24).get();
  for (int times = 0; times < 1000; ++times) CHECK(allocate(24).get() != first);
}

TEST_CASE("More blocks than there are pages for are taken from the run-time's heap") {
  std::vector<Block> blocks;
  for (int count = 0; count < 40000; ++count) blocks.push_back(allocate(24));
  CHECK(endsItsPage(blocks.front().get(), 24));
  CHECK(std::ranges::all_of(blocks, [](const Block& block) { return block != nullptr; }));
  CHECK(std::ranges::count_if(
            blocks, [](const Block& block) { return endsItsPage(block.get(), 24); }) < 20000);
  blocks.clear();
  CHECK(endsItsPage(allocate(24).get(), 24));
}

TEST_CASE("What the run-time allocated itself can be freed") {
  const Block copy(_strdup("a text"));
  CHECK(std::string(copy.get()) == "a text");
}
