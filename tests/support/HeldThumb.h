// The thumb of every scroll bar as the user's mouse has it just now, while it lives; one at a time.
#pragma once

#include <windows.h>

#include "tests/support/ImportPatch.h"

class HeldThumb {
 public:
  explicit HeldThumb(int position) {
    current_ = this;
    position_ = position;
  }
  HeldThumb(const HeldThumb&) = delete;
  HeldThumb& operator=(const HeldThumb&) = delete;

 private:
  static BOOL WINAPI tell(HWND window, int bar, SCROLLINFO* info) {
    const BOOL told = current_->patch_.original<decltype(tell)>()(window, bar, info);
    if (info->fMask & SIF_TRACKPOS) info->nTrackPos = position_;
    return told;
  }

  static inline HeldThumb* current_ = nullptr;
  static inline int position_ = 0;
  ImportPatch patch_{nullptr, "user32.dll", "GetScrollInfo", tell};
};
