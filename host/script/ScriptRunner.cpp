#include "host/script/ScriptRunner.h"

#include <algorithm>
#include <stdexcept>

#include "common/handles.h"
#include "host/MainWindow.h"
#include "host/model/Faults.h"
#include "host/model/Session.h"
#include "host/model/disk.h"
#include "host/script/desktop.h"
#include "host/script/picture.h"

namespace standin {
namespace {

constexpr DWORD betweenLooks = 20;

std::wstring fromUtf8(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  text.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                          static_cast<int>(text.size()))));
  return text;
}

std::string toUtf8(std::wstring_view text) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

void writeOut(std::string_view bytes) {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()),
            &written, nullptr);
}

bool isEnabled(HWND window) { return IsWindowEnabled(window) != FALSE; }

// Folders before files, each with everything below it.
void listTree(const std::wstring& folder, const std::wstring& indent) {
  for (const auto& name : disk::folderNames(folder)) {
    printLine(indent + name + L"/");
    listTree(folder + L"\\" + name, indent + L"  ");
  }
  for (const auto& name : disk::fileNames(folder))
    printLine(indent + name + L"  " + std::to_wstring(disk::fileSize(folder + L"\\" + name)));
}

// What stands in a failed script's way, if anything does.
void printForemost(HWND mainWindow) {
  const auto windows = desktop::windows();
  if (windows.empty() || windows.front() == mainWindow) return;
  std::wstring line = L"script: in front is \"" + desktop::textOf(windows.front()) + L"\"";
  if (desktop::isMessageBox(windows.front()))
    for (const HWND child : desktop::children(windows.front()))
      if (!desktop::textOf(child).empty()) line += L" [" + desktop::captionOf(child) + L"]";
  printLine(line);
}

// The lines of a script as they come in.
class LineSource {
 public:
  explicit LineSource(const std::wstring& script) {
    if (script == L"-")
      handle_ = GetStdHandle(STD_INPUT_HANDLE);
    else
      file_.reset(CreateFileW(script.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file_) handle_ = file_.get();
    if (!handle_ || handle_ == INVALID_HANDLE_VALUE)
      throw ScriptError(L"cannot read the script \"" + script + L"\"");
  }

  bool next(std::wstring& line) {
    std::string bytes;
    char letter = 0;
    DWORD read = 0;
    while (ReadFile(handle_, &letter, 1, &read, nullptr) && read == 1 && letter != '\n')
      bytes += letter;
    if (read == 0 && bytes.empty()) return false;
    line = fromUtf8(bytes);
    if (!line.empty() && line.front() == 0xFEFF) line.erase(0, 1);
    return true;
  }

 private:
  handles::File file_;
  HANDLE handle_ = nullptr;
};

}  // namespace

void printLine(std::wstring_view text) { writeOut(toUtf8(text) + "\n"); }

ScriptRunner::ScriptRunner(HWND mainWindow, Places places, SharedSession session)
    : main_(mainWindow),
      places_(std::move(places)),
      session_(std::move(session)),
      hold_(session_->faults) {}

bool ScriptRunner::isReady() const {
  return isEnabled(main_) && desktop::send(main_, MainWindow::startedMessage) != 0;
}

bool ScriptRunner::until(const std::function<bool()>& condition) const {
  const DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start >= timeout_) return false;
    Sleep(betweenLooks);
  }
  return true;
}

void ScriptRunner::require(const std::function<bool()>& condition,
                           const std::wstring& failure) const {
  if (!until(condition)) throw ScriptError(failure);
}

HWND ScriptRunner::windowWith(const std::wstring& caption,
                              const std::function<bool(HWND)>& condition) const {
  for (const HWND window : desktop::windows(caption))
    if (condition(window)) return window;
  return nullptr;
}

bool ScriptRunner::anyWindow(const std::wstring& caption,
                             const std::function<bool(HWND)>& condition) const {
  return windowWith(caption, condition) != nullptr;
}

