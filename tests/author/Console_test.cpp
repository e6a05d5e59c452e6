// What the program writes to a console, and when it stops.
#include "author/Console.h"

#include "common/handles.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

using Texts = std::vector<std::wstring>;

// Stands for all of the process' streams, with a clock that a test moves.
class MadeUpConsole {
 public:
  MadeUpConsole() { current_ = this; }
  ~MadeUpConsole() { current_ = nullptr; }
  MadeUpConsole(const MadeUpConsole&) = delete;
  MadeUpConsole& operator=(const MadeUpConsole&) = delete;

  Texts written;
  DWORD now = 1000;
  bool isBroken = false;
  PHANDLER_ROUTINE onBreak = nullptr;

 private:
  static BOOL WINAPI getMode(HANDLE, DWORD* mode) {
    *mode = 0;
    return TRUE;
  }
  static BOOL WINAPI write(HANDLE, const void* text, DWORD count, DWORD* done, void*) {
    if (current_->isBroken) return FALSE;
    current_->written.emplace_back(static_cast<const wchar_t*>(text), count);
    *done = count;
    return TRUE;
  }
  static DWORD WINAPI getTicks() { return current_->now; }
  static BOOL WINAPI setHandler(PHANDLER_ROUTINE routine, BOOL adds) {
    current_->onBreak = adds ? routine : nullptr;
    return TRUE;
  }

  static inline MadeUpConsole* current_ = nullptr;
  ImportPatch mode_{nullptr, "kernel32.dll", "GetConsoleMode", getMode};
  ImportPatch write_{nullptr, "kernel32.dll", "WriteConsoleW", write};
  ImportPatch ticks_{nullptr, "kernel32.dll", "GetTickCount", getTicks};
  ImportPatch handler_{nullptr, "kernel32.dll", "SetConsoleCtrlHandler", setHandler};
};

}  // namespace

TEST_CASE("a step stands in a console's line until something takes its place") {
  MadeUpConsole made;
  author::SystemConsole console;
  console.show(L"Looking");
  made.now += 99;
  console.show(L"Too soon");
  made.now += 1;
  console.show(L"Done");
  console.print(L"3 files\n");
  console.complain(L"No more\n");
  CHECK(made.written == Texts{L"\rLooking", L"\rDone   ", L"\r    \r", L"3 files\n", L"No more\n"});
}

TEST_CASE("a step is no longer than a console's line and goes when the program ends") {
  MadeUpConsole made;
  {
    author::SystemConsole console;
    console.show(std::wstring(100, L'x'));
  }
  CHECK(made.written ==
        Texts{L"\r" + std::wstring(78, L'x'), L"\r" + std::wstring(78, L' ') + L"\r"});
}

TEST_CASE("a console gets a long text in pieces") {
  MadeUpConsole made;
  author::SystemConsole console;
  console.print(std::wstring(8192, L'a') + L"b");
  CHECK(made.written == Texts{std::wstring(8192, L'a'), L"b"});
}

TEST_CASE("what a console or file does not take is lost") {
  {
    MadeUpConsole made;
    author::SystemConsole console;
    console.print(L"a");
    CHECK_FALSE(console.hasLost());
    made.isBroken = true;
    console.print(L"b");
    CHECK(console.hasLost());
  }
  const ScratchFolder disk;
  disk.writeFile(L"out", "");
  const handles::File readOnly(
      CreateFileW((disk / L"out").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  const HANDLE former = GetStdHandle(STD_OUTPUT_HANDLE);
  SetStdHandle(STD_OUTPUT_HANDLE, readOnly.get());
  author::SystemConsole console;
  SetStdHandle(STD_OUTPUT_HANDLE, former);
  console.print(L"a");
  CHECK(console.hasLost());
}

TEST_CASE("Ctrl+C ends the run and closing the window is left to the system") {
  MadeUpConsole made;
  author::SystemConsole console;
  const bool isHandled = made.onBreak != nullptr;
  REQUIRE(isHandled);
  CHECK_FALSE(made.onBreak(CTRL_CLOSE_EVENT));
  CHECK(console.keepGoing());
  CHECK(made.onBreak(CTRL_C_EVENT));
  CHECK_FALSE(console.keepGoing());
}
