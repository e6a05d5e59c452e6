// Where things are on this machine, and the small services of host and help. What is noexcept logs
// its error and gives what it has, mostly nothing.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace modCommon {

// One line that describes the operating system, for the log; empty for an unknown platform.
std::wstring GetOSVersionText();
// The same for a given version record.
std::wstring describeVersion(const OSVERSIONINFOA& version);

// The program's per-user folder, made when missing, ending in a backslash; empty when it cannot be
// found.
std::wstring GetUserFolderPath() noexcept;

// Where GetSystemFolders puts what it finds; null for what is not wanted.
struct SystemFolders {
  std::wstring* applicationData = nullptr;
  std::wstring* userThemes = nullptr;
  std::wstring* commonFiles = nullptr;
  std::wstring* sharedThemes = nullptr;
};
// Fills what is asked for: no trailing backslash but the registry's own, empty for what is missing.
// `userThemes` is left alone unless `hostVersion`, the host application's version text, is "6.0".
void GetSystemFolders(std::wstring_view hostVersion, const SystemFolders& wanted) noexcept;

// A string value of the program's machine-wide key; empty when it is missing.
std::wstring GetMachineSetting(std::wstring_view name) noexcept;

// The folder of the program's shared files ("CommonPath"), the module's own folder when it is not
// registered; ends in a backslash. Read anew at each call. Raises an Error (7) without memory.
std::wstring commonPath();

// The host's main window (class "FrontPageExplorerWindow40"), found from the thread's active window
// upward, else among the thread's windows; null when there is none.
HWND GetHostMainWindow() noexcept;

void SetHostProgID(std::wstring_view hostVersion) noexcept;
// Brings the running host to the front through its automation object. An object that is not there,
// or whose class no running program offers, does no harm; no program is started for it.
void BringHostToTop() noexcept;

// The help viewers of the program's shared folder. A failure to launch is shown over `owner`.
//
// `topic` goes to the viewer as a command; without one, `commandLine` is handed on as it is.
void ShowHelp(std::wstring_view topic = {}, std::wstring_view commandLine = {},
              HWND owner = nullptr) noexcept;
void ShowQuickHelp(std::wstring_view first, std::wstring_view second,
                   HWND owner = nullptr) noexcept;

}  // namespace modCommon