void ScriptRunner::run(const ScriptLine& line) {
  const std::wstring& command = line.command;
  const Arguments& arguments = line.arguments;
  const auto startsWith = [&](std::wstring_view start) {
    return command.substr(0, start.size()) == start;
  };
  if (startsWith(L"wait ")) return runWait(command.substr(5), arguments);
  if (startsWith(L"expect ")) return runExpect(command.substr(7), arguments);
  if (command == L"menu") return menu(arguments);
  if (command == L"show menu") return showMenu(arguments);
  if (command == L"hide menu") return hideMenu();
  if (command == L"drop") return drop(arguments[0], arguments[1]);
  if (command == L"choose") return choose(arguments[0]);
  if (command == L"load") return changeAddIn(arguments[0], L"Load");
  if (command == L"unload") return changeAddIn(arguments[0], L"Unload");
  if (command == L"picture") return picture(arguments);
  if (command == L"tree") return tree(arguments.empty() ? L"" : arguments[0]);
  if (command == L"cat") return cat(arguments[0]);
  if (command == L"print") return printLine(arguments[0]);
  if (command == L"run") return runProgram(arguments[0]);
  if (command == L"point") return point(arguments);
  if (runModel(command, arguments)) return;
  if (command == L"windows") return writeOut(toUtf8(desktop::describe()));
  if (command == L"timeout")
    timeout_ = static_cast<DWORD>(std::max(0, _wtoi(arguments[0].c_str()))) * 1000;
  else if (command == L"exit")
    ended_ = true;
  else if (!command.empty())
    runControl(command, arguments);
}

void ScriptRunner::runWait(const std::wstring& what, const Arguments& arguments) {
  if (what == L"main") {
    require([&] { return isReady(); }, L"the main window is still disabled");
    return;
  }
  if (what == L"held") {
    require([&] { return hold_.isCallWaiting(); }, L"no call is held");
    return;
  }
  const std::wstring& caption = arguments[0];
  if (what == L"window") {
    require([&] { return anyWindow(caption, isEnabled); }, L"the window has not come");
  } else if (what == L"box") {
    require([&] { return anyWindow(caption, desktop::isMessageBox); },
            L"the message box has not come");
  } else if (what == L"tip") {
    require(
        [&] {
          return anyWindow(caption,
                           [](HWND window) { return desktop::isClass(window, TOOLTIPS_CLASSW); });
        },
        L"no tool tip says that");
  } else if (what == L"gone") {
    require([&] { return desktop::windows(caption).empty(); }, L"the window is still there");
  } else if (what == L"bar") {
    const int least = _wtoi(arguments[1].c_str());
    require(
        [&] {
          return anyWindow(caption,
                           [&](HWND window) { return desktop::progress(window) >= least; });
        },
        L"no progress bar has come that far");
  } else {
    require(
        [&] {
          return anyWindow(caption, [&](HWND window) {
            const HWND button = desktop::button(window, arguments[1]);
            return button && isEnabled(button);
          });
        },
        L"the button is not there or disabled");
  }
}

void ScriptRunner::runExpect(const std::wstring& what, const Arguments& arguments) {
  const std::wstring& first = arguments[0];
  if (what == L"text") return expectText(first, arguments[1]);
  if (what == L"row" || what == L"no row") {
    const bool wanted = what == L"row";
    require(
        [&] {
          return !desktop::windows(first).empty() && anyWindow(first, [&](HWND window) {
                                                       return desktop::hasRow(window, arguments[1]);
                                                     }) == wanted;
        },
        wanted ? L"there is no such row" : L"there is such a row");
  } else if (what == L"menu" || what == L"no menu") {
    const bool wanted = what == L"menu";
    require([&] { return isReady() && (desktop::menuCommand(main_, arguments) != 0) == wanted; },
            wanted ? L"there is no such menu entry" : L"there is such a menu entry");
  } else if (what == L"file" || what == L"no file") {
    const bool wanted = what == L"file";
    require([&] { return disk::exists(webPath(first)) == wanted; },
            wanted ? L"there is no such file" : L"there is such a file");
  } else {
    const std::string part = toUtf8(arguments[1]);
    require([&] { return disk::readBytes(webPath(first)).find(part) != std::string::npos; },
            L"the file does not hold that");
  }
}

