#include "common/byte_size.h"

#include <windows.h>

#include <shlwapi.h>

#include <algorithm>

namespace text {

std::wstring byteSize(double bytes) {
  constexpr double largest = 9.0e18;  // what the shell's 64-bit number holds
  wchar_t text[255] = {};
  StrFormatByteSizeW(static_cast<LONGLONG>(std::clamp(bytes, 0.0, largest)), text, 255);
  return text;
}

}  // namespace text
