#include "online/archive/Checksum.h"

#include <array>
#include <cstddef>

namespace archive {
namespace {

// Four bytes are taken in at once: table n tells what a byte does that n more follow.
using Tables = std::array<std::array<std::uint32_t, 256>, 4>;

Tables makeTables() {
  constexpr std::uint32_t polynomial = 0xEDB88320;
  Tables tables;
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? polynomial : 0);
    tables[0][byte] = crc;
  }
  for (std::size_t n = 1; n < tables.size(); ++n)
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t before = tables[n - 1][byte];
      tables[n][byte] = before >> 8 ^ tables[0][before & 0xFF];
    }
  return tables;
}

}  // namespace

std::uint32_t crcOf(std::string_view bytes, std::uint32_t before) {
  static const Tables tables = makeTables();
  std::uint32_t crc = ~before;
  const auto* next = reinterpret_cast<const unsigned char*>(bytes.data());
  std::size_t left = bytes.size();
  for (; left >= 4; left -= 4, next += 4) {
    crc ^= next[0] | static_cast<std::uint32_t>(next[1]) << 8 |
           static_cast<std::uint32_t>(next[2]) << 16 | static_cast<std::uint32_t>(next[3]) << 24;
    crc = tables[3][crc & 0xFF] ^ tables[2][crc >> 8 & 0xFF] ^ tables[1][crc >> 16 & 0xFF] ^
          tables[0][crc >> 24];
  }
  for (; left > 0; --left, ++next) crc = crc >> 8 ^ tables[0][(crc ^ *next) & 0xFF];
  return ~crc;
}

}  // namespace archive
