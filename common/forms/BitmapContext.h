// A bitmap to draw on or from.
#pragma once

#include "common/handles.h"

namespace forms {

// The bitmap stays selected only for the length of a drawing operation.
class BitmapContext {
 public:
  BitmapContext(HDC like, HGDIOBJ bitmap) noexcept
      : context_(CreateCompatibleDC(like)), old_(SelectObject(context_.get(), bitmap)) {}
  ~BitmapContext() { SelectObject(context_.get(), old_); }
  BitmapContext(const BitmapContext&) = delete;
  BitmapContext& operator=(const BitmapContext&) = delete;
  HDC get() const noexcept { return context_.get(); }

 private:
  handles::DeviceContext context_;
  HGDIOBJ old_;
};

}  // namespace forms
