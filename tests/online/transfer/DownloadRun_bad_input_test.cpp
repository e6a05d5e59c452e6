// What a download is given that is no good: addresses, answers, disks, archives, a system.
#include <algorithm>
#include <optional>

#include "online/transfer/FileTransfer.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/online/transfer/Internet.h"
#include "tests/support/ImportPatch.h"

namespace {

constexpr wchar_t unreadable[] = L"Unable to read the current file.";

std::wstring notAnArchive(const std::wstring& path) {
  return L"Cannot unzip file: \" " + path +
         L" \".\r\nIt does not appear to be a valid archive. If you downloaded this file, try "
         L"downloading the file again.";
}

// Does something once, as soon as the files are transferred; for a view's `cancelWhen`.
template <class Action>
std::function<bool()> whenTransferBegins(const RecordingView& view, Action action) {
  return [&view, action, done = false]() mutable {
    if (!done && view.caption().starts_with(L"Downloading 1 of")) {
      done = true;
      action();
    }
    return false;
  };
}

// The system refuses to open one file for writing, to write, or to delete.
class DiskFault {
 public:
  explicit DiskFault(DWORD code) { code_ = code; }

  static HANDLE WINAPI open(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                            DWORD disposition, DWORD flags, HANDLE file) {
    if (!std::wstring(path).starts_with(folder_) || !(access & GENERIC_WRITE))
      return open_->original<decltype(open)>()(path, access, share, security, disposition, flags,
                                               file);
    SetLastError(code_);
    return INVALID_HANDLE_VALUE;
  }
  void refuseOpening(const std::wstring& folder) {
    folder_ = folder;
    open_.emplace(nullptr, "KERNEL32.dll", "CreateFileW", open);
  }
  void refuseDeleting() { others_.emplace(nullptr, "KERNEL32.dll", "DeleteFileW", remove); }
  void end() {
    open_.reset();
    others_.reset();
  }
  ~DiskFault() { end(); }
  DiskFault(const DiskFault&) = delete;
  DiskFault& operator=(const DiskFault&) = delete;

 private:
  static BOOL WINAPI remove(LPCWSTR) {
    SetLastError(code_);
    return FALSE;
  }

  static inline DWORD code_ = 0;
  static inline std::wstring folder_;
  static inline std::optional<ImportPatch> open_;
  static inline std::optional<ImportPatch> others_;
};

}  // namespace

// Addresses

TEST_CASE("an address of an unknown scheme is refused") {
  for (const wchar_t* address :
       {L"gopher://127.0.0.1/d.zip", L"foo://127.0.0.1/d.zip", L"file://127.0.0.1/d.zip"}) {
    CAPTURE(std::wstring(address));
    Download download;
    CHECK_FALSE(download.run(L"?dwt1=" + std::wstring(address)));
    CHECK(download.failures() ==
          Texts{L"Internet protocol scheme specified is not valid or is not supported."});
    CHECK(download.view.failures[0].second == L"Quillet Viewer");
  }
}

TEST_CASE("an address that cannot be taken apart ends the transfer with its own message") {
  Download download;
  DownloadTable table;
  table.fill(L"?dwt1=nonsense");
  InternetSession session;
  FileTransfer transfer(table, session, download.scratch.path(), download.view);
  try {
    transfer.run();
    FAIL("no error");
  } catch (const Error& error) {
    CHECK(error.number() == 512);
    CHECK(error.description() == L"URL could not be cracked. Invalid URL");
  }
  CHECK(download.output.messages() == Texts{L"URL could not be cracked. Invalid URL"});
}

// Answers

TEST_CASE("a connection that the system refuses is a message with the system's text") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  InternetPatch internet;
  internet.noUrl(ERROR_ACCESS_DENIED);
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures() ==
        Texts{connectFailed + (L" " + modWINInetURL::ErrorText(ERROR_ACCESS_DENIED))});
  CHECK(download.output.has(L"Error 512 (" + std::wstring(connectFailed) +
                            L") in procedure GetTotalDownloadSize of Form frmDownloadProgress"));
}

