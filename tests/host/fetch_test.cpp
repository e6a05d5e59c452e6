// Where the stand-in's pages come from.
#include "host/pages/fetch.h"
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