void ScriptRunner::runControl(const std::wstring& what, const Arguments& arguments) {
  const std::wstring& caption = arguments[0];
  if (what == L"press") return press(caption, arguments[1]);
  if (what == L"follow") return follow(caption, arguments[1]);
  if (what == L"type") return type(arguments);
  if (what == L"post") return post(caption, arguments[1]);
  if (what == L"check") return check(arguments);
  if (what == L"select") {
    require(
        [&] {
          return anyWindow(caption, [&](HWND window) {
            return isEnabled(window) && desktop::selectRow(window, arguments[1]);
          });
        },
        L"there is no such row");
  } else if (what == L"expand") {
    require(
        [&] {
          return anyWindow(caption, [&](HWND window) {
            return isEnabled(window) && desktop::openNode(window, arguments[1]);
          });
        },
        L"there is no such node");
  } else {
    HWND window = nullptr;
    require([&] { return (window = windowWith(caption, isEnabled)) != nullptr; },
            L"there is no such window");
    PostMessageW(window, WM_CLOSE, 0, 0);
  }
}

// What the host's model does to its callers; false when that is no such command.
bool ScriptRunner::runModel(const std::wstring& what, const Arguments& arguments) {
  try {
    if (what == L"hold")
      hold_.hold(arguments[0], arguments.size() > 1 ? _wtoi(arguments[1].c_str()) : 0);
    else if (what == L"release")
      hold_.release();
    else if (what == L"refuse")
      session_->faults.refuse(arguments[0], arguments[1]);
    else if (what == L"allow")
      session_->faults.clear();
    else
      return false;
  } catch (const std::invalid_argument&) {
    throw ScriptError(L"the host has no such member");
  }
  return true;
}

void ScriptRunner::menu(const Arguments& path) {
  UINT command = 0;
  require(
      [&] {
        command = desktop::menuCommand(main_, path);
        return command != 0 && isReady();
      },
      command ? L"the main window is disabled" : L"there is no such menu entry");
  PostMessageW(main_, WM_COMMAND, command, 0);
}

// As the user opens them: by the letters in the captions.
void ScriptRunner::showMenu(const Arguments& path) {
  std::wstring letters;
  require(
      [&] {
        letters = desktop::menuLetters(main_, path);
        return !letters.empty() && isReady();
      },
      L"there is no such menu, or one without an accelerator");
  PostMessageW(main_, WM_SYSCOMMAND, SC_KEYMENU, letters.front());
  const auto popups = [] {
    return std::ranges::count_if(desktop::windows(),
                                 [](HWND window) { return desktop::isClass(window, L"#32768"); });
  };
  for (std::size_t open = 1;; ++open) {
    require([&] { return popups() >= static_cast<std::ptrdiff_t>(open); },
            L"the menu does not open");
    if (open == letters.size()) return;
    PostMessageW(main_, WM_CHAR, letters[open], 0);
  }
}

void ScriptRunner::hideMenu() {
  PostMessageW(main_, WM_CANCELMODE, 0, 0);
  require(
      [] {
        return std::ranges::none_of(
            desktop::windows(), [](HWND window) { return desktop::isClass(window, L"#32768"); });
      },
      L"the menu does not close");
}

// Opens the menu by the button's own click. Its menu loop would take the mouse button's release for
// a choice.
void ScriptRunner::drop(const std::wstring& caption, const std::wstring& label) {
  const desktop::Spot spot = spotIn(
      caption, [&](HWND window) { return desktop::firstToolButton(window, label); },
      L"there is no such tool bar");
  PostMessageW(spot.child, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(spot.place.x, spot.place.y));
  require([] { return desktop::popupMenu() != nullptr; }, L"the menu does not open");
}

// As the user does it with the arrow keys.
void ScriptRunner::choose(const std::wstring& entry) {
  HWND popup = nullptr;
  int passed = -1;
  require(
      [&] {
        popup = desktop::popupMenu();
        if (popup) passed = desktop::popupEntry(popup, entry);
        return passed >= 0;
      },
      L"no menu is open that has such an entry");
  PostMessageW(popup, WM_KEYDOWN, VK_HOME, 0);
  for (int i = 0; i < passed; ++i) PostMessageW(popup, WM_KEYDOWN, VK_DOWN, 0);
  PostMessageW(popup, WM_KEYDOWN, VK_RETURN, 0);
  require([&] { return !IsWindow(popup) || !IsWindowVisible(popup); }, L"the menu does not close");
}

desktop::Spot ScriptRunner::spotIn(const std::wstring& caption, const Find& find,
                                   const std::wstring& failure) const {
  desktop::Spot spot;
  const auto hasSpot = [&](HWND window) {
    spot = isEnabled(window) ? find(window) : desktop::Spot{};
    return spot.child && isEnabled(spot.child);
  };
  require([&] { return anyWindow(caption, hasSpot); }, failure);
  return spot;
}

