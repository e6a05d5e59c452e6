// Sizes as people read them.
#pragma once

#include <string>

namespace text {

// "1.20 KB", by the shell's rules; of a size in bytes, fractions dropped.
std::wstring byteSize(double bytes);

}  // namespace text
