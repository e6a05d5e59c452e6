// Where the stand-in's pages come from.
#include "host/pages/fetch.h"

#include <windows.h>

#include "host/pages/address.h"
#include "tests/online/LoopbackServer.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using namespace standin::pages;

TEST_CASE("an address is completed by the page that names it and its query stays as it is") {
  const std::wstring page = L"http://127.0.0.1:81/a/index.htm?x/y";
  CHECK(resolved(page, L"b.htm") == L"http://127.0.0.1:81/a/b.htm");
  CHECK(resolved(page, L"b.htm?c=http://d/../e f&g") ==
        L"http://127.0.0.1:81/a/b.htm?c=http://d/../e f&g");
  CHECK(resolved(page, L"/b.htm") == L"http://127.0.0.1:81/b.htm");
  CHECK(resolved(page, L"http://other/") == L"http://other/");
}

TEST_CASE("a file has one address however it is named") {
  const ScratchFolder disk;
  const std::wstring page = disk.writeFile(L"a long folder\\a page.htm");
  wchar_t brief[MAX_PATH] = {};
  REQUIRE(GetShortPathNameW(page.c_str(), brief, MAX_PATH) > 0);
  REQUIRE(brief != page);
  const std::wstring address = addressOf(page);
  CHECK(address.starts_with(L"file:///"));
  CHECK(address.ends_with(L"/a%20long%20folder/a%20page.htm"));
  CHECK(addressOf(brief) == address);
  CHECK(addressOf(address) == address);
  CHECK(addressOf(disk / L"x\\..\\\\a long folder/a page.htm") == address);
  CHECK(addressOf(L"file:///" + disk.path() + L"/x/../a long folder\\a page.htm#b c") ==
        address + L"#b c");
}

TEST_CASE("signs with a meaning of their own are escaped in the address of a file") {
  CHECK(addressOf(L"Q:\\C# 1\\100%.htm") == L"file:///Q:/C%23%201/100%25.htm");
  CHECK(addressOf(L"\\\\server\\share\\a b.htm") == L"file://server/share/a%20b.htm");
  CHECK(addressOf(L"Q:\\caf\u00E9.htm") == L"file:///Q:/caf\u00E9.htm");
  CHECK(addressOf(L"Q:\\caf\u00E9\U0001F600.htm", Letters::escaped) ==
        L"file:///Q:/caf%C3%A9%F0%9F%98%80.htm");
}

TEST_CASE("other addresses have the usual spelling and their query as it is written") {
  CHECK(addressOf(L"http://server") == L"http://server/");
  CHECK(addressOf(L"http://server/a b/../c d.htm?e=http://f/../g h") ==
        L"http://server/c%20d.htm?e=http://f/../g h");
  CHECK(addressOf(L"about:blank") == L"about:blank");
}

TEST_CASE("a path of the disk is fetched and what is missing is not") {
  const ScratchFolder disk;
  disk.writeFile(L"a page.htm", "content");
  std::string bytes = "old";
  CHECK(fetch(addressOf(disk / L"a page.htm"), bytes));
  CHECK(bytes == "content");
  CHECK_FALSE(fetch(addressOf(disk / L"none.htm"), bytes));
}

TEST_CASE("a page of a server is fetched and an answer of another kind is none") {
  const HttpServer server({{"/a.htm", HttpServer::ok("content")}});
  std::string bytes;
  CHECK(fetch(server.url(L"/a.htm"), bytes));
  CHECK(bytes == "content");
  CHECK_FALSE(fetch(server.url(L"/none.htm"), bytes));
  CHECK(bytes.empty());
}
