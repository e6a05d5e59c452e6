// Pictures of the screen, as a user sees it.
#pragma once

#include <windows.h>

#include <string>

namespace standin {

// Writes that part of the screen to a PNG file, once `foremost` (may be null) has come up on it as
// its program drew it and the picture has stopped changing; after a few seconds in any case. False
// when that fails.
bool takePicture(const RECT& area, HWND foremost, const std::wstring& file);

RECT wholeScreen();

}  // namespace standin
