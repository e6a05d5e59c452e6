// The value of the key "Theme" in a description file: a theme's name, one blank, option flags in
// hexadecimal. A pure rule.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct ThemeValue {
  std::wstring name;
  long flags = 0;
};

// Nothing when the value has no blank or fewer than two characters of flags. The first blank splits:
// names with blanks cannot be used. Only the first four flag characters count; up to four digits are
// a signed 16-bit number, and what is no digit ends it.
std::optional<ThemeValue> parseThemeValue(std::wstring_view value);
