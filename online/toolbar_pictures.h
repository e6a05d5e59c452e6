// The pictures on the catalogue window's toolbar.
#pragma once

#include "common/forms/ImageList.h"

namespace online {

// In the order of the bitmap: one picture for each button.
forms::ImageList toolbarPictures();
// The same without their colours, and paler: for buttons that cannot be pressed.
forms::ImageList disabledToolbarPictures();

}  // namespace online
