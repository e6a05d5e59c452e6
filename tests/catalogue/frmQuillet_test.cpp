// The template browser: start, list and preview.
#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/Watchdog.h"

namespace {

const std::wstring errorBody = L"<h3><font face=arial color=red>Error in preview</font></h3>";

constexpr wchar_t zoomError[] = L"ERROR in procedure cboZoom_Click";

bool isBlue(COLORREF colour) { return GetBValue(colour) > 200 && GetRValue(colour) < 60; }
bool isRed(COLORREF colour) { return GetRValue(colour) > 200 && GetBValue(colour) < 60; }

// The extent of everything of that colour in a control, as it paints itself.
SIZE extentOf(HWND window, bool (*wanted)(COLORREF)) {
  RECT client;
  GetClientRect(window, &client);
  const handles::ScreenContext screen;
  const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
  const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), client.right, client.bottom));
  const HGDIOBJ old = SelectObject(context.get(), bitmap.get());
  SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context.get()), PRF_CLIENT);
  RECT extent = {client.right, client.bottom, 0, 0};
  for (LONG y = 0; y < client.bottom; ++y)
    for (LONG x = 0; x < client.right; ++x) {
      if (!wanted(GetPixel(context.get(), x, y))) continue;
      extent = {std::min(extent.left, x), std::min(extent.top, y), std::max(extent.right, x + 1),
                std::max(extent.bottom, y + 1)};
    }
  SelectObject(context.get(), old);
  return extent.right == 0 ? SIZE{} : SIZE{extent.right - extent.left, extent.bottom - extent.top};
}

SIZE blueExtent(HWND window) { return extentOf(window, isBlue); }

bool isSize(SIZE size, LONG width, LONG height) {
  CAPTURE(size.cx);
  CAPTURE(size.cy);
  return size.cx == width && size.cy == height;
}

// The drive Q: has no medium.
class DriveNotReady {
 public:
  DriveNotReady() { current = this; }

 private:
  static HANDLE WINAPI find(LPCSTR pattern, LPWIN32_FIND_DATAA data) {
    if (pattern[0] != 'Q') return current->patch_.original<decltype(find)>()(pattern, data);
    SetLastError(ERROR_NOT_READY);
    return INVALID_HANDLE_VALUE;
  }

  static inline DriveNotReady* current = nullptr;
  ImportPatch patch_{nullptr, "kernel32.dll", "FindFirstFileA", find};
};

// A screen of 560 by 400 pixels.
class SmallScreen {
 private:
  static BOOL WINAPI info(HMONITOR, LPMONITORINFO monitor) {
    monitor->rcMonitor = monitor->rcWork = {0, 0, 560, 400};
    return TRUE;
  }
  ImportPatch patch_{nullptr, "user32.dll", "GetMonitorInfoW", info};
};

}  // namespace

