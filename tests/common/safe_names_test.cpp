#include "common/safe_names.h"

#include "tests/support/text_output.h"

using names::Fault;
using names::faultOf;

TEST_CASE("names that stay inside the folder may be unpacked") {
  CHECK(faultOf(L"page.htm") == Fault::none);
  CHECK(faultOf(L"images/deep/er/back ground.gif") == Fault::none);
  CHECK(faultOf(L"images/") == Fault::none);
  CHECK(faultOf(L"./page.htm") == Fault::none);
  CHECK(faultOf(L".hidden") == Fault::none);
  CHECK(faultOf(L"a..b/c...d") == Fault::none);
  CHECK(faultOf(L"console.htm") == Fault::none);
  CHECK(faultOf(L"com/lpt/com10/aux1.txt") == Fault::none);
  CHECK(faultOf(L"") == Fault::none);
}

TEST_CASE("a name that climbs out is refused wherever its dots stand") {
  CHECK(faultOf(L"../page.htm") == Fault::climbsOut);
  CHECK(faultOf(L"images/../../page.htm") == Fault::climbsOut);
  CHECK(faultOf(L"..\\page.htm") == Fault::climbsOut);
  CHECK(faultOf(L"images\\..\\page.htm") == Fault::climbsOut);
  CHECK(faultOf(L"..") == Fault::climbsOut);
  CHECK(faultOf(L"images/..") == Fault::climbsOut);
}

TEST_CASE("a name that begins at a root is refused") {
  CHECK(faultOf(L"/page.htm") == Fault::absolute);
  CHECK(faultOf(L"\\page.htm") == Fault::absolute);
  CHECK(faultOf(L"//server/share/page.htm") == Fault::absolute);
  CHECK(faultOf(L"\\\\?\\C:\\page.htm") == Fault::absolute);
}

TEST_CASE("drive letters and streams are refused") {
  CHECK(faultOf(L"C:/page.htm") == Fault::colon);
  CHECK(faultOf(L"c:page.htm") == Fault::colon);
  CHECK(faultOf(L"page.htm:stream") == Fault::colon);
  CHECK(faultOf(L"images/page.htm::$DATA") == Fault::colon);
}

TEST_CASE("names of devices are refused with any ending and in any letter case") {
  for (const wchar_t* name :
       {L"CON", L"con.htm", L"images/Nul", L"aux.tar.gz", L"PRN ", L"nul .txt", L"com1", L"LPT9.x",
        L"Com\u00B2.txt", L"CONIN$", L"conout$.txt", L"prn/page.htm", L"COM0"}) {
    CAPTURE(std::wstring(name));
    CHECK(faultOf(name) != Fault::none);
  }
  CHECK(faultOf(L"con.htm") == Fault::reserved);
}

TEST_CASE("points and blanks at the end of a part are refused") {
  CHECK(faultOf(L"page.htm.") == Fault::trailing);
  CHECK(faultOf(L"page.htm ") == Fault::trailing);
  CHECK(faultOf(L".. /page.htm") == Fault::trailing);
  CHECK(faultOf(L".../page.htm") == Fault::trailing);
  CHECK(faultOf(L"images./page.htm") == Fault::trailing);
}
