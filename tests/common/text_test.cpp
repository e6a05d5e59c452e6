#include "common/text.h"

#include "tests/support/text_output.h"

using Pieces = std::vector<std::wstring>;

TEST_CASE("a message pattern gets its line breaks before its argument") {
  CHECK(text::message(L"The DWT named | \" %s. \"|", L"a|b") ==
        L"The DWT named \r\n \" a|b. \"\r\n");
}

TEST_CASE("an argument that holds a mark is not filled in again") {
  CHECK(text::message(L"%s and %s", L"50%s") == L"50%s and 50%s");
}

TEST_CASE("a message pattern without marks stays as it is") {
  CHECK(text::message(L"No web is currently open.", L"x") == L"No web is currently open.");
}

TEST_CASE("trimming takes blanks at both ends and nothing else") {
  CHECK(text::trimBlanks(L"  a b\t ") == L"a b\t");
  CHECK(text::trimBlanks(L"\u00a0a\u00a0") == L"\u00a0a\u00a0");
  CHECK(text::trimBlanks(L"   ") == L"");
  CHECK(text::trimBlanks(L"") == L"");
}

TEST_CASE("replacing does not look at what it put in") {
  CHECK(text::replaceAll(L"aaa", L"a", L"aa") == L"aaaaaa");
  CHECK(text::replaceAll(L"aaa", L"aa", L"b") == L"ba");
  CHECK(text::replaceAll(L"abc", L"", L"x") == L"abc");
  CHECK(text::replaceAll(L"", L"a", L"x") == L"");
}

TEST_CASE("a text is cut at its first NUL") {
  CHECK(text::cutAtNul(std::wstring_view(L"ab\0c", 4)) == L"ab");
  CHECK(text::cutAtNul(L"ab") == L"ab");
  CHECK(text::cutAtNul(std::wstring_view(L"\0", 1)) == L"");
}

TEST_CASE("what stands around the last separator is told apart") {
  CHECK(text::afterLast(L"a/b/c", L'/') == L"c");
  CHECK(text::beforeLast(L"a/b/c", L'/') == L"a/b");
  CHECK(text::afterLast(L"abc", L'/') == L"abc");
  CHECK(text::beforeLast(L"abc", L'/') == L"abc");
  CHECK(text::afterLast(L"a/", L'/') == L"");
  CHECK(text::beforeLast(L"/a", L'/') == L"");
}

TEST_CASE("splitting keeps empty pieces") {
  CHECK(text::split(L"a||b|", L'|') == Pieces{L"a", L"", L"b", L""});
  CHECK(text::split(L"", L'|') == Pieces{L""});
  CHECK(text::split(L"a", L'|') == Pieces{L"a"});
}

TEST_CASE("whole numbers are written in decimal digits") {
  CHECK(text::decimal(0) == L"0");
  CHECK(text::decimal(9) == L"9");
  CHECK(text::decimal(10) == L"10");
  CHECK(text::decimal(-1) == L"-1");
  CHECK(text::decimal(4294967295) == L"4294967295");
  CHECK(text::decimal(9223372036854775807) == L"9223372036854775807");
  CHECK(text::decimal(-9223372036854775807 - 1) == L"-9223372036854775808");
}

TEST_CASE("an ending is added only where it is missing") {
  CHECK(text::withEnding(L"a", L'/') == L"a/");
  CHECK(text::withEnding(L"a/", L'/') == L"a/");
  CHECK(text::withEnding(L"a//", L'/') == L"a//");
  CHECK(text::withEnding(L"", L'/') == L"/");
}
