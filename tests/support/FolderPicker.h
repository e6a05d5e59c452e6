// The shell's folder picker with a user who has made up their mind.
#pragma once

#include <windows.h>
#include <objbase.h>
#include <shlobj.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"

class FolderPicker {
 public:
  // How the picker was asked.
  struct Shown {
    HWND owner = nullptr;
    std::wstring prompt;
    std::wstring start;
    UINT flags = 0;
  };

  FolderPicker() { current = this; }
  ~FolderPicker() { current = nullptr; }
  FolderPicker(const FolderPicker&) = delete;
  FolderPicker& operator=(const FolderPicker&) = delete;

  void choose(const std::wstring& existingFolder) {
    answer_ = [existingFolder] {
      PIDLIST_ABSOLUTE list = nullptr;
      SHParseDisplayName(existingFolder.c_str(), nullptr, &list, 0, nullptr);
      return list;
    };
  }
  void chooseVirtualFolder() {
    answer_ = [] {
      PIDLIST_ABSOLUTE list = nullptr;
      SHGetFolderLocation(nullptr, CSIDL_DRIVES, nullptr, 0, &list);
      return list;
    };
  }
  void cancel() {
    answer_ = [] { return PIDLIST_ABSOLUTE(); };
  }
  void fail(std::function<void()> raise) {
    answer_ = [raise] {
      raise();
      return PIDLIST_ABSOLUTE();
    };
  }

  std::vector<Shown> shown;

 private:
  static inline FolderPicker* current = nullptr;

  static PIDLIST_ABSOLUTE WINAPI show(LPBROWSEINFOW browse) {
    current->shown.push_back(
        {browse->hwndOwner, browse->lpszTitle,
         browse->lParam ? reinterpret_cast<const wchar_t*>(browse->lParam) : L"", browse->ulFlags});
    return current->answer_();
  }

  std::function<PIDLIST_ABSOLUTE()> answer_ = [] { return PIDLIST_ABSOLUTE(); };
  ImportPatch patch_{nullptr, "shell32.dll", "SHBrowseForFolderW", show};
};
