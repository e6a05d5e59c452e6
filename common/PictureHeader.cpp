#include "common/PictureHeader.h"

#include <algorithm>

namespace {

// Bytes in order; past the end there are none.
class Reader {
 public:
  explicit Reader(std::string_view file) : file_(file) {}
  bool ended() const { return failed_; }
  std::size_t position() const { return position_; }

  int byte() {
    if (position_ >= file_.size()) {
      failed_ = true;
      return 0;
    }
    return static_cast<unsigned char>(file_[position_++]);
  }
  long bigEndian() {
    const int high = byte();
    return high << 8 | byte();
  }
  long littleEndian() {
    const int low = byte();
    return byte() << 8 | low;
  }
  void skip(std::size_t count) {
    if (count > file_.size() - position_) {
      failed_ = true;
      position_ = file_.size();
    } else {
      position_ += count;
    }
  }

 private:
  std::string_view file_;
  std::size_t position_ = 0;
  bool failed_ = false;
};

std::uint64_t area(long width, long height) {
  return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
}

// Start of frame, of any coding; the other three of that range are tables and an extension.
bool isFrame(int marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool standsAlone(int marker) { return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7); }

std::optional<PictureHeader> readJpeg(std::string_view file) {
  Reader reader(file);
  reader.skip(2);
  while (reader.byte() == 0xFF) {
    int marker = reader.byte();
    while (marker == 0xFF) marker = reader.byte();
    if (standsAlone(marker)) continue;
    const long length = reader.bigEndian();
    // The picture itself, its end or another beginning before its size; or no marker at all, behind
    // which decoders look for the next one.
    if (reader.ended() || length < 2 || marker == 0 || (marker >= 0xD8 && marker <= 0xDA))
      return {};
    if (!isFrame(marker)) {
      reader.skip(static_cast<std::size_t>(length) - 2);
      continue;
    }
    reader.skip(1);
    PictureHeader header;
    header.height = reader.bigEndian();
    header.width = reader.bigEndian();
    header.pixels = area(header.width, header.height);
    header.length = file.size();
    if (reader.ended() || header.pixels == 0) return {};
    return header;
  }
  return {};
}

void skipBlocks(Reader& reader) {
  while (const int length = reader.byte()) reader.skip(static_cast<std::size_t>(length));
}

void skipColours(Reader& reader, int flags) {
  if (flags & 0x80) reader.skip(std::size_t{3} << ((flags & 7) + 1));
}

std::optional<PictureHeader> readGif(std::string_view file) {
  Reader reader(file);
  reader.skip(6);
  PictureHeader header;
  header.isGif = true;
  header.width = reader.littleEndian();
  header.height = reader.littleEndian();
  const int flags = reader.byte();
  reader.skip(2);
  skipColours(reader, flags);
  int block = reader.byte();
  for (; block == 0x21; block = reader.byte()) {
    reader.byte();  // what extension it is
    skipBlocks(reader);
  }
  if (block != 0x2C) return {};
  reader.skip(4);
  const long width = reader.littleEndian();
  const long height = reader.littleEndian();
  const int frameFlags = reader.byte();
  if (reader.ended() || area(width, height) == 0) return {};
  if (area(header.width, header.height) == 0) {
    header.width = width;
    header.height = height;
  }
  header.pixels = std::max(area(header.width, header.height), area(width, height));
  skipColours(reader, frameFlags);
  reader.byte();
  skipBlocks(reader);
  header.length = reader.position();
  return header;
}

}  // namespace

std::optional<PictureHeader> readPictureHeader(std::string_view file) {
  if (file.starts_with("\xFF\xD8")) return readJpeg(file);
  if (file.starts_with("GIF87a") || file.starts_with("GIF89a")) return readGif(file);
  return {};
}
