// The list of templates in the browser: its column, its tips, clicks on its rows, and what it says
// while it has none.
#include <algorithm>

#include "tests/catalogue/frmQuillet_support.h"

namespace {

// What the list adds to the tip of a row that is shown whole.
std::wstring rowTip(const BrowserWindow& browser, int row) {
  wchar_t text[400] = {};
  NMLVGETINFOTIPW tip = {};
  tip.hdr = {browser.control(IDC_QUILLET_LIST), IDC_QUILLET_LIST,
             static_cast<UINT>(LVN_GETINFOTIPW)};
  tip.dwFlags = LVGIT_UNFOLDED;
  tip.pszText = text;
  tip.cchTextMax = 400;
  tip.iItem = row;
  SendMessageW(browser.dialog, WM_NOTIFY, IDC_QUILLET_LIST, reinterpret_cast<LPARAM>(&tip));
  return text;
}

// What is written into the windows of this process, in order.
class DrawnTexts {
 public:
  DrawnTexts() { drawn_.clear(); }
  bool has(const std::wstring& text) const {
    return std::find(drawn_.begin(), drawn_.end(), text) != drawn_.end();
  }

 private:
  static int WINAPI draw(HDC, LPCWSTR text, int, LPRECT, UINT) {
    drawn_.push_back(text);
    return 0;
  }
  static inline Lines drawn_;
  ImportPatch patch_{nullptr, "user32.dll", "DrawTextW", draw};
};

bool listSays(const BrowserWindow& browser, const std::wstring& text) {
  const DrawnTexts drawn;
  const HWND list = browser.control(IDC_QUILLET_LIST);
  RedrawWindow(list, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
  return drawn.has(text);
}

const std::wstring whatToDo =
    L"There are no templates in your folders.\r\n\r\n"
    L"Press \"Folders...\" to choose the folders that hold templates, or \"DWT Online...\" to "
    L"download some.";

int listWidth(const BrowserWindow& browser) {
  RECT client;
  GetClientRect(browser.control(IDC_QUILLET_LIST), &client);
  return client.right;
}

}  // namespace

TEST_CASE("the column of the templates is as wide as its longest title") {
  BrowserWindow browser;
  const std::wstring title(60, L'w');
  browser.addTemplate(L"a");
  browser.addTemplate(L"b", "[b]\r\nTitle=" + std::string(60, 'w') + "\r\n");
  browser.show([&] {
    REQUIRE(browser.rows() == Lines{L"a", title});
    CHECK(browser.columnWidth() > listWidth(browser));
    CHECK(browser.columnFits(title));
  });
}

TEST_CASE("the column of the templates shows its header and fills the list at least") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.show([&] {
    CHECK(browser.columnFits(L"Title"));
    CHECK(browser.columnWidth() == listWidth(browser));
  });
}

TEST_CASE("the column of the templates is sized anew when they are listed again") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders", [&](HWND dialog) {
    browser.addTemplate(L"b", "[b]\r\nTitle=" + std::string(60, 'w') + "\r\n");
    press(dialog, IDOK);
  });
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(browser.rows().size() == 2);
    CHECK(browser.columnFits(std::wstring(60, L'w')));
  });
}

TEST_CASE("a row shows its own template in whatever order the header puts it") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nTitle=pear\r\nDescription=the first\r\n");
  browser.addTemplate(L"b", "[b]\r\nTitle=apple\r\nDescription=the second\r\n");
  browser.show([&] {
    const HWND list = browser.control(IDC_QUILLET_LIST);
    NMHEADERW click = {};
    click.hdr = {ListView_GetHeader(list), 0, static_cast<UINT>(HDN_ITEMCLICKW)};
    SendMessageW(list, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&click));
    REQUIRE(browser.rows() == Lines{L"apple", L"pear"});
    browser.showRow(0);
    CHECK(browser.text(IDC_QUILLET_DESC) == L"the second");
    CHECK(rowTip(browser, 0) == browser.disk / L"b");
    browser.showRow(1);
    CHECK(browser.text(IDC_QUILLET_DESC) == L"the first");
  });
}

TEST_CASE("the tip of a template is its folder") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nTitle=First\r\n");
  browser.addTemplate(L"b");
  browser.show([&] {
    CHECK(rowTip(browser, 0) == browser.disk / L"a");
    CHECK(rowTip(browser, 1) == browser.disk / L"b");
  });
}

TEST_CASE("a click on the selected template reads its description anew") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nTitle=First\r\nDescription=old\r\n");
  browser.show([&] {
    CHECK(browser.text(IDC_QUILLET_DESC) == L"old");
    browser.disk.writeFile(L"a\\quillet.ini", "[a]\r\nTitle=Second\r\nDescription=new\r\n");
    NMITEMACTIVATE click = {};
    click.hdr = {browser.control(IDC_QUILLET_LIST), IDC_QUILLET_LIST, static_cast<UINT>(NM_CLICK)};
    SendMessageW(browser.dialog, WM_NOTIFY, IDC_QUILLET_LIST, reinterpret_cast<LPARAM>(&click));
    CHECK(browser.text(IDC_QUILLET_DESC) == L"new");
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : Second     [HTML Preview]");
    CHECK(browser.rows() == Lines{L"First"});
  });
}

TEST_CASE("an empty list says in its space what to do") {
  BrowserWindow browser;
  browser.show([&] {
    CHECK(listSays(browser, whatToDo));
    CHECK(browser.text(IDC_QUILLET_STATUS) == L"0 found");
    browser.addTemplate(L"a");
    browser.type(VK_F5);
    CHECK(browser.rows() == Lines{L"a"});
    CHECK_FALSE(listSays(browser, whatToDo));
    CHECK(browser.text(IDC_QUILLET_STATUS) == L"1 found");
  });
}

TEST_CASE("a list that is empty for folders that cannot be opened says which") {
  BrowserWindow browser;
  listForMachine(browser.registry, L"C:\\no such folder");
  listForUser(browser.registry, L"C:\\nor this one\\");
  browser.show([&] {
    CHECK(listSays(browser,
                   L"Could not open \" C:\\no such folder\\ \"\r\n\r\n"
                   L"Could not open \" C:\\nor this one\\ \"\r\n\r\n" +
                       whatToDo));
  });
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("a list that an error left empty says which") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.show([&] {
    const auto refuse =
        +[](LPCSTR, LPWIN32_FIND_DATAA) -> HANDLE { throw Error(1234, L"Not now."); };
    {
      const ImportPatch patch(nullptr, "kernel32.dll", "FindFirstFileA", refuse);
      browser.type(VK_F5);
    }
    CHECK(browser.rows().empty());
    CHECK(listSays(browser, L"Not now.\r\n\r\n" + whatToDo));
    CHECK(browser.enabled(IDC_QUILLET_SELECT));
  });
  CHECK(browser.log.has(
      L"ERROR in procedure Form_KeyDown of Form frmQuillet. Error : 1234\tNot now."));
}

TEST_CASE("the wait tells the folder that is searched and how many were found") {
  BrowserWindow browser;
  ScratchFolder first;
  first.writeFile(L"a\\a.dwt");
  first.writeFile(L"b\\b.dwt");
  listForMachine(browser.registry, first.path());
  browser.addTemplate(L"c");
  Lines told;
  browser.showAtOnce([&] {
    told.push_back(browser.text(IDC_QUILLET_STATUS));
    browser.whenListed([&] {
      told.push_back(browser.text(IDC_QUILLET_STATUS));
      press(browser.dialog, IDCANCEL);
    });
  });
  CHECK(told == Lines{L"0 found, searching\r\n" + first.path(), L"3 found"});
}
