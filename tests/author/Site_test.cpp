// Catalogues as they are made.
#include "author/Site.h"

#include "author/Sha256.h"
#include "author/page_text.h"
#include "common/text.h"
#include "html/encoding.h"
#include "online/download_page.h"
#include "online/transfer/DownloadTable.h"
#include "online/transfer/modWINInetURL.h"
#include "tests/author/Catalogue.h"
#include "tests/author/FullDisk.h"
#include "tests/online/archive/UnpackingBoxes.h"
#include "tests/support/ImportPatch.h"

using namespace author;

namespace {

// What the first link of a page to the download page asks for.
std::wstring downloadIn(const std::string& page) {
  for (const Link& link : linksOfPage(html::decodePage(page)))
    if (isDownloadAddress(link.address) || link.address.starts_with(L"DWTOnlineDownload"))
      return link.address;
  return {};
}

// Its second file or folder that is to move stays where it is.
class SecondMove {
 public:
  SecondMove() { moves_ = 0; }

 private:
  static BOOL WINAPI move(LPCWSTR from, LPCWSTR to) {
    if (++moves_ != 2) return MoveFileExW(from, to, MOVEFILE_COPY_ALLOWED);
    SetLastError(ERROR_SHARING_VIOLATION);
    return FALSE;
  }
  static inline int moves_ = 0;
  ImportPatch patch_{nullptr, "kernel32.dll", "MoveFileW", move};
};

}  // namespace

TEST_CASE("a catalogue is a site of pages and pictures and archives") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  CHECK(catalogue.out.tree() == Told{L"site\\", L"site\\DWTOnlineDownload.htm", L"site\\archives\\",
                                     L"site\\archives\\SHA256SUMS", L"site\\archives\\glass.zip",
                                     L"site\\archives\\quay.zip", L"site\\catalogue.css",
                                     L"site\\catalogue.json", L"site\\done.htm", L"site\\images\\",
                                     L"site\\images\\mark.gif", L"site\\images\\none.gif",
                                     L"site\\images\\the-quay.gif", L"site\\index.htm",
                                     L"site\\the-quay.htm", L"site\\theme-sea-glass.htm"});
  CHECK(catalogue.console.printed.ends_with(L"5 pages and 2 archives. The catalogue is in " +
                                            (catalogue.out / L"site") + L".\n"));
  CHECK(catalogue.console.printed.find(L"Note:") == std::wstring::npos);
}

TEST_CASE("the start page shows each template with its picture and leads to its page") {
  Catalogue catalogue;
  REQUIRE(catalogue.make({L"--title", L"Stones & Co"}) == fine);
  const std::string page = catalogue.read(L"index.htm");
  CHECK(holds(page, "<title>Stones &amp; Co</title>"));
  CHECK(holds(page,
              "<a href=\"the-quay.htm\"><img src=\"images/the-quay.gif\" width=\"201\" "
              "height=\"100\" border=\"0\" alt=\"Preview of The &lt;Quay&gt;\"></a>"));
  CHECK(holds(page, "<h3><a href=\"the-quay.htm\">The &lt;Quay&gt;</a></h3>"));
  CHECK(holds(page, "<p>Stone &amp; water.</p>"));
  CHECK(holds(page, "alt=\"There is no picture of Sea Glass\""));
}

TEST_CASE("a picture that is too large for its place is shown smaller in its own shape") {
  const auto sizesOf = [](int width, int height) {
    Catalogue catalogue;
    catalogue.quay.write(L"previewquay.gif", pictures::blueGifOf(width, height));
    REQUIRE(catalogue.make() == fine);
    const auto sizeIn = [&](const wchar_t* name) {
      const std::string page = catalogue.read(name);
      const auto from = page.find("width=", page.find("images/the-quay.gif"));
      const auto end = page.find('"', page.find("height=", from) + 8) + 1;
      return page.substr(from, end - from);
    };
    return std::vector{sizeIn(L"index.htm"), sizeIn(L"the-quay.htm")};
  };
  using Sizes = std::vector<std::string>;
  CHECK(sizesOf(408, 100) == Sizes{"width=\"204\" height=\"50\"", "width=\"408\" height=\"100\""});
  CHECK(sizesOf(100, 272) == Sizes{"width=\"50\" height=\"136\"", "width=\"100\" height=\"272\""});
  CHECK(sizesOf(204, 136) == Sizes{"width=\"204\" height=\"136\"", "width=\"204\" height=\"136\""});
  CHECK(sizesOf(840, 2) == Sizes{"width=\"204\" height=\"1\"", "width=\"420\" height=\"1\""});
}

