// Servers that do not answer.
#include "tests/online/LoopbackServer.h"
#include "tests/online/RealServers.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/online/transfer/Internet.h"

using Options = InternetPatch::Options;

TEST_CASE("a session has limits of 30 seconds for connecting and for answers") {
  constexpr unsigned long limit = 30000;
  InternetPatch internet;
  Download download;
  download.run(L"?dwt1=foo://h/d.zip");
  // Connecting, with one attempt for each address; answers, also of an FTP server's commands; an
  // FTP server's files.
  CHECK(internet.optionsOfSession() == Options{{2, limit}, {3, 1}, {6, limit}, {8, limit}});
  CHECK(internet.optionsElsewhere() == Options{});
}

TEST_CASE("a session's functions answer when they are done and not before") {
  const InternetPatch internet;
  InternetSession session;
  REQUIRE(session.open());
  CHECK(internet.flagsOfSession() == 0);
}

TEST_CASE("a system that takes no limits downloads all the same") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  InternetPatch internet;
  internet.noOptions();
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/d.zip")));
}

TEST_CASE("a server that accepts and stays silent is a failed connection") {
  constexpr unsigned long timedOut = 12002;
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  InternetPatch internet;
  internet.noUrl(timedOut);
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures() == Texts{connectFailed});
  CHECK(download.view.failures[0].second == L"Quillet Viewer");
}

TEST_CASE("an FTP server that stays silent when a file is asked for is a failed connection") {
  constexpr unsigned long timedOut = 12002;
  const RealServers servers;
  servers.folder().writeFile(L"public\\a.zip", page("x"));
  InternetPatch internet;
  internet.ftpPort(servers.ftpPort());
  internet.noFtpFile(timedOut);
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=ftp://127.0.0.1/a.zip"));
  CHECK(download.failures() == Texts{connectFailed});
}

TEST_CASE("a server that falls silent in the middle of a file is a failed read") {
  constexpr unsigned long timedOut = 12002;
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  InternetPatch internet;
  internet.noRead(timedOut);
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures() == Texts{L"Unable to read the current file."});
  CHECK_FALSE(download.isStaged(L"d.zip"));
}
