// Catalogues that are read over HTTP.
#include "author/published_catalogue.h"

#include "author/PageSource.h"
#include "author/disk.h"
#include "common/errors.h"
#include "tests/author/Catalogue.h"
#include "tests/author/Publishing.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/support/error_number.h"

using namespace author;

namespace {

// A page "index.htm" with one download, and what else the server has.
struct Shop {
  HttpServer server{{}};
  RecordedConsole console;

  std::wstring url(const std::wstring& path) const { return server.url(path); }
  void publish(const std::string& path, const std::string& bytes) {
    server.change(path, HttpServer::ok(bytes));
  }
  void offer(const std::wstring& list) {
    publish("/index.htm", "<html>\n<a href=\"DWTOnlineDownload.htm?" +
                              toUtf8(text::replaceAll(list, L"&", L"&amp;")) + "\">x</a></html>");
  }
  PublishedReport check() { return checkPublished(url(L"/index.htm"), console); }
  // The rule and line of each finding, and its first sentence.
  Told told() {
    Told lines;
    for (const Finding& each : check().findings)
      lines.push_back(std::to_wstring(each.line) + L" " + each.rule + L": " + each.what);
    return lines;
  }
};

std::string goodArchive() {
  return ZipMaker().add("Quay/quay.dwt", "a page").add("Quay/quay.css", "b {}").bytes();
}

}  // namespace

TEST_CASE("a catalogue that is published as it was made has no finding") {
  const PublishedSite site;
  RecordedConsole console;
  CHECK(runProgram({L"catalogue", L"--check", site.url(L"/index.htm")}, console) == fine);
  CHECK(console.printed == L"3 pages, 2 downloads and 2 archives: no finding.\n");
  CHECK(console.complained.empty());
}

TEST_CASE("a server's name alone is its root") {
  const PublishedSite site;
  RecordedConsole console;
  site.server->change("/", HttpServer::ok("<a href=\"index.htm\">x</a>"));
  CHECK(checkPublished(site.url(L""), console).findings.empty());
}

TEST_CASE("a published catalogue is told as JSON") {
  const PublishedSite site;
  RecordedConsole console;
  CHECK(runProgram({L"catalogue", L"--json", L"--check", site.url(L"/index.htm")}, console) ==
        fine);
  CHECK(
      console.printed.ends_with(L"  \"pages\": 3,\n  \"downloads\": 2,\n  \"archives\": 2,\n"
                                L"  \"findings\": [],\n  \"fine\": true\n}\n"));
}

TEST_CASE("a missing archive is told with the download's message") {
  Shop shop;
  shop.offer(L"dwt1=" + shop.url(L"/lost.zip"));
  const auto findings = shop.check().findings;
  REQUIRE(findings.size() == 1);
  CHECK(findings[0].rule == L"archive-unreachable");
  CHECK(findings[0].file == shop.url(L"/index.htm"));
  CHECK(findings[0].line == 2);
  CHECK(
      findings[0].effect ==
      L"The download ends with the message: Unable to locate file \" http://127.0.0.1/lost.zip \". "
      L"The file does not exist or the URL may be invalid.");
}

TEST_CASE("an address that the download does not take is told") {
  Shop shop;
  shop.offer(L"dwt1=pigeon://loft/letters.zip&dwt2=" + shop.url(L"/.hidden.zip"));
  CHECK(shop.told() ==
        Told{L"2 archive-unreachable: The archive pigeon://loft/letters.zip cannot be had.",
             L"2 archive-unreachable: The archive " + shop.url(L"/.hidden.zip") +
                 L" cannot be had."});
}

TEST_CASE("names in a list that mean nothing are told") {
  Shop shop;
  shop.publish("/a.zip", goodArchive());
  shop.publish("/done.htm", "x");
  shop.offer(L"dwt1=" + shop.url(L"/a.zip") + L"&dtw2=" + shop.url(L"/a.zip") +
             L"&dwtx=y&z&success=" + shop.url(L"/done.htm"));
  CHECK(shop.told() == Told{L"2 download-part: The part \"dtw2=" + shop.url(L"/a.zip") +
                                L"\" of the download's list is no archive's.",
                            L"2 download-part: The part \"dwtx=y\" of the download's list is no "
                            L"archive's.",
                            L"2 download-part: The part \"z\" of the download's list is no "
                            L"archive's."});
}

