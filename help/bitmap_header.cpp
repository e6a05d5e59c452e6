#include "help/bitmap_header.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace help {
namespace {

// The places of BITMAPFILEHEADER, with BITMAPCOREHEADER or one of the longer headers behind it.
constexpr std::size_t headerSizeAt = 14;
constexpr std::size_t widthAt = 18;
constexpr std::size_t coreHeightAt = 20;
constexpr std::size_t coreBitsAt = 24;
constexpr std::size_t heightAt = 22;
constexpr std::size_t bitsAt = 28;
constexpr std::size_t compressionAt = 30;

constexpr std::uint32_t coreSize = 12;
constexpr std::uint32_t longerSizes[] = {40, 52, 56, 64, 108, 124};
constexpr std::uint32_t mostBits = 32;        // of a pixel
constexpr std::uint32_t lastCompression = 3;  // behind it there are whole JPEG and PNG files

std::uint32_t wordAt(std::string_view file, std::size_t place) {
  return static_cast<std::uint32_t>(static_cast<unsigned char>(file[place]) |
                                    static_cast<unsigned char>(file[place + 1]) << 8);
}
std::uint32_t longAt(std::string_view file, std::size_t place) {
  return wordAt(file, place) | wordAt(file, place + 2) << 16;
}
std::int64_t signedAt(std::string_view file, std::size_t place) {
  return static_cast<std::int32_t>(longAt(file, place));
}

std::optional<PictureHeader> headerOf(std::string_view file, std::int64_t width,
                                      std::int64_t height, std::uint32_t bits) {
  if (width < 1 || height < 1 || height > INT32_MAX || bits > mostBits) return {};
  PictureHeader header;
  header.width = static_cast<long>(width);
  header.height = static_cast<long>(height);
  header.pixels = static_cast<std::uint64_t>(width * height);
  header.length = file.size();
  return header;
}

}  // namespace

std::optional<PictureHeader> readBitmapHeader(std::string_view file) {
  if (!file.starts_with("BM") || file.size() < headerSizeAt + coreSize) return {};
  const std::uint32_t size = longAt(file, headerSizeAt);
  if (size == coreSize)
    return headerOf(file, wordAt(file, widthAt), wordAt(file, coreHeightAt),
                    wordAt(file, coreBitsAt));
  if (std::ranges::find(longerSizes, size) == std::end(longerSizes) ||
      file.size() < headerSizeAt + size || longAt(file, compressionAt) > lastCompression)
    return {};
  // A height below none: the rows begin at the top.
  return headerOf(file, signedAt(file, widthAt), std::abs(signedAt(file, heightAt)),
                  wordAt(file, bitsAt));
}

}  // namespace help
