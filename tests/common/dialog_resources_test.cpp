// What every dialog of the module owes to the keyboard and to screen readers.
#include <algorithm>

#include "tests/support/DialogResource.h"
#include "tests/support/text_output.h"

namespace {

std::wstring describe(const DialogResource& dialog, const DialogItem& item) {
  return dialog.caption + L": " + std::to_wstring(item.id) + L" " + item.caption;
}

// Buttons and labels say themselves what they are; everything else needs a label before it.
bool needsLabel(const DialogItem& item) {
  return !item.isButton() && !item.isLabel() && (item.style & WS_VISIBLE) &&
         item.className != L"msctls_progress32";
}

bool overlapVertically(const RECT& one, const RECT& other) {
  return one.top < other.bottom && other.top < one.bottom;
}

// To the right in the same row, or further down, or at the top of a column further right.
bool followsInReadingOrder(const RECT& before, const RECT& after) {
  if (overlapVertically(before, after)) return after.left >= before.left;
  return after.top > before.top || after.left >= before.right;
}

}  // namespace

TEST_CASE("there is at least one dialog to look at") { CHECK_FALSE(dialogResources().empty()); }

TEST_CASE("no two controls of a dialog share a mnemonic") {
  for (const auto& dialog : dialogResources()) {
    std::wstring used;
    for (const auto& item : dialog.items) {
      const wchar_t mnemonic = item.mnemonic();
      if (!mnemonic) continue;
      CAPTURE(describe(dialog, item));
      CHECK(used.find(mnemonic) == used.npos);
      used += mnemonic;
    }
  }
}

TEST_CASE("the tab order of every dialog is the reading order") {
  for (const auto& dialog : dialogResources()) {
    const DialogItem* before = nullptr;
    for (const auto& item : dialog.items) {
      if (!item.isTabStop()) continue;
      CAPTURE(describe(dialog, item));
      if (before) CHECK(followsInReadingOrder(before->place, item.place));
      before = &item;
    }
  }
}

TEST_CASE("a label stands before every control that has no caption of its own") {
  for (const auto& dialog : dialogResources())
    for (std::size_t i = 0; i < dialog.items.size(); ++i) {
      const auto& item = dialog.items[i];
      if (!needsLabel(item)) continue;
      CAPTURE(describe(dialog, item));
      REQUIRE(i > 0);
      const auto& before = dialog.items[i - 1];
      CHECK((before.isLabel() || needsLabel(before)));
    }
}

TEST_CASE("every control lies inside its dialog") {
  for (const auto& dialog : dialogResources())
    for (const auto& item : dialog.items) {
      CAPTURE(describe(dialog, item));
      CHECK(item.place.left >= 0);
      CHECK(item.place.top >= 0);
      CHECK(item.place.right <= dialog.size.cx);
      CHECK(item.place.bottom <= dialog.size.cy);
    }
}

TEST_CASE("every dialog has one default button and can be left with Escape") {
  for (const auto& dialog : dialogResources()) {
    CAPTURE(dialog.caption);
    const auto defaults =
        std::count_if(dialog.items.begin(), dialog.items.end(), [](const DialogItem& item) {
          return item.isButton() && (item.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
        });
    CHECK(defaults <= 1);
    CHECK((dialog.style & WS_SYSMENU) != 0);
  }
}
