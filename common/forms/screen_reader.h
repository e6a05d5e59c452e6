// What screen readers are told of the module's own controls.
#pragma once

#include <windows.h>

#include <oleacc.h>

namespace forms {

// The answer to WM_GETOBJECT: the system's own object for that window, named by the window's text,
// but with that role (ROLE_SYSTEM_...). 0 leaves the answer to the system.
LRESULT tellScreenReader(HWND window, WPARAM wParam, LPARAM lParam, long role) noexcept;

}  // namespace forms
