// Servers that do not answer.
#include "tests/online/LoopbackServer.h"
#include "tests/online/RealServers.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/online/transfer/Internet.h"

using Options = InternetPatch::Options;

namespace {

// A download from a server that drips is cancelled when a few drops more have come since it began:
// long before there are as many as a piece of the file has.
void checkCancelBetweenDrops(const std::wstring& address, const LoopbackServer& server) {
  Download download;
  long before = 0;
  download.view.cancelWhen = [&] {
    if (!before && download.output.has(L"Beginning to download the file d.zip"))
      before = server.drops() + 1;
    return before && server.drops() > before + 2;
  };
  CHECK_FALSE(download.run(L"?dwt1=" + address));
  CHECK(before > 0);
  CHECK(server.drops() < before + 200);
  CHECK(download.cancelledIn(L"Form_Activate"));
  CHECK_FALSE(download.isStaged(L"d.zip"));
  CHECK(download.view.failures.empty());
}

}  // namespace

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

TEST_CASE("a cancel takes effect between the drops of a server that drips") {
  const HttpServer server({{"/d.zip", {HttpServer::head(100000), false, false, true}}});
  checkCancelBetweenDrops(server.url(L"/d.zip"), server);
}

TEST_CASE("a cancel takes effect between the drops of an FTP server that drips") {
  const FtpServer server("220 ready", {}, FtpServer::Ending::drips);
  InternetPatch internet;
  internet.ftpPort(server.port());
  internet.ftpFileSize(100000);
  internet.readsWhole();
  checkCancelBetweenDrops(L"ftp://127.0.0.1/d.zip", server);
}

TEST_CASE("a server that has sent enough is read without a question for each piece") {
  const std::string bytes = page(std::string(3000, 'x'));
  const HttpServer server({{"/d.zip", HttpServer::ok(bytes)}});
  const InternetPatch internet;
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(internet.reads() >= static_cast<int>(bytes.size() / 255));
  CHECK(internet.questions() > 0);
  CHECK(internet.questions() < internet.reads() / 2);
}

TEST_CASE("a system that does not tell how much can be read is read all the same") {
  constexpr unsigned long wrongHandle = 12018;
  const HttpServer server({{"/d.zip", HttpServer::ok(page(std::string(3000, 'x')))}});
  InternetPatch internet;
  internet.nothingTold(wrongHandle);
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/d.zip")));
}

TEST_CASE("a server that falls silent is waited for once") {
  constexpr unsigned long timedOut = 12002;
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  InternetPatch internet;
  internet.nothingTold(timedOut);
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures() == Texts{L"Unable to read the current file."});
  CHECK(internet.questions() == 1);
  CHECK(internet.reads() == 0);
  CHECK_FALSE(download.isStaged(L"d.zip"));
}