TEST_CASE("a list without archives is told") {
  Shop shop;
  shop.publish("/index.htm", "<a href=\"dwtonlinedownload.htm\">x</a>");
  CHECK(shop.told() == Told{L"1 download-empty: The download's address lists no archive: "});
}

TEST_CASE("a download's address that is too long is told") {
  Shop shop;
  shop.offer(L"dwt1=" + shop.url(L"/") + std::wstring(1100, L'x') + L".zip");
  const Told told = shop.told();
  REQUIRE(told.size() == 1);
  CHECK(told[0].starts_with(L"2 download-address: The download's address has 11"));
}

TEST_CASE("two archives of one number are told") {
  Shop shop;
  shop.publish("/a.zip", goodArchive());
  shop.offer(L"dwt1=" + shop.url(L"/a.zip") + L"&dwt1=" + shop.url(L"/a.zip"));
  CHECK(shop.told() ==
        Told{L"2 download-repeated: Two archives of the download have the same number."});
}

TEST_CASE("a page for success that is missing or cannot be shown is told") {
  Shop shop;
  shop.publish("/a.zip", goodArchive());
  shop.offer(L"dwt1=" + shop.url(L"/a.zip") + L"&success=done.htm");
  CHECK(shop.told() == Told{L"2 success-address: The page for success cannot be shown: done.htm"});
  shop.offer(L"dwt1=" + shop.url(L"/a.zip") + L"&success=" + shop.url(L"/done.htm"));
  CHECK(shop.told() == Told{L"2 success-missing: There is no page for success at " +
                            shop.url(L"/done.htm") + L"."});
}

TEST_CASE("an archive without a length is told to be read as nothing") {
  Shop shop;
  shop.server.change("/a.zip", HttpServer::raw("HTTP/1.0 200 OK\r\n\r\n" + goodArchive()));
  shop.offer(L"dwt1=" + shop.url(L"/a.zip"));
  CHECK(shop.told() == Told{L"2 archive-without-length: The server does not tell the length of the "
                            L"archive " +
                            shop.url(L"/a.zip") + L", or it is empty."});
}

TEST_CASE("a page of more than 4 MB is told") {
  Shop shop;
  shop.publish("/index.htm", std::string(PageSource::largestPage + 1, ' '));
  CHECK(TemplateOnDisk::told(shop.check().findings) ==
        Told{shop.url(L"/index.htm") +
             L":0: page-too-large: The page is larger than 4 MB, or ends early. | It is shown "
             L"after a long time, or not at all. | Make several pages of it, or see why the server "
             L"breaks it off."});
}

TEST_CASE("an archive that ends early is told") {
  Shop shop;
  shop.server.change("/a.zip", HttpServer::raw(HttpServer::head(5000) + goodArchive()));
  shop.offer(L"dwt1=" + shop.url(L"/a.zip"));
  const auto findings = shop.check().findings;
  REQUIRE(findings.size() == 1);
  CHECK(findings[0].rule == L"archive-broken-off");
  CHECK(findings[0].effect ==
        L"The download ends with the message: Unable to read the current file.");
}

TEST_CASE("archives that our unpacking refuses are told with its reason") {
  Shop shop;
  shop.publish("/wet.zip", "no archive");
  shop.publish("/out.zip", ZipMaker().add("../quay.dwt", "x").bytes());
  shop.offer(L"dwt1=" + shop.url(L"/wet.zip") + L"&dwt2=" + shop.url(L"/out.zip"));
  const auto findings = shop.check().findings;
  REQUIRE(findings.size() == 2);
  CHECK(findings[0].rule == L"archive-damaged");
  CHECK(findings[1].rule == L"archive-refused");
  CHECK(findings[1].effect == L"The download ends with the message: The archive \" " +
                                  shop.url(L"/out.zip") +
                                  L" \" was not unpacked. The name of a file in it is not safe, "
                                  L"since it could lead outside "
                                  L"of the chosen folder : ../quay.dwt");
}

