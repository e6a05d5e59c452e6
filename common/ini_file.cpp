#include "common/ini_file.h"

#include <windows.h>

#include "common/NoSystemBoxes.h"
#include "common/ansi.h"

std::wstring readIniValue(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                          std::wstring_view fallback, unsigned length) {
  // The "?" for a character outside the code page could stand in a section's or key's own name.
  const bool readable =
      length > 0 && text::fitsAnsi(file) && text::fitsAnsi(section) && text::fitsAnsi(key);
  if (!readable) return std::wstring(fallback);
  const NoSystemBoxes quiet;
  std::string value(length, '\0');
  GetPrivateProfileStringA(text::toAnsi(section).c_str(), text::toAnsi(key).c_str(), "",
                           value.data(), length, text::toAnsi(file).c_str());
  const std::wstring result = text::fromAnsi(value.c_str());
  return result.empty() ? std::wstring(fallback) : result;
}
