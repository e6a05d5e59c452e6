#include "common/ini_file.h"

#include <windows.h>

#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

std::wstring read(const std::wstring& file, const std::wstring& key, unsigned length = 512) {
  return readIniValue(file, L"page", key, L"fallback", length);
}

}  // namespace

TEST_CASE("an ini value is read from its section and key in any letter case") {
  ScratchFolder scratch;
  const std::wstring file =
      scratch.writeFile(L"quillet.ini", "[other]\r\nTitle=No\r\n[page]\r\nTitle=A page\r\n");
  CHECK(read(file, L"Title") == L"A page");
  CHECK(readIniValue(file, L"PAGE", L"title", L"", 512) == L"A page");
}

TEST_CASE("a missing ini file or section or key gives the fallback and so does an empty value") {
  ScratchFolder scratch;
  const std::wstring file = scratch.writeFile(L"quillet.ini", "[page]\r\nTitle=\r\n");
  CHECK(read(scratch / L"missing.ini", L"Title") == L"fallback");
  CHECK(readIniValue(file, L"none", L"Title", L"fallback", 512) == L"fallback");
  CHECK(read(file, L"Theme") == L"fallback");
  CHECK(read(file, L"Title") == L"fallback");
  CHECK(read(file, L"") == L"fallback");
  CHECK(readIniValue(file, L"", L"Title", L"fallback", 512) == L"fallback");
}

TEST_CASE("the fallback is handed back as it is") {
  CHECK(readIniValue(L"C:\\missing.ini", L"a", L"b", L" \u0416 ", 2) == L" \u0416 ");
}

TEST_CASE("an ini value over the length is cut to what the reader's buffer holds") {
  ScratchFolder scratch;
  const std::wstring file =
      scratch.writeFile(L"quillet.ini", "[page]\r\nTitle=" + std::string(511, 'x') +
                                            "\r\nDescription=" + std::string(600, 'y') + "\r\n");
  CHECK(read(file, L"Title") == std::wstring(511, L'x'));
  CHECK(read(file, L"Description") == std::wstring(511, L'y'));
  CHECK(read(file, L"Title", 2) == L"x");
  CHECK(read(file, L"Title", 1) == L"fallback");
  CHECK(read(file, L"Title", 0) == L"fallback");
}

TEST_CASE("umlauts of an ini file are read by the code page") {
  ScratchFolder scratch;
  const std::wstring file =
      scratch.writeFile(L"quillet.ini", "[page]\r\nTitle=\xe4\xf6\xfc\xdf\r\n");
  CHECK(read(file, L"Title") == L"\u00e4\u00f6\u00fc\u00df");
}

TEST_CASE("blanks around an ini value and one pair of quotes are not part of it") {
  ScratchFolder scratch;
  const std::wstring file =
      scratch.writeFile(L"quillet.ini", "[page]\r\n Title =  a b  \r\nTheme=\"sky 1F\"\r\n");
  CHECK(read(file, L"Title") == L"a b");
  CHECK(read(file, L"Theme") == L"sky 1F");
}

TEST_CASE("a section name with blanks and points is found") {
  ScratchFolder scratch;
  const std::wstring file = scratch.writeFile(L"quillet.ini", "[my page.v2]\r\nTitle=found\r\n");
  CHECK(readIniValue(file, L"my page.v2", L"Title", L"", 512) == L"found");
}

TEST_CASE("a section or file name outside the code page does not match one of question marks") {
  ScratchFolder scratch;
  const std::wstring file = scratch.writeFile(L"quillet.ini", "[?]\r\n?=wrong\r\nTitle=wrong\r\n");
  CHECK(readIniValue(file, L"\u0416", L"Title", L"fallback", 512) == L"fallback");
  CHECK(readIniValue(file, L"?", L"\u0416", L"fallback", 512) == L"fallback");
  CHECK(readIniValue(scratch / L"\u0416.ini", L"a", L"b", L"fallback", 512) == L"fallback");
}

TEST_CASE("a binary file in the place of an ini file gives the fallback") {
  ScratchFolder scratch;
  std::string bytes;
  for (int i = 0; i < 70000; ++i) bytes += static_cast<char>(i * 7919 >> 3);
  CHECK(read(scratch.writeFile(L"quillet.ini", bytes), L"Title") == L"fallback");
  CHECK(read(scratch.writeFile(L"zero.ini", std::string(5000, '\0')), L"Title") == L"fallback");
}

TEST_CASE("a folder in the place of an ini file gives the fallback") {
  ScratchFolder scratch;
  CHECK(read(scratch.makeFolder(L"quillet.ini"), L"Title") == L"fallback");
}

TEST_CASE("an ini file of ten megabytes is read") {
  ScratchFolder scratch;
  std::string bytes = "[filler]\r\n";
  while (bytes.size() < 10u * 1024 * 1024) bytes += "k=" + std::string(200, 'v') + "\r\n";
  bytes += "[page]\r\nTitle=at the end\r\n";
  CHECK(read(scratch.writeFile(L"quillet.ini", bytes), L"Title") == L"at the end");
}

TEST_CASE("an ini file without line ends is read without harm") {
  ScratchFolder scratch;
  CHECK(read(scratch.writeFile(L"a.ini", "[page]" + std::string(1000000, 'x')), L"Title") ==
        L"fallback");
  CHECK(read(scratch.writeFile(L"b.ini", "[page]\nTitle=last"), L"Title") == L"last");
}
