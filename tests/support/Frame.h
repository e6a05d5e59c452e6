// A visible window that stands for the host's frame.
#pragma once

#include <windows.h>

class Frame {
 public:
  // In pixels of the screen.
  explicit Frame(int left = 100, int top = 100, int width = 600, int height = 400)
      : window_(CreateWindowW(L"Static", L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, left, top,
                              width, height, nullptr, nullptr, nullptr, nullptr)) {}
  ~Frame() { DestroyWindow(window_); }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  HWND get() const { return window_; }

 private:
  HWND window_;
};
