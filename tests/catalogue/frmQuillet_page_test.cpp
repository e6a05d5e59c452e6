// The template browser's page: what it shows, what it lets a page do, and the keys.
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
  browser.show([&] {
    browser.page.isSlow = true;
    browser.selectRow(1);
    for (const std::wstring& stray : {std::wstring(L"about:blank"), left}) {
      browser.page.completeLate(stray);
      CHECK(browser.page.followInFrame(L"http://example.invalid/frame.htm"));
    }
    browser.page.arrive(shown);
    CHECK_FALSE(browser.page.followInFrame(L"http://example.invalid/frame.htm"));
  });
}

TEST_CASE("previewed pages run no scripts and no components") {
  EitherBrowser browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    const long allowed = browser.page.ambient(-5512);
    CHECK((allowed & 0x10) != 0);   // pictures
    CHECK((allowed & 0x80) != 0);   // no scripts
    CHECK((allowed & 0x200) != 0);  // no components
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
