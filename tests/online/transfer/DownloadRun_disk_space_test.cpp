// Downloads that the disk has no room for.
#include <optional>

#include "online/transfer/modWINInetURL.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/support/ImportPatch.h"

namespace {

// A disk with so much room, and what was asked about.
class FreeSpace {
 public:
  explicit FreeSpace(unsigned long long bytes) {
    bytes_ = bytes;
    folders.clear();
  }
  static inline std::vector<std::wstring> folders;
  static inline bool unknown = false;

 private:
  static BOOL WINAPI ask(LPCWSTR folder, PULARGE_INTEGER available, PULARGE_INTEGER total,
                         PULARGE_INTEGER all) {
    folders.emplace_back(folder);
    // What the user's quota leaves is less than what is free.
    if (available) available->QuadPart = bytes_;
    if (total) total->QuadPart = ~0ull;
    if (all) all->QuadPart = ~0ull;
    SetLastError(ERROR_NOT_READY);
    return !unknown;
  }
  static inline unsigned long long bytes_ = 0;
  ImportPatch patch_{nullptr, "KERNEL32.dll", "GetDiskFreeSpaceExW", ask};
};

std::wstring noRoom(const Download& download) {
  return download.scratch / L"data\\Korvel Software" +
         (L"\r\n" + modWINInetURL::ErrorText(ERROR_DISK_FULL));
}

// Writes so many times, then the disk is full.
class FillingDisk {
 public:
  explicit FillingDisk(int writes) {
    left_ = writes;
    real_ = patch_.original<std::remove_pointer_t<decltype(real_)>>();
  }

 private:
  static BOOL WINAPI write(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written,
                           LPOVERLAPPED overlapped) {
    if (left_-- > 0) return real_(file, bytes, count, written, overlapped);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
  }
  static inline int left_ = 0;
  ImportPatch patch_{nullptr, "KERNEL32.dll", "WriteFile", write};
  static inline decltype(&WriteFile) real_ = nullptr;
};

// The view's `cancelWhen`: a full disk from when the transfer begins.
template <class Disk>
std::function<bool()> whenTransferBegins(const RecordingView& view, std::optional<Disk>& disk,
                                         int writes) {
  return [&view, &disk, writes] {
    if (!disk && view.caption().starts_with(L"Downloading 1 of")) disk.emplace(writes);
    return false;
  };
}

}  // namespace

TEST_CASE("a file that is larger than the free space is not begun") {
  const HttpServer server({{"/d.zip", {HttpServer::head(5000) + std::string(5000, 'x')}}});
  Download download;
  download.stage(L"kept.txt", "kept");
  {
    const FreeSpace space(4999);
    CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/d.zip")));
    for (const auto& folder : space.folders)
      CHECK(folder == download.scratch / L"data\\Korvel Software\\");
    CHECK_FALSE(space.folders.empty());
  }
  REQUIRE(download.view.failures.size() == 1);
  CHECK(download.view.failures[0].first == noRoom(download));
  CHECK(download.view.failures[0].second == L"Quillet Viewer");
  CHECK_FALSE(download.isStaged(L"d.zip"));
  CHECK(download.isStaged(L"kept.txt"));
  CHECK_FALSE(download.output.has(L"File opened for binary input.  File Name : d.zip"));
  CHECK(download.output.has(L"Error 61 (" + noRoom(download) +
                            L") in procedure Form_Activate of Form frmDownloadProgress"));
}

TEST_CASE("a file that just fits into the free space is downloaded") {
  const std::string bytes = page("a page");
  const HttpServer server({{"/d.zip", HttpServer::ok(bytes)}});
  Download download;
  // Its unpacking asks for itself.
  std::optional<FreeSpace> space;
  download.view.cancelWhen = [&] {
    if (download.view.caption().starts_with(L"Downloading 1"))
      space.emplace(bytes.size());
    else
      space.reset();
    if (download.output.has(L"File closed.")) space.reset();
    return false;
  };
  CHECK(download.run(L"?dwt1=" + server.url(L"/d.zip")));
}

