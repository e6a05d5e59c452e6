// The host's main window, which may go and come again.
#pragma once

#include <windows.h>

namespace torture {

class HostFrame {
 public:
  HostFrame() {
    WNDCLASSW definition = {};
    definition.lpfnWndProc = DefWindowProcW;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    definition.lpszClassName = className;
    RegisterClassW(&definition);
  }
  ~HostFrame() { close(); }
  HostFrame(const HostFrame&) = delete;
  HostFrame& operator=(const HostFrame&) = delete;

  // There, in front and with the focus.
  void open() {
    if (!IsWindow(window_))
      window_ = CreateWindowW(className, L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 500,
                              300, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetForegroundWindow(window_);
    SetActiveWindow(window_);
    SetFocus(window_);
  }
  void close() {
    if (IsWindow(window_)) DestroyWindow(window_);
    window_ = nullptr;
  }
  HWND get() const { return window_; }

  static constexpr wchar_t className[] = L"FrontPageExplorerWindow40";

 private:
  HWND window_ = nullptr;
};

}  // namespace torture