TEST_CASE("the browser bears its captions") {
  BrowserWindow browser;
  browser.show([&] {
    CHECK(windowText(browser.dialog) == L"Dynamic Web Template Browser");
    CHECK(browser.text(IDC_QUILLET_LIST_LABEL) == L"Dynamic Web Templates:");
    CHECK(browser.text(IDC_QUILLET_ZOOM_LABEL) == L"Zoom:");
    CHECK(browser.text(IDC_QUILLET_PICTURE) == L"DWT Preview");
    CHECK(browser.text(IDOK) == L"Copy to Web");
    CHECK(browser.text(IDC_QUILLET_DESTFOLDER) == L"&Destination...");
    CHECK(browser.text(IDC_QUILLET_SELECT) == L"&Folders...");
    CHECK(browser.text(IDC_QUILLET_ONLINE) == L"DWT &Online...");
    CHECK(browser.text(IDC_QUILLET_NOTES) == L"&Notes...");
    CHECK(browser.text(IDC_QUILLET_INSTRUCTIONS) == L"How to App&ly...");
    CHECK(browser.text(IDC_QUILLET_HELP) == L"&Help");
    CHECK(browser.text(IDC_QUILLET_ABOUT) == L"&About...");
    CHECK(browser.text(IDCANCEL) == L"Cancel");
  });
  CHECK(browser.driver.dialogs() == Lines{L"Dynamic Web Template Browser"});
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("the controls have their tool tips") {
  const auto tip = [](UINT id) {
    wchar_t text[256] = {};
    LoadStringW(nullptr, id, text, 256);
    return std::wstring(text);
  };
  CHECK(tip(IDC_QUILLET_ZOOM) == L"Increase or decrease the size of the picture");
  CHECK(tip(IDD_QUILLET + IDOK) == L"Copy the selected DWT to the web");
  CHECK(tip(IDC_QUILLET_NOTES) == L"View notes for selected DWT");
  CHECK(tip(IDC_QUILLET_HELP) == L"How to use Quillet Viewer");
  CHECK(tip(IDD_QUILLET + IDCANCEL) == L"Close Quillet");
}

TEST_CASE("opening and closing the browser writes its lines in order") {
  BrowserWindow browser;
  browser.addTemplate(L"home", "[home]\r\nTitle=Home page\r\n");
  browser.show();
  const std::wstring folder = browser.disk.path();
  Lines lines = browser.log.messages();
  REQUIRE(lines.size() > 4);
  CHECK(lines[3].starts_with(L"OS: Win2K ver. "));
  lines.erase(lines.begin() + 3);
  CHECK(lines == Lines{L"Quillet started...", L"Quillet ver.: 1.00.0 for FrontPage 2003",
                       L"FP ver.: 11.0.5510", L"Reading DWT folders list...", L"User - " + folder,
                       L"DWT folders list contains 1 items.", L"Enumerating DWTs...",
                       L"Scanning folder: " + folder, L"Home page",
                       L"DWT enumeration complete. 1 DWTs listed.",
                       L"Quillet unloaded successfully.",
                       L"-----------------------------------------------------"});
}

TEST_CASE("an empty folder list logs no enumeration lines") {
  BrowserWindow browser;
  browser.show();
  CHECK(browser.log.has(L"DWT folders list contains 0 items."));
  CHECK_FALSE(browser.log.has(L"Enumerating DWTs..."));
}

TEST_CASE("the zoom offers three sizes and starts with the natural one") {
  BrowserWindow browser;
  browser.show([&] {
    const HWND zoom = browser.control(IDC_QUILLET_ZOOM);
    REQUIRE(SendMessageW(zoom, CB_GETCOUNT, 0, 0) == 3);
    Lines texts;
    for (WPARAM item = 0; item < 3; ++item) {
      wchar_t text[16] = {};
      SendMessageW(zoom, CB_GETLBTEXT, item, reinterpret_cast<LPARAM>(text));
      texts.push_back(text);
    }
    CHECK(texts == Lines{L"50%", L"75%", L"100%"});
    CHECK(SendMessageW(zoom, CB_GETITEMDATA, 0, 0) == 50);
    CHECK(SendMessageW(zoom, CB_GETITEMDATA, 1, 0) == 75);
    CHECK(SendMessageW(zoom, CB_GETITEMDATA, 2, 0) == 100);
    CHECK(SendMessageW(zoom, CB_GETCURSEL, 0, 0) == 2);
  });
}

TEST_CASE("without the web browser component the browser says so and ends") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.page.canBeMade = false;
  browser.show();
  REQUIRE(browser.driver.boxes().size() == 1);
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text ==
        L"One or more components are not installed on your computer. You may need to setup the "
        L"product again. The application will be terminated.");
  CHECK(box.title == L"Dynamic Web Template Browser");
  CHECK(box.icon == MB_ICONHAND);
  CHECK(box.buttons == Lines{L"OK"});
  CHECK(browser.driver.dialogs().empty());
  CHECK_FALSE(browser.log.has(L"Reading DWT folders list..."));
  CHECK(browser.log.has(L"Quillet unloaded successfully."));
}

TEST_CASE("a host that ends during the scan is not held up by a message") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.showAtOnce([] { PostQuitMessage(5); });
  MSG message = {};
  REQUIRE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  CHECK(message.wParam == 5);
  CHECK_FALSE(browser.log.has(L"DWT enumeration complete. 1 DWTs listed."));
  CHECK(browser.log.has(L"Quillet unloaded successfully."));
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("no other window is opened and nothing is copied while the templates are listed") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  bool off = false;
  browser.showAtOnce([&] {
    off = !browser.enabled(IDC_QUILLET_SELECT) && !browser.enabled(IDC_QUILLET_ONLINE) &&
          !browser.enabled(IDOK) && !browser.enabled(IDC_QUILLET_DESTFOLDER);
    SendMessageW(browser.dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                 reinterpret_cast<LPARAM>(browser.control(IDOK)));
    browser.whenListed([&] { press(browser.dialog, IDCANCEL); });
  });
  CHECK(off);
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("a drive that is not ready is told over the window and the scan goes on") {
  const DriveNotReady drive;
  BrowserWindow browser;
  listForMachine(browser.registry, L"Q:\\Templates");
  browser.addTemplate(L"home");
  browser.show([&] { CHECK(browser.rows() == Lines{L"home"}); });
  REQUIRE(browser.driver.boxes().size() == 1);
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text.starts_with(L"Could not access Q:\\Templates\\.\r\n"));
  CHECK(box.text.size() > 30);  // the system's own words follow
  CHECK(box.title == browserCaption);
  CHECK(box.icon == MB_ICONHAND);
  CHECK(browser.log.has(L"Could not open \" Q:\\Templates\\ \""));
}

