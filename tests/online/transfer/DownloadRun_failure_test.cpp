// Downloads that go wrong after their addresses have been found good.
#include <optional>

#include "common/forms/resource.h"
#include "common/handles.h"
#include "online/archive/modZipUnzip.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/RealServers.h"
#include "tests/online/loopback.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/online/transfer/Internet.h"
#include "tests/support/text_output.h"

namespace {

// Does something once, before the first file is asked for again in order to be transferred.
void beforeTransfer(Download& download, std::function<void()> action) {
  download.view.cancelWhen = [&download, action, done = false]() mutable {
    if (!done && download.view.caption().starts_with(L"Downloading 1")) {
      done = true;
      action();
    }
    return false;
  };
}

bool transferLogged(const Download& download, const std::wstring& description) {
  return download.output.has(L"Error 512 (" + description +
                             L") in procedure Form_Activate of Form frmDownloadProgress");
}

// The one message, and nothing else left behind.
void checkFailed(const Download& download, const std::wstring& text, const std::wstring& title) {
  REQUIRE(download.view.failures.size() == 1);
  CHECK(download.view.failures[0].first == text);
  CHECK(download.view.failures[0].second == title);
  CHECK(transferLogged(download, text));
  CHECK_FALSE(download.isStaged(L"d.zip"));
  CHECK_FALSE(download.scratch.exists(L"templates\\new\\page.dwt"));
}

constexpr wchar_t firstOfOne[] = L"Downloading 1 of 1 files.";

}  // namespace

TEST_CASE("a file that is gone when it is to be transferred ends the run with its address") {
  const RealServers servers;
  const std::wstring file = servers.folder().writeFile(L"d.zip", page("a page"));
  Download download;
  beforeTransfer(download, [&] { DeleteFileW(file.c_str()); });
  CHECK_FALSE(download.run(L"?dwt1=" + servers.url(L"/d.zip")));
  checkFailed(download, notFound(L"http://127.0.0.1/d.zip"), firstOfOne);
}

TEST_CASE("a server that is gone when a file is to be transferred ends the run") {
  std::optional<HttpServer> server(std::in_place, std::map<std::string, HttpServer::Answer>{
                                                      {"/d.zip", HttpServer::ok(page("a page"))}});
  Download download;
  beforeTransfer(download, [&] { server.reset(); });
  CHECK_FALSE(download.run(L"?dwt1=" + server->url(L"/d.zip")));
  checkFailed(download, connectFailed, L"Quillet Viewer");
}

TEST_CASE("an FTP file that is gone when it is to be transferred ends the run with its address") {
  const std::string bytes = page("by ftp");
  const RealServers servers;
  const std::wstring file = servers.folder().writeFile(L"public\\d.zip", bytes);
  InternetPatch internet;
  internet.ftpPort(servers.ftpPort());
  internet.ftpFileSize(static_cast<unsigned long>(bytes.size()));
  Download download;
  beforeTransfer(download, [&] { DeleteFileW(file.c_str()); });
  CHECK_FALSE(download.run(L"?dwt1=ftp://127.0.0.1/d.zip"));
  checkFailed(download, notFound(L"ftp://127.0.0.1/d.zip"), firstOfOne);
}

TEST_CASE("an FTP server that is gone when a file is to be transferred ends the run") {
  const std::string bytes = page("by ftp");
  const RealServers servers;
  servers.folder().writeFile(L"public\\d.zip", bytes);
  InternetPatch internet;
  internet.ftpPort(servers.ftpPort());
  internet.ftpFileSize(static_cast<unsigned long>(bytes.size()));
  unsigned short deserted = 0;
  closesocket(loopback::listen(deserted));
  Download download;
  beforeTransfer(download, [&] { internet.ftpPort(deserted); });
  CHECK_FALSE(download.run(L"?dwt1=ftp://127.0.0.1/d.zip"));
  checkFailed(download, connectFailed, L"Quillet Viewer");
}

TEST_CASE("a machine without a shared themes folder leaves the themes to the user") {
  const HttpServer server({{"/t.zip", HttpServer::ok(themeFile("blue"))}});
  Download download;
  download.request.machineWide = true;
  download.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Shared tools",
                              L"SharedFilesDir", L"");
  CHECK(download.run(L"?theme1=" + server.url(L"/t.zip")));
  CHECK(download.scratch.readFile(L"data\\Microsoft\\Themes\\blue\\x.inf") == "blue");
}

TEST_CASE("a session is closed only after the files that were opened through it") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page(std::string(5000, 'x')))}});
  InternetPatch internet;
  Download download;
  download.request.pageAddress = L"http://h/DWTOnlineDownload.htm?dwt1=" + server.url(L"/d.zip");
  DownloadRun run(download.request, download.view);
  // As the Cancel button does it, in the middle of the second read.
  download.view.cancelWhen = [&] {
    if (download.view.currentSizes.empty()) return false;
    run.unload();
    return true;
  };
  const long before = handles::liveCount();
  run.ExtractAndCanonicalizeUrl();
  REQUIRE(run.load());
  run.run();
  CHECK(download.cancelledIn(L"Form_Activate"));
  CHECK(internet.staleCloses() == 0);
  CHECK(handles::liveCount() == before);
}