TEST_CASE("a read that the system refuses is a message with the system's text") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  InternetPatch internet;
  internet.noRead(ERROR_ACCESS_DENIED);
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures() ==
        Texts{unreadable + (L" " + modWINInetURL::ErrorText(ERROR_ACCESS_DENIED))});
  CHECK_FALSE(download.isStaged(L"d.zip"));
}

TEST_CASE("an answer that is no HTTP ends the run and leaves nothing behind") {
  const HttpServer server({{"/d.zip", HttpServer::raw("what?\r\n\r\n")}});
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures().size() == 1);
  CHECK_FALSE(download.isStaged(L"d.zip"));
}

TEST_CASE("a redirect to a file that is not there is a missing file") {
  const HttpServer server(
      {{"/d.zip",
        HttpServer::raw("HTTP/1.0 302 Found\r\nLocation: /gone.zip\r\nContent-Length: 0\r\n"
                        "Connection: close\r\n\r\n")}});
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.failures() == Texts{notFound(L"http://127.0.0.1/d.zip")});
}

TEST_CASE("a length that is negative, a sum or beyond all measure counts as none") {
  for (const char* length : {"-5", "+5", "5 5", "0x5", "5.0", "1e3", "9999999999999999999"}) {
    CAPTURE(std::string(length));
    const HttpServer server({{"/d.zip", HttpServer::raw("HTTP/1.0 200 OK\r\nContent-Length: " +
                                                        std::string(length) + "\r\n\r\nhello")}});
    Download download;
    CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(download.output.has(L"File size could not be retrieved."));
    CHECK(download.view.overallSizes == Texts{L"0 bytes"});
  }
}

TEST_CASE("a file is as long as it was when it was measured whatever the server says later") {
  const std::string bytes = page("a page");
  for (const std::size_t claimed : {bytes.size(), bytes.size() + 300}) {
    CAPTURE(claimed);
    HttpServer server({{"/d.zip", {HttpServer::head(claimed) + bytes}}});
    Download download;
    bool told = false;
    download.view.cancelWhen = whenTransferBegins(download.view, [&] {
      told = true;
      server.change("/d.zip", {HttpServer::head(bytes.size()) + bytes});
    });
    CHECK(download.run(L"?dwt1=" + server.url(L"/d.zip")) == (claimed == bytes.size()));
    CHECK(told);
    CHECK(download.isStaged(L"d.zip") == (claimed == bytes.size()));
  }
}

TEST_CASE("a redirect to a file of this disk or to nowhere brings nothing in") {
  Download elsewhere;
  const std::wstring secret = elsewhere.scratch.writeFile(L"secret.zip", page("secret"));
  const std::string path(secret.begin(), secret.end());
  for (const std::string& target :
       {"file:///" + path, path, std::string("javascript:x"), std::string("//"), "res://" + path}) {
    CAPTURE(target);
    const HttpServer server(
        {{"/d.zip", HttpServer::raw("HTTP/1.0 302 Found\r\nLocation: " + target +
                                    "\r\nContent-Length: 0\r\n"
                                    "Connection: close\r\n\r\n")}});
    Download download;
    CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(download.failures().size() == 1);
    CHECK_FALSE(download.isStaged(L"d.zip"));
    CHECK_FALSE(download.scratch.exists(L"templates\\new\\page.dwt"));
  }
}

