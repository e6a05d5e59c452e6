// The context menu of a template in the browser's list.
#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/Launches.h"

namespace {

// Notes what pop-up menus offer, where they stand, and chooses a command of them.
class ShownMenus {
 public:
  ShownMenus() {
    entries.clear();
    choice = 0;
    shown = 0;
  }

  static inline Lines entries;  // of the last one; what is off stands in brackets
  static inline POINT place;
  static inline int choice = 0;
  static inline int shown = 0;

 private:
  static BOOL WINAPI track(HMENU menu, UINT, int x, int y, HWND owner, LPTPMPARAMS) {
    entries.clear();
    for (int index = 0; index < GetMenuItemCount(menu); ++index) {
      wchar_t text[100] = {};
      GetMenuStringW(menu, static_cast<UINT>(index), text, 100, MF_BYPOSITION);
      const bool off =
          (GetMenuState(menu, static_cast<UINT>(index), MF_BYPOSITION) & MF_GRAYED) != 0;
      entries.push_back(off ? L"(" + std::wstring(text) + L")" : text);
    }
    place = {x, y};
    ++shown;
    if (choice) PostMessageW(owner, WM_COMMAND, static_cast<WPARAM>(choice), 0);
    return TRUE;
  }
  ImportPatch patch_{nullptr, "user32.dll", "TrackPopupMenuEx", track};
};

RECT rowPlace(const BrowserWindow& browser, int row) {
  RECT place;
  const HWND list = browser.control(IDC_QUILLET_LIST);
  ListView_GetItemRect(list, row, &place, LVIR_LABEL);
  MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

void askForMenu(const BrowserWindow& browser, LPARAM place) {
  SendMessageW(browser.control(IDC_QUILLET_LIST), WM_CONTEXTMENU,
               reinterpret_cast<WPARAM>(browser.control(IDC_QUILLET_LIST)), place);
  forms::yieldToMessages();
}

HINSTANCE WINAPI refuse(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) {
  return reinterpret_cast<HINSTANCE>(2);
}

const Lines allEntries{L"&Copy to Web", L"&Notes...", L"Open &Folder"};

}  // namespace

TEST_CASE("the context menu of a template offers to copy and to read and to open its folder") {
  const ShownMenus menus;
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.show([&] {
    const RECT row = rowPlace(browser, 0);
    askForMenu(browser, MAKELPARAM(row.left + 5, row.top + 3));
    CHECK(ShownMenus::entries == allEntries);
    CHECK(ShownMenus::place.x == row.left + 5);
    CHECK(ShownMenus::place.y == row.top + 3);
  });
}

TEST_CASE("the keyboard opens the context menu below the selected template") {
  const ShownMenus menus;
  BrowserWindow browser;
  for (const wchar_t* name : {L"a", L"b"}) browser.addTemplate(name);
  browser.show([&] {
    browser.showRow(1);
    askForMenu(browser, -1);
    CHECK(ShownMenus::entries == allEntries);
    CHECK(ShownMenus::place.x == rowPlace(browser, 1).left);
    CHECK(ShownMenus::place.y == rowPlace(browser, 1).bottom);
  });
}

TEST_CASE("there is no context menu beside the templates and none without any") {
  const ShownMenus menus;
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.show([&] {
    const RECT row = rowPlace(browser, 0);
    askForMenu(browser, MAKELPARAM(row.left + 5, row.bottom + 40));
  });
  BrowserWindow empty;
  empty.show([&] { askForMenu(empty, -1); });
  CHECK(ShownMenus::shown == 0);
}

TEST_CASE("the context menu switches off what its buttons would not do") {
  const ShownMenus menus;
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.show([&] {
    EnableWindow(browser.control(IDOK), FALSE);
    EnableWindow(browser.control(IDC_QUILLET_NOTES), FALSE);
    askForMenu(browser, -1);
    CHECK(ShownMenus::entries == Lines{L"(&Copy to Web)", L"(&Notes...)", L"Open &Folder"});
  });
}

TEST_CASE("the context menu does what is chosen in it") {
  const ShownMenus menus;
  const Launches launches;
  BrowserWindow browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.driver.answer(IDYES);
  browser.show([&] {
    for (const int command : {IDC_QUILLET_NOTES, IDC_QUILLET_OPENFOLDER, IDOK}) {
      ShownMenus::choice = command;
      askForMenu(browser, -1);
    }
  });
  REQUIRE(launches.noted().size() == 2);
  CHECK(launches.noted()[0].parameters == L"\"" + file + L"\" \"DWTNotes\"");
  CHECK(launches.noted()[1].file == browser.disk / L"home");
  CHECK(launches.noted()[1].parameters.empty());
  CHECK(browser.web.exists(L"dwts\\home\\home.dwt"));
}

TEST_CASE("a folder that cannot be opened is told over the browser") {
  const ImportPatch patch(nullptr, "shell32.dll", "ShellExecuteW", refuse);
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] { SendMessageW(browser.dialog, WM_COMMAND, IDC_QUILLET_OPENFOLDER, 0); });
  REQUIRE(browser.driver.boxes().size() == 1);
  CHECK(browser.driver.boxes()[0].text ==
        L"Could not open \" " + (browser.disk / L"home") + L" \"");
  CHECK(browser.driver.boxes()[0].title == browserCaption);
  CHECK(browser.driver.boxes()[0].icon == MB_ICONHAND);
}