TEST_CASE("a template's page leads to the download of its archive and its theme") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  const std::string page = catalogue.read(L"the-quay.htm");
  const std::wstring download = downloadIn(page);
  CHECK(download ==
        L"DWTOnlineDownload.htm?theme1=http://example.invalid/shop/archives/glass.zip"
        L"&dwt1=http://example.invalid/shop/archives/quay.zip"
        L"&success=http://example.invalid/shop/done.htm");
  DownloadTable table;
  table.fill(modWINInetURL::CrackUrl(L"http://example.invalid/shop/" + download)->extraInfo);
  CHECK(table.itemCount() == 1);
  CHECK(table.places().size() == 2);
  CHECK(holds(page, "Download template and theme</b></a>"));
  CHECK(holds(page, "<li>body</li>"));
  CHECK(holds(page, "SHA-256<br><font face=\"Courier New\" size=\"1\">" +
                        toUtf8(sha256Of(catalogue.read(L"archives\\quay.zip"))) + "</font>"));
}

TEST_CASE("a template without a theme is downloaded alone") {
  Catalogue catalogue;
  catalogue.quay.describe("Title=The Quay\r\n");
  REQUIRE(catalogue.make() == fine);
  const std::string page = catalogue.read(L"the-quay.htm");
  CHECK(downloadIn(page) ==
        L"DWTOnlineDownload.htm?dwt1=http://example.invalid/shop/archives/quay.zip"
        L"&success=http://example.invalid/shop/done.htm");
  CHECK(holds(page, "Download template</b></a>"));
  CHECK(holds(catalogue.read(L"theme-sea-glass.htm"), "Download theme</b></a>"));
  CHECK(downloadIn(catalogue.read(L"theme-sea-glass.htm")) ==
        L"DWTOnlineDownload.htm?theme1=http://example.invalid/shop/archives/glass.zip"
        L"&success=http://example.invalid/shop/done.htm");
}

TEST_CASE("a catalogue's archives unpack and have their check sums beside them") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  CHECK(catalogue.read(L"archives\\SHA256SUMS") ==
        toUtf8(sha256Of(catalogue.read(L"archives\\quay.zip"))) + "  quay.zip\n" +
            toUtf8(sha256Of(catalogue.read(L"archives\\glass.zip"))) + "  glass.zip\n");
  CHECK(unzipFiles(catalogue.out / L"site\\archives\\quay.zip",
                   catalogue.out.makeFolder(L"unpacked")));
  CHECK(catalogue.out.readFile(L"unpacked\\Quay\\quay.dwt") == quayPage);
}

TEST_CASE("pages are such as programs without styles and pictures can tell") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  for (const wchar_t* name : {L"index.htm", L"the-quay.htm", L"theme-sea-glass.htm", L"done.htm",
                              L"DWTOnlineDownload.htm"}) {
    const std::string page = catalogue.read(name);
    CHECK(holds(page, "<html lang=\"en\">"));
    CHECK(holds(page, "<h1>"));
    CHECK(!holds(page, "{{"));
    std::size_t pictures = 0;
    std::size_t described = 0;
    for (auto at = page.find("<img "); at != page.npos; at = page.find("<img ", at + 1)) {
      ++pictures;
      if (holds(page.substr(at, page.find('>', at) - at), " alt=\"")) ++described;
    }
    CHECK(pictures == described);
  }
}

// HTML lets it hold words only; browsers of that time and today's mend the rest in different ways.
TEST_CASE("no font of a page holds a heading or paragraph or list or table") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  for (const wchar_t* name : {L"index.htm", L"the-quay.htm", L"theme-sea-glass.htm", L"done.htm",
                              L"DWTOnlineDownload.htm"}) {
    CAPTURE(name);
    const std::string page = catalogue.read(name);
    int fonts = 0;
    for (auto at = page.find('<'); at != page.npos; at = page.find('<', at + 1)) {
      const std::string tag = page.substr(at, page.find_first_of(" >", at) - at);
      if (tag == "<font") ++fonts;
      if (tag == "</font") --fonts;
      for (const char* block : {"<h1", "<h2", "<h3", "<p", "<ul", "<li", "<table", "<td", "<hr"})
        CHECK_FALSE((fonts > 0 && tag == block));
    }
    CHECK(fonts == 0);
  }
}

