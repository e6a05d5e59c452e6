// A picture of a page, in any format of bitmaps that the system reads.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>

#include "common/com.h"

namespace html {

class Picture {
 public:
  explicit Picture(const std::string& bytes);  // that are no picture: one without a size

  SIZE size() const;  // pixels
  void draw(HDC target, const RECT& place) const;

 private:
  ComPtr<IPicture> picture_;
};

}  // namespace html
