// The check sum SHA-256 (FIPS 180-4). Windows XP has it from its third service pack on only.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace author {

class Sha256 {
 public:
  void add(std::string_view bytes);
  // In hexadecimal digits. Nothing can be added afterwards.
  std::wstring digits();

 private:
  void addBlock(const unsigned char* block);

  std::array<std::uint32_t, 8> state_ = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::string rest_;  // shorter than a block
  std::uint64_t length_ = 0;
};

std::wstring sha256Of(std::string_view bytes);

}  // namespace author
