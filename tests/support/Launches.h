// Notes what this process starts through the shell, instead of starting it, while it lives.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"

class Launches {
 public:
  struct Launch {
    std::wstring file;
    std::wstring parameters;
  };

  Launches() { noted_.clear(); }
  Launches(const Launches&) = delete;
  Launches& operator=(const Launches&) = delete;

  const std::vector<Launch>& noted() const noexcept { return noted_; }
  // The help topics that were asked for, in order.
  std::vector<std::wstring> topics() const {
    std::vector<std::wstring> result;
    for (const Launch& each : noted_)
      if (const auto at = each.parameters.find(L" /c"); at != std::wstring::npos)
        result.push_back(each.parameters.substr(at + 3));
    return result;
  }

 private:
  static HINSTANCE WINAPI note(HWND, LPCWSTR, LPCWSTR file, LPCWSTR parameters, LPCWSTR, INT) {
    noted_.push_back({file ? file : L"", parameters ? parameters : L""});
    return reinterpret_cast<HINSTANCE>(33);
  }

  static inline std::vector<Launch> noted_;
  ImportPatch patch_{nullptr, "shell32.dll", "ShellExecuteW", &note};
};
