// The template browser's page: what it shows, what it lets a page do, and the keys.
#include "common/ansi.h"
#include "tests/catalogue/frmQuillet_support.h"

namespace {

const std::wstring errorBody = L"<h3><font face=arial color=red>Error in preview</font></h3>";

// The window with a browser control of either kind: each test runs with both.
class EitherBrowser : public BrowserWindow {
 public:
  EitherBrowser() {
    SUBCASE("as strict as with an engine") { page.isStrict = true; }
    SUBCASE("as without an engine") { page.isStrict = false; }
  }
};

std::wstring shortNameOf(const std::wstring& path) {
  wchar_t name[MAX_PATH] = {};
  GetShortPathNameW(path.c_str(), name, MAX_PATH);
  return name;
}

}  // namespace

TEST_CASE("a page is previewed in the embedded browser") {
  EitherBrowser browser;
  browser.addTemplate(L"home", "[home]\r\nTitle=Home\r\nPreview=show.htm\r\n");
  browser.disk.writeFile(L"home\\show.htm", "<html></html>");
  browser.show([&] {
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : Home     [HTML Preview]");
    CHECK(browser.page.navigations() == Lines{L"about:blank", browser.disk / L"home\\show.htm"});
    CHECK(browser.visible(IDC_QUILLET_PAGE));
    CHECK_FALSE(browser.visible(IDC_QUILLET_PICTURE));
    CHECK_FALSE(browser.enabled(IDC_QUILLET_ZOOM));
  });
}

TEST_CASE("an empty preview page shows a blank page") {
  EitherBrowser browser;
  browser.addTemplate(L"home", "[home]\r\nPreview=show.htm\r\n");
  browser.disk.writeFile(L"home\\show.htm");
  browser.show([&] {
    CHECK(browser.page.navigations() == Lines{L"about:blank", L"about:blank"});
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : home     [HTML Preview]");
    CHECK(browser.visible(IDC_QUILLET_PAGE));
  });
}

TEST_CASE("a template without preview settings and pictures shows its own page") {
  EitherBrowser browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.show([&] {
    CHECK(browser.page.shows(file));
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : home     [HTML Preview]");
    CHECK(browser.text(IDC_QUILLET_DESC) == L"<not available>");
  });
}

TEST_CASE("a page that cannot be loaded is replaced by a blank one with the error") {
  EitherBrowser browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.page.unreachable = [&](const std::wstring& address) { return address == file; };
  browser.show([&] {
    CHECK(browser.page.address() == L"about:blank");
    CHECK(browser.page.bodyHtml() == errorBody);
  });
}

TEST_CASE("the error of a page that was left does not replace the next one") {
  EitherBrowser browser;
  const std::wstring left = browser.addTemplate(L"a");
  const std::wstring shown = browser.addTemplate(L"b");
  browser.show([&] {
    browser.showRow(1);
    browser.page.failLate(left);
    CHECK(browser.page.shows(shown));
    CHECK(browser.page.bodyHtml().empty());
  });
}

TEST_CASE("a page that was left does not take the error of the next one") {
  EitherBrowser browser;
  const std::wstring left = browser.addTemplate(L"a");
  const std::wstring broken = browser.addTemplate(L"b");
  browser.page.unreachable = [&](const std::wstring& address) { return address == broken; };
  browser.show([&] {
    browser.page.isSlow = true;
    browser.selectRow(1);
    browser.page.arrive(broken);
    browser.page.completeLate(left);
    CHECK(browser.page.bodyHtml().empty());
    // A blank page that was left looks like the one on its way.
    browser.page.completeLate(L"about:blank");
    browser.page.arrive(L"about:blank");
    CHECK(browser.page.bodyHtml() == errorBody);
  });
}

