// What every dialog of the module owes to the keyboard and to screen readers.
#include <algorithm>

#include <windows.h>
#include <commctrl.h>

#include "common/forms/resource.h"
#include "online/resource.h"
#include "tests/support/DialogResource.h"
#include "tests/support/text_output.h"
#include "webcopy/resource.h"

namespace {

std::wstring describe(const DialogResource& dialog, const DialogItem& item) {
  return dialog.caption + L": " + std::to_wstring(item.id) + L" " + item.caption;
}

// Buttons and labels say themselves what they are; everything else needs a label before it, unless
// it stays hidden until it takes another's place, under a caption of its own.
bool needsLabel(const DialogItem& item) {
  return !item.isButton() && !item.isLabel() && (item.style & WS_VISIBLE);
}

// A label's text is there from the start. The one that says what is asked for in general comes with
// the question.
bool saysSomething(const DialogItem& label) {
  return !label.caption.empty() || label.id == IDC_INPUTBOX_LBLPROMPT;
}

bool isDefaultButton(const DialogItem& item) {
  return item.isButton() && (item.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
}

bool isButtonOf(const DialogItem& item, int id) { return item.isButton() && item.id == id; }

// While one of these works there is nothing to confirm; and a catalogue's keys are its pages' own.
bool hasNothingToConfirm(const DialogResource& dialog) {
  return dialog.id == IDD_COPYTOWEB || dialog.id == IDD_DOWNLOAD || dialog.id == IDD_ONLINE;
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
      CAPTURE(describe(dialog, item));
      if ((item.style & WS_TABSTOP) && !(item.style & WS_VISIBLE))
        CHECK_FALSE(item.caption.empty());
      if (!needsLabel(item)) continue;
      REQUIRE(i > 0);
      const auto& before = dialog.items[i - 1];
      CHECK(before.isLabel());
      CHECK(saysSomething(before));
    }
}

TEST_CASE("a label that cuts its text short shows it as it is and can tell it in a tip") {
  int found = 0;
  for (const auto& dialog : dialogResources())
    for (const auto& item : dialog.items) {
      if (!item.isLabel() || !(item.style & SS_ELLIPSISMASK)) continue;
      CAPTURE(describe(dialog, item));
      ++found;
      CHECK((item.style & SS_NOTIFY) != 0);
      CHECK((item.style & SS_NOPREFIX) != 0);
    }
  CHECK(found > 0);
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

TEST_CASE("every dialog has one default button unless it has nothing to confirm") {
  for (const auto& dialog : dialogResources()) {
    CAPTURE(dialog.caption);
    CHECK(std::count_if(dialog.items.begin(), dialog.items.end(), isDefaultButton) ==
          (hasNothingToConfirm(dialog) ? 0 : 1));
  }
}

// A dialog without a cancel button is closed by the form itself.
TEST_CASE("every dialog that can be cancelled is left with Escape by its cancel button") {
  for (const auto& dialog : dialogResources()) {
    CAPTURE(dialog.caption);
    CHECK((dialog.style & WS_SYSMENU) != 0);
    const auto cancels = std::count_if(dialog.items.begin(), dialog.items.end(),
                                       [](const auto& item) { return isButtonOf(item, IDCANCEL); });
    CHECK(cancels == (dialog.id == IDD_ABOUT || dialog.id == IDD_ONLINE ? 0 : 1));
  }
}

TEST_CASE("lists and trees and previews have the same frame in every dialog") {
  for (const auto& dialog : dialogResources())
    for (const auto& item : dialog.items) {
      if (!item.isOf(WC_LISTVIEWW) && !item.isOf(WC_TREEVIEWW) && !item.isOf(L"QuilletPictureBox"))
        continue;
      CAPTURE(describe(dialog, item));
      CHECK((item.extendedStyle & WS_EX_CLIENTEDGE) != 0);
      CHECK((item.style & WS_BORDER) == 0);
    }
}
