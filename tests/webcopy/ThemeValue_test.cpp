#include "webcopy/ThemeValue.h"

#include "tests/support/text_output.h"

namespace {

void checkTheme(const wchar_t* value, const wchar_t* name, long flags) {
  const auto theme = parseThemeValue(value);
  REQUIRE(theme.has_value());
  CHECK(theme->name == name);
  CHECK(theme->flags == flags);
}

}  // namespace

TEST_CASE("the theme value Blends 1F is the theme Blends with flags 31") {
  checkTheme(L"Blends 1F", L"Blends", 31);
}

TEST_CASE("a theme value without a blank is ignored") {
  CHECK_FALSE(parseThemeValue(L"Blends").has_value());
  CHECK_FALSE(parseThemeValue(L"").has_value());
}

TEST_CASE("a theme value with a single flag character is ignored") {
  CHECK_FALSE(parseThemeValue(L"Blends 0").has_value());
  CHECK_FALSE(parseThemeValue(L"Blends ").has_value());
}

TEST_CASE("theme flags are cut to four characters") { checkTheme(L"Blends 01101", L"Blends", 272); }

TEST_CASE("the first blank of a theme value splits so names with blanks cannot be used") {
  checkTheme(L"Sumi Painting 011", L"Sumi", 0);
}

TEST_CASE("four theme flag digits are a signed 16-bit number") {
  checkTheme(L"Blends FFFF", L"Blends", -1);
  checkTheme(L"Blends 8000", L"Blends", -32768);
  checkTheme(L"Blends 7FFF", L"Blends", 32767);
  checkTheme(L"Blends FFF", L"Blends", 4095);
}

TEST_CASE("theme flags are read in either letter case") {
  checkTheme(L"Blends aBcD", L"Blends", static_cast<short>(0xABCD));
}

TEST_CASE("theme flags are read as far as they are hexadecimal") {
  checkTheme(L"Blends 1G11", L"Blends", 1);
  checkTheme(L"Blends 11.5", L"Blends", 17);
  checkTheme(L"Blends 011", L"Blends", 17);
}

TEST_CASE("theme flags without a leading hexadecimal digit are 0") {
  checkTheme(L"Blends xyz", L"Blends", 0);
  checkTheme(L"Blends -1F", L"Blends", 0);
  checkTheme(L"Blends +1F", L"Blends", 0);
  checkTheme(L"Blends 0x1F", L"Blends", 0);
  checkTheme(L"Blends &H1F", L"Blends", 0);
}

TEST_CASE("blanks within theme flags are passed over and still count among the four") {
  checkTheme(L"Blends  1F", L"Blends", 31);
  checkTheme(L"Blends  01101", L"Blends", 17);
  checkTheme(L"Blends 1 F", L"Blends", 31);
  checkTheme(L"Blends    ", L"Blends", 0);
}

TEST_CASE("a theme value that begins with a blank names no theme") { checkTheme(L" 1F", L"", 31); }
