// What a GIF, JPEG or BMP file says of itself before a decoder is trusted with it.
#include "common/PictureHeader.h"

#include <utility>

#include "help/bitmap_header.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

int byteAt(std::string_view file, std::size_t place) {
  return place < file.size() ? static_cast<unsigned char>(file[place]) : 0;
}
int wordAt(std::string_view file, std::size_t place) {
  return byteAt(file, place) << 8 | byteAt(file, place + 1);
}

// What a patient decoder finds: it passes over all that is no marker, and over those that mean
// nothing before the picture.
std::pair<int, int> sizeOfJpeg(std::string_view file) {
  std::size_t at = 2;
  while (at < file.size()) {
    if (byteAt(file, at++) != 0xFF) continue;
    while (byteAt(file, at) == 0xFF) ++at;
    const int marker = byteAt(file, at++);
    if (marker <= 0x01 || (marker >= 0xD0 && marker <= 0xD8)) continue;
    const bool isTable = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
    if ((marker & 0xF0) == 0xC0 && !isTable) return {wordAt(file, at + 5), wordAt(file, at + 3)};
    at += static_cast<std::size_t>(wordAt(file, at));
  }
  return {};
}

// The same for every kind.
void checkSize(const PictureHeader& header) {
  promise(header.width >= 1, "a picture has a width");
  promise(header.height >= 1, "a picture has a height");
  promise(header.pixels / static_cast<std::uint64_t>(header.width) >=
              static_cast<std::uint64_t>(header.height),
          "no more is decoded than is said");
  if (isWithinBounds(header))
    promise(header.width <= 0x7FFF && header.height <= 0x7FFF && header.pixels <= 0x2000000,
            "what is decoded is bounded");
}

void checkBitmap(std::string_view file) {
  const auto header = help::readBitmapHeader(file);
  if (!header) return;
  checkSize(*header);
  promise(file.starts_with("BM") && !readPictureHeader(file), "a file is of one kind");
  promise(!header->isGif && header->length == file.size(), "a bitmap shows as a whole");
}

const fuzz::Target target("picture_header", [](fuzz::Input input) {
  const std::string_view file = input.rest();
  checkBitmap(file);
  const auto header = readPictureHeader(file);
  if (!header) return;
  checkSize(*header);
  promise(header->width <= 0xFFFF && header->height <= 0xFFFF, "sides have two bytes");
  promise(header->isGif || file.starts_with("\xFF\xD8"), "a picture is of a known kind");
  promise(header->isGif || sizeOfJpeg(file) == std::pair<int, int>(header->width, header->height),
          "a decoder finds the same size");
  promise(header->length <= file.size(), "the part that shows is in the file");
  const auto again = readPictureHeader(file.substr(0, header->length));
  promise(again && again->pixels == header->pixels, "the part that shows is a picture");
});

}  // namespace