TEST_CASE("ampersands and long texts of a description are shown as they are") {
  BrowserWindow browser;
  const std::string longText(500, 'w');
  browser.addTemplate(L"home", "[home]\r\nTitle=Fish & chips\r\nDescription=" + longText + "\r\n");
  browser.show([&] {
    CHECK(browser.rows() == Lines{L"Fish & chips"});
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : Fish & chips     [HTML Preview]");
    CHECK(browser.text(IDC_QUILLET_DESC) == std::wstring(500, L'w'));
    for (const int id : {IDC_QUILLET_TITLE, IDC_QUILLET_PATH, IDC_QUILLET_DEST})
      CHECK((GetWindowLongW(browser.control(id), GWL_STYLE) & SS_NOPREFIX) != 0);
  });
}

TEST_CASE("pictures have a size although the host refused its version at the start") {
  BrowserWindow browser;
  browser.addTemplate(L"home", "[home]\r\nPreview=a.gif\r\n");
  browser.disk.writeFile(L"home\\a.gif", pictures::bytes(pictures::blueGif));
  browser.host.faults().refuse(L"Application.Version", L"Not now.", 1234);
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders",
                          [](HWND dialog) { press(dialog, IDOK); });
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_SELECT);
    REQUIRE(browser.rows() == Lines{L"home"});
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 201, 100));
  });
}

TEST_CASE("a key that waits for the page behind a picture is dropped") {
  const Watchdog watchdog(60000);
  BrowserWindow browser;
  browser.addTemplate(L"home", "[home]\r\nPreview=a.gif\r\n");
  browser.disk.writeFile(L"home\\a.gif", pictures::bytes(pictures::blueGif));
  bool closed = false;
  browser.show([&] {
    const HWND page = browser.control(IDC_QUILLET_PAGE);
    const HWND inner = CreateWindowW(L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 9, 9, page, nullptr,
                                     nullptr, nullptr);
    for (const HWND window : {page, inner})
      for (const UINT message : {WM_CHAR, WM_SYSCHAR, WM_KEYDOWN})
        PostMessageW(window, message, L'x', 1);
    forms::yieldToMessages();
    CHECK_FALSE(browser.visible(IDC_QUILLET_PAGE));
    CHECK(IsWindowVisible(browser.dialog));
    closed = true;
  });
  CHECK(closed);
}

TEST_CASE("the focus of a picture goes to the page that takes its place") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nPreview=a.gif\r\n");
  browser.disk.writeFile(L"a\\a.gif", pictures::bytes(pictures::blueGif));
  browser.addTemplate(L"b");
  browser.show([&] {
    SetFocus(browser.control(IDC_QUILLET_PICTURE));
    browser.selectRow(1);
    CHECK(browser.visible(IDC_QUILLET_PAGE));
    CHECK(GetFocus() == browser.page.window());
  });
}

TEST_CASE("a host that refuses its version is logged and the window stays") {
  BrowserWindow browser;
  browser.host.faults().refuse(L"Application.Version", L"Not now.", 1234);
  browser.show([&] {
    CHECK(IsWindowVisible(browser.dialog));
    CHECK(browser.text(IDC_QUILLET_TITLE) == L" Preview:");
    CHECK_FALSE(browser.enabled(IDOK));
  });
  CHECK(
      browser.log.has(L"ERROR in procedure Form_Load of Form frmQuillet. Error : 1234\tNot now."));
}

TEST_CASE("the browser cannot be made smaller than it was designed") {
  BrowserWindow browser;
  browser.show([&] {
    RECT designed;
    GetWindowRect(browser.dialog, &designed);
    SetWindowPos(browser.dialog, nullptr, 0, 0, 100, 100, SWP_NOMOVE | SWP_NOZORDER);
    RECT now;
    GetWindowRect(browser.dialog, &now);
    CHECK(now.right - now.left == designed.right - designed.left);
    CHECK(now.bottom - now.top == designed.bottom - designed.top);
  });
}

