// Button faces from the clipboard.
#pragma once

#include "common/handles.h"

namespace standin {

// The clipboard's picture as a bitmap of its own; nothing when there is none or when somebody holds
// the clipboard. With `masked` it is made of the registered formats "Toolbar Button Face" and
// "Toolbar Button Mask", device-independent bitmaps, where both are there: its pixels then have an
// alpha channel. Raises a Refusal when those two are no bitmaps of one size.
handles::Gdi clipboardFace(bool masked);

}  // namespace standin
