// KorvelHelp.exe "<help folder>\" [/c<topic>]
#include "common/handles.h"
#include "help/SingleInstance.h"
#include "help/command_line.h"
#include "help/frmHelp.h"
#include "help/program.h"

namespace {

constexpr DWORD patience = 10000;  // milliseconds

// Held while a start finds out whether it is the first; starts at the same time wait for it.
class StartTurn {
 public:
  StartTurn() noexcept : mutex_(CreateMutexW(nullptr, FALSE, L"KorvelHelpStart")) {
    if (mutex_) WaitForSingleObject(mutex_.get(), patience);
  }
  ~StartTurn() { end(); }
  StartTurn(const StartTurn&) = delete;
  StartTurn& operator=(const StartTurn&) = delete;
  void end() noexcept {
    if (mutex_) ReleaseMutex(mutex_.get());
    mutex_.reset();
  }

 private:
  handles::Kernel mutex_;
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  return help::runProgram([] {
    const std::wstring commandLine = GetCommandLineW();
    StartTurn turn;
    if (help::SingleInstance::handOver(commandLine)) return;
    frmHelp window;
    const help::SingleInstance listener(
        [&](const std::wstring& later) { window.showRequest(help::helpRequestOf(later)); });
    turn.end();
    window.ShowHelp(help::helpRequestOf(commandLine));
  });
}
