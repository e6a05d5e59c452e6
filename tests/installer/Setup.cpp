#include "tests/installer/Setup.h"

#include <shlobj.h>
#include <doctest/doctest.h>

#include <algorithm>

#include "tests/support/ModalDriver.h"

namespace package {
namespace {

constexpr DWORD patience = 60000;

// The build's paths are those of the machine that Wine runs on.
std::wstring built(const char* path) {
  std::wstring text = L"Z:" + std::wstring(path, path + strlen(path));
  std::replace(text.begin(), text.end(), L'/', L'\\');
  return text;
}

// Without the administrators' group, which is what user account control takes from a token.
HANDLE userToken() {
  BYTE administrators[SECURITY_MAX_SID_SIZE] = {};
  DWORD size = sizeof administrators;
  HANDLE own = nullptr;
  HANDLE less = nullptr;
  REQUIRE(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size));
  REQUIRE(OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own));
  SID_AND_ATTRIBUTES without = {administrators, 0};
  REQUIRE(CreateRestrictedToken(own, 0, 1, &without, 0, nullptr, 0, nullptr, &less));
  CloseHandle(own);
  return less;
}

std::wstring textOf(HWND control) {
  std::wstring text(2048, L'\0');
  DWORD_PTR length = 0;
  SendMessageTimeoutW(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                      SMTO_ABORTIFHUNG, 5000, &length);
  text.resize(length);
  return text;
}

std::wstring plain(std::wstring caption) {
  caption.erase(std::remove(caption.begin(), caption.end(), L'&'), caption.end());
  return caption;
}

std::wstring className(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

template <class Visit>
void forEachVisible(HWND parent, const Visit& visit) {
  for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (!IsWindowVisible(child)) continue;
    visit(child);
    forEachVisible(child, visit);
  }
}

struct Search {
  std::wstring caption;
  bool isBox;
  HWND found;
};

// Only the frame around the pages has the line with the program's name at its foot.
BOOL CALLBACK look(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  wchar_t caption[64] = {};
  GetWindowTextW(window, caption, 64);
  if (className(window) != L"#32770" || !IsWindowVisible(window)) return TRUE;
  const std::wstring text = caption;
  if (text.substr(0, search.caption.size()) != search.caption) return TRUE;
  if ((GetDlgItem(window, 1028) == nullptr) != search.isBox) return TRUE;
  search.found = window;
  return FALSE;
}

HWND find(const std::wstring& caption, bool isBox) {
  Search search = {caption, isBox, nullptr};
  EnumWindows(look, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::wstring ownFolder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring file = path;
  return file.substr(0, file.rfind(L'\\') + 1);
}

std::wstring folderOf(int id) {
  wchar_t path[MAX_PATH] = {};
  SHGetFolderPathW(nullptr, id, nullptr, 0, path);
  return path;
}

}  // namespace

std::wstring setupProgram() { return built(QUILLET_SETUP); }
std::wstring olderSetupProgram() { return built(QUILLET_OLDER_SETUP); }
std::wstring shippedFolder() { return built(QUILLET_SHIPPED); }
std::wstring version() {
  const std::string text = QUILLET_VERSION;
  return {text.begin(), text.end()};
}

std::wstring machineFolder() {
  return folderOf(CSIDL_PROGRAM_FILES) + L"\\Korvel Software\\Quillet";
}
std::wstring userFolder() { return folderOf(CSIDL_LOCAL_APPDATA) + L"\\Programs\\Quillet"; }

Run::Run(std::wstring commandLine, As as) {
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  if (as == As::user) {
    const HANDLE token = userToken();
    const BOOL started = CreateProcessAsUserW(token, nullptr, commandLine.data(), nullptr, nullptr,
                                              FALSE, 0, nullptr, nullptr, &start, &process_);
    CloseHandle(token);
    REQUIRE(started);
  } else {
    REQUIRE(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                           nullptr, &start, &process_));
  }
}

Run::~Run() {
  TerminateProcess(process_.hProcess, 99);
  CloseHandle(process_.hProcess);
  CloseHandle(process_.hThread);
}

DWORD Run::exitCode() {
  REQUIRE(WaitForSingleObject(process_.hProcess, patience) == WAIT_OBJECT_0);
  DWORD code = 0;
  GetExitCodeProcess(process_.hProcess, &code);
  return code;
}

DWORD install(const std::wstring& switches, const std::wstring& program, Run::As as) {
  return Run(L"\"" + program + L"\" /S " + switches, as).exitCode();
}

// The program goes into a folder of its own before it removes the one that it is in, and whoever
// started it cannot wait for that. Told where to look it stays, and is started from elsewhere to be
// removed, too.
DWORD remove(const std::wstring& folder, const std::wstring& switches, Run::As as) {
  const std::wstring copy = L"C:\\remove-quillet.exe";
  REQUIRE(CopyFileW((folder + L"\\uninstall.exe").c_str(), copy.c_str(), FALSE));
  const DWORD code = Run(copy + L" /S " + switches + L" _?=" + folder, as).exitCode();
  DeleteFileW(copy.c_str());
  return code;
}

