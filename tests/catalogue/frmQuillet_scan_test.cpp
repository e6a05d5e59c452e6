// The template browser whose scan is cancelled.
#include <optional>

#include "tests/catalogue/frmQuillet_support.h"

namespace {

constexpr int templateButtons[] = {IDOK, IDC_QUILLET_DESTFOLDER, IDC_QUILLET_INSTRUCTIONS,
                                   IDC_QUILLET_NOTES};

void addThree(BrowserWindow& browser) {
  for (const wchar_t* name : {L"a", L"b", L"c"}) browser.addTemplate(name);
}

// Exactly the first template is listed, and it is there as if it were the only one.
void checkFirstAlone(const BrowserWindow& browser) {
  CHECK(IsWindowVisible(browser.dialog));
  CHECK(browser.rows() == Lines{L"a"});
  CHECK(browser.selectedRow() == 0);
  CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : a     [HTML Preview]");
  browser.page.settle();
  CHECK(browser.page.shows(browser.disk / L"a\\a.dwt"));
  for (const int id : templateButtons) CHECK(browser.enabled(id));
  CHECK(browser.enabled(IDC_QUILLET_SELECT));
}

}  // namespace

TEST_CASE("a start whose scan is cancelled says so and leaves the window with what was listed") {
  BrowserWindow browser;
  addThree(browser);
  std::optional<CancelAtRow> cancel;
  bool looked = false;
  bool closed = false;
  browser.showAtOnce([&] {
    cancel.emplace(browser.dialog);
    browser.whenListed([&] {
      cancel.reset();
      looked = true;
      checkFirstAlone(browser);
      press(browser.dialog, IDCANCEL);
      closed = !IsWindowVisible(browser.dialog);
    });
  });
  CHECK(looked);
  CHECK(closed);
  REQUIRE(browser.driver.boxes().size() == 1);
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text == L"Operation Cancelled.");
  CHECK(box.title == L"Dynamic Web Template Browser");
  CHECK(box.icon == MB_ICONASTERISK);
  CHECK(box.buttons == Lines{L"OK"});
}

TEST_CASE("a start whose scan is cancelled before its first template leaves the window blank") {
  BrowserWindow browser;
  addThree(browser);
  bool looked = false;
  browser.showAtOnce([&] {
    press(browser.dialog, IDCANCEL);
    CHECK(IsWindowVisible(browser.dialog));
    browser.whenListed([&] {
      looked = true;
      CHECK(browser.rows().empty());
      CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : ");
      for (const int id : templateButtons) CHECK_FALSE(browser.enabled(id));
      press(browser.dialog, IDCANCEL);
    });
  });
  CHECK(looked);
  REQUIRE(browser.driver.boxes().size() == 1);
  CHECK(browser.driver.boxes()[0].text == L"Operation Cancelled.");
}

TEST_CASE("a scan that is cancelled after the folder dialog is no error and keeps its rows") {
  BrowserWindow browser;
  addThree(browser);
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders",
                          [](HWND dialog) { press(dialog, IDOK); });
  browser.show([&] {
    CHECK(browser.rows().size() == 3);
    {
      const CancelAtRow cancel(browser.dialog);
      press(browser.dialog, IDC_QUILLET_SELECT);
    }
    checkFirstAlone(browser);
  });
  CHECK_FALSE(browser.log.hasLineWith(L"Error"));
  CHECK_FALSE(browser.log.hasLineWith(L"ERROR"));
  CHECK(browser.driver.boxes().empty());
}
