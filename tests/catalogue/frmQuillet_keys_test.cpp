// The template browser under its user's hands: what is typed, and what is clicked twice.
#include <optional>

#include "tests/catalogue/frmQuillet_support.h"

namespace {

std::wstring selectedTitle(const BrowserWindow& browser) {
  return browser.rows()[static_cast<std::size_t>(browser.selectedRow())];
}

void clickHeader(const BrowserWindow& browser) {
  NMHEADERW click = {};
  const HWND list = browser.control(IDC_QUILLET_LIST);
  const HWND header = ListView_GetHeader(list);
  click.hdr = {header, static_cast<UINT_PTR>(GetDlgCtrlID(header)),
               static_cast<UINT>(HDN_ITEMCLICKW)};
  SendMessageW(list, WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
}

void doubleClick(const BrowserWindow& browser, int row) {
  NMITEMACTIVATE click = {};
  click.hdr = {browser.control(IDC_QUILLET_LIST), IDC_QUILLET_LIST, static_cast<UINT>(NM_DBLCLK)};
  click.iItem = row;
  SendMessageW(browser.dialog, WM_NOTIFY, IDC_QUILLET_LIST, reinterpret_cast<LPARAM>(&click));
}

void typeLetters(const BrowserWindow& browser, const std::wstring& letters) {
  for (const wchar_t letter : letters)
    PostMessageW(browser.control(IDC_QUILLET_LIST), WM_CHAR, letter, 1);
  forms::yieldToMessages();
}

}  // namespace

TEST_CASE("F5 reads the folders anew and comes back to the template that was selected") {
  BrowserWindow browser;
  for (const wchar_t* name : {L"b", L"d"}) browser.addTemplate(name);
  browser.show([&] {
    browser.showRow(1);
    browser.addTemplate(L"a");
    browser.addTemplate(L"c");
    browser.type(VK_F5);
    CHECK(browser.rows() == Lines{L"a", L"b", L"c", L"d"});
    CHECK(selectedTitle(browser) == L"d");
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : d     [HTML Preview]");
    CHECK(browser.enabled(IDOK));
    CHECK(GetFocus() == browser.control(IDC_QUILLET_LIST));
  });
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("F5 keeps the order that the list was sorted into") {
  BrowserWindow browser;
  for (const wchar_t* name : {L"a", L"b"}) browser.addTemplate(name);
  browser.show([&] {
    clickHeader(browser);
    clickHeader(browser);
    browser.showRow(1);
    browser.addTemplate(L"c");
    browser.type(VK_F5);
    CHECK(browser.rows() == Lines{L"c", L"b", L"a"});
    CHECK(selectedTitle(browser) == L"a");
  });
}

TEST_CASE("F5 selects the first template where the selected one has gone") {
  BrowserWindow browser;
  for (const wchar_t* name : {L"a", L"b"}) browser.addTemplate(name);
  browser.show([&] {
    browser.showRow(1);
    DeleteFileW((browser.disk / L"b\\b.dwt").c_str());
    browser.type(VK_F5);
    CHECK(browser.rows() == Lines{L"a"});
    CHECK(selectedTitle(browser) == L"a");
  });
}

TEST_CASE("F5 in the page of the preview reads the folders and not the page") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.show([&] {
    SetFocus(browser.control(IDC_QUILLET_PAGE));
    REQUIRE(GetFocus() == browser.page.window());
    browser.addTemplate(L"b");
    browser.type(VK_F5);
    CHECK(browser.rows() == Lines{L"a", L"b"});
    CHECK(browser.page.keys().empty());
  });
}

TEST_CASE("F5 during a search starts no second one") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  bool listed = false;
  browser.showAtOnce([&] {
    PostMessageW(browser.control(IDC_QUILLET_LIST), WM_KEYDOWN, VK_F5, 1);
    browser.whenListed([&] {
      listed = true;
      CHECK(browser.rows() == Lines{L"a"});
      press(browser.dialog, IDCANCEL);
    });
  });
  CHECK(listed);
  int scans = 0;
  for (const std::wstring& line : browser.log.messages()) scans += line == L"Enumerating DWTs...";
  CHECK(scans == 1);
}