TEST_CASE("a theme that the catalogue lacks is noted") {
  Catalogue catalogue;
  catalogue.quay.describe("Theme=Blends 1011\r\n");
  REQUIRE(catalogue.make() == fine);
  CHECK(catalogue.console.printed.find(
            L"Note: quay is made for the theme \"Blends\", which the catalogue does not offer. Who "
            L"does not have it gets the template without a theme.\n") != std::wstring::npos);
}

TEST_CASE("a catalogue is made with an author's own pages") {
  Catalogue catalogue;
  const ScratchFolder pages;
  pages.writeFile(L"template.htm",
                  "\xEF\xBB\xBF<html>{{name}} {{title}} {{downloadAndClose}}</html>");
  pages.writeFile(L"about.htm", "<a href=\"gone.htm\">{{url}}</a>");
  pages.writeFile(L"images\\logo.gif", "GIF {{not a gap}}");
  REQUIRE(catalogue.make({L"--pages", pages.path()}) == fine);
  CHECK(catalogue.read(L"the-quay.htm") ==
        "\xEF\xBB\xBF<html>The &lt;Quay&gt; Dynamic Web Templates "
        "DWTOnlineDownload.htm?theme1=http://example.invalid/shop/archives/glass.zip&amp;"
        "dwt1=http://example.invalid/shop/archives/quay.zip</html>");
  CHECK(catalogue.read(L"about.htm") ==
        "\xEF\xBB\xBF<a href=\"gone.htm\">http://example.invalid/shop</a>");
  CHECK(catalogue.read(L"images\\logo.gif") == "GIF {{not a gap}}");
  CHECK(catalogue.console.printed.find(
            L"Note: about.htm, line 1: \"gone.htm\" leads to no file of the catalogue.\n") !=
        std::wstring::npos);
}

TEST_CASE("an author's own page is read in its encoding and written in one that has every title") {
  Catalogue catalogue;
  const ScratchFolder pages;
  pages.writeFile(L"index.htm",
                  "<meta content=\"text/html; charset=windows-1252\">gr\xFCn {{title}}");
  REQUIRE(catalogue.make({L"--pages", pages.path(), L"--title", L"\u6E2F"}) == fine);
  CHECK(catalogue.read(L"index.htm") ==
        "<meta content=\"text/html; charset=utf-8\">gr\xC3\xBCn \xE6\xB8\xAF");
}

TEST_CASE("a page that is not well made leaves no catalogue") {
  Catalogue catalogue;
  const ScratchFolder pages;
  pages.writeFile(L"index.htm", "a\n{{nmae}}");
  CHECK(catalogue.make({L"--pages", pages.path()}) == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: The page index.htm: Line 2: There is no text \"nmae\" here.\n");
  CHECK(catalogue.out.tree() == Told{});
}

