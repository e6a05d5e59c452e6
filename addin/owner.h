// Whom the add-in's windows and boxes stand over.
#pragma once

#include <windows.h>

// The host's frame, or the dialog for which the host has disabled it. Never a floating bar or a
// splash window that happens to be active: those come and go, and what they own goes along. Null
// when there is nothing better.
HWND ownerOfWindows() noexcept;