TEST_CASE("the preview follows no link and opens no window and downloads nothing") {
  EitherBrowser browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.show([&] {
    CHECK_FALSE(browser.page.follow(L"http://example.invalid/"));
    CHECK_FALSE(browser.page.followInFrame(L"http://example.invalid/"));
    CHECK_FALSE(browser.page.openWindow());
    CHECK_FALSE(browser.page.download(false));
    CHECK(browser.page.download(true));
    CHECK(browser.page.follow(browser.page.reported(file) + L"#below"));
    CHECK(browser.page.shows(file));
  });
}

TEST_CASE("a page that was left and completes late takes no frames from the next one") {
  EitherBrowser browser;
  const std::wstring left = browser.addTemplate(L"a");
  const std::wstring shown = browser.addTemplate(L"b");
  const std::wstring frame = browser.disk / L"b\\frame.htm";
  browser.show([&] {
    browser.page.isSlow = true;
    browser.selectRow(1);
    for (const std::wstring& stray : {std::wstring(L"about:blank"), left}) {
      browser.page.completeLate(stray);
      CHECK(browser.page.followInFrame(frame));
    }
    browser.page.arrive(shown);
    CHECK_FALSE(browser.page.followInFrame(frame));
  });
}

TEST_CASE("previewed pages are passive") {
  EitherBrowser browser;
  browser.addTemplate(L"home");
  browser.show([&] { CHECK(browser.page.ambient(-5512) == 0x70008790); });
}

TEST_CASE("a preview takes its frames from beside it and from nowhere else") {
  EitherBrowser browser;
  browser.addTemplate(L"a");
  const std::wstring shown = browser.addTemplate(L"b");
  const std::wstring beside = browser.disk / L"b\\sub frames\\frame.htm";
  browser.show([&] {
    browser.page.isSlow = true;
    browser.selectRow(1);
    CHECK(browser.page.followInFrame(beside));
    CHECK(browser.page.followInFrame(browser.page.reported(beside) + L"#below"));
    CHECK(browser.page.followInFrame(L"about:blank"));
    for (const wchar_t* elsewhere :
         {L"http://example.invalid/frame.htm", L"ftp://example.invalid/frame.htm",
          L"file://example.invalid/share/frame.htm", L"\\\\example.invalid\\share\\frame.htm",
          L"javascript:location.href", L"A:\\frame.htm", L""}) {
      CAPTURE(elsewhere);
      CHECK_FALSE(browser.page.followInFrame(elsewhere));
    }
    CHECK_FALSE(browser.page.followInFrame(browser.disk / L"b\\letter.doc"));
    CHECK_FALSE(browser.page.followInFrame(browser.disk / L"b\\tool.exe"));
    browser.page.arrive(shown);
    CHECK_FALSE(browser.page.followInFrame(beside));
  });
}

TEST_CASE("the error of a frame leaves the preview as it is") {
  EitherBrowser browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.show([&] {
    browser.page.clear();
    CHECK(browser.page.failInFrame(browser.disk / L"home\\frame.htm"));
    CHECK(browser.page.failInFrame(file));
    browser.page.settle();
    CHECK(browser.page.navigations().empty());
    CHECK(browser.page.shows(file));
    CHECK(browser.page.bodyHtml().empty());
  });
}

TEST_CASE("a preview that is neither a page nor a picture is not opened") {
  for (const wchar_t* name : {L"letter.doc", L"paper.PDF", L"tool.exe", L"page.htm.lnk", L"nothing",
                              L"page.mht", L"style.xml", L"page.url", L"dots.htm.."}) {
    CAPTURE(name);
    EitherBrowser browser;
    browser.addTemplate(L"home", "[home]\r\nPreview=" + text::toAnsi(name) + "\r\n");
    browser.disk.writeFile(std::wstring(L"home\\") + name, "content");
    browser.show([&] {
      CHECK(browser.page.navigations() == Lines{L"about:blank", L"about:blank"});
      CHECK(browser.page.bodyHtml() == errorBody);
      CHECK(browser.visible(IDC_QUILLET_PAGE));
      CHECK_FALSE(browser.enabled(IDC_QUILLET_ZOOM));
      CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : home     [HTML Preview]");
    });
    CHECK(
        browser.log.has(L"ERROR in procedure lvListView_ItemClick of Form frmQuillet. Error : "
                        L"321\tInvalid file format"));
    CHECK(browser.driver.boxes().empty());
  }
}

