// Reading a private-profile (ini) file with the platform's own reader.
#pragma once

#include <string>
#include <string_view>

// The value of a key: at most `length` characters as the reader counts them, cut at its first NUL
// character; `fallback` when the file, section or key is missing or the value is empty.
std::wstring readIniValue(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                          std::wstring_view fallback, unsigned length);
