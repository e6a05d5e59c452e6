// The format's check sum.
#pragma once

#include <cstdint>
#include <string_view>

namespace archive {

// Of what stands before `bytes`, too, when its check sum is given.
std::uint32_t crcOf(std::string_view bytes, std::uint32_t before = 0);

}  // namespace archive
