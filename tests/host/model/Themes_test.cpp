#include "host/model/Themes.h"
#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using standin::Host;
using standin::markedPage;

namespace {

struct ThemedWeb {
  ScratchFolder folder;
  ScratchFolder themes;
  Host host{{}, folder.path(), themes.path()};

  ThemedWeb() {
    themes.writeFile(L"blends\\blends.inf", "[info]");
    themes.writeFile(L"blends\\blends.elm", "elements");
    themes.writeFile(L"blends\\images\\dot.gif", "dot");
  }
  Answer apply(const wchar_t* file, std::vector<com::Variant> arguments) const {
    const LateBound web = LateBound(host.application()).child(L"ActiveWeb");
    return LateBound(web.call(L"LocateFile", {file})).call(L"ApplyTheme", std::move(arguments));
  }
};

}  // namespace

TEST_CASE("applying a theme marks the page and copies the theme into the web") {
  const ThemedWeb web;
  web.folder.writeFile(L"a.dwt", "<html>\r\n<head>\r\n<title>A</title>\r\n</head></html>");
  CHECK(web.apply(L"a.dwt", {L"Blends", 31}).result == S_OK);
  CHECK(web.folder.readFile(L"a.dwt") ==
        "<html>\r\n<head>\r\n<meta name=\"Microsoft Theme\" content=\"blends 001F\">\r\n"
        "<title>A</title>\r\n</head></html>");
  CHECK(web.folder.readFile(L"_themes\\blends\\blends.elm") == "elements");
  CHECK(web.folder.readFile(L"_themes\\blends\\images\\dot.gif") == "dot");
}

TEST_CASE("applying another theme replaces the mark") {
  const ThemedWeb web;
  web.themes.writeFile(L"sumi\\sumi.inf");
  web.themes.writeFile(L"sumi\\sumi.elm");
  web.folder.writeFile(L"a.htm", "<head></head>");
  CHECK(web.apply(L"a.htm", {L"blends", 0x1111}).result == S_OK);
  CHECK(web.apply(L"a.htm", {L"sumi"}).result == S_OK);
  CHECK(web.folder.readFile(L"a.htm") ==
        "<head>\r\n<meta name=\"Microsoft Theme\" content=\"sumi 0000\">\r\n</head>");
}

TEST_CASE("a page without a head gets one") {
  CHECK(markedPage("<html><body></body></html>", "t", 1) ==
        "<html>\r\n<head>\r\n<meta name=\"Microsoft Theme\" content=\"t 0001\">\r\n</head>\r\n"
        "<body></body></html>");
  CHECK(markedPage("text", "t", 1) ==
        "<head>\r\n<meta name=\"Microsoft Theme\" content=\"t 0001\">\r\n</head>\r\ntext");
}

TEST_CASE("a header element is not taken for the head") {
  CHECK(markedPage("<header></header><HEAD lang=en>\n</HEAD>", "t", 0) ==
        "<header></header><HEAD lang=en>\n"
        "<meta name=\"Microsoft Theme\" content=\"t 0000\">\r\n</HEAD>");
}

TEST_CASE("negative properties show their low 16 bits") {
  CHECK(markedPage("", "t", -1).find("\"t FFFF\"") != std::string::npos);
}

TEST_CASE("a theme that is not installed is refused and the page stays") {
  const ThemedWeb web;
  web.folder.writeFile(L"a.htm", "<head></head>");
  const Answer answer = web.apply(L"a.htm", {L"none", 1});
  CHECK(answer.result == DISP_E_EXCEPTION);
  CHECK(answer.description == L"The theme \"none\" is not installed.");
  CHECK(web.folder.readFile(L"a.htm") == "<head></head>");
  CHECK_FALSE(web.folder.exists(L"_themes"));
}

TEST_CASE("a theme is not applied to what is no page") {
  const ThemedWeb web;
  web.folder.writeFile(L"a.gif", "GIF89a");
  CHECK(web.apply(L"a.gif", {L"blends", 1}).result == DISP_E_EXCEPTION);
  CHECK(web.folder.readFile(L"a.gif") == "GIF89a");
}

TEST_CASE("theme properties that are no number are a type mismatch") {
  const ThemedWeb web;
  web.folder.writeFile(L"a.htm");
  CHECK(web.apply(L"a.htm", {L"blends", L"many"}).result == DISP_E_TYPEMISMATCH);
}
