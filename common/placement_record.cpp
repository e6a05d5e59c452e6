#include "common/placement_record.h"

#include <algorithm>

namespace placement {
namespace {

// Window messages carry 16-bit coordinates: no window was ever beyond them.
bool isPossible(LONG coordinate) noexcept { return coordinate == static_cast<SHORT>(coordinate); }

// Shifts the span so that it ends, and above all begins, within the limits.
void shiftInto(LONG& begin, LONG& end, LONG lowest, LONG highest) noexcept {
  const LONG length = end - begin;
  begin = std::max(std::min(begin, highest - length), lowest);
  end = begin + length;
}

}  // namespace

std::optional<RECT> rectangleOf(const Record& record, LONG pixelsPerInch) noexcept {
  const RECT& window = record.placement.rcNormalPosition;
  const bool isWindow = isPossible(window.left) && isPossible(window.top) &&
                        isPossible(window.right) && isPossible(window.bottom) &&
                        window.left < window.right && window.top < window.bottom;
  if (record.pixelsPerInch != pixelsPerInch || !isWindow) return std::nullopt;
  return window;
}

RECT cutDown(RECT window, const Screen& screen) noexcept {
  if (window.right - window.left > screen.all.cx)
    window.right = window.left + (screen.area.right - screen.area.left);
  if (window.bottom - window.top > screen.all.cy)
    window.bottom = window.top + (screen.area.bottom - screen.area.top);
  return window;
}

RECT broughtIntoView(RECT window, const Screen& screen) noexcept {
  if (screen.shows) return window;
  shiftInto(window.left, window.right, screen.area.left, screen.area.right);
  shiftInto(window.top, window.bottom, screen.area.top, screen.area.bottom);
  return window;
}

}  // namespace placement
