// The list of templates in the browser: its column, its tips, and clicks on its rows.
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
