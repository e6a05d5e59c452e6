// The answer to WM_PAINT.
#pragma once

#include <windows.h>

namespace forms {

// From BeginPaint to EndPaint, whatever happens between them.
class Painting {
 public:
  explicit Painting(HWND window) noexcept : window_(window) { BeginPaint(window, &painting_); }
  ~Painting() { EndPaint(window_, &painting_); }
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  HDC target() const noexcept { return painting_.hdc; }

 private:
  HWND window_;
  PAINTSTRUCT painting_ = {};
};

}  // namespace forms