TEST_CASE("the pages that catalogues are made with can be had and used unchanged") {
  Catalogue catalogue;
  const std::wstring pages = catalogue.out / L"pages";
  CHECK(runProgram({L"pages", L"-o", pages}, catalogue.console) == fine);
  CHECK(catalogue.console.printed == L"The pages are in " + pages + L".\n");
  REQUIRE(catalogue.make() == fine);
  const std::string first = catalogue.read(L"index.htm");
  REQUIRE(catalogue.make({L"--pages", pages}) == fine);
  CHECK(catalogue.read(L"index.htm") == first);
  CHECK(runProgram({L"pages", L"-o", pages}, catalogue.console) == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: " + pages + L": There is something already.\n");
}

TEST_CASE("a folder of pages that is not there is an error with its name") {
  Catalogue catalogue;
  const std::wstring gone = catalogue.out / L"gone";
  CHECK(catalogue.make({L"--pages", gone}) == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: " + gone + L": There is no such folder of pages.\n");
  CHECK(catalogue.out.tree() == Told{});
}

TEST_CASE("where pages were written is told as JSON") {
  const ScratchFolder out;
  RecordedConsole console;
  CHECK(runProgram({L"pages", L"--json", L"-o", out / L"pages"}, console) == fine);
  CHECK(console.printed.ends_with(L",\n  \"folder\": \"" +
                                  text::replaceAll(out / L"pages", L"\\", L"\\\\") +
                                  L"\",\n  \"fine\": true\n}\n"));
}

TEST_CASE("a full disk leaves no pages behind") {
  const ScratchFolder out;
  RecordedConsole console;
  const FullDisk disk(3000);
  CHECK(runProgram({L"pages", L"-o", out / L"pages"}, console) == findingsOrFailure);
  CHECK(console.complained.ends_with(L": Disk full.\n"));
  CHECK(out.tree() == Told{});
}

TEST_CASE("a catalogue takes the place of an earlier one and of nothing else") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  catalogue.out.writeFile(L"site\\old.htm", "x");
  REQUIRE(catalogue.make() == fine);
  CHECK(!catalogue.out.exists(L"site\\old.htm"));
  CHECK(catalogue.out.exists(L"site\\index.htm"));
  DeleteFileW((catalogue.out / L"site\\catalogue.json").c_str());
  const Told before = catalogue.out.tree();
  CHECK(catalogue.make() == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: " + (catalogue.out / L"site") +
            L": There is something else than a catalogue. It is left as it is.\n");
  CHECK(catalogue.out.tree() == before);
}

TEST_CASE("a full disk leaves the catalogue of before and nothing else") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  const Told before = catalogue.out.tree();
  const std::string index = catalogue.read(L"index.htm");
  catalogue.quay.describe("Title=Another\r\n");
  for (const DWORD room : {0u, 3000u, 8000u}) {
    const FullDisk disk(room);
    CHECK(catalogue.make() == findingsOrFailure);
  }
  CHECK(catalogue.console.complained.ends_with(L": Disk full.\n"));
  CHECK(catalogue.out.tree() == before);
  CHECK(catalogue.read(L"index.htm") == index);
}

