// What the browser shows of a template, as rules.
#include "catalogue/Preview.h"
#include "catalogue/PageAddress.h"
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

TEST_CASE("a page is recognised however the browser writes its address") {
  CHECK(isSamePage(L"C:\\My pages\\a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file:///C:/My%20pages/a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file:///c:/my pages/A.HTM#below", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"C:\\a#b\\c.htm", L"C:\\a#b\\c.htm"));
  CHECK(isSamePage(L"about:blank", L"about:blank"));
}

TEST_CASE("another page is told from the one that was asked for") {
  CHECK_FALSE(isSamePage(L"C:\\My pages\\b.htm", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"http://server/a.htm", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"about:blank", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"file:" + std::wstring(3000, L'x'), L"C:\\My pages\\a.htm"));
}
