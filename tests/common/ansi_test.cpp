#include "common/ansi.h"

#include <windows.h>

#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

namespace {

UINT WINAPI utf8() { return CP_UTF8; }
UINT WINAPI japanese() { return 932; }

}  // namespace

TEST_CASE("text of the code page passes the border in both directions") {
  CHECK(text::toAnsi(L"a\u00e4\u20ac") == "a\xe4\x80");
  CHECK(text::fromAnsi("a\xe4\x80") == L"a\u00e4\u20ac");
  CHECK(text::toAnsi(L"") == "");
  CHECK(text::fromAnsi("") == L"");
}

TEST_CASE("embedded NULs pass the border") {
  CHECK(text::toAnsi(std::wstring_view(L"a\0b", 3)) == std::string("a\0b", 3));
  CHECK(text::fromAnsi(std::string_view("a\0b", 3)) == std::wstring(L"a\0b", 3));
}

TEST_CASE("a character outside the code page becomes a question mark and no look-alike") {
  CHECK(text::toAnsi(L"\u0416\u2215\u0100") == "???");
  CHECK_FALSE(text::fitsAnsi(L"\u0416"));
  CHECK_FALSE(text::fitsAnsi(L"\u0100"));
  CHECK(text::fitsAnsi(L"\u00e4?"));
  CHECK(text::fitsAnsi(L""));
}

TEST_CASE("where the code page is the universal one nothing is lost") {
  ImportPatch page(nullptr, "kernel32.dll", "GetACP", utf8);
  CHECK(text::toAnsi(L"\u00e4\u0416") == "\xc3\xa4\xd0\x96");
  CHECK(text::fromAnsi("\xc3\xa4\xd0\x96") == L"\u00e4\u0416");
  CHECK(text::fitsAnsi(L"\u00e4\u0416"));
}

TEST_CASE("a code page of two bytes for a character passes the border") {
  ImportPatch page(nullptr, "kernel32.dll", "GetACP", japanese);
  CHECK(text::toAnsi(L"\u30bd") == "\x83\x5c");
  CHECK(text::fromAnsi("\x83\x5c") == L"\u30bd");
  CHECK_FALSE(text::fitsAnsi(L"\u00e4"));
}
