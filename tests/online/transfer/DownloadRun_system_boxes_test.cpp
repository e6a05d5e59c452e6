// A medium that is taken out makes a call fail; the system does not ask the user for a disk.
#include <set>

#include "tests/online/LoopbackServer.h"
#include "tests/online/transfer/DownloadFixture.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

namespace {

// Which calls for files were made while the system would have asked, and which while it would not.
std::set<std::string> asking;
std::set<std::string> quiet;

void note(const char* function) {
  const UINT mode = SetErrorMode(SEM_FAILCRITICALERRORS);
  SetErrorMode(mode);
  (mode & SEM_FAILCRITICALERRORS ? quiet : asking).insert(function);
}

template <class Function>
struct Watched;

// One function of the system, watched while this lives.
template <class Result, class... Arguments>
struct Watched<Result WINAPI(Arguments...)> {
  explicit Watched(const char* name) : patch(nullptr, "KERNEL32.dll", name, call) {
    function = name;
    original = patch.template original<Result WINAPI(Arguments...)>();
  }
  static Result WINAPI call(Arguments... arguments) {
    note(function);
    return original(arguments...);
  }

  ImportPatch patch;
  static inline const char* function = nullptr;
  static inline Result(WINAPI* original)(Arguments...) = nullptr;
};

struct Watching {
  Watching() {
    asking.clear();
    quiet.clear();
  }
  Watched<decltype(CreateFileW)> create{"CreateFileW"};
  Watched<decltype(WriteFile)> write{"WriteFile"};
  Watched<decltype(DeleteFileW)> remove{"DeleteFileW"};
  Watched<decltype(ReadFile)> read{"ReadFile"};
  Watched<decltype(GetFileInformationByHandle)> about{"GetFileInformationByHandle"};
  Watched<decltype(GetDiskFreeSpaceExW)> space{"GetDiskFreeSpaceExW"};
  Watched<decltype(LoadLibraryExW)> load{"LoadLibraryExW"};
};

}  // namespace

TEST_CASE(
    "a download and its unpacking keep the system's own boxes away from each of their files") {
  const HttpServer server(
      {{"/d.zip", HttpServer::ok(page("a page"))}, {"/bad.zip", HttpServer::ok("no archive")}});
  Download download;
  download.stage(L"d.zip", "old");
  const UINT before = SetErrorMode(SEM_NOGPFAULTERRORBOX);
  {
    const Watching watching;
    CHECK_FALSE(
        download.run(L"?dwt1=" + server.url(L"/d.zip") + L"&dwt2=" + server.url(L"/bad.zip")));
  }
  CHECK(SetErrorMode(before) == SEM_NOGPFAULTERRORBOX);
  CHECK(download.scratch.readFile(L"templates\\new\\page.dwt") == "a page");
  CHECK_FALSE(download.isStaged(L"bad.zip"));
  for (const std::string& function : asking) FAIL_CHECK(function);
  CHECK(quiet == std::set<std::string>{"CreateFileW", "WriteFile", "DeleteFileW", "ReadFile",
                                       "GetFileInformationByHandle", "GetDiskFreeSpaceExW",
                                       "LoadLibraryExW"});
}
