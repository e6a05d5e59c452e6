// One help window, however often help is asked for: the first start shows it and listens, every
// later one hands its command line over and ends.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "common/forms/WindowClass.h"

namespace help {

class SingleInstance {
 public:
  // Listens while it lives. `onCommandLine` runs on this thread, from its message loop.
  explicit SingleInstance(std::function<void(const std::wstring& commandLine)> onCommandLine);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // True when a start that listens has taken the command line. The window that it shows may come to
  // the front then.
  static bool handOver(const std::wstring& commandLine) noexcept;

 private:
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;

  forms::WindowClass class_;
  std::function<void(const std::wstring&)> onCommandLine_;
  HWND window_ = nullptr;
};

}  // namespace help
