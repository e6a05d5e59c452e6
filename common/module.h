// What the add-in knows about its own module. Set once when the module is loaded; nothing else
// happens then.
#pragma once

#include <windows.h>

#include <string>

namespace module {

// The component's title: names the settings, the machine-wide key and the message boxes.
inline constexpr wchar_t title[] = L"Quillet Viewer";

void setInstance(HINSTANCE instance) noexcept;

// The module whose resources hold the dialogs, bitmaps and the version.
HINSTANCE instance() noexcept;

// The module's file.
std::wstring path();

// The folder the module's file stands in, ending in a backslash.
std::wstring folder();

}  // namespace module
