#include "addin/host/environment.h"

#include <objbase.h>

#include "common/Dispatch.h"
#include "common/RegKey.h"
#include "common/ansi.h"
#include "common/com.h"
#include "common/log.h"
#include "common/message.h"
#include "common/module.h"
#include "common/paths.h"
#include "common/report.h"
#include "common/text.h"

namespace modCommon {
namespace {

constexpr wchar_t shellFolders[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr wchar_t officeGeneral[] = L"SOFTWARE\\Microsoft\\Office\\11.0\\Common\\General";
constexpr wchar_t currentVersion[] = L"Software\\Microsoft\\Windows\\CurrentVersion";
constexpr wchar_t sharedTools[] = L"SOFTWARE\\Microsoft\\Shared tools";
constexpr wchar_t korvel[] = L"Software\\Korvel Software";
constexpr wchar_t frameClass[] = L"FrontPageExplorerWindow40";
constexpr wchar_t helpFolder[] = L"QuilletHelp";

// A string value; empty when the key or value is missing.
std::wstring readString(HKEY root, std::wstring_view subkey, std::wstring_view name) {
  RegKey key;
  std::wstring value;
  if (key.OpenKey(root, subkey)) key.QueryValueEx_SZ(name, value);
  return value;
}

void fillSystemFolders(std::wstring_view hostVersion, const SystemFolders& wanted) {
  const std::wstring applicationData = readString(HKEY_CURRENT_USER, shellFolders, L"appdata");
  if (wanted.applicationData) *wanted.applicationData = applicationData;
  if (wanted.userThemes && hostVersion == L"6.0") {
    const std::wstring themes = readString(HKEY_CURRENT_USER, officeGeneral, L"Themes");
    const bool known = !applicationData.empty() && !themes.empty();
    *wanted.userThemes =
        known ? text::join({applicationData, L"\\Microsoft\\", themes}) : std::wstring();
  }
  if (wanted.commonFiles)
    *wanted.commonFiles = readString(HKEY_LOCAL_MACHINE, currentVersion, L"CommonFilesDir");
  if (wanted.sharedThemes) {
    const std::wstring shared = readString(HKEY_LOCAL_MACHINE, sharedTools, L"SharedFilesDir");
    *wanted.sharedThemes = shared.empty() ? shared : text::join({shared, L"Themes11"});
  }
}

bool isHostFrame(HWND window) noexcept {
  wchar_t name[255] = {};
  GetClassNameW(window, name, 255);
  return std::wstring_view(name) == frameClass;
}

// A child's parent, else the owner, which only pop-ups call their parent.
HWND above(HWND window) noexcept {
  const HWND parent = GetParent(window);
  return parent ? parent : GetWindow(window, GW_OWNER);
}

HWND climbToFrame(HWND window) noexcept {
  while (window && !isHostFrame(window)) window = above(window);
  return window;
}

BOOL CALLBACK stopAtFrame(HWND window, LPARAM result) noexcept {
  if (!isHostFrame(window)) return TRUE;
  *reinterpret_cast<HWND*>(result) = window;
  return FALSE;
}

HWND frameOfThread() noexcept {
  HWND frame = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), stopAtFrame, reinterpret_cast<LPARAM>(&frame));
  return frame;
}

std::wstring& hostProgID() {
  static std::wstring value;
  return value;
}

// The host's automation object from the process we are in, else from a program that is running: a
// plain creation might start a second host.
com::Dispatch runningHost() {
  CLSID type;
  if (FAILED(CLSIDFromProgID(hostProgID().c_str(), &type))) return {};
  ComPtr<IDispatch> object;
  if (SUCCEEDED(CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                 reinterpret_cast<void**>(object.put()))))
    return com::Dispatch(object);
  ComPtr<IUnknown> running;
  if (FAILED(GetActiveObject(type, nullptr, running.put()))) return {};
  return com::Dispatch(running.as<IDispatch>());
}

