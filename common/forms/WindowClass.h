// A window class of the module's own, for controls that dialog resources name.
#pragma once

#include <windows.h>

namespace forms {

// Registered while at least one of its users lives, so that an unloaded module leaves none behind.
class WindowClass {
 public:
  WindowClass(const wchar_t* name, WNDPROC procedure) noexcept;
  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;

 private:
  const wchar_t* name_;
};

}  // namespace forms
