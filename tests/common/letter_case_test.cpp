#include "common/letter_case.h"

#include "tests/support/text_output.h"

TEST_CASE("letters are compared without their case umlauts and other scripts included") {
  CHECK(text::equalIgnoringCase(L"Stra\u00dfe \u00c4\u0416", L"stra\u00dfe \u00e4\u0436"));
  CHECK(text::equalIgnoringCase(L"", L""));
  CHECK_FALSE(text::equalIgnoringCase(L"a", L"ab"));
  CHECK_FALSE(text::equalIgnoringCase(L"a", L"\u00e4"));
  CHECK(text::toLower(L"ABC\u00dc1") == L"abc\u00fc1");
}

TEST_CASE("a text is found in another without regard to case") {
  CHECK(text::containsIgnoringCase(L"Page.DWT", L".dwt"));
  CHECK(text::containsIgnoringCase(L"abc", L""));
  CHECK_FALSE(text::containsIgnoringCase(L"abc", L"abcd"));
}

TEST_CASE("a beginning is compared without regard to case") {
  CHECK(text::beginsIgnoringCase(L"_VTI_cnf", L"_vti"));
  CHECK_FALSE(text::beginsIgnoringCase(L"_vt", L"_vti"));
  CHECK(text::beginsIgnoringCase(L"x", L""));
}

TEST_CASE("replacing without regard to case keeps the case of the rest") {
  CHECK(text::replaceIgnoringCase(L"C:\\Data\\DATA\\x", L"data", L"d") == L"C:\\d\\d\\x");
  CHECK(text::replaceIgnoringCase(L"abc", L"", L"x") == L"abc");
  CHECK(text::replaceIgnoringCase(L"aAa", L"A", L"aa") == L"aaaaaa");
}