TEST_CASE("a search by F5 that is cancelled keeps what was found and says nothing") {
  BrowserWindow browser;
  for (const wchar_t* name : {L"a", L"b"}) browser.addTemplate(name);
  browser.show([&] {
    {
      const CancelAtRow cancel(browser.dialog);
      browser.type(VK_F5);
    }
    CHECK(browser.rows() == Lines{L"a"});
    CHECK(selectedTitle(browser) == L"a");
  });
  CHECK(browser.driver.boxes().empty());
  CHECK_FALSE(browser.log.hasLineWith(L"ERROR"));
}

TEST_CASE("a double click on a template copies it as Enter does") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.driver.answer(IDYES);
  browser.show([&] { doubleClick(browser, 0); });
  CHECK(browser.driver.boxes().size() == 1);
  CHECK(browser.web.exists(L"dwts\\home\\home.dwt"));
}

TEST_CASE("a double click copies nothing beside the rows or while the copy button is off") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    doubleClick(browser, -1);
    EnableWindow(browser.control(IDOK), FALSE);
    doubleClick(browser, 0);
  });
  CHECK(browser.driver.boxes().empty());
  CHECK_FALSE(browser.web.exists(L"dwts"));
}

TEST_CASE("what is typed in the list finds a title in any letter case and from its top again") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nTitle=Harbour Light\r\n");
  browser.addTemplate(L"b", "[b]\r\nTitle=harbour night\r\n");
  browser.addTemplate(L"c", "[c]\r\nTitle=Nimbus\r\n");
  browser.show([&] {
    typeLetters(browser, L"HARBOUR N");
    CHECK(selectedTitle(browser) == L"harbour night");
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : harbour night     [HTML Preview]");
  });
  browser.show([&] {
    browser.showRow(2);
    typeLetters(browser, L"ha");
    CHECK(selectedTitle(browser) == L"Harbour Light");
  });
  // None of the letters was taken for a button's.
  CHECK(browser.driver.dialogs() == Lines{browserCaption, browserCaption});
}

TEST_CASE("Ctrl and the wheel go through the sizes of a picture wherever the focus is") {
  BrowserWindow browser;
  browser.addTemplate(L"home", "[home]\r\nPreview=a.gif\r\n");
  browser.disk.writeFile(L"home\\a.gif", pictures::bytes(pictures::blueGif));
  const auto turn = [&](int id, int delta, WORD keys = MK_CONTROL) {
    PostMessageW(browser.control(id), WM_MOUSEWHEEL, MAKEWPARAM(keys, static_cast<WORD>(delta)), 0);
    forms::yieldToMessages();
    return browser.text(IDC_QUILLET_ZOOM);
  };
  browser.show([&] {
    CHECK(turn(IDC_QUILLET_LIST, WHEEL_DELTA) == L"100%");
    CHECK(turn(IDC_QUILLET_LIST, -WHEEL_DELTA, 0) == L"100%");
    CHECK(turn(IDC_QUILLET_LIST, -WHEEL_DELTA) == L"75%");
    CHECK(turn(IDC_QUILLET_PICTURE, -WHEEL_DELTA / 2) == L"75%");
    CHECK(turn(IDC_QUILLET_PICTURE, -WHEEL_DELTA / 2) == L"50%");
    CHECK(turn(IDC_QUILLET_ZOOM, -3 * WHEEL_DELTA) == L"50%");
    CHECK(turn(IDC_QUILLET_ZOOM, 5 * WHEEL_DELTA) == L"100%");
  });
  CHECK_FALSE(browser.log.hasLineWith(L"ERROR"));
}

TEST_CASE("Ctrl and the wheel do nothing while a page is previewed") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    PostMessageW(browser.control(IDC_QUILLET_LIST), WM_MOUSEWHEEL,
                 MAKEWPARAM(MK_CONTROL, static_cast<WORD>(-WHEEL_DELTA)), 0);
    forms::yieldToMessages();
    CHECK(browser.text(IDC_QUILLET_ZOOM) == L"100%");
  });
}

