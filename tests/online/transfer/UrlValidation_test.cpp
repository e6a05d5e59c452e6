// The first pass over a download, by itself.
#include "online/transfer/UrlValidation.h"

#include "tests/online/LoopbackServer.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/online/transfer/Internet.h"

namespace {

// The pass over the files of a page's query.
class Validation {
 public:
  explicit Validation(const std::wstring& query) {
    table.fill(query);
    session.open();
    session.readProxy();
  }
  bool run() { return validation.ValidateURLs(); }

  Download machine;  // its registry decides how the internet is reached
  DownloadTable table;
  InternetSession session;
  RecordingView view;
  UrlValidation validation{table, session, view};
};

HttpServer::Answer withoutLength() {
  return HttpServer::raw("HTTP/1.0 200 OK\r\nConnection: close\r\n\r\nbody");
}

}  // namespace

TEST_CASE("the sizes that were found are counted and added up") {
  const HttpServer server({{"/a.zip", HttpServer::ok(std::string(100, 'a'))},
                           {"/b.zip", withoutLength()},
                           {"/c.zip", HttpServer::ok(std::string(23, 'c'))}});
  Validation files(L"?theme1=" + server.url(L"/a.zip") + L"&dwt1=" + server.url(L"/b.zip") +
                   L"&dwt2=" + server.url(L"/c.zip"));
  CHECK(files.table.addressCount() == 3);
  CHECK(files.run());
  CHECK(files.validation.addressCount() == 2);
  CHECK(files.validation.totalSize() == 123);
  CHECK(files.table.sizeText(0, DownloadTable::theme) == L"100");
  CHECK(files.table.sizeText(0, DownloadTable::dwt) == L"0");
  CHECK(files.table.sizeText(1, DownloadTable::theme) == L"");
  CHECK(files.table.sizeText(1, DownloadTable::dwt) == L"23");
  CHECK(files.view.failures.empty());
}

TEST_CASE("the pass over the files writes its log in order") {
  const HttpServer server({{"/a.zip", HttpServer::ok(std::string(100, 'a'))}});
  const std::wstring address = server.url(L"/a.zip");
  Validation files(L"?dwt1=" + address);
  CHECK(files.run());
  CHECK(files.machine.output.messages() == Texts{L"ENTERING ValidateURLs().", L"URL = " + address,
                                                 L"Locating file....", L"File size = 100 bytes",
                                                 L"EXITING GetTotalDownloadSize() successfully."});
}

TEST_CASE("a cancel when the last file's step has been shown ends the pass") {
  const HttpServer server({{"/a.zip", HttpServer::ok("a")}});
  Validation files(L"?dwt1=" + server.url(L"/a.zip"));
  files.view.cancelWhen = [&] { return files.view.overallValue == 1; };
  CHECK_FALSE(files.run());
  CHECK(files.view.overallValue == 1);
}

TEST_CASE("a file that cannot be reached has size 0 and has moved its bar once") {
  std::wstring refused;
  {
    const HttpServer gone({});
    refused = gone.url(L"/d.zip");
  }
  Validation files(L"?dwt1=" + refused);
  CHECK_FALSE(files.run());
  CHECK(files.table.sizeText(0, DownloadTable::dwt) == L"0");
  CHECK(files.validation.addressCount() == 0);
  CHECK(files.view.currentMaximum == 3);
  CHECK(files.view.currentValue == 1);
  REQUIRE(files.view.failures.size() == 1);
  CHECK(files.view.failures[0].first == connectFailed);
}

TEST_CASE("an error that is no cancel is logged and shown with its own description") {
  InternetPatch internet;
  Validation files(L"?dwt1=http://127.0.0.1/d.zip");
  internet.missing("InternetCrackUrlA");
  CHECK_FALSE(files.run());
  CHECK(files.machine.output.has(
      L"Error 53 (File not found) in procedure GetTotalDownloadSize of Form frmDownloadProgress"));
  REQUIRE(files.view.failures.size() == 1);
  CHECK(files.view.failures[0].first == L"File not found");
  CHECK(files.view.failures[0].second == L"Quillet Viewer");
}
