#include "online/archive/contents.h"

#include <zlib.h>

#include <algorithm>
#include <exception>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "online/archive/checksum.h"

namespace archive {
namespace {

constexpr std::size_t pieceSize = 128 * 1024;
constexpr std::size_t windowSize = std::size_t{1} << MAX_WBITS;

// Some tools say "deflated" of a folder, which has no data at all.
bool isBareFolder(const Entry& entry) {
  return entry.isFolder && entry.packedSize == 0 && entry.size == 0 && entry.crc == 0;
}

class Inflater {
 public:
  Inflater() {
    if (inflateBackInit(&stream_, MAX_WBITS, window_.data()) != Z_OK) throw std::bad_alloc();
  }
  ~Inflater() { inflateBackEnd(&stream_); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  z_stream* operator->() noexcept { return &stream_; }
  z_stream* get() noexcept { return &stream_; }

 private:
  z_stream stream_ = {};
  std::vector<unsigned char> window_ = std::vector<unsigned char>(windowSize);
};

// Takes in one entry after the other.
class ContentCheck {
 public:
  ContentCheck(ByteSource& source, KeepGoing& run) : source_(source), run_(run) {}

  Fault check(const Entry& entry) {
    if (!run_.keepGoing()) return Fault::stopped;
    if (entry.isEncrypted || isBareFolder(entry)) return Fault::none;
    entry_ = &entry;
    taken_ = 0;
    held_ = 0;
    crc_ = 0;
    fault_ = Fault::none;
    if (entry.method == stored)
      copy();
    else
      unpack();
    if (fault_ != Fault::none) return fault_;
    return held_ == entry.size && crc_ == entry.crc ? Fault::none : Fault::contents;
  }

 private:
  // The next piece of the packed data; empty at its end.
  std::string_view nextPiece() {
    const auto wanted = static_cast<std::size_t>(
        std::min<std::uint64_t>(packed_.size(), entry_->packedSize - taken_));
    const std::size_t got =
        wanted == 0 ? 0 : source_.read(entry_->data + taken_, packed_.data(), wanted);
    taken_ += got;
    return {packed_.data(), got};
  }

  // False when that ends it.
  bool hold(std::string_view bytes) {
    held_ += bytes.size();
    if (held_ > entry_->size) {
      fault_ = Fault::tooMuch;
      return false;
    }
    crc_ = crcOf(bytes, crc_);
    if (!run_.keepGoing()) fault_ = Fault::stopped;
    return fault_ == Fault::none;
  }

  void copy() {
    for (;;) {
      const std::string_view bytes = nextPiece();
      if (bytes.empty() || !hold(bytes)) return;
    }
  }

  void unpack() {
    inflater_->next_in = nullptr;
    const int state = inflateBack(inflater_.get(), supply, this, accept, this);
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
    const bool isWhole =
        state == Z_STREAM_END && inflater_->avail_in == 0 && taken_ == entry_->packedSize;
    if (!isWhole && fault_ == Fault::none) fault_ = Fault::contents;
  }

  // zlib is C: nothing may fly through it.
  template <class Body>
  static auto guarded(void* self, Body&& body) noexcept
      -> decltype(body(std::declval<ContentCheck&>())) {
    auto& check = *static_cast<ContentCheck*>(self);
    try {
      return body(check);
    } catch (...) {
      check.failure_ = std::current_exception();
      return {};
    }
  }

  static unsigned supply(void* self, z_const unsigned char** bytes) {
    return guarded(self, [&](ContentCheck& check) {
      const std::string_view piece = check.nextPiece();
      // zlib's type lacks the const.
      *bytes = reinterpret_cast<unsigned char*>(check.packed_.data());
      return static_cast<unsigned>(piece.size());
    });
  }

  static int accept(void* self, unsigned char* bytes, unsigned count) {
    struct Answer {
      bool goOn = false;
    };
    const auto answer = guarded(self, [&](ContentCheck& check) {
      return Answer{check.hold({reinterpret_cast<const char*>(bytes), count})};
    });
    return answer.goOn ? 0 : 1;
  }

  ByteSource& source_;
  KeepGoing& run_;
  Inflater inflater_;
  std::vector<char> packed_ = std::vector<char>(pieceSize);
  std::exception_ptr failure_;
  const Entry* entry_ = nullptr;
  std::uint64_t taken_ = 0;
  std::uint64_t held_ = 0;
  std::uint32_t crc_ = 0;
  Fault fault_ = Fault::none;
};

}  // namespace

Finding checkContents(ByteSource& source, const Directory& directory, KeepGoing& run) {
  ContentCheck content(source, run);
  for (std::size_t i = 0; i < directory.entries.size(); ++i)
    if (const Fault fault = content.check(directory.entries[i]); fault != Fault::none)
      return {fault, i};
  return {};
}

}  // namespace archive
