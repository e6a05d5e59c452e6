// Remembered window positions.
//
// The record is a binary registry value of 48 bytes, little-endian 32-bit fields: a WINDOWPLACEMENT
// of 44 bytes and, behind it, the horizontal pixels per inch of the screen it was written on.
#pragma once

#include <windows.h>

#include <string_view>

// Both are silent: false means that nothing was written or applied and the window keeps its
// designed position.
bool SaveWindowPlacementSetting(HWND window, std::wstring_view application,
                                std::wstring_view section, std::wstring_view name);

// A record from a screen of another resolution is ignored, and so is its show state: restoring
// moves and sizes the window, it never shows it. A rectangle outside every monitor is moved into
// view.
bool RestoreWindowPlacementSetting(HWND window, std::wstring_view application,
                                   std::wstring_view section, std::wstring_view name);