// Launches a viewer and shows `complaint` when that fails.
void launch(const std::wstring& program, const std::wstring& commandLine,
            std::wstring_view complaint, HWND owner) {
  if (ShellOpen(program, commandLine) < 33) showMessage(owner, complaint, MB_ICONHAND);
}

std::wstring quoted(std::wstring_view value) { return text::join({L"\"", value, L"\""}); }

}  // namespace

std::wstring GetOSVersionText() {
  OSVERSIONINFOA version = {};
  static_assert(sizeof version == 148);
  version.dwOSVersionInfoSize = sizeof version;
  return GetVersionExA(&version) ? describeVersion(version) : std::wstring();
}

std::wstring describeVersion(const OSVERSIONINFOA& version) {
  const std::wstring number = text::join(
      {text::decimal(version.dwMajorVersion), L".", text::decimal(version.dwMinorVersion), L" "});
  const std::wstring servicePack = text::fromAnsi(
      {version.szCSDVersion, strnlen(version.szCSDVersion, sizeof version.szCSDVersion)});
  std::wstring line;
  if (version.dwPlatformId == VER_PLATFORM_WIN32_NT) {
    line = version.dwMajorVersion < 5 ? L"WinNT ver. " : L"Win2K ver. ";
    line += text::join({number, L"Build: ", text::decimal(version.dwBuildNumber)});
  } else if (version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS) {
    line = version.dwMinorVersion != 0 ? L"Win98 ver. " : L"Win95 ver. ";
    line += text::join({number, text::decimal(LOWORD(version.dwBuildNumber))});
  } else {
    return {};
  }
  return text::trimBlanks(text::join({line, L" ", servicePack}));
}

void GetSystemFolders(std::wstring_view hostVersion, const SystemFolders& wanted) noexcept {
  handle(L"GetSystemFolders", [&] {
    try {
      fillSystemFolders(hostVersion, wanted);
    } catch (...) {
      throw Error(errors::current().number(), L"Error while retrieving the shell folders.");
    }
  });
}

std::wstring GetMachineSetting(std::wstring_view name) noexcept {
  std::wstring value;
  handle(L"GetMachineSetting", [&] {
    value = readString(HKEY_LOCAL_MACHINE, text::join({korvel, L"\\", module::title}), name);
  });
  return value;
}

std::wstring commonPath() {
  const std::wstring registered = readString(HKEY_LOCAL_MACHINE, korvel, L"CommonPath");
  return withBackslash(registered.empty() ? module::folder() : registered);
}

HWND GetHostMainWindow() noexcept {
  const HWND frame = climbToFrame(GetActiveWindow());
  return frame ? frame : frameOfThread();
}

void SetHostProgID(std::wstring_view hostVersion) noexcept {
  handle(L"SetHostProgID", [&] {
    hostProgID() = text::join({L"FrontPage.Explorer.", hostVersion});
  });
}

void BringHostToTop() noexcept {
  handle(L"BringHostToTop", [] {
    if (const com::Dispatch host = runningHost()) host.call(L"vtiBringToTop");
  });
}

void ShowHelp(std::wstring_view topic, std::wstring_view commandLine, HWND owner) noexcept {
  handle(L"ShowHelp", [&] {
    static const std::wstring folder = commonPath();
    std::wstring line = quoted(text::join({module::folder(), helpFolder, L"\\"}));
    if (!topic.empty())
      line.append(L" /c").append(topic);
    else if (!commandLine.empty())
      line.append(L" ").append(commandLine);
    launch(folder + L"KorvelHelp.exe", line, L"Unable to display help", owner);
  });
}

void ShowQuickHelp(std::wstring_view first, std::wstring_view second, HWND owner) noexcept {
  handle(L"ShowQuickHelp", [&] {
    static const std::wstring folder = commonPath();
    launch(folder + L"KorvelQuickHelp.exe", text::join({quoted(first), L" ", quoted(second)}),
           L"Unable to display quick help", owner);
  });
}

}  // namespace modCommon