void ScriptRunner::press(const std::wstring& caption, const std::wstring& button) {
  HWND owner = nullptr;
  HWND push = nullptr;
  const desktop::Spot spot = spotIn(
      caption,
      [&](HWND window) {
        owner = window;
        push = desktop::button(window, button);
        return push ? desktop::Spot{push} : desktop::toolButton(window, button);
      },
      L"there is no such button that can be pressed");
  if (!push) return desktop::click(spot);
  // The mouse takes focus and default frame along, which the message that clicks does not.
  if (desktop::isClass(owner, L"#32770"))
    PostMessageW(owner, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(push), TRUE);
  PostMessageW(push, BM_CLICK, 0, 0);
}

void ScriptRunner::follow(const std::wstring& caption, const std::wstring& link) {
  desktop::click(spotIn(
      caption, [&](HWND window) { return desktop::link(window, link); }, L"there is no such link"));
}

// For commands that no push button bears, a tool bar's; and for windows that are about to be shown.
void ScriptRunner::post(const std::wstring& caption, const std::wstring& command) {
  HWND window = nullptr;
  require(
      [&] {
        window = windowWith(caption, isEnabled);
        if (!window) window = desktop::anyWindow(caption);
        return window && isEnabled(window);
      },
      L"there is no such window");
  PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(_wtoi(command.c_str())), 0);
}

// Rests the mouse pointer on a window's button or control, or out of the way.
void ScriptRunner::point(const Arguments& arguments) {
  if (arguments.empty()) {
    const RECT screen = wholeScreen();
    SetCursorPos(screen.right - 1, screen.bottom - 1);
    return;
  }
  if (arguments.size() < 2) throw ScriptError(L"the control is missing");
  HWND found = nullptr;
  const auto has = [&](HWND window) {
    found = isEnabled(window) ? desktop::button(window, arguments[1]) : nullptr;
    if (!found && isEnabled(window)) found = desktop::control(window, arguments[1]);
    return found != nullptr;
  };
  require([&] { return anyWindow(arguments[0], has); }, L"there is no such control");
  RECT place = {};
  GetWindowRect(found, &place);
  SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
}

void ScriptRunner::type(const Arguments& arguments) {
  HWND found = nullptr;
  const auto typeable = [&](HWND window) {
    found = isEnabled(window) ? desktop::control(window, arguments[1]) : nullptr;
    return found && isEnabled(found);
  };
  require([&] { return anyWindow(arguments[0], typeable); }, L"there is no such control");
  desktop::send(found, EM_SETSEL, 0, -1);
  desktop::send(found, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(arguments[2].c_str()));
}

void ScriptRunner::check(const Arguments& arguments) {
  const bool wanted = arguments[2] == L"on";
  if (!wanted && arguments[2] != L"off") throw ScriptError(L"the state is \"on\" or \"off\"");
  HWND found = nullptr;
  const auto checkable = [&](HWND window) {
    found = isEnabled(window) ? desktop::button(window, arguments[1]) : nullptr;
    return found && isEnabled(found);
  };
  const auto isChecked = [&] { return desktop::send(found, BM_GETCHECK) == BST_CHECKED; };
  require([&] { return anyWindow(arguments[0], checkable); }, L"there is no such check box");
  if (isChecked() == wanted) return;
  PostMessageW(found, BM_CLICK, 0, 0);
  require([&] { return isChecked() == wanted; }, L"the check box does not change");
}

void ScriptRunner::expectText(const std::wstring& caption, const std::wstring& text) {
  std::wstring seen;
  const auto shows = [&](HWND window) {
    for (const HWND child : desktop::children(window)) {
      const std::wstring shown = desktop::textOf(child);
      if (shown == text) return true;
      if (!shown.empty()) seen += L"\n    \"" + shown + L"\"";
    }
    return false;
  };
  const bool met = until([&] {
    seen.clear();
    return anyWindow(caption, shows);
  });
  if (!met) throw ScriptError(L"the text is not there; what is there:" + seen);
}

void ScriptRunner::changeAddIn(const std::wstring& progId, const std::wstring& button) {
  const std::wstring dialog = L"Add-ins";
  menu({L"Tools", L"Add-ins..."});
  runWait(L"window", {dialog});
  runControl(L"select", {dialog, progId});
  press(dialog, button);
  // The buttons change places when it is done.
  runWait(L"enabled", {dialog, button == L"Load" ? L"Unload" : L"Load"});
  press(dialog, L"Close");
  runWait(L"gone", {dialog});
}

