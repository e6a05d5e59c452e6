// Pictures of the screen, as a user sees it.
#pragma once

#include <windows.h>

#include <string>

namespace standin {

// Writes that part of the screen to a PNG file, once it has stopped changing (or will not). False
// when that fails.
bool takePicture(const RECT& area, const std::wstring& file);

RECT wholeScreen();

}  // namespace standin