TEST_CASE("the whole description can be focused and scrolled and copied") {
  BrowserWindow browser;
  std::string longText;
  for (int word = 0; word < 70; ++word) longText += "word" + std::to_string(word) + " ";
  longText.pop_back();
  browser.addTemplate(L"a", "[a]\r\nDescription=" + longText + "\r\n");
  browser.addTemplate(L"b", "[b]\r\nDescription=short\r\n");
  browser.show([&] {
    const HWND box = browser.control(IDC_QUILLET_DESC);
    const auto hasBar = [&] { return (GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) != 0; };
    const std::wstring whole(longText.begin(), longText.end());
    CHECK(browser.text(IDC_QUILLET_DESC) == whole);
    CHECK(browser.tip(IDC_QUILLET_DESC) == whole);
    CHECK(hasBar());
    // As the Tab key comes to it.
    SendMessageW(browser.dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(box), TRUE);
    REQUIRE(GetFocus() == box);
    SendMessageW(box, WM_COPY, 0, 0);
    REQUIRE(OpenClipboard(browser.dialog));
    const HANDLE copied = GetClipboardData(CF_UNICODETEXT);
    CHECK(std::wstring(static_cast<const wchar_t*>(GlobalLock(copied))) == whole);
    GlobalUnlock(copied);
    CloseClipboard();
    PostMessageW(box, WM_CHAR, L'x', 1);
    forms::yieldToMessages();
    CHECK(browser.text(IDC_QUILLET_DESC) == whole);
    browser.selectRow(1);
    CHECK(browser.text(IDC_QUILLET_DESC) == L"short");
    CHECK_FALSE(hasBar());
  });
}

TEST_CASE("a description of three lines has no scroll bar and one of four has one") {
  BrowserWindow browser;
  constexpr int most = 50;
  std::string text;
  for (int words = 10; words <= most; ++words) {
    text += text.empty() ? "word word word word word word word word word word" : " word";
    const std::wstring name = L"t" + std::to_wstring(words);
    browser.addTemplate(
        name, "[" + std::string(name.begin(), name.end()) + "]\r\nDescription=" + text + "\r\n");
  }
  browser.show([&] {
    const HWND box = browser.control(IDC_QUILLET_DESC);
    const auto hasBar = [&] { return (GetWindowLongW(box, GWL_STYLE) & WS_VSCROLL) != 0; };
    int ofThree = 0;
    int ofFour = 0;
    for (int row = 0; row <= most - 10; ++row) {
      browser.selectRow(row);
      const auto lines = SendMessageW(box, EM_GETLINECOUNT, 0, 0);
      CAPTURE(row);
      CHECK(hasBar() == (lines > 3));
      if (lines == 3) ofThree = row;
      if (lines == 4) ofFour = row;
    }
    REQUIRE(ofThree > 0);
    REQUIRE(ofFour > ofThree);
    // The longer one's bar took room away.
    browser.selectRow(ofThree);
    CHECK_FALSE(hasBar());
    // So does a wider list.
    SendMessageW(browser.control(IDC_QUILLET_SPLITTER), WM_KEYDOWN, VK_END, 1);
    CHECK(SendMessageW(box, EM_GETLINECOUNT, 0, 0) > 3);
    CHECK(hasBar());
    SendMessageW(browser.control(IDC_QUILLET_SPLITTER), WM_KEYDOWN, VK_HOME, 1);
    CHECK_FALSE(hasBar());
  });
}

TEST_CASE("Enter and Escape in the description are the window's") {
  for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
    CAPTURE(key);
    BrowserWindow browser;
    browser.addTemplate(L"home");
    browser.driver.answer(IDYES);
    browser.show([&] {
      SetFocus(browser.control(IDC_QUILLET_DESC));
      browser.type(key);
    });
    CHECK_FALSE(IsWindow(browser.dialog));
    CHECK(browser.web.exists(L"dwts\\home\\home.dwt") == (key == VK_RETURN));
  }
}