TEST_CASE("a cancel once the staged file has been opened deletes it whatever its size") {
  for (const char* head :
       {"HTTP/1.0 200 OK\r\n\r\n", "HTTP/1.0 200 OK\r\nContent-Length: 5\r\n\r\n"}) {
    const HttpServer server({{"/d.zip", HttpServer::raw(head + std::string("hello"))}});
    Download download;
    download.view.cancelWhen = [&] {
      return download.output.has(L"Beginning to download the file d.zip");
    };
    CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(download.cancelledIn(L"Form_Activate"));
    CHECK_FALSE(download.output.has(L"File closed."));
    CHECK(download.output.has(L"Exiting DeleteRelatedFiles()"));
    CHECK_FALSE(download.isStaged(L"d.zip"));
    CHECK(download.view.failures.empty());
  }
}

TEST_CASE("the sizes of a file are gone when the next one begins") {
  const std::string bytes = page("a page");
  const HttpServer server({{"/a.zip", HttpServer::ok(bytes)}, {"/b.zip", HttpServer::ok(bytes)}});
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/a.zip") + L"&dwt2=" + server.url(L"/b.zip")));
  const std::wstring size = std::to_wstring(bytes.size()) + L" bytes";
  CHECK(download.view.currentSizes ==
        Texts{L"", size + L" of " + size, L"", size + L" of " + size});
}

TEST_CASE("a theme whose body ends early is deleted and its template is not downloaded") {
  const HttpServer server({{"/t.zip", {HttpServer::head(5000) + std::string(1000, 'x')}},
                           {"/d.zip", HttpServer::ok(page("a page"))}});
  Download download;
  CHECK_FALSE(
      download.run(L"?theme1=" + server.url(L"/t.zip") + L"&dwt1=" + server.url(L"/d.zip")));
  CHECK(download.output.has(L"Entering DeleteRelatedFiles()"));
  CHECK(download.output.has(L"Exiting DeleteRelatedFiles()"));
  CHECK_FALSE(download.isStaged(L"t.zip"));
  CHECK_FALSE(download.isStaged(L"d.zip"));
}

TEST_CASE("a theme that was installed asks for a restart although a template of its run failed") {
  const HttpServer server(
      {{"/t.zip", HttpServer::ok(themeFile("blue"))}, {"/d.zip", HttpServer::ok("no archive")}});
  Download download;
  CHECK_FALSE(
      download.run(L"?theme1=" + server.url(L"/t.zip") + L"&dwt1=" + server.url(L"/d.zip")));
  REQUIRE(download.view.failures.size() == 2);
  CHECK(download.view.failures[0].first.starts_with(L"Cannot unzip file: \" "));
  CHECK(download.view.failures[1].first ==
        L"One or more DWTs that were installed use FrontPage theme.\r\nYou must restart FrontPage "
        L"before you copy these DWTs to the web.");
  CHECK(download.view.failures[1].second == L"DWT Online");
}

TEST_CASE("an endless body without a length is not read at all") {
  const HttpServer server(
      {{"/d.zip", {"HTTP/1.0 200 OK\r\nConnection: close\r\n\r\n", false, true}}});
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.output.has(L"File size could not be retrieved."));
  CHECK(download.output.has(L"Download completed successfully. "));
  REQUIRE(download.failures().size() == 1);
  CHECK(download.failures()[0].starts_with(L"Cannot unzip file: \" "));
}

TEST_CASE("of a file that is longer than it was said to be at most a piece too much comes in") {
  const RealServers servers;
  servers.folder().writeFile(L"public\\d.zip", std::string(100000, 'x'));
  InternetPatch internet;
  internet.ftpPort(servers.ftpPort());
  internet.ftpFileSize(300);
  internet.readsWhole();
  Download download;
  std::size_t received = 0;
  download.view.cancelWhen = [&] {
    if (download.output.has(L"File closed.") && download.isStaged(L"d.zip"))
      received = download.stagedBytes(L"d.zip").size();
    return false;
  };
  CHECK_FALSE(download.run(L"?dwt1=ftp://127.0.0.1/d.zip"));
  CHECK(received >= 300);
  CHECK(received < 300 + 255);
}

TEST_CASE("only while a theme is unpacked is the unpacking in theme mode") {
  ZipMaker::Extras extras;
  extras.password = "sesame";
  const HttpServer server(
      {{"/t.zip", HttpServer::ok(ZipMaker().add("blue/x.inf", "blue", extras).bytes())},
       {"/d.zip", HttpServer::ok(ZipMaker().add("page.dwt", "page", extras).bytes())}});
  Download download;
  std::vector<bool> modes;
  download.view.onPassword = [&] {
    modes.push_back(modZipUnzip::ThemeMode::isOn());
    return L"sesame";
  };
  CHECK(download.run(L"?theme1=" + server.url(L"/t.zip") + L"&dwt1=" + server.url(L"/d.zip")));
  CHECK(modes == std::vector<bool>{true, false});
  CHECK_FALSE(modZipUnzip::ThemeMode::isOn());
}

TEST_CASE("a file without a length is there and empty once it has been transferred") {
  const HttpServer server(
      {{"/d.zip", HttpServer::raw("HTTP/1.0 200 OK\r\n\r\n" + page("a page"))}});
  Download download;
  bool there = false;
  std::string bytes = "not looked at";
  download.view.cancelWhen = [&] {
    if (!there && download.output.has(L"File closed.")) {
      there = download.isStaged(L"d.zip");
      bytes = download.stagedBytes(L"d.zip");
    }
    return false;
  };
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(there);
  CHECK(bytes.empty());
}