TEST_CASE("a larger window gives its room to the preview and keeps the buttons at the right") {
  struct Move {
    int id;
    LONG left, top, right, bottom;
  };
  constexpr Move expected[] = {
      {IDC_QUILLET_PICTURE, 0, 0, 100, 60}, {IDC_QUILLET_PAGE, 0, 0, 100, 60},
      {IDC_QUILLET_TITLE, 0, 0, 100, 0},    {IDC_QUILLET_LIST_LABEL, 0, 0, 0, 0},
      {IDC_QUILLET_LIST, 0, 0, 0, 60},      {IDC_QUILLET_STATUS, 0, 60, 0, 60},
      {IDC_QUILLET_SPLITTER, 0, 0, 0, 60},  {IDC_QUILLET_ZOOM, 0, 60, 0, 60},
      {IDC_QUILLET_DEST, 0, 60, 100, 60},   {IDOK, 100, 0, 100, 0},
      {IDC_QUILLET_NOTES, 100, 0, 100, 0},  {IDCANCEL, 100, 60, 100, 60}};
  BrowserWindow browser;
  browser.show([&] {
    const auto place = [&](int id) {
      RECT rect;
      GetWindowRect(browser.control(id), &rect);
      MapWindowPoints(nullptr, browser.dialog, reinterpret_cast<POINT*>(&rect), 2);
      return rect;
    };
    std::vector<RECT> designed;
    for (const Move& each : expected) designed.push_back(place(each.id));
    RECT window;
    GetWindowRect(browser.dialog, &window);
    SetWindowPos(browser.dialog, nullptr, 0, 0, window.right - window.left + 100,
                 window.bottom - window.top + 60, SWP_NOMOVE | SWP_NOZORDER);
    for (std::size_t i = 0; i < std::size(expected); ++i) {
      const RECT now = place(expected[i].id);
      CAPTURE(expected[i].id);
      CHECK(now.left - designed[i].left == expected[i].left);
      CHECK(now.top - designed[i].top == expected[i].top);
      CHECK(now.right - designed[i].right == expected[i].right);
      CHECK(now.bottom - designed[i].bottom == expected[i].bottom);
    }
  });
}

TEST_CASE("on a small screen the window gives way and every button stays in reach") {
  const SmallScreen screen;
  BrowserWindow browser;
  browser.show([&] {
    RECT window;
    GetWindowRect(browser.dialog, &window);
    CHECK(window.right - window.left == 560);
    CHECK(window.bottom - window.top == 400);
    CHECK(window.left == 0);
    CHECK(window.top == 0);
    for (const int id : {IDOK, IDC_QUILLET_ONLINE, IDC_QUILLET_HELP, IDCANCEL, IDC_QUILLET_DEST}) {
      CAPTURE(id);
      RECT place;
      GetWindowRect(browser.control(id), &place);
      CHECK(place.right <= 560);
      CHECK(place.bottom <= 400);
    }
    RECT picture;
    GetWindowRect(browser.control(IDC_QUILLET_PICTURE), &picture);
    RECT copy;
    GetWindowRect(browser.control(IDOK), &copy);
    CHECK(picture.right < copy.left);
  });
}

TEST_CASE("the first template is selected and previewed at once") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nTitle=First\r\nDescription=The first one\r\n");
  browser.addTemplate(L"b", "[b]\r\nTitle=Second\r\n");
  browser.show([&] {
    CHECK(browser.rows() == Lines{L"First", L"Second"});
    CHECK(ListView_GetNextItem(browser.control(IDC_QUILLET_LIST), -1, LVNI_SELECTED) == 0);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : First     [HTML Preview]");
    CHECK(browser.text(IDC_QUILLET_DESC) == L"The first one");
    for (const int id : {IDOK, IDC_QUILLET_DESTFOLDER, IDC_QUILLET_INSTRUCTIONS, IDC_QUILLET_NOTES})
      CHECK(browser.enabled(id));
  });
}

