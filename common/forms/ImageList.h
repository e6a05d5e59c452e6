// Small pictures for lists and trees.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include "common/handles.h"

namespace forms {

struct ImageListTraits {
  using type = HIMAGELIST;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { ImageList_Destroy(handle); }
};
using ImageList = handles::Unique<ImageListTraits>;

}  // namespace forms