TEST_CASE("a catalogue that cannot take its place leaves the one of before") {
  Catalogue catalogue;
  REQUIRE(catalogue.make() == fine);
  const Told before = catalogue.out.tree();
  const std::string index = catalogue.read(L"index.htm");
  catalogue.quay.describe("Title=Another\r\n");
  const SecondMove refused;
  CHECK(catalogue.make() == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: " + (catalogue.out / L"site") + L": Permission denied.\n");
  CHECK(catalogue.out.tree() == before);
  CHECK(catalogue.read(L"index.htm") == index);
}

TEST_CASE("a whole drive is no place for a catalogue") {
  Catalogue catalogue;
  const std::vector<std::wstring> arguments = {
      L"catalogue", catalogue.quay.folder, L"--theme", catalogue.quay.disk / L"glass",
      L"--url",     L"http://a",           L"-o",      L"C:\\"};
  CHECK(runProgram(arguments, catalogue.console) == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: C:\\: A catalogue needs a folder of its own.\n");
}

TEST_CASE("a stopped catalogue leaves nothing behind") {
  Catalogue catalogue;
  REQUIRE(catalogue.make({L"-o"}) == notUnderstood);
  const int start = catalogue.console.goesOn;
  REQUIRE(catalogue.make() == fine);
  const int needed = start - catalogue.console.goesOn;
  const Told before = catalogue.out.tree();
  for (int steps = 0; steps < needed; steps += 3) {
    catalogue.console.goesOn = steps;
    CHECK(catalogue.make() == findingsOrFailure);
    CHECK(catalogue.out.tree() == before);
  }
}

TEST_CASE("a finding keeps a catalogue from being made unless it is to be made anyway") {
  Catalogue catalogue;
  catalogue.quay.write(L"old.gif", "x");
  CHECK(catalogue.make() == findingsOrFailure);
  CHECK(catalogue.out.tree() == Told{});
  CHECK(catalogue.make({L"--anyway"}) == fine);
}

TEST_CASE("an address that nothing can be downloaded from is not understood") {
  Catalogue catalogue(L"https://example.invalid/");
  CHECK(catalogue.make() == notUnderstood);
  CHECK(catalogue.console.complained ==
        L"quillet-template: The address https://example.invalid/ is none that templates can be "
        L"downloaded from: it has to begin with http:// or ftp://.\n");
  CHECK(addressFault(L"http://a/b&c") ==
        L"The address http://a/b&c holds a character that the download's list cannot: letters, "
        L"digits, "
        L"\".\", \"-\", \"_\", \"/\" and escapes like %20 are good.");
  CHECK(!addressFault(L"http://a/b?c").empty());
  CHECK(!addressFault(L"http://a/b\x7F").empty());
  CHECK(!addressFault(L"http://a/b c").empty());
  CHECK(addressFault(L"http://a/~b!").empty());
  CHECK(!addressFault(L"http://").empty());
  CHECK(!addressFault(L"nonsense").empty());
  CHECK(addressFault(L"ftp://a:2121/b").empty());
  CHECK(addressFault(L"http://127.0.0.1:8080").empty());
}

TEST_CASE("an address too long for the download's list is refused before anything is made") {
  const std::wstring address = L"http://example.invalid/" + std::wstring(400, L'x');
  Catalogue catalogue(address);
  CHECK(catalogue.make() == findingsOrFailure);
  CHECK(catalogue.console.complained.starts_with(
      L"quillet-template: The download of The <Quay> would have an address of "));
  CHECK(catalogue.out.tree() == Told{});
}

TEST_CASE("a catalogue of nothing is not made") {
  Catalogue catalogue;
  DeleteFileW((catalogue.quay.folder + L"\\quay.dwt").c_str());
  const std::vector<std::wstring> arguments = {
      L"catalogue", catalogue.quay.folder, L"-o",      catalogue.out / L"site",
      L"--url",     L"http://a",           L"--anyway"};
  CHECK(runProgram(arguments, catalogue.console) == findingsOrFailure);
  CHECK(catalogue.console.complained ==
        L"quillet-template: There is neither a template nor a theme to offer.\n");
}

TEST_CASE("templates of one title have pages of their own") {
  Catalogue catalogue;
  catalogue.quay.disk.writeFile(L"Pier\\pier.dwt", quayPage);
  catalogue.quay.disk.writeFile(L"Pier\\quay.css", "b {}");
  catalogue.quay.disk.writeFile(L"Pier\\quillet.ini", "[pier]\r\nTitle=The <Quay>\r\n");
  REQUIRE(catalogue.make({catalogue.quay.disk / L"Pier"}) == fine);
  CHECK(catalogue.out.exists(L"site\\the-quay.htm"));
  CHECK(catalogue.out.exists(L"site\\the-quay-2.htm"));
}

TEST_CASE("templates of one folder lead to each other") {
  Catalogue catalogue;
  catalogue.quay.write(L"pier.dwt", quayPage);
  REQUIRE(catalogue.make() == fine);
  CHECK(
      holds(catalogue.read(L"the-quay.htm"), "In the same folder: <a href=\"pier.htm\">pier</a>"));
  CHECK(holds(catalogue.read(L"pier.htm"),
              "In the same folder: <a href=\"the-quay.htm\">The &lt;Quay&gt;</a>"));
}

TEST_CASE("a catalogue is told as JSON with its archives and notes") {
  Catalogue catalogue;
  catalogue.quay.describe("Title=The Quay\r\nTheme=pearl 1011\r\n");
  REQUIRE(catalogue.make({L"--json"}) == fine);
  const std::string told = toUtf8(catalogue.console.printed);
  const std::string bytes = catalogue.read(L"archives\\quay.zip");
  CHECK(holds(told,
              "  \"archives\": [\n    {\n      \"file\": \"quay.zip\",\n      \"files\": 5,\n"
              "      \"bytes\": " +
                  std::to_string(bytes.size()) + ",\n      \"sha256\": \"" +
                  toUtf8(sha256Of(bytes)) + "\"\n    },\n    {\n      \"file\": \"glass.zip\""));
  CHECK(holds(told, "  \"notes\": [\n    \"The "));
  CHECK(told.ends_with("  ],\n  \"pages\": 5,\n  \"fine\": true\n}\n"));
}
