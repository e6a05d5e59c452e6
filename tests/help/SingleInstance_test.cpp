#include "help/SingleInstance.h"

#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

using help::SingleInstance;

namespace {

DWORD mayComeToFront = 0;

BOOL WINAPI note(DWORD process) {
  mayComeToFront = process;
  return TRUE;
}

}  // namespace

TEST_CASE("a command line is handed over to the start that listens") {
  std::vector<std::wstring> heard;
  {
    const SingleInstance listener([&](const std::wstring& line) { heard.push_back(line); });
    CHECK(SingleInstance::handOver(L"h.exe \"C:\\\xFC\\\" /cAbout"));
  }
  CHECK(heard == std::vector<std::wstring>{L"h.exe \"C:\\\xFC\\\" /cAbout"});
}

TEST_CASE("a start that finds nobody listening is the first one") {
  CHECK_FALSE(SingleInstance::handOver(L"h.exe"));
  {
    const SingleInstance listener([](const std::wstring&) {});
  }
  CHECK_FALSE(SingleInstance::handOver(L"h.exe"));
}

TEST_CASE("a start that cannot take a command line does not pretend to") {
  const SingleInstance listener([](const std::wstring&) { throw 1; });
  CHECK_FALSE(SingleInstance::handOver(L"h.exe"));
}

TEST_CASE("messages of others are no command lines") {
  int heard = 0;
  const SingleInstance listener([&](const std::wstring&) { ++heard; });
  const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, L"KorvelHelpReceiver", nullptr);
  REQUIRE(window);
  COPYDATASTRUCT data = {};
  CHECK(SendMessageW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)) == FALSE);
  CHECK(heard == 0);
}

TEST_CASE("the program that a command line is handed to may come to the front") {
  const ImportPatch patch(nullptr, "user32.dll", "AllowSetForegroundWindow", note);
  const SingleInstance listener([](const std::wstring&) {});
  mayComeToFront = 0;
  CHECK(SingleInstance::handOver(L"h.exe"));
  CHECK(mayComeToFront == GetCurrentProcessId());
}
