// The value of the key "Theme" in a description file: a theme's name, one blank, option flags in
// hexadecimal. A pure rule.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct ThemeValue {
  std::wstring name;  // as written
  long flags = 0;     // the host's option bits; a 16-bit number, widened with its sign
};

// Nothing when the value has no blank or fewer than two characters behind it. The first blank
// splits: names with blanks cannot be used. Only the first four characters of the flags count.
std::optional<ThemeValue> parseThemeValue(std::wstring_view value);

// Reads up to four hexadecimal digits as a signed 16-bit number (FFFF is -1). As in every text that
// the run-time reads as a number, blanks, tabs and line feeds are passed over wherever they stand;
// the first other character that is no digit, a sign included, ends the number. 0 without a digit.
long hexadecimalValue(std::wstring_view digits);
