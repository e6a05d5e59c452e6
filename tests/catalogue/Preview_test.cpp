// What the browser shows of a template, as rules.
#include "catalogue/Preview.h"
#include "tests/support/text_output.h"

TEST_CASE("zoomed lengths are rounded to the nearest pixel and halves to the even one") {
  CHECK(zoomed(201, 75) == 151);
  CHECK(zoomed(100, 75) == 75);
  CHECK(zoomed(201, 50) == 100);
  CHECK(zoomed(203, 50) == 102);
  CHECK(zoomed(1, 50) == 0);
  CHECK(zoomed(3, 50) == 2);
  CHECK(zoomed(30000000, 100) == 30000000);
  CHECK(zoomed(0, 75) == 0);
}

TEST_CASE("the heading tells a picture from a page") {
  CHECK(previewOf(L"C:\\t\\home.dwt", {L"Home", L"d", L"C:\\t\\a.JPEG", L"C:\\t\\n.htm"}).heading ==
        L"Preview : Home     [Image Preview]");
  CHECK(previewOf(L"C:\\t\\home.dwt", {L"Home", L"d", L"C:\\t\\a.htm", L"C:\\t\\n.htm"}).heading ==
        L"Preview : Home     [HTML Preview]");
}

TEST_CASE("a template without a preview is its own preview and notes") {
  const Preview preview = previewOf(L"C:\\t\\home.dwt", {L"Home", L"d", L"", L""});
  CHECK(preview.file == L"C:\\t\\home.dwt");
  CHECK(preview.notes == L"C:\\t\\home.dwt");
  CHECK(preview.description == L"d");
  CHECK_FALSE(preview.isImage);
}

TEST_CASE("every backslash of a wrappable path has a blank behind it") {
  CHECK(wrappable(L"C:\\a\\\\b") == L"C:\\ a\\ \\ b");
  CHECK(wrappable(L"").empty());
}

TEST_CASE("pages, texts and pictures are what the engine shows itself") {
  for (const wchar_t* name :
       {L"a.dwt", L"C:\\x\\a.HTM", L"a.html", L"a.xhtml", L"a.shtm", L"a.shtml", L"a.stm", L"a.asp",
        L"a.aspx", L"a.php", L"a.cfm", L"a.jsp", L"a.txt", L"a.gif", L"a.jpg", L"a.jpeg", L"a.png",
        L"a.bmp", L".htm"}) {
    CAPTURE(name);
    CHECK(isPageFile(name));
  }
  for (const wchar_t* name :
       {L"a.doc", L"a.pdf", L"a.exe", L"a.htm.exe", L"a.xml", L"a.mht", L"a.svg", L"a.hta", L"a.js",
        L"a.url", L"a.htm.", L"htm", L"C:\\x.htm\\a", L""}) {
    CAPTURE(name);
    CHECK_FALSE(isPageFile(name));
  }
}
