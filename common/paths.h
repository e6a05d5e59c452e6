// Local files and folders.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "common/FailureView.h"
#include "common/FileIdentity.h"
#include "common/errors.h"
#include "common/module.h"

namespace modCommon {

// Makes every missing level of a folder path. A path without a root (drive or share) is answered
// with true and nothing is made: the caller's later file operation reports it. A failure is shown
// in one message and answered with false.
bool CreateFolderPath(std::wstring_view path, FailureView& view);

// Writes and deletes a small file in `folder` (no trailing backslash). A failure is shown and
// answered with false.
bool CanWriteToFolder(std::wstring_view folder, FailureView& view);

// The same with a message box over `owner`.
bool CreateFolderPath(std::wstring_view path, HWND owner = nullptr);
bool CanWriteToFolder(std::wstring_view folder, HWND owner = nullptr,
                      std::wstring_view title = module::title);

// What the user is told of a folder that cannot be made or written to.
std::wstring noPermissionText(std::wstring_view path);

// The shell's "open" verb; a result above 32 means success.
int ShellOpen(std::wstring_view file, std::wstring_view parameters);

// Makes one folder; raises an Error. A folder that is there already, and any refusal without a
// number of its own, is 75.
void makeFolder(std::wstring_view path);

// The error of a file that the system does not open for writing: a read-only medium refuses as a
// folder without permission does.
Error openingError(DWORD code);

// In bytes; raises an Error.
unsigned long long fileSize(std::wstring_view path);

// The path with a backslash at its end.
std::wstring withBackslash(std::wstring_view path);

// True when a file, or a folder, of that name exists, hidden and system ones included. Wild cards
// are no names.
bool fileExists(std::wstring_view path);
bool folderExists(std::wstring_view path);

// The path that a file URL stands for, by the system's conversion. Empty for another address, or
// one whose path is too long for the system.
std::wstring localPathOf(const std::wstring& address);

// All that a URL may stand for whose author has escaped it or not; nothing for one on a server.
std::vector<std::wstring> localPathsOf(const std::wstring& address);

// A folder however a path to it is written: letter case, short names, links and other names of a
// drive make no difference. What the file system tells of it is asked once.
class KnownFolder {
 public:
  explicit KnownFolder(const std::wstring& folder);

  // True when `path` is the folder itself.
  bool isAt(const std::wstring& path) const;
  // True when `path`, which need not exist, is the folder or lies below it.
  bool holds(const std::wstring& path) const;

 private:
  bool isLevel(const std::wstring& level) const;

  std::wstring path_;
  FileIdentity identity_;
};

}  // namespace modCommon
