// The template browser where something that it needs is missing.
#include "tests/catalogue/frmQuillet_support.h"

namespace {

// The dialog is made without its list of zooms.
class NoZoom {
 public:
  NoZoom() { current = this; }

 private:
  static HWND WINAPI find(HWND dialog, int id) {
    return id == IDC_QUILLET_ZOOM ? nullptr
                                  : current->patch_.original<decltype(find)>()(dialog, id);
  }

  static inline NoZoom* current = nullptr;
  ImportPatch patch_{nullptr, "user32.dll", "GetDlgItem", find};
};

void checkComponentsMissing(const BrowserWindow& browser) {
  REQUIRE(browser.driver.boxes().size() == 1);
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text ==
        L"One or more components are not installed on your computer. You may need to setup the "
        L"product again. The application will be terminated.");
  CHECK(box.title == L"Dynamic Web Template Browser");
  CHECK(box.icon == MB_ICONHAND);
  CHECK(box.buttons == Lines{L"OK"});
  CHECK(browser.driver.dialogs().empty());
}

}  // namespace

TEST_CASE("a browser whose window cannot be made says that components are missing") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  const NoDialogs noDialogs;
  browser.show();
  checkComponentsMissing(browser);
  CHECK_FALSE(browser.log.has(L"Reading DWT folders list..."));
}

TEST_CASE("a browser that lacks a control says that components are missing") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  {
    const NoZoom noZoom;
    browser.show();
  }
  checkComponentsMissing(browser);
  CHECK_FALSE(browser.log.has(L"Reading DWT folders list..."));
  // It had no place of its own yet.
  CHECK_FALSE(browser.registry.binary(HKEY_CURRENT_USER, browserSettings, L"DWTPlacement"));
}

TEST_CASE("the message about missing components belongs to the host's window") {
  const HWND frame = CreateWindowW(L"Static", L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 30, 20,
                                   900, 700, nullptr, nullptr, nullptr, nullptr);
  BrowserWindow browser;
  browser.owner = frame;
  {
    const NoDialogs noDialogs;
    browser.show();
  }
  REQUIRE(browser.driver.boxes().size() == 1);
  CHECK(browser.driver.boxes()[0].owner == frame);
  CHECK(IsWindowEnabled(frame));
  DestroyWindow(frame);
}

TEST_CASE("the folder dialog opens although the host refuses its version") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  bool opened = false;
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders", [&](HWND dialog) {
    opened = true;
    browser.addTemplate(L"more");
    press(dialog, IDOK);
  });
  browser.show([&] {
    browser.host.faults().refuse(L"Application.Version", L"Not now.", 1234);
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(browser.rows() == Lines{L"home", L"more"});
  });
  CHECK(opened);
  CHECK(browser.log.has(
      L"ERROR in procedure cmdSelect_Click of Form frmQuillet. Error : 1234\tNot now."));
  CHECK(browser.driver.boxes().empty());
}
