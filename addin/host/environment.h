// Where things are on this machine, and the small services of host and help.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace modCommon {

// One line that describes the operating system, for the log; empty for an unknown platform.
std::wstring GetOSVersionText();

// The program's per-user folder, made when missing, ending in a backslash; empty when it cannot be
// found.
std::wstring GetUserFolderPath();

// Fills what is asked for (not null). `hostVersion` is the host application's version text.
struct SystemFolders {
  std::wstring* applicationData = nullptr;
  std::wstring* userThemes = nullptr;
  std::wstring* commonFiles = nullptr;
  std::wstring* sharedThemes = nullptr;
};
void GetSystemFolders(const SystemFolders& wanted);

// A string value of the program's machine-wide key; empty when it is missing.
std::wstring GetMachineSetting(std::wstring_view name);

// The folder of the program's shared files ("CommonPath"), the module's own folder when it is not
// registered; ends in a backslash.
std::wstring commonPath();

// The host's main window (class "FrontPageExplorerWindow40"), found from the thread's active window
// upward; null when there is none.
HWND GetHostMainWindow();

void SetHostProgID(std::wstring_view hostVersion);
// Brings the running host to the front through its automation object; its absence does no harm.
void BringHostToTop();

// Help viewers. A failure is shown over `owner`.
void ShowHelp(std::wstring_view topic = {}, std::wstring_view commandLine = {},
              HWND owner = nullptr);
void ShowQuickHelp(std::wstring_view first, std::wstring_view second, HWND owner = nullptr);

}  // namespace modCommon