TEST_CASE("an empty preview of any kind shows a blank page") {
  EitherBrowser browser;
  browser.addTemplate(L"home", "[home]\r\nPreview=letter.doc\r\n");
  browser.disk.writeFile(L"home\\letter.doc");
  browser.show([&] {
    CHECK(browser.page.navigations() == Lines{L"about:blank", L"about:blank"});
    CHECK(browser.page.bodyHtml().empty());
  });
}

TEST_CASE("the preview can be shown again and goes nowhere by its own keys") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  const std::wstring shown = browser.addTemplate(L"b");
  browser.show([&] {
    browser.showRow(1);
    SetFocus(browser.control(IDC_QUILLET_PAGE));
    REQUIRE(GetFocus() == browser.page.window());
    for (const WPARAM key : {VK_BACK}) {
      browser.type(key);
      browser.page.settle();
      CHECK(browser.page.shows(shown));
    }
    CHECK(browser.page.keys() == std::vector<WPARAM>{VK_BACK});
  });
}

TEST_CASE("the Tab key leads through the preview") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.page.stops = 2;
  browser.show([&] {
    SetFocus(browser.control(IDC_QUILLET_PAGE));
    browser.type(VK_TAB);
    CHECK(browser.page.stop() == 2);
    CHECK(GetFocus() == browser.page.window());
    browser.type(VK_TAB);
    CHECK(GetFocus() != browser.page.window());
    CHECK(IsChild(browser.dialog, GetFocus()));
    CHECK_FALSE(browser.page.isActive());
  });
}

TEST_CASE("Esc closes the browser though the focus is in the preview") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    SetFocus(browser.control(IDC_QUILLET_PAGE));
    REQUIRE(GetFocus() == browser.page.window());
    browser.type(VK_ESCAPE);
    CHECK(browser.log.has(L"Quillet unloaded successfully."));
    CHECK(browser.page.keys().empty());
  });
}

TEST_CASE("a preview is shown however the description writes its path") {
  for (const char* named : {"sub/page.htm", "sub\\\\page.htm", "\\sub\\page.htm",
                            "..\\home\\sub\\page.htm", ".\\sub\\PAGE.HTM"}) {
    CAPTURE(named);
    EitherBrowser browser;
    browser.addTemplate(L"home", "[home]\r\nPreview=" + std::string(named) + "\r\n");
    const std::wstring page = browser.disk.writeFile(L"home\\sub\\page.htm", "<html></html>");
    browser.show([&] {
      const std::wstring asked = browser.page.navigations().back();
      CHECK(browser.page.shows(asked));
      if (browser.page.isStrict) CHECK(browser.page.shows(page));
    });
  }
}

TEST_CASE("a template of a folder that is listed by its short name is previewed") {
  EitherBrowser browser;
  const std::wstring folder = browser.disk.makeFolder(L"a long folder name");
  const std::wstring brief = shortNameOf(folder);
  REQUIRE(brief != folder);
  listForUser(browser.registry, brief);
  const std::wstring file =
      browser.disk.writeFile(L"a long folder name\\home\\home.dwt", "<html></html>");
  browser.show([&] {
    const std::wstring asked = browser.page.navigations().back();
    CHECK(asked.starts_with(brief));
    CHECK(browser.page.shows(asked));
    if (browser.page.isStrict) CHECK(browser.page.shows(file));
  });
}

TEST_CASE("a page with letters and signs of every kind in its path is previewed") {
  EitherBrowser browser;
  const std::wstring file = browser.addTemplate(L"caf\u00E9 100% #1");
  browser.show([&] { CHECK(browser.page.shows(file)); });
}
