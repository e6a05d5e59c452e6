// What a record of a window's place says. Pure rules.
#pragma once

#include <windows.h>

#include <optional>

namespace placement {

// As it is written: 48 bytes, little-endian 32-bit fields.
struct Record {
  WINDOWPLACEMENT placement;
  LONG pixelsPerInch;  // across, of the screen that it was written on
};
static_assert(sizeof(WINDOWPLACEMENT) == 44 && sizeof(Record) == 48);

// The window's rectangle; nothing when the record is of a screen of another resolution, or when no
// window can be there.
std::optional<RECT> rectangleOf(const Record& record, LONG pixelsPerInch) noexcept;

// What the screen is like for a window at some place.
struct Screen {
  RECT area;           // of the nearest monitor, without its bars
  SIZE all;            // of all monitors together
  bool shows = false;  // anything of the window, once it is no larger than the screen
};

// No larger than the screen.
RECT cutDown(RECT window, const Screen& screen) noexcept;

// Moved into view, if the screen shows nothing of it: the monitor that the window was on may be
// gone or smaller now.
RECT broughtIntoView(RECT window, const Screen& screen) noexcept;

}  // namespace placement
