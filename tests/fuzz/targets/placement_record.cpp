// A remembered place of a window, as it stands in the registry.
#include "common/placement_record.h"

#include <cstring>

#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

LONG width(const RECT& area) { return area.right - area.left; }
LONG height(const RECT& area) { return area.bottom - area.top; }
bool isSame(const RECT& one, const RECT& other) {
  return std::memcmp(&one, &other, sizeof one) == 0;
}

// Monitors are at least as large as the first ones were, and lie within what messages can carry.
placement::Screen screenOf(fuzz::Input& input) {
  placement::Screen screen = {};
  screen.area.left = static_cast<SHORT>(input.word()) / 2;
  screen.area.top = static_cast<SHORT>(input.word()) / 2;
  screen.area.right = screen.area.left + 320 + static_cast<LONG>(input.word() % 8000);
  screen.area.bottom = screen.area.top + 200 + static_cast<LONG>(input.word() % 8000);
  screen.all = {width(screen.area) + static_cast<LONG>(input.word() % 8000),
                height(screen.area) + static_cast<LONG>(input.word() % 8000)};
  return screen;
}

const fuzz::Target target("placement_record", [](fuzz::Input input) {
  const placement::Screen screen = screenOf(input);
  const LONG pixelsPerInch = static_cast<LONG>(input.word());
  const std::string_view bytes = input.bytes(sizeof(placement::Record));
  placement::Record record = {};
  if (bytes.size() == sizeof record) std::memcpy(&record, bytes.data(), sizeof record);

  const auto window = placement::rectangleOf(record, pixelsPerInch);
  if (!window) return;
  promise(record.pixelsPerInch == pixelsPerInch, "a record is of this very resolution");
  promise(isSame(*window, record.placement.rcNormalPosition), "what is written is read");
  promise(width(*window) > 0 && height(*window) > 0 && width(*window) < 0x10000 &&
              height(*window) < 0x10000,
          "a window has a size");

  placement::Screen shown = screen;
  shown.shows = true;
  const RECT cut = placement::cutDown(*window, screen);
  promise(width(cut) > 0 && width(cut) <= screen.all.cx && height(cut) > 0 &&
              height(cut) <= screen.all.cy,
          "a window is no larger than the screen");
  promise(cut.left == window->left && cut.top == window->top, "a window is cut at its far edges");
  promise(isSame(placement::broughtIntoView(cut, shown), cut), "a window that shows stays");
  const RECT moved = placement::broughtIntoView(cut, screen);
  promise(width(moved) == width(cut) && height(moved) == height(cut), "moving does not size");
  promise(moved.left >= screen.area.left && moved.left < screen.area.right &&
              moved.top >= screen.area.top && moved.top < screen.area.bottom,
          "a window that does not show is moved where its corner does");
  promise(isSame(placement::broughtIntoView(moved, screen), moved), "a window in view stays");
});

}  // namespace
