// A menu button's picture as a host takes it from the clipboard.
#pragma once

#include <windows.h>

#include "addin/ClipboardKeeper.h"

// `picture` in three formats: as a bitmap, and as the registered pair "Toolbar Button Face" and
// "Toolbar Button Mask", device-independent bitmaps from which a host that knows them makes a face
// with see-through parts. See-through is what has the colour of the picture's first pixel: white in
// the mask and black in the face there, so that the two can also be laid over a background by AND
// and OR. Raises an Error (7) when there is no memory for it.
clipboard::Contents buttonFace(HBITMAP picture);