TEST_CASE("a redirect to another host's file is followed") {
  const HttpServer other({{"/d.zip", HttpServer::ok(page("a page"))}});
  const std::wstring address = other.url(L"/d.zip");
  const auto to = [](const std::string& target) {
    return HttpServer::raw("HTTP/1.0 302 Found\r\nLocation: " + target +
                           "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
  };
  const HttpServer server({{"/d.zip", to({address.begin(), address.end()})}});
  Download download;
  CHECK(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.scratch.readFile(L"templates\\new\\page.dwt") == "a page");
}

TEST_CASE("an answer that forbids the file is taken for it and fails to unpack") {
  for (const char* status : {"403 Forbidden", "401 Unauthorized", "410 Gone", "503 Busy"}) {
    CAPTURE(std::string(status));
    const HttpServer server(
        {{"/d.zip", HttpServer::raw("HTTP/1.0 " + std::string(status) +
                                    "\r\nContent-Length: 4\r\nConnection: close\r\n\r\nnope")}});
    Download download;
    CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
    REQUIRE(download.failures().size() == 1);
    CHECK(download.failures()[0] == notAnArchive(download.staged(L"d.zip")));
    CHECK_FALSE(download.isStaged(L"d.zip"));
  }
}

// Disks

TEST_CASE("a disk that is not ready is a message") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  Download download;
  DiskFault disk(ERROR_NOT_READY);
  download.view.cancelWhen = whenTransferBegins(
      download.view, [&] { disk.refuseOpening(download.scratch / L"data\\Korvel Software"); });
  const bool completed = download.run(L"?dwt1=" + server.url(L"/d.zip"));
  disk.end();
  CHECK_FALSE(completed);
  CHECK(download.failures() == Texts{L"The disk not ready or the specified path does not exist."});
  CHECK(download.view.failures[0].second == L"Quillet Viewer");
  CHECK(download.output.has(
      L"Error 71 (Disk not ready) in procedure Form_Activate of Form frmDownloadProgress"));
}

TEST_CASE("a read-only disk under the staged files is a message") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  Download download;
  DiskFault disk(ERROR_WRITE_PROTECT);
  download.view.cancelWhen = whenTransferBegins(
      download.view, [&] { disk.refuseOpening(download.scratch / L"data\\Korvel Software"); });
  const bool completed = download.run(L"?dwt1=" + server.url(L"/d.zip"));
  disk.end();
  CHECK_FALSE(completed);
  CHECK(download.failures() ==
        Texts{L"Invalid file path or the file cannot be written to the specified location"});
}

TEST_CASE("a read-only destination ends the run before anything is downloaded") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  Download download;
  DiskFault disk(ERROR_WRITE_PROTECT);
  disk.refuseOpening(download.request.destinationFolder);
  const bool completed = download.run(L"?dwt1=" + server.url(L"/d.zip"));
  disk.end();
  CHECK_FALSE(completed);
  REQUIRE(download.failures().size() == 1);
  CHECK(download.failures()[0] ==
        download.request.destinationFolder +
            L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(download.output.has(L"Handled Error : " + download.request.destinationFolder +
                            L" could not be written. in procedure Form_Load of Form "
                            L"frmDownloadProgress"));
  CHECK(server.requests().empty());
}

TEST_CASE("a destination that is a file by the time of unpacking is named in a message") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  Download download;
  download.view.cancelWhen = whenTransferBegins(download.view, [&] {
    RemoveDirectoryW(download.request.destinationFolder.c_str());
    download.scratch.writeFile(L"templates\\new", "in the way");
  });
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  REQUIRE(download.failures().size() == 1);
  CHECK(download.failures()[0] ==
        download.request.destinationFolder +
            L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(download.scratch.readFile(L"templates\\new") == "in the way");
}

TEST_CASE("a destination that vanishes with its parent is named in a message") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("x"))}});
  Download download;
  download.view.cancelWhen = whenTransferBegins(download.view, [&] {
    RemoveDirectoryW(download.request.destinationFolder.c_str());
    RemoveDirectoryW((download.scratch / L"templates").c_str());
  });
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  REQUIRE(download.failures().size() == 1);
  CHECK(download.failures()[0] ==
        download.request.destinationFolder +
            L"\r\nInvalid file path or you do not have write permission to this location.");
}

