// Reading a private-profile (ini) file with the platform's own reader.
#pragma once

#include <string>
#include <string_view>

// The value of a key: what the reader puts into a buffer of `length` characters (of the ANSI code
// page, its terminator included), cut at its first NUL character; `fallback` when the file, section
// or key is missing or the value is empty. `file` is a full path: the reader would look for
// anything else in the Windows folder.
std::wstring readIniValue(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                          std::wstring_view fallback, unsigned length);
