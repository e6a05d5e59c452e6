// Folders that are not what they seem.
#pragma once

#include <windows.h>

#include <string_view>

#include "tests/support/ImportPatch.h"

// "locked" refuses to be read, and "link" says that it leads to another place.
class OddFolders {
 public:
  OddFolders() { current_ = this; }
  ~OddFolders() { current_ = nullptr; }
  OddFolders(const OddFolders&) = delete;
  OddFolders& operator=(const OddFolders&) = delete;

 private:
  static HANDLE WINAPI first(LPCWSTR pattern, LPWIN32_FIND_DATAW data) {
    if (std::wstring_view(pattern).find(L"\\locked\\") != std::wstring_view::npos) {
      SetLastError(ERROR_ACCESS_DENIED);
      return INVALID_HANDLE_VALUE;
    }
    return current_->first_.original<decltype(first)>()(pattern, data);
  }
  static BOOL WINAPI next(HANDLE search, LPWIN32_FIND_DATAW data) {
    const BOOL found = current_->next_.original<decltype(next)>()(search, data);
    if (found && std::wstring_view(data->cFileName) == L"link")
      data->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return found;
  }
  static inline OddFolders* current_ = nullptr;
  ImportPatch first_{nullptr, "kernel32.dll", "FindFirstFileW", first};
  ImportPatch next_{nullptr, "kernel32.dll", "FindNextFileW", next};
};
