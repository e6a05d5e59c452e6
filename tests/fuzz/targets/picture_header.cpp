// What a GIF or JPEG file says of itself before a decoder is trusted with it.
#include "common/PictureHeader.h"

#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

const fuzz::Target target("picture_header", [](fuzz::Input input) {
  const std::string_view file = input.rest();
  const auto header = readPictureHeader(file);
  if (!header) return;
  promise(header->width >= 1 && header->width <= 0xFFFF, "a picture has a width");
  promise(header->height >= 1 && header->height <= 0xFFFF, "a picture has a height");
  promise(header->pixels >= static_cast<std::uint64_t>(header->width) *
                                static_cast<std::uint64_t>(header->height),
          "no more is decoded than is said");
  promise(header->isGif || file.starts_with("\xFF\xD8"), "a picture is of a known kind");
  promise(header->length <= file.size(), "the part that shows is in the file");
  const auto again = readPictureHeader(file.substr(0, header->length));
  promise(again && again->pixels == header->pixels, "the part that shows is a picture");
});

}  // namespace
