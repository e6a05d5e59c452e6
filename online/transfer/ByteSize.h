// Sizes as people read them.
#pragma once

#include <string>

namespace online {

// "1.20 KB", by the shell's rules; of a size in bytes, fractions dropped.
std::wstring byteSizeText(double bytes);

}  // namespace online
