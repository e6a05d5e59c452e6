// The pictures of folders in a web's tree, drawn by the program so that they are sharp at every
// resolution.
#pragma once

#include "common/forms/ImageList.h"

namespace webfolder {

// The images of the list, by number.
enum Icon : int { closedFolder = 0, openFolder = 1 };

// Both images in the size of the system's small icons. Raises an Error (7) when there is no memory
// for them.
forms::ImageList makeFolderIcons();

}  // namespace webfolder
