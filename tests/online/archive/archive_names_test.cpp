#include "online/archive/archive_names.h"

#include "tests/support/text_output.h"

using archive::faultOf;
using archive::NameFault;

TEST_CASE("names that stay inside the folder may be unpacked") {
  CHECK(faultOf(L"page.htm") == NameFault::none);
  CHECK(faultOf(L"images/deep/er/back ground.gif") == NameFault::none);
  CHECK(faultOf(L"images/") == NameFault::none);
  CHECK(faultOf(L"./page.htm") == NameFault::none);
  CHECK(faultOf(L".hidden") == NameFault::none);
  CHECK(faultOf(L"a..b/c...d") == NameFault::none);
  CHECK(faultOf(L"console.htm") == NameFault::none);
  CHECK(faultOf(L"com/lpt/com10/aux1.txt") == NameFault::none);
  CHECK(faultOf(L"") == NameFault::none);
}

TEST_CASE("a name that climbs out is refused wherever its dots stand") {
  CHECK(faultOf(L"../page.htm") == NameFault::climbsOut);
  CHECK(faultOf(L"images/../../page.htm") == NameFault::climbsOut);
  CHECK(faultOf(L"..\\page.htm") == NameFault::climbsOut);
  CHECK(faultOf(L"images\\..\\page.htm") == NameFault::climbsOut);
  CHECK(faultOf(L"..") == NameFault::climbsOut);
  CHECK(faultOf(L"images/..") == NameFault::climbsOut);
}

TEST_CASE("a name that begins at a root is refused") {
  CHECK(faultOf(L"/page.htm") == NameFault::absolute);
  CHECK(faultOf(L"\\page.htm") == NameFault::absolute);
  CHECK(faultOf(L"//server/share/page.htm") == NameFault::absolute);
  CHECK(faultOf(L"\\\\?\\C:\\page.htm") == NameFault::absolute);
}

TEST_CASE("drive letters and streams are refused") {
  CHECK(faultOf(L"C:/page.htm") == NameFault::colon);
  CHECK(faultOf(L"c:page.htm") == NameFault::colon);
  CHECK(faultOf(L"page.htm:stream") == NameFault::colon);
  CHECK(faultOf(L"images/page.htm::$DATA") == NameFault::colon);
}

TEST_CASE("names of devices are refused with any ending and in any letter case") {
  for (const wchar_t* name :
       {L"CON", L"con.htm", L"images/Nul", L"aux.tar.gz", L"PRN ", L"nul .txt", L"com1", L"LPT9.x",
        L"Com\u00B2.txt", L"CONIN$", L"conout$.txt", L"prn/page.htm", L"COM0"}) {
    CAPTURE(std::wstring(name));
    CHECK(faultOf(name) != NameFault::none);
  }
  CHECK(faultOf(L"con.htm") == NameFault::reserved);
}

TEST_CASE("points and blanks at the end of a part are refused") {
  CHECK(faultOf(L"page.htm.") == NameFault::trailing);
  CHECK(faultOf(L"page.htm ") == NameFault::trailing);
  CHECK(faultOf(L".. /page.htm") == NameFault::trailing);
  CHECK(faultOf(L".../page.htm") == NameFault::trailing);
  CHECK(faultOf(L"images./page.htm") == NameFault::trailing);
}

TEST_CASE("an archive is a bomb when its contents are large and out of proportion") {
  constexpr double megabyte = 1024.0 * 1024.0;
  CHECK_FALSE(archive::isBomb(64 * megabyte, 1));
  CHECK(archive::isBomb(65 * megabyte, 1));
  CHECK_FALSE(archive::isBomb(250 * megabyte, megabyte));
  CHECK(archive::isBomb(251 * megabyte, megabyte));
  CHECK_FALSE(archive::isBomb(5000 * megabyte, 100 * megabyte));
}
