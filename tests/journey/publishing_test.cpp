// From a template that somebody made to a page in somebody else's web: checked, published as a
// catalogue, downloaded in the online window and copied.
#include <algorithm>
#include <string>

#include "author/Console.h"
#include "author/page_text.h"
#include "common/text.h"
#include "html/encoding.h"
#include "tests/author/Tool.h"
#include "tests/journey/Journey.h"
#include "tests/online/LoopbackServer.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t shellFolders[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr wchar_t internetSettings[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr wchar_t officeSettings[] = L"SOFTWARE\\Microsoft\\Office\\11.0\\Common\\General";

// The author's own machine.
struct Workshop {
  Tool tool;
  HttpServer server{{}};

  void makeTemplate() const {
    tool.disk.writeFile(L"Quay\\quay.dwt",
                        "<html><head><title>Quay</title></head><body>"
                        "<!-- #BeginEditable \"body\" --><img src=\"images/stone.gif\">"
                        "<!-- #EndEditable --></body></html>");
    tool.disk.writeFile(L"Quay\\images\\stone.gif", "GIF89a");
    tool.disk.writeFile(L"Quay\\quillet.ini", "[quay]\r\nTitle=The Quay\r\nTheme=glass 1011\r\n");
    tool.disk.writeFile(L"glass\\glass.inf", "[info]\r\ntitle=Sea Glass\r\n");
    tool.disk.writeFile(L"glass\\glass.elm", "elements");
  }

  void publish() {
    const Tool::Outcome outcome =
        tool.run(L"catalogue Quay --theme glass -o site --url " + server.url(L"/shop"));
    REQUIRE(outcome.errors == "");
    REQUIRE(outcome.code == 0);
    for (const std::wstring& name : tool.disk.tree())
      if (name.starts_with(L"site\\") && name.back() != L'\\')
        server.change("/shop" + author::toUtf8(text::replaceAll(name.substr(4), L"\\", L"/")),
                      HttpServer::ok(tool.disk.readFile(name)));
  }

  // As a page's reader finds it.
  std::wstring downloadOf(const std::wstring& page) const {
    const std::wstring html = html::decodePage(tool.disk.readFile(L"site\\" + page));
    for (const author::Link& link : author::linksOfPage(html))
      if (link.address.starts_with(L"DWTOnlineDownload.htm?"))
        return server.url(L"/shop/" + link.address);
    return {};
  }
};

// The reader's: the folder for downloads and the one for themes are on the journey's disk.
void settle(Journey& journey, const std::wstring& startPage) {
  journey.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                             L"DWTOnline", startPage);
  journey.registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData",
                             journey.disk.makeFolder(L"data"));
  journey.registry.setNumber(HKEY_CURRENT_USER, internetSettings, L"ProxyEnable", 0);
  journey.disk.makeFolder(L"data\\Microsoft");
  journey.registry.setString(HKEY_CURRENT_USER, officeSettings, L"Themes", L"..\\..\\themes");
}

}  // namespace

TEST_CASE("A template that an author published reaches the web of whoever downloads it") {
  Workshop workshop;
  workshop.makeTemplate();
  const Tool::Outcome checked = workshop.tool.run(L"check Quay glass");
  CHECK(checked.output.ends_with("1 template and 1 theme: no finding.\n"));
  REQUIRE(checked.code == 0);
  workshop.publish();
  const Tool::Outcome published =
      workshop.tool.run(L"catalogue --check " + workshop.server.url(L"/shop/index.htm"));
  CHECK(published.output == "3 pages, 2 downloads and 2 archives: no finding.\n");
  REQUIRE(published.code == 0);

  // The version whose user has a folder for themes of their own.
  standin::HostOptions options;
  REQUIRE(options.set(L"version", L"6.0"));
  Journey journey(options);
  settle(journey, workshop.server.url(L"/shop/index.htm"));
  journey.start();
  journey.modal.onDialog(L"DWT Online", [&](HWND window) {
    CHECK_FALSE(journey.page.follow(workshop.downloadOf(L"the-quay.htm")));
    PostMessageW(window, WM_CLOSE, 0, 0);
  });
  REQUIRE(journey.host.click(dwtOnline));
  CHECK(journey.page.navigations() ==
        std::vector<std::wstring>{workshop.server.url(L"/shop/index.htm"),
                                  workshop.server.url(L"/shop/done.htm")});
  REQUIRE(journey.modal.boxes().size() == 1);
  CHECK(journey.modal.boxes()[0].text ==
        L"One or more DWTs that were installed use FrontPage theme.\r\n"
        L"You must restart FrontPage before you copy these DWTs to the web.");

  journey.copy(L"The Quay");
  const auto& titles = journey.titles();
  CHECK(std::find(titles.begin(), titles.end(), L"The Quay") != titles.end());
  const std::string page = journey.disk.readFile(L"webs\\my site\\dwts\\Quay\\quay.dwt");
  CHECK(page.find("<meta name=\"Microsoft Theme\" content=\"glass 1011\">") != page.npos);
  CHECK(journey.disk.readFile(L"webs\\my site\\dwts\\Quay\\images\\stone.gif") == "GIF89a");
  CHECK_FALSE(journey.disk.exists(L"webs\\my site\\dwts\\Quay\\quillet.ini"));
  CHECK(journey.disk.exists(L"webs\\my site\\_themes\\glass\\glass.elm"));
  journey.finish();
}
