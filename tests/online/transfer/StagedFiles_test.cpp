// Where the archives of one page meet: each has a file of its own, whatever its name.
#include "online/transfer/StagedFiles.h"

#include "tests/online/LoopbackServer.h"
#include "tests/online/transfer/DownloadFixture.h"

namespace {

// The staged file's short name; empty where the file system gives none.
std::wstring shortNameOf(const std::wstring& path) {
  wchar_t text[MAX_PATH] = {};
  GetShortPathNameW(path.c_str(), text, MAX_PATH);
  const std::wstring name = text;
  return name.substr(name.rfind(L'\\') + 1);
}

std::string entry(const char* name, const std::string& text) {
  return ZipMaker().add(name, text).bytes();
}

}  // namespace

TEST_CASE("a theme and a template with one file name are both unpacked where they belong") {
  const std::string theme = themeFile("blue");
  const std::string dwt = page("a page");
  const HttpServer server({{"/t/a.zip", HttpServer::ok(theme)}, {"/d/a.zip", HttpServer::ok(dwt)}});
  Download download;
  CHECK(download.run(L"?theme1=" + server.url(L"/t/a.zip") + L"&dwt1=" + server.url(L"/d/a.zip")));
  CHECK(download.view.questions.empty());
  CHECK(download.stagedBytes(L"a.zip") == theme);
  CHECK(download.stagedBytes(L"a (2).zip") == dwt);
  CHECK(download.scratch.readFile(L"data\\Microsoft\\Themes\\blue\\x.inf") == "blue");
  CHECK(download.scratch.readFile(L"templates\\new\\page.dwt") == "a page");
  CHECK_FALSE(download.scratch.exists(L"data\\Microsoft\\Themes\\page.dwt"));
}

TEST_CASE("archives whose names differ in letter case or in how a blank is written do not meet") {
  const HttpServer server({{"/1/a%20b.zip", HttpServer::ok(entry("1.dwt", "1"))},
                           {"/2/A%20B.ZIP", HttpServer::ok(entry("2.dwt", "2"))}});
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/1/a%20b.zip") + L"&dwt2=" +
                     server.url(L"/2/A%20B.ZIP") + L"&dwt3=" + server.url(L"/1/a%20b.zip")));
  CHECK(download.view.questions.empty());
  CHECK(download.stagedBytes(L"a b.zip") == entry("1.dwt", "1"));
  CHECK(download.stagedBytes(L"A B (2).ZIP") == entry("2.dwt", "2"));
  CHECK(download.stagedBytes(L"a b (3).zip") == entry("1.dwt", "1"));
}

TEST_CASE("an archive whose name another one was given instead has a place of its own") {
  const HttpServer server({{"/1/a.zip", HttpServer::ok(entry("1.dwt", "1"))},
                           {"/2/a.zip", HttpServer::ok(entry("2.dwt", "2"))},
                           {"/a%20(2).zip", HttpServer::ok(entry("3.dwt", "3"))}});
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/1/a.zip") + L"&dwt2=" + server.url(L"/2/a.zip") +
                     L"&dwt3=" + server.url(L"/a%20(2).zip")));
  CHECK(download.view.questions.empty());
  for (const wchar_t* name : {L"1", L"2", L"3"})
    CHECK(download.scratch.exists(std::wstring(L"templates\\new\\") + name + L".dwt"));
  CHECK(download.stagedBytes(L"a (2) (2).zip") == entry("3.dwt", "3"));
}

TEST_CASE("an archive under the short name of another one has a place of its own") {
  Download download;
  const std::wstring longName = L"a rather long name.zip";
  download.stage(longName, "x");
  const std::wstring shortName = shortNameOf(download.staged(longName));
  REQUIRE(shortName != longName);
  const std::string narrow(shortName.begin(), shortName.end());
  const HttpServer server({{"/a%20rather%20long%20name.zip", HttpServer::ok(entry("1.dwt", "1"))},
                           {"/" + narrow, HttpServer::ok(entry("2.dwt", "2"))}});
  CHECK(download.run(L"?dwt1=" + server.url(L"/a%20rather%20long%20name.zip") + L"&dwt2=" +
                     server.url(L"/" + shortName)));
  CHECK(download.view.questions.size() == 1);
  CHECK(download.stagedBytes(longName) == entry("1.dwt", "1"));
  CHECK(download.scratch.exists(L"templates\\new\\1.dwt"));
  CHECK(download.scratch.exists(L"templates\\new\\2.dwt"));
}

