// The pictures of folders in lists and trees, drawn by the program so that they are sharp at every
// resolution. That takes under 3 KB of the module; icon resources of four sizes would take 38.
#pragma once

#include <initializer_list>

#include "common/forms/ImageList.h"

namespace forms {

enum class FolderIcon { closed, open, ofMachine, ofUser };

// Images of the size of the system's small icons, numbered in the order of `icons`. Raises an Error
// (7) when there is no memory for them.
ImageList makeFolderIcons(std::initializer_list<FolderIcon> icons);
// The same with a side of `size` pixels.
ImageList makeFolderIcons(std::initializer_list<FolderIcon> icons, int size);

}  // namespace forms
