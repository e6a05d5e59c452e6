#include "online/download_page.h"

#include "tests/support/text_output.h"

TEST_CASE("the download page is known in any letter case") {
  CHECK(isDownloadPage(L"/catalogue/DWTOnlineDownload.htm"));
  CHECK(isDownloadPage(L"/catalogue/dwtonlinedownload.HTM"));
}

TEST_CASE("a page whose name goes on after the download page's name triggers too") {
  CHECK(isDownloadPage(L"/DWTOnlineDownload.html"));
}

TEST_CASE("other pages and paths without a slash are no download page") {
  CHECK_FALSE(isDownloadPage(L"/catalogue/index.htm"));
  CHECK_FALSE(isDownloadPage(L"/DWTOnlineDownload.htm/more"));
  CHECK_FALSE(isDownloadPage(L"/DWTOnlineDownload.ht"));
  CHECK_FALSE(isDownloadPage(L"DWTOnlineDownload.htm"));
  CHECK_FALSE(isDownloadPage(L""));
}

TEST_CASE("the download page is known in a whole address by its last segment alone") {
  CHECK(isDownloadAddress(L"http://h/a/DWTONLINEDOWNLOAD.htm?dwt1=a"));
  CHECK(isDownloadAddress(L"http://h/DWTOnlineDownload.html#a/b"));
  CHECK_FALSE(isDownloadAddress(L"http://h/a.htm?/DWTOnlineDownload.htm"));
  CHECK_FALSE(isDownloadAddress(L"http://DWTOnlineDownload.htm?dwt1=a"));
  CHECK_FALSE(isDownloadAddress(L"DWTOnlineDownload.htm"));
  CHECK_FALSE(isDownloadAddress(L""));
}

TEST_CASE("the success page is the value of the first part of that name") {
  CHECK(successAddress(L"?dwt1=http://h/a.zip& Success=http://h/one.htm?x=1&success=two") ==
        L"http://h/one.htm?x=1");
}

TEST_CASE("a query without a question mark is read whole") {
  CHECK(successAddress(L"success=http://h/done.htm") == L"http://h/done.htm");
}

TEST_CASE("without a part named success there is no success page") {
  CHECK_FALSE(successAddress(L"?dwt1=a&success").has_value());
  CHECK_FALSE(successAddress(L"?successful=a").has_value());
  CHECK_FALSE(successAddress(L"").has_value());
}

TEST_CASE("what a page may name for success is an address of the network or the blank page") {
  CHECK(isShowable(L"http://h"));
  CHECK(isShowable(L"hTTps://ann@h:8080/a/b.htm?x=javascript:#y"));
  CHECK(isShowable(L"ftp://h/" + std::wstring(5000, L'x')));
  CHECK(isShowable(L"ABOUT:blank"));
  CHECK(isShowable(L"http://h/a b"));
  CHECK_FALSE(isShowable(L" http://h/"));
  CHECK_FALSE(isShowable(L"http:// /x"));
  CHECK_FALSE(isShowable(L"http://?x"));
  CHECK_FALSE(isShowable(L"http://#x"));
  CHECK_FALSE(isShowable(L"http://\\server\\share"));
  CHECK_FALSE(isShowable(L"gopher://h/"));
  CHECK_FALSE(isShowable(L"http\u017F://h/"));
  CHECK_FALSE(isShowable(L"\uFF48ttp://h/"));
  CHECK_FALSE(isShowable(L"about:blank "));
  CHECK_FALSE(isShowable(std::wstring_view(L"http://h/\0x", 11)));
  CHECK_FALSE(isShowable(L""));
}
