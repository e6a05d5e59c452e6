// Whether the browser's preview can show a picture.
#pragma once

#include <string>

namespace author {

struct PictureLook {
  bool isShown = false;
  long width = 0;  // pixels
  long height = 0;
  std::wstring reason;  // why it is not shown, as a sentence
};

// `path` is a full one.
PictureLook lookAtPicture(const std::wstring& path);

}  // namespace author