TEST_CASE("files that do not fit into the free space together are not begun") {
  const HttpServer server({{"/a.zip", {HttpServer::head(3000) + std::string(3000, 'x')}},
                           {"/b.zip", {HttpServer::head(3000) + std::string(3000, 'x')}}});
  Download download;
  const FreeSpace space(5999);
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/a.zip") + L"&dwt2=" + server.url(L"/b.zip")));
  CHECK(download.failures() == Texts{noRoom(download)});
  CHECK_FALSE(download.output.has(L"File opened for binary input.  File Name : a.zip"));
  CHECK_FALSE(download.isStaged(L"a.zip"));
}

TEST_CASE("a later file of an impossible name ends the run at its turn and not before") {
  const HttpServer server(
      {{"/a.zip", HttpServer::ok(page("a page"))}, {"/nul.zip", HttpServer::ok(page("other"))}});
  Download download;
  CHECK_FALSE(
      download.run(L"?dwt1=" + server.url(L"/a.zip") + L"&dwt2=" + server.url(L"/nul.zip")));
  CHECK(download.output.has(L"File opened for binary input.  File Name : a.zip"));
  CHECK(download.failures() ==
        Texts{L"The disk is not in the drive or the specified path does not exist."});
  CHECK(download.isStaged(L"a.zip"));
}

TEST_CASE("a file that is there already needs no free space until it is to be replaced") {
  const std::string old = page("old");
  const HttpServer server(
      {{"/a.zip", HttpServer::ok(page("a page"))}, {"/b.zip", {HttpServer::head(500000)}}});
  Download download;
  download.stage(L"b.zip", old);
  std::optional<FreeSpace> space;
  download.view.cancelWhen = [&] {
    if (!space && download.view.caption().starts_with(L"Downloading 1 of 2")) space.emplace(9000);
    return false;
  };
  CHECK_FALSE(download.run(L"?dwt1=" + server.url(L"/a.zip") + L"&dwt2=" + server.url(L"/b.zip")));
  CHECK(download.isStaged(L"a.zip"));
  CHECK(download.view.questions.size() == 1);
  CHECK(download.failures() == Texts{noRoom(download)});
  CHECK_FALSE(download.isStaged(L"b.zip"));
}

TEST_CASE("claims that no disk can hold are refused whatever their sum") {
  const auto claim = [](const char* length) {
    return HttpServer::raw("HTTP/1.0 200 OK\r\nContent-Length: " + std::string(length) +
                           "\r\n\r\nx");
  };
  const HttpServer server({{"/a.zip", claim("999999999999999999")}});
  const std::wstring address = server.url(L"/a.zip");
  std::wstring query = L"?x";
  for (int i = 1; i <= 19; ++i) query += L"&dwt" + std::to_wstring(i) + L"=" + address;
  Download download;
  CHECK_FALSE(download.run(query));
  CHECK(download.failures() == Texts{noRoom(download)});
  CHECK_FALSE(download.isStaged(L"a.zip"));
}

TEST_CASE("a disk that does not tell its free space is written to") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  Download download;
  std::optional<FreeSpace> space;
  FreeSpace::unknown = true;
  download.view.cancelWhen = [&] {
    if (download.view.caption().starts_with(L"Downloading 1")) space.emplace(0);
    if (download.output.has(L"File closed.")) space.reset();
    return false;
  };
  const bool completed = download.run(L"?dwt1=" + server.url(L"/d.zip"));
  FreeSpace::unknown = false;
  CHECK(completed);
}

TEST_CASE("a disk that fills while a file comes in leaves nothing of it") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page(std::string(5000, 'x')))}});
  for (const int writes : {0, 3}) {
    CAPTURE(writes);
    Download download;
    std::optional<FillingDisk> disk;
    download.view.cancelWhen = whenTransferBegins(download.view, disk, writes);
    const bool completed = download.run(L"?dwt1=" + server.url(L"/d.zip"));
    disk.reset();
    CHECK_FALSE(completed);
    CHECK(download.failures() == Texts{L"Disk full"});
    CHECK_FALSE(download.isStaged(L"d.zip"));
    CHECK(download.output.has(L"Entering DeleteRelatedFiles()"));
    CHECK(download.output.has(L"Exiting DeleteRelatedFiles()"));
    CHECK(download.output.has(
        L"Error 61 (Disk full) in procedure Form_Activate of Form frmDownloadProgress"));
  }
}
