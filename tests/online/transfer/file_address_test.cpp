#include "online/transfer/file_address.h"

#include "tests/support/text_output.h"

using online::isFileAddress;

namespace {

auto crack(std::wstring_view address) { return modWINInetURL::CrackUrl(address); }

}  // namespace

TEST_CASE("which addresses may be files") {
  CHECK(isFileAddress(crack(L"http://h/a/b.zip")));
  CHECK(isFileAddress(crack(L"ftp://ann:sec@h/b.zip")));
  CHECK_FALSE(isFileAddress(crack(L"http://h/a/")));
  CHECK_FALSE(isFileAddress(crack(L"http://h")));
  CHECK_FALSE(isFileAddress(crack(L"http://h/b.zip?x=1")));
  CHECK_FALSE(isFileAddress(crack(L"http://h/b.zip#x")));
  CHECK_FALSE(isFileAddress(crack(L"http://h/.zip")));
  modWINInetURL::CrackedUrl blank;
  blank.host = L"h";
  blank.path = L"/ b.zip";
  CHECK_FALSE(isFileAddress(blank));
  blank.path = L"/b.zip";
  CHECK(isFileAddress(blank));
  blank.host.clear();
  CHECK_FALSE(isFileAddress(blank));
}

TEST_CASE("a file's own name is one that stays in its folder") {
  CHECK(online::fileNameOf(L"http://h/a/b%20c.zip") == L"b c.zip");
  for (const wchar_t* name :
       {L".", L"..", L"", L"x\\..\\..\\a.zip", L"con.zip", L"a.zip.", L"a.zip:x"}) {
    CAPTURE(std::wstring(name));
    CHECK_FALSE(online::fileNameOf(std::wstring(L"http://h/") + name).has_value());
  }
}

TEST_CASE("an address that cannot be taken apart may be a file") {
  CHECK(isFileAddress(std::nullopt));
}

TEST_CASE("a name with characters that no file name has is still a file address") {
  modWINInetURL::CrackedUrl parts;
  parts.host = L"h";
  for (const wchar_t letter : std::wstring(L"\\:*?\"<>|")) {
    parts.path = std::wstring(L"/a") + letter + L"b.zip";
    CHECK(isFileAddress(parts));
  }
}