Web::Web() { machine::write(folder_ + L"index.htm", "<html></html>"); }

Web::~Web() { machine::removeTree(L"C:\\package-test"); }

DWORD Web::runHost(const std::string& script, const std::wstring& switches) const {
  const std::wstring file = L"C:\\package-test\\script.txt";
  machine::write(file, script);
  return Run(L"\"" + ownFolder() + L"quillet-host.exe\" " + folder_ + L" --script " + file + L" " +
             switches)
      .exitCode();
}

Pages::Pages(std::wstring caption) : caption_(std::move(caption)) {}

HWND Pages::window() const { return find(caption_, false); }
HWND Pages::box() const { return find(caption_, true); }
bool Pages::isOpen() const { return window() != nullptr; }

std::wstring Pages::waitFor(const std::wstring& text) {
  std::wstring all;
  const bool shown = pumpUntil(
      [&] {
        all.clear();
        const HWND frame = window();
        if (frame) forEachVisible(frame, [&](HWND child) { all += plain(textOf(child)) + L"\n"; });
        return all.find(text) != all.npos;
      },
      patience);
  CAPTURE(all.c_str());
  REQUIRE_MESSAGE(shown, "not shown");
  return all;
}

HWND Pages::control(const std::wstring& caption) const {
  HWND found = nullptr;
  if (const HWND frame = window())
    forEachVisible(frame, [&](HWND child) {
      if (className(child) == L"Button" && plain(textOf(child)) == caption) found = child;
    });
  return found;
}

void Pages::choose(const std::wstring& caption) {
  REQUIRE(
      pumpUntil([&] { return control(caption) && IsWindowEnabled(control(caption)); }, patience));
  SendMessageW(control(caption), BM_CLICK, 0, 0);
}

bool Pages::isChosen(const std::wstring& caption) {
  return SendMessageW(control(caption), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool Pages::isEnabled(const std::wstring& caption) { return IsWindowEnabled(control(caption)); }

void Pages::type(const std::wstring& text) {
  forEachVisible(window(), [&](HWND child) {
    if (className(child) == L"Edit")
      SendMessageW(child, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  });
}

std::wstring Pages::typed() {
  std::wstring text;
  forEachVisible(window(), [&](HWND child) {
    if (className(child) == L"Edit") text = textOf(child);
  });
  return text;
}

void Pages::press(int button) {
  REQUIRE(pumpUntil(
      [&] {
        const HWND frame = window();
        return frame && IsWindowEnabled(frame) && IsWindowEnabled(GetDlgItem(frame, button));
      },
      patience));
  PostMessageW(window(), WM_COMMAND, static_cast<WPARAM>(button),
               reinterpret_cast<LPARAM>(GetDlgItem(window(), button)));
}

std::wstring Pages::answerBox(int button) {
  REQUIRE(pumpUntil([&] { return box() != nullptr; }, patience));
  const HWND shown = box();
  std::wstring text;
  forEachVisible(shown, [&](HWND child) {
    if (className(child) == L"Static" && !textOf(child).empty()) text = textOf(child);
  });
  PostMessageW(shown, WM_COMMAND, static_cast<WPARAM>(button), 0);
  REQUIRE(pumpUntil([&] { return !IsWindow(shown); }, patience));
  return text;
}

CleanMachine::CleanMachine() {
  // Every user of Windows has these; a prefix of Wine has them from the first program that asks.
  for (const wchar_t* name :
       {L"Software\\Classes", L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"}) {
    HKEY key = nullptr;
    REQUIRE(RegCreateKeyW(HKEY_CURRENT_USER, name, &key) == ERROR_SUCCESS);
    RegCloseKey(key);
  }
  // An empty one that other tests have left would go with what is removed.
  RegDeleteKeyW(HKEY_CURRENT_USER, settingsKey.substr(0, settingsKey.rfind(L'\\')).c_str());
  REQUIRE_FALSE(machine::hasKey(HKEY_LOCAL_MACHINE, removalKey));
  REQUIRE_FALSE(machine::hasKey(HKEY_CURRENT_USER, removalKey));
}

CleanMachine::~CleanMachine() {
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    const std::wstring folder = machine::value(root, removalKey, L"InstallLocation");
    if (machine::exists(folder + L"\\uninstall.exe")) remove(folder);
    for (const auto& key : {removalKey, makerKey, settingsKey, addInKey, classKey})
      machine::removeKey(root, key);
  }
  machine::removeTree(folderOf(CSIDL_APPDATA) + L"\\Korvel Software");
  for (const auto& folder : {machineFolder(), userFolder()}) {
    machine::removeTree(folder);
    RemoveDirectoryW(folder.substr(0, folder.rfind(L'\\')).c_str());
  }
}

}  // namespace package
