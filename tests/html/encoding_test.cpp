#include "html/encoding.h"

#include "tests/support/text_output.h"

using html::decodePage;

TEST_CASE("a page is read in the encoding that it names") {
  CHECK(decodePage("<meta content=\"text/html; charset=utf-8\">\xC3\xBC").back() == L'\xFC');
  CHECK(decodePage("<META CHARSET='Windows-1251'>\xFC").back() == L'\x44C');
  CHECK(decodePage("<meta charset=iso-8859-7>\xE1").back() == L'\x3B1');
  CHECK(decodePage("<meta charset=shift_jis>\x82\xA0").back() == L'\x3042');
}

TEST_CASE("a page that names no encoding is read in the system's") {
  CHECK(decodePage("<p>\xFC").back() == L'\xFC');
  CHECK(decodePage("").empty());
}

TEST_CASE("an encoding that is unknown gives way to the system's") {
  CHECK(decodePage("<meta charset=martian>\xFC").back() == L'\xFC');
  CHECK(decodePage("<meta charset=windows-99999>\xFC").back() == L'\xFC');
}

TEST_CASE("bytes that are not in the encoding that the page names are read in the system's") {
  const std::wstring text = decodePage("<meta charset=utf-8>\xFC ja");
  CHECK(text.find(L'\xFC') != text.npos);
  CHECK(text.ends_with(L" ja"));
}

TEST_CASE("a byte order mark tells the encoding and is no part of the page") {
  CHECK(decodePage("\xEF\xBB\xBF\xC3\xBC") == L"\xFC");
  CHECK(decodePage(std::string_view("\xFF\xFE\xFC\0x\0", 6)) == L"\xFCx");
  CHECK(decodePage(std::string_view("\xFE\xFF\0\xFC\0x", 6)) == L"\xFCx");
  CHECK(decodePage("\xFF\xFE\x42\x30") == L"\x3042");
  CHECK(decodePage("\xFE\xFF\x30\x42") == L"\x3042");
  CHECK(decodePage(std::string_view("\xFF\xFE\xFC", 3)).empty());
}