TEST_CASE("a kept file of an earlier download is not given to another archive of the page") {
  const HttpServer server({{"/1/a.zip", HttpServer::ok(entry("1.dwt", "new"))},
                           {"/2/a.zip", HttpServer::ok(entry("2.dwt", "new"))}});
  Download download;
  download.view.replaceStaged = false;
  download.stage(L"a.zip", entry("1.dwt", "old"));
  CHECK(download.run(L"?dwt1=" + server.url(L"/1/a.zip") + L"&dwt2=" + server.url(L"/2/a.zip")));
  CHECK(download.view.questions.size() == 1);
  CHECK(download.scratch.readFile(L"templates\\new\\1.dwt") == "old");
  CHECK(download.scratch.readFile(L"templates\\new\\2.dwt") == "new");
}

TEST_CASE("the question about an existing file is asked for each file of an earlier download") {
  const HttpServer server({{"/1/a.zip", HttpServer::ok(entry("1.dwt", "1"))},
                           {"/2/a.zip", HttpServer::ok(entry("2.dwt", "2"))}});
  Download download;
  download.stage(L"a.zip", "old");
  download.stage(L"a (2).zip", "old");
  CHECK(download.run(L"?dwt1=" + server.url(L"/1/a.zip") + L"&dwt2=" + server.url(L"/2/a.zip")));
  CHECK(download.view.questions.size() == 2);
  CHECK(download.stagedBytes(L"a (2).zip") == entry("2.dwt", "2"));
}

TEST_CASE("a name without an extension gets its number at its end") {
  const HttpServer server({{"/1/a", HttpServer::ok(entry("1.dwt", "1"))},
                           {"/2/a", HttpServer::ok(entry("2.dwt", "2"))}});
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/1/a") + L"&dwt2=" + server.url(L"/2/a")));
  CHECK(download.isStaged(L"a (2)"));
}

TEST_CASE("a cancelled archive with another one's name deletes only its own staged file") {
  const std::string first = entry("1.dwt", "1");
  const HttpServer server({{"/1/a.zip", HttpServer::ok(first)},
                           {"/2/a.zip", HttpServer::ok(page(std::string(5000, 'x')))}});
  Download download;
  download.view.cancelWhen = [&] { return download.isStaged(L"a (2).zip"); };
  CHECK_FALSE(
      download.run(L"?dwt1=" + server.url(L"/1/a.zip") + L"&dwt2=" + server.url(L"/2/a.zip")));
  CHECK(download.stagedBytes(L"a.zip") == first);
  CHECK_FALSE(download.isStaged(L"a (2).zip"));
}

TEST_CASE("a file name that leads out of the staging folder is never written") {
  const StagedFiles staged(L"C:\\stage");
  for (const wchar_t* name :
       {L"x\\..\\..\\evil.zip", L"evil.zip:stream", L"nul.zip", L"evil.zip.", L"", L"a|b.zip"}) {
    CAPTURE(std::wstring(name));
    CHECK_THROWS_AS(staged.ordinaryPath(std::wstring(L"http://h/") + name), Error);
    CHECK_THROWS_AS(staged.freePath(std::wstring(L"http://h/") + name), Error);
  }
  CHECK(staged.ordinaryPath(L"http://h/a/b%20c.zip") == L"C:\\stage\\b c.zip");
}

TEST_CASE("a name is taken also where the file system tells no files apart") {
  StagedFiles staged(L"C:\\not there");
  CHECK(staged.freePath(L"http://h/a.b.zip") == L"C:\\not there\\a.b.zip");
  staged.take(L"C:\\not there\\A.B.zip");
  CHECK(staged.freePath(L"http://h/a.b.zip") == L"C:\\not there\\a.b (2).zip");
  CHECK(staged.freePath(L"http://h/c.zip") == L"C:\\not there\\c.zip");
}
