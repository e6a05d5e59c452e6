#include "help/references.h"

#include "tests/support/text_output.h"

using namespace help;

TEST_CASE("files beside a page are found and no others") {
  const std::wstring page = L"C:\\t\\Blue\\readme.htm";
  CHECK(fileBeside(page, L"a.gif") == L"C:\\t\\Blue\\a.gif");
  CHECK(fileBeside(page, L"images/my%20logo.gif?x#y") == L"C:\\t\\Blue\\images\\my logo.gif");
  CHECK(fileBeside(page, L"caf%C3%A9.gif") == L"C:\\t\\Blue\\caf\xE9.gif");
  CHECK(fileBeside(page, L"50% off.gif") == L"C:\\t\\Blue\\50% off.gif");
  for (const wchar_t* address : {L"",
                                 L"#top",
                                 L"../a.gif",
                                 L"x\\..\\..\\a.gif",
                                 L"%2e%2e/a.gif",
                                 L"/a.gif",
                                 L"\\\\s\\a.gif",
                                 L"//s/a.gif",
                                 L"http://s/a.gif",
                                 L"file:///C:/a.gif",
                                 L"C:\\a.gif",
                                 L"a.gif:stream",
                                 L"javascript:x",
                                 L"a|b.gif",
                                 L"com1.gif",
                                 L"com1%00.gif",
                                 L"x.doc%00.gif",
                                 L"images/aux.htm",
                                 L"x/..%20/a.gif",
                                 L".. /a.gif",
                                 L"a.gif.",
                                 L"..%20"}) {
    CAPTURE(address);
    CHECK_FALSE(fileBeside(page, address).has_value());
  }
}

TEST_CASE("addresses of the web and of mail lead outside and others do not") {
  CHECK(isOutside(L"http://server/"));
  CHECK(isOutside(L"HTTPS://server/"));
  CHECK(isOutside(L"mailto:somebody@server"));
  for (const wchar_t* address : {L"file:///C:/x.exe", L"javascript:x", L"readme.htm", L"ftp:x",
                                 L"res://x", L"shell:x", L"http:x", L""})
    CHECK_FALSE(isOutside(address));
}