TEST_CASE("a staged copy that cannot be deleted is logged") {
  const HttpServer server({{"/d.zip", {HttpServer::head(5000) + std::string(1000, 'x')}}});
  Download download;
  DiskFault disk(ERROR_SHARING_VIOLATION);
  download.view.cancelWhen = whenTransferBegins(download.view, [&] { disk.refuseDeleting(); });
  const bool completed = download.run(L"?dwt1=" + server.url(L"/d.zip"));
  disk.end();
  CHECK_FALSE(completed);
  CHECK(download.failures() == Texts{unreadable});
  CHECK(download.output.has(L"Entering DeleteRelatedFiles()"));
  CHECK(
      download.output.has(L"Error While Exiting DeleteRelatedFiles(). Error : Permission denied"));
}

// Archives

TEST_CASE("a downloaded archive that is truncated is named in a message and deleted") {
  std::string bytes = page(std::string(3000, 'x'));
  bytes.resize(2000);
  const HttpServer server({{"/d.zip", HttpServer::ok(bytes)}});
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  REQUIRE(download.failures().size() == 1);
  CHECK(download.failures()[0] == notAnArchive(download.staged(L"d.zip")));
  CHECK_FALSE(download.isStaged(L"d.zip"));
}

TEST_CASE("downloaded archives whose names lead outside change nothing but the staging folder") {
  for (const char* name : {"../evil.htm", "..\\..\\evil.htm", "/evil.htm", "C:/evil.htm",
                           "page.htm:evil", "nul.htm", "evil.htm."}) {
    CAPTURE(std::string(name));
    const HttpServer server(
        {{"/d.zip", HttpServer::ok(ZipMaker().add("page.htm", "1").add(name, "evil").bytes())}});
    Download download;
    CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(download.failures().size() == 1);
    CHECK(download.scratch.tree() ==
          Texts{L"data\\", L"data\\Korvel Software\\", L"data\\Korvel Software\\d.zip",
                L"data\\Microsoft\\", L"data\\Microsoft\\Themes\\", L"shared\\",
                L"shared\\Themes11\\", L"templates\\", L"templates\\new\\"});
  }
}

TEST_CASE("a failed theme leaves the templates of its run unpacked and the run incomplete") {
  const HttpServer server(
      {{"/t.zip", HttpServer::ok("no archive")}, {"/d.zip", HttpServer::ok(page("a page"))}});
  Download download;
  CHECK_FALSE(
      download.run(L"?theme1=" + server.url(L"/t.zip") + L"&dwt1=" + server.url(L"/d.zip")));
  CHECK(download.scratch.readFile(L"templates\\new\\page.dwt") == "a page");
  CHECK(download.failures() == Texts{notAnArchive(download.staged(L"t.zip"))});
}

// What the system does not have

TEST_CASE("a system without the internet functions is an error that is logged") {
  InternetPatch internet;
  internet.missing("InternetOpenA");
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=http://127.0.0.1/d.zip"));
  CHECK(
      download.output.has(L"ERROR in procedure ExtractAndCanonicalizeUrl of Form "
                          L"frmDownloadProgress. Error : File not found"));
  CHECK(download.output.has(
      L"Error 53 (File not found) in procedure Form_Load of Form frmDownloadProgress"));
}

TEST_CASE("without the function that closes what was opened nothing is opened") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  InternetPatch internet;
  internet.missing("InternetCloseHandle");
  Download download;
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(download.output.has(
      L"Error 53 (File not found) in procedure Form_Load of Form frmDownloadProgress"));
  CHECK(internet.optionsOfSession().empty());
}

TEST_CASE("without a session there is no FTP connection and nothing is logged") {
  Download download;
  InternetSession session;
  CHECK(session.GetInternetConnectHandle(L"127.0.0.1", L"", L"") == nullptr);
  CHECK(download.output.messages().empty());
}