TEST_CASE("without templates the preview is blank and there is nothing to copy") {
  BrowserWindow browser;
  browser.show([&] {
    CHECK(browser.rows().empty());
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : ");
    CHECK(browser.text(IDC_QUILLET_DESC).empty());
    CHECK(browser.text(IDC_QUILLET_PATH).empty());
    CHECK(browser.page.address() == L"about:blank");
    for (const int id : {IDOK, IDC_QUILLET_DESTFOLDER, IDC_QUILLET_INSTRUCTIONS, IDC_QUILLET_NOTES})
      CHECK_FALSE(browser.enabled(id));
    for (const int id :
         {IDC_QUILLET_SELECT, IDC_QUILLET_ONLINE, IDC_QUILLET_HELP, IDC_QUILLET_ABOUT, IDCANCEL})
      CHECK(browser.enabled(id));
    CHECK_FALSE(browser.enabled(IDC_QUILLET_ZOOM));
    browser.chooseZoomAllTheSame(0);
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 0, 0));
  });
  CHECK_FALSE(browser.log.hasLineWith(zoomError));
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("the zoom does not act on a page") {
  BrowserWindow browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.show([&] {
    CHECK_FALSE(browser.enabled(IDC_QUILLET_ZOOM));
    browser.page.clear();
    browser.chooseZoomAllTheSame(0);
    CHECK(browser.page.navigations().empty());
    CHECK(browser.visible(IDC_QUILLET_PAGE));
    CHECK_FALSE(browser.visible(IDC_QUILLET_PICTURE));
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 0, 0));
  });
  CHECK_FALSE(browser.log.hasLineWith(zoomError));
}

TEST_CASE("nothing of a shown picture is left when the list becomes empty") {
  BrowserWindow browser;
  const std::wstring file =
      browser.addTemplate(L"home", "[home]\r\nTitle=Home\r\nDescription=A picture\r\n");
  browser.disk.writeFile(L"home\\previewhome.gif", pictures::bytes(pictures::blueGif));
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders", [&](HWND dialog) {
    DeleteFileW(file.c_str());
    press(dialog, IDOK);
  });
  browser.show([&] {
    const HWND picture = browser.control(IDC_QUILLET_PICTURE);
    CHECK(isSize(blueExtent(picture), 201, 100));
    CHECK(browser.tip(IDC_QUILLET_DESC) == L"A picture");
    CHECK(browser.tip(IDC_QUILLET_PATH) == browser.disk / L"home");
    browser.page.clear();
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(browser.rows().empty());
    CHECK(isSize(blueExtent(picture), 0, 0));
    CHECK(browser.text(IDC_QUILLET_DESC).empty());
    CHECK(browser.text(IDC_QUILLET_PATH).empty());
    CHECK(browser.tip(IDC_QUILLET_DESC).empty());
    CHECK(browser.tip(IDC_QUILLET_PATH).empty());
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : ");
    CHECK(browser.page.navigations() == Lines{L"about:blank"});
    CHECK_FALSE(browser.enabled(IDC_QUILLET_ZOOM));
    browser.chooseZoomAllTheSame(0);
    CHECK(isSize(blueExtent(picture), 0, 0));
  });
  CHECK_FALSE(browser.log.hasLineWith(zoomError));
}

TEST_CASE("the folder of a template can be wrapped after each backslash") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    std::wstring expected;
    for (const wchar_t letter : browser.disk / L"home") {
      expected += letter;
      if (letter == L'\\') expected += L' ';
    }
    CHECK(browser.text(IDC_QUILLET_PATH) == expected);
  });
}

TEST_CASE("a picture is previewed as a picture") {
  for (const bool gif : {true, false}) {
    CAPTURE(gif);
    BrowserWindow browser;
    browser.addTemplate(L"home", gif ? "[home]\r\nTitle=Home\r\nPreview=look.GIF\r\n"
                                     : "[home]\r\nTitle=Home\r\nPreview=look.GIF.jpeg\r\n");
    browser.disk.writeFile(
        gif ? L"home\\look.GIF" : L"home\\look.GIF.jpeg",
        gif ? pictures::bytes(pictures::blueGif) : pictures::bytes(pictures::blueJpeg));
    browser.show([&] {
      CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : Home     [Image Preview]");
      CHECK(browser.visible(IDC_QUILLET_PICTURE));
      CHECK_FALSE(browser.visible(IDC_QUILLET_PAGE));
      CHECK(browser.enabled(IDC_QUILLET_ZOOM));
      CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 201, 100));
      CHECK(browser.page.navigations() == Lines{L"about:blank"});
    });
  }
}

TEST_CASE("a previewed picture is not kept open") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  const std::wstring picture =
      browser.disk.writeFile(L"home\\previewhome.gif", pictures::bytes(pictures::blueGif));
  browser.show([&] { CHECK(DeleteFileW(picture.c_str())); });
}

