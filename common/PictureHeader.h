// What a GIF or JPEG file says of its picture, read before anything is decoded. Pure rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

struct PictureHeader {
  bool isGif = false;
  long width = 0;  // pixels, like the height at least 1
  long height = 0;
  std::uint64_t pixels = 0;  // that the picture, or the frame that fills it, has to be decoded to
  std::size_t length = 0;    // of the part that shows: of a GIF up to the end of its first frame
};

// More than that no window of a 32-bit program should ever hold.
inline constexpr std::uint64_t mostPicturePixels = 32u << 20;  // a decoder may hold them twice
inline constexpr long longestPictureSide = 0x7FFF;

constexpr bool isWithinBounds(const PictureHeader& header) {
  return header.pixels <= mostPicturePixels && header.width <= longestPictureSide &&
         header.height <= longestPictureSide;
}

// Nothing for a file that is neither, or that ends before it has told.
std::optional<PictureHeader> readPictureHeader(std::string_view file);
