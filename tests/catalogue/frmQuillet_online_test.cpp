// The template browser and the online catalogue that it opens, with a real download between them.
#include "online/resource.h"
#include "tests/catalogue/frmQuillet_support.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/archive/ZipMaker.h"

namespace {

constexpr wchar_t downloadPage[] = L"http://127.0.0.1/DWTOnlineDownload.htm?success=about:blank";

// A browser with the template "home", and a catalogue to download from into a folder that nobody
// has listed.
class BrowserOfCatalogue : public BrowserWindow {
 public:
  BrowserOfCatalogue() {
    registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                       L"DWTOnline", L"http://127.0.0.1/start.htm");
    registry.setString(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                       L"AppData", data.path());
    registry.setString(HKEY_CURRENT_USER, browserSettings, L"DWTDownloadDir", downloads.path());
    addTemplate(L"home");
  }

  // In the window, which is closed by its close box afterwards.
  void openCatalogue(const std::function<void()>& script) {
    driver.onDialog(L"DWT Online", [this, script](HWND window) {
      catalogue = window;
      script();
      PostMessageW(window, WM_CLOSE, 0, 0);
    });
    press(dialog, IDC_QUILLET_ONLINE);
  }
  void follow(const HttpServer& server) {
    page.follow(downloadPage + (L"&dwt1=" + server.url(L"/d.zip")));
  }

  ScratchFolder data;
  ScratchFolder downloads;
  HWND catalogue = nullptr;
};

std::string archiveOf(int templates) {
  ZipMaker zip;
  for (int i = 1; i <= templates; ++i) {
    const std::string name = "new" + std::to_string(i);
    zip.add(name + "/" + name + ".dwt", "<html>new</html>");
  }
  return zip.bytes();
}

}  // namespace

TEST_CASE("a template that was downloaded joins the browser's list") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archiveOf(1))}});
  BrowserOfCatalogue browser;
  browser.show([&] {
    CHECK(browser.rows() == Lines{L"home"});
    browser.openCatalogue([&] { browser.follow(server); });
    CHECK(browser.rows() == Lines{L"home", L"new1"});
    for (const int button : {IDOK, IDC_QUILLET_DESTFOLDER}) CHECK(browser.enabled(button));
  });
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("the first template that was downloaded is selected and can be copied") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archiveOf(1))}});
  BrowserOfCatalogue browser;
  DeleteFileW((browser.disk / L"home\\home.dwt").c_str());
  browser.show([&] {
    CHECK(browser.rows().empty());
    browser.openCatalogue([&] { browser.follow(server); });
    CHECK(browser.rows() == Lines{L"new1"});
    CHECK(ListView_GetNextItem(browser.control(IDC_QUILLET_LIST), -1, LVNI_SELECTED) == 0);
    CHECK(browser.enabled(IDOK));
  });
}

TEST_CASE("the catalogue that the browser opens does not offer to open the browser") {
  BrowserOfCatalogue browser;
  bool found = false;
  browser.show([&] {
    browser.openCatalogue([&] {
      const HWND bar = GetDlgItem(browser.catalogue, IDC_ONLINE_TOOLBAR);
      TBBUTTON button = {};
      for (WPARAM i = 0; SendMessageW(bar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
           ++i) {
        wchar_t text[100] = {};
        const auto command = static_cast<WPARAM>(button.idCommand);
        if (button.fsStyle & BTNS_SEP) continue;
        SendMessageW(bar, TB_GETBUTTONTEXTW, command, reinterpret_cast<LPARAM>(text));
        if (std::wstring_view(text) != L"Browse and copy the templates on this computer") continue;
        found = true;
        CHECK_FALSE(SendMessageW(bar, TB_ISBUTTONENABLED, command, 0));
      }
    });
  });
  CHECK(found);
}

TEST_CASE("after a download only the download folder is read again") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archiveOf(1))}});
  BrowserOfCatalogue browser;
  browser.show([&] {
    browser.addTemplate(L"meanwhile");
    browser.openCatalogue([&] { browser.follow(server); });
    CHECK(browser.rows() == Lines{L"home", L"new1"});
  });
}

TEST_CASE("an online catalogue that was left without a download changes nothing in the browser") {
  BrowserOfCatalogue browser;
  browser.show([&] {
    browser.downloads.writeFile(L"other\\other.dwt", "<html>other</html>");
    browser.openCatalogue([] {});
    CHECK(browser.rows() == Lines{L"home"});
  });
}

TEST_CASE("a cancelled reading of the download folder is no error and keeps what was listed") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archiveOf(3))}});
  BrowserOfCatalogue browser;
  const std::wstring title(80, L'w');
  browser.downloads.writeFile(L"earlier\\earlier.dwt", "<html></html>");
  browser.downloads.writeFile(L"earlier\\quillet.ini",
                              "[earlier]\r\nTitle=" + std::string(80, 'w') + "\r\n");
  browser.show([&] {
    const CancelAtRow cancel(browser.dialog);
    browser.openCatalogue([&] { browser.follow(server); });
    CHECK(browser.rows() == Lines{L"home", title});
    CHECK(browser.columnFits(title));
    CHECK(browser.selectedRow() == 0);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : home     [HTML Preview]");
    CHECK(IsWindowVisible(browser.dialog));
    for (const int button : {IDOK, IDC_QUILLET_DESTFOLDER, IDC_QUILLET_INSTRUCTIONS,
                             IDC_QUILLET_NOTES, IDC_QUILLET_SELECT, IDC_QUILLET_ONLINE})
      CHECK(browser.enabled(button));
  });
  for (const std::wstring& line : browser.log.messages())
    CHECK_MESSAGE(line.find(L"Error : 512") == std::wstring::npos, line);
}