TEST_CASE("zoom 75 percent of a picture of 201 by 100 gives 151 by 75") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.disk.writeFile(L"home\\previewhome.gif", pictures::bytes(pictures::blueGif));
  browser.show([&] {
    browser.chooseZoom(1);
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 151, 75));
    browser.chooseZoom(0);
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 100, 50));
    browser.chooseZoom(2);
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 201, 100));
  });
}

TEST_CASE("the chosen zoom holds for the next picture") {
  BrowserWindow browser;
  for (const wchar_t* name : {L"a", L"b"}) {
    browser.addTemplate(name);
    browser.disk.writeFile(std::wstring(name) + L"\\preview" + name + L".gif",
                           pictures::bytes(pictures::blueGif));
  }
  browser.show([&] {
    browser.chooseZoom(1);
    browser.selectRow(1);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : b     [Image Preview]");
    CHECK(isSize(blueExtent(browser.control(IDC_QUILLET_PICTURE)), 151, 75));
  });
}

TEST_CASE("zooming a picture that was deleted meanwhile is logged and the window stays") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  const std::wstring picture =
      browser.disk.writeFile(L"home\\previewhome.gif", pictures::bytes(pictures::blueGif));
  browser.show([&] {
    DeleteFileW(picture.c_str());
    browser.chooseZoom(0);
    CHECK(IsWindowVisible(browser.dialog));
  });
  CHECK(browser.log.has(
      L"ERROR in procedure cboZoom_Click of Form frmQuillet. Error : 53\tFile not found"));
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("selecting a template whose file was deleted changes nothing in the preview") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nTitle=First\r\nDescription=one\r\n");
  const std::wstring gone = browser.addTemplate(L"b");
  browser.show([&] {
    const std::wstring path = browser.text(IDC_QUILLET_PATH);
    DeleteFileW(gone.c_str());
    browser.page.clear();
    browser.selectRow(1);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : First     [HTML Preview]");
    CHECK(browser.text(IDC_QUILLET_DESC) == L"one");
    CHECK(browser.text(IDC_QUILLET_PATH) == path);
    CHECK(browser.page.navigations().empty());
  });
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("a template that was hidden after listing is previewed") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  const std::wstring hidden = browser.addTemplate(L"b");
  browser.show([&] {
    SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    browser.selectRow(1);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : b     [HTML Preview]");
    SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_NORMAL);
  });
}

TEST_CASE("a picture that is no picture shows the error page and is logged") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.disk.writeFile(L"home\\previewhome.gif", "GIF89a and nothing behind it");
  browser.show([&] {
    CHECK(browser.page.bodyHtml() == errorBody);
    CHECK(browser.visible(IDC_QUILLET_PAGE));
    CHECK_FALSE(browser.visible(IDC_QUILLET_PICTURE));
    CHECK_FALSE(browser.enabled(IDC_QUILLET_ZOOM));
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : home     [Image Preview]");
  });
  CHECK(browser.log.has(
      L"ERROR in procedure lvListView_ItemClick of Form frmQuillet. Error : 481\tInvalid picture"));
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("an empty picture file shows the error page") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.disk.writeFile(L"home\\previewhome.jpg");
  browser.show([&] { CHECK(browser.page.bodyHtml() == errorBody); });
}

TEST_CASE("where no page can be rendered the window still works") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.addTemplate(L"b");
  browser.page.hasDocument = false;
  browser.show([&] {
    browser.showRow(1);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : b     [HTML Preview]");
    CHECK(browser.enabled(IDOK));
    // The place of the page says in red what the page would say.
    CHECK(extentOf(browser.control(IDC_QUILLET_PAGE), isRed).cx > 50);
  });
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("nothing of the window is left behind") {
  const long handlesBefore = handles::liveCount();
  {
    BrowserWindow browser;
    browser.addTemplate(L"home");
    browser.disk.writeFile(L"home\\previewhome.gif", pictures::bytes(pictures::blueGif));
    browser.show([&] { browser.chooseZoom(1); });
    CHECK(browser.page.alive() == 0);
    Lines end = browser.page.calls();
    end.erase(end.begin(), end.end() - std::min<std::ptrdiff_t>(5, static_cast<int>(end.size())));
    CHECK(end == Lines{L"InPlaceDeactivate", L"Unadvise", L"SetClientSite nothing", L"Close",
                       L"released"});
  }
  CHECK(handles::liveCount() == handlesBefore);
}