TEST_CASE("archives whose templates and themes would not be found are told") {
  Shop shop;
  shop.publish("/flat.zip", ZipMaker().add("quay.dwt", "x").bytes());
  shop.publish("/deep.zip", ZipMaker().add("a/b.dwt/quay.dwt", "x").bytes());
  shop.publish("/theme.zip", ZipMaker().add("glass/other.inf", "x").bytes());
  shop.offer(L"dwt1=" + shop.url(L"/flat.zip") + L"&dwt2=" + shop.url(L"/deep.zip") + L"&theme3=" +
             shop.url(L"/theme.zip"));
  CHECK(shop.told() == Told{L"2 archive-layout: The archive " + shop.url(L"/flat.zip") +
                                L" has no .dwt file in a folder of its own.",
                            L"2 archive-layout: The archive " + shop.url(L"/deep.zip") +
                                L" has no .dwt file in a folder of its own.",
                            L"2 archive-layout: The archive " + shop.url(L"/theme.zip") +
                                L" has no theme: no folder \"name\" with a \"name.inf\"."});
}

TEST_CASE("each archive is downloaded once however many pages lead to it") {
  Shop shop;
  shop.publish("/a.zip", goodArchive());
  shop.publish("/index.htm", "<a href=two.htm>x</a><a href=\"DWTOnlineDownload.htm?dwt1=" +
                                 toUtf8(shop.url(L"/a.zip")) + "\">x</a>");
  shop.publish("/two.htm", "<a href=index.htm#top>x</a><a href=\"DWTOnlineDownload.htm?dwt2=" +
                               toUtf8(shop.url(L"/a.zip")) + "\">x</a>");
  const PublishedReport report = shop.check();
  CHECK(report.findings.empty());
  CHECK(report.pages == 2);
  CHECK(report.downloads == 2);
  CHECK(report.archives == 1);
}

TEST_CASE("links of a catalogue to what is missing are told and other places are left alone") {
  Shop shop;
  shop.server.change(
      "/shop/index.htm",
      HttpServer::ok("<a href=gone.htm>x</a>\n<img src=gone.gif>\n<a href=../up.htm>x"
                     "</a><a href=http://127.0.0.1:1/x.htm>x</a>"));
  const auto findings = checkPublished(shop.url(L"/shop/index.htm"), shop.console).findings;
  REQUIRE(findings.size() == 2);
  CHECK(findings[0].line == 1);
  CHECK(findings[0].what ==
        L"The address \"" + shop.url(L"/shop/gone.htm") + L"\" leads to nothing.");
  CHECK(findings[1].line == 2);
}

TEST_CASE("an address without a server ends the check with a sentence") {
  RecordedConsole console;
  CHECK(runProgram({L"catalogue", L"--check", L"http://127.0.0.1:1/index.htm"}, console) ==
        findingsOrFailure);
  CHECK(console.complained ==
        L"quillet-template: http://127.0.0.1:1/index.htm: The attempt to connect "
        L"to the server failed.\n");
  console.complained.clear();
  Shop shop;
  CHECK(runProgram({L"catalogue", L"--check", shop.url(L"/index.htm")}, console) ==
        findingsOrFailure);
  CHECK(console.complained ==
        L"quillet-template: " + shop.url(L"/index.htm") + L": The server answers with 404.\n");
  console.complained.clear();
  CHECK(runProgram({L"catalogue", L"--check", L"nonsense"}, console) == notUnderstood);
  CHECK(console.complained ==
        L"quillet-template: The address nonsense is none of a web server's pages.\n");
}

TEST_CASE("a check of a published catalogue that is stopped ends") {
  const PublishedSite site;
  RecordedConsole console;
  console.goesOn = 5;
  CHECK(numberOf([&] { checkPublished(site.url(L"/index.htm"), console); }) == errors::cancelled);
}
