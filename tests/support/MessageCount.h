// Counts what one window is sent.
#pragma once

#include <windows.h>

// While it lives; one at a time.
class MessageCount {
 public:
  MessageCount(HWND window, UINT message) : window_(window) {
    wanted_ = message;
    count_ = 0;
    former_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }
  ~MessageCount() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  MessageCount(const MessageCount&) = delete;
  MessageCount& operator=(const MessageCount&) = delete;
  static int get() { return count_; }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == wanted_) ++count_;
    return CallWindowProcW(former_, window, message, wParam, lParam);
  }

  HWND window_;
  static inline WNDPROC former_ = nullptr;
  static inline UINT wanted_ = 0;
  static inline int count_ = 0;
};
