#include "common/forms/PageAddress.h"

#include "tests/support/text_output.h"

using forms::isSamePage;

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
