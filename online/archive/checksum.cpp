#include "online/archive/checksum.h"

#include <array>

namespace archive {
namespace {

// What each byte does to the check sum.
using Table = std::array<std::uint32_t, 256>;

Table makeTable() {
  constexpr std::uint32_t polynomial = 0xEDB88320;
  Table table;
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? polynomial : 0);
    table[byte] = crc;
  }
  return table;
}

}  // namespace

std::uint32_t crcOf(std::string_view bytes, std::uint32_t before) {
  static const Table table = makeTable();
  std::uint32_t crc = ~before;
  for (const char byte : bytes)
    crc = crc >> 8 ^ table[(crc ^ static_cast<unsigned char>(byte)) & 0xFF];
  return ~crc;
}

}  // namespace archive
