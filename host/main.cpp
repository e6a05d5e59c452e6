#include <windows.h>
#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include <optional>

#include "host/AddIns.h"
#include "host/CommandLine.h"
#include "host/MainWindow.h"
#include "host/model/Host.h"
#include "host/model/disk.h"
#include "host/pages/PageBrowser.h"
#include "host/script/ScriptRunner.h"

namespace {

using namespace standin;

std::vector<std::wstring> arguments() {
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> result(words + 1, words + count);
  LocalFree(words);
  return result;
}

// A folder given on the command line, whatever the current one is later.
std::wstring fullPath(const std::wstring& path) {
  if (path.empty()) return path;
  wchar_t full[MAX_PATH] = {};
  GetFullPathNameW(path.c_str(), MAX_PATH, full, nullptr);
  return full;
}

struct ScriptTask {
  std::wstring script;
  HWND mainWindow;
  ScriptRunner::Places places;
  SharedSession session;
  bool stay;
};

DWORD WINAPI scriptThread(void* task) {
  const auto& script = *static_cast<ScriptTask*>(task);
  return static_cast<DWORD>(
      runScript(script.script, script.mainWindow, script.places, script.session, script.stay));
}

void runMessageLoop(HWND window) {
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (IsDialogMessageW(window, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

// The script's outcome; a script that is still running when the user closes the window has failed.
DWORD outcomeOf(HANDLE thread) {
  constexpr DWORD lastLineMilliseconds = 5000;
  DWORD code = 1;
  if (WaitForSingleObject(thread, lastLineMilliseconds) == WAIT_OBJECT_0)
    GetExitCodeThread(thread, &code);
  return code;
}

int runHost(const CommandLine& commandLine, int show) {
  const std::wstring web = fullPath(commandLine.webFolder);
  Host host(commandLine.options, web, fullPath(commandLine.themesFolder));
  AddIns addIns(host.sharedSession(), host.application(), commandLine.byDispatch);
  MainWindow window(host, addIns);
  if (!window.create()) return 1;
  ShowWindow(window.handle(), show);
  UpdateWindow(window.handle());
  ScriptTask task{commandLine.script,
                  window.handle(),
                  {web, fullPath(commandLine.pictures)},
                  host.sharedSession(),
                  commandLine.stay};
  handles::Kernel thread;
  if (!task.script.empty()) thread.reset(CreateThread(nullptr, 0, scriptThread, &task, 0, nullptr));
  // An add-in may show a message while it connects, which the script can answer.
  if (commandLine.addIns) {
    addIns.find();
    addIns.connectAtStart();
  }
  window.setStarted();
  runMessageLoop(window.handle());
  return thread ? static_cast<int>(outcomeOf(thread.get())) : 0;
}

int refuse(const std::wstring& reason) {
  printLine(L"quillet-host: " + reason);
  return 2;
}

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the system names them.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int show) {
  const CommandLine commandLine = parseCommandLine(arguments());
  if (!commandLine.error.empty()) return refuse(commandLine.error);
  for (const auto& folder : {commandLine.webFolder, commandLine.themesFolder, commandLine.pictures})
    if (!folder.empty() && !disk::isFolder(folder))
      return refuse(L"There is no such folder: " + folder);
  OleInitialize(nullptr);
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_WIN95_CLASSES};
  InitCommonControlsEx(&controls);
  std::optional<pages::PageBrowsers> pageBrowsers;
  if (commandLine.showPages) pageBrowsers.emplace();
  const int result = runHost(commandLine, show);
  pageBrowsers.reset();
  OleUninitialize();
  return result;
}