void ScriptRunner::picture(const Arguments& arguments) {
  RECT area = wholeScreen();
  const auto windows = desktop::windows();
  HWND foremost = windows.empty() ? nullptr : windows.front();
  if (arguments.size() > 1) {
    require(
        [&] { return (foremost = windowWith(arguments[1], [](HWND) { return true; })) != nullptr; },
        L"there is no such window");
    GetWindowRect(foremost, &area);
  }
  for (const HWND window : windows)
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  const std::wstring folder = places_.pictures.empty() ? L"." : places_.pictures;
  if (!takePicture(area, foremost, folder + L"\\" + arguments[0]))
    throw ScriptError(L"the picture cannot be taken");
}

void ScriptRunner::runProgram(const std::wstring& commandLine) const {
  std::wstring line = commandLine;
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                      nullptr, &start, &process))
    throw ScriptError(L"the program cannot be started");
  const handles::Kernel thread(process.hThread);
  const handles::Kernel running(process.hProcess);
  if (WaitForSingleObject(running.get(), timeout_) != WAIT_OBJECT_0)
    throw ScriptError(L"the program does not end");
  DWORD code = 1;
  GetExitCodeProcess(running.get(), &code);
  if (code != 0) throw ScriptError(L"the program ends with " + std::to_wstring(code));
}

std::wstring ScriptRunner::webPath(const std::wstring& relative) const {
  if (places_.webFolder.empty()) throw ScriptError(L"no web was opened");
  std::wstring path = places_.webFolder;
  if (!relative.empty()) path += L"\\" + relative;
  std::replace(path.begin(), path.end(), L'/', L'\\');
  return path;
}

void ScriptRunner::tree(const std::wstring& below) const {
  const std::wstring folder = webPath(below);
  printLine(folder);
  listTree(folder, L"  ");
}

void ScriptRunner::cat(const std::wstring& file) const {
  writeOut(disk::readBytes(webPath(file)) + "\n");
}

bool ScriptRunner::closeAll() {
  session_->faults.clear();
  hold_.release();
  timeout_ = 20000;
  // A window that stays is asked again; one that has gone is followed by the next at once.
  constexpr DWORD betweenAttempts = 500;
  DWORD last = 0;
  HWND asked = nullptr;
  return until([&] {
    if (!IsWindow(main_)) return true;
    if (IsWindow(asked) && GetTickCount() - last < betweenAttempts) return false;
    last = GetTickCount();
    PostMessageW(main_, WM_CANCELMODE, 0, 0);
    const auto windows = desktop::windows();
    const auto front = std::ranges::find_if(windows, isEnabled);
    asked = front == windows.end() ? nullptr : *front;
    // A question without a Cancel does not close; No is the answer that does nothing.
    if (asked && desktop::isMessageBox(asked) && GetDlgItem(asked, IDNO))
      PostMessageW(asked, WM_COMMAND, IDNO, 0);
    else if (asked)
      PostMessageW(asked, WM_CLOSE, 0, 0);
    return false;
  });
}

int runScript(const std::wstring& script, HWND mainWindow, const ScriptRunner::Places& places,
              const SharedSession& session, bool stay) {
  ScriptRunner runner(mainWindow, places, session);
  int number = 0;
  std::wstring line;
  std::wstring failure;
  try {
    LineSource source(script);
    while (!runner.ended() && source.next(line)) {
      ++number;
      runner.run(parseScriptLine(line));
    }
  } catch (const ScriptError& error) {
    failure = error.text();
  } catch (const Refusal& refusal) {
    failure = refusal.description;
  } catch (...) {
    failure = L"the command cannot be carried out";
  }
  const int result = failure.empty() ? 0 : 1;
  if (result != 0) {
    printLine(L"script: line " + std::to_wstring(number) + L": " + line + L": " + failure);
    printForemost(mainWindow);
  }
  if (result == 0 && stay && !runner.ended()) return result;
  if (!runner.closeAll()) {
    printLine(L"script: the host does not close; what is open:\n" + desktop::describe());
    ExitProcess(1);
  }
  return result;
}

}  // namespace standin
