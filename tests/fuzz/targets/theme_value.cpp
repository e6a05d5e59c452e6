// The line of a description file that names a theme.
#include "webcopy/ThemeValue.h"

#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

const fuzz::Target target("theme_value", [](fuzz::Input input) {
  const std::wstring value = input.restAsText();
  const auto theme = parseThemeValue(value);
  const auto blank = value.find(L' ');
  promise(theme.has_value() == (blank != value.npos && value.size() - blank > 2),
          "a theme has a blank and two characters behind it");
  if (!theme) return;
  promise(theme->name == value.substr(0, blank), "the name is what stands before the first blank");
  promise(theme->flags >= -0x8000 && theme->flags <= 0x7FFF, "the flags are a 16-bit number");

  std::wstring digits;
  for (int shift = 12; shift >= 0; shift -= 4)
    digits += L"0123456789ABCDEF"[theme->flags >> shift & 0xF];
  promise(hexadecimalValue(digits) == theme->flags, "flags that are written are read again");
  promise(hexadecimalValue(digits + L"1") == theme->flags, "the fifth digit does not count");
  const auto again = parseThemeValue(theme->name + L" " + digits);
  promise(again && again->name == theme->name && again->flags == theme->flags,
          "a theme that is written is read again");
});

}  // namespace
