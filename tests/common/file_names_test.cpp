#include "common/file_names.h"

#include <string>

#include "tests/support/text_output.h"

using modCommon::IsValidFileName;

TEST_CASE("an empty file name and one of blanks are not valid") {
  CHECK_FALSE(IsValidFileName(L""));
  CHECK_FALSE(IsValidFileName(L"   "));
}

TEST_CASE("a file name with a point and an inner blank is valid") {
  CHECK(IsValidFileName(L"my page.htm"));
  CHECK(IsValidFileName(L"  my page.htm  "));
  CHECK(IsValidFileName(L"\u00e4\u0416'#%&"));
}

TEST_CASE("a file name with any of the nine forbidden characters is not valid") {
  for (const wchar_t forbidden : std::wstring(L"\\/:*?<>|\"")) {
    const std::wstring character(1, forbidden);
    CAPTURE(character);
    CHECK_FALSE(IsValidFileName(L"a" + character + L"b"));
    CHECK_FALSE(IsValidFileName(character));
    CHECK_FALSE(IsValidFileName(L"ab" + character));
  }
}
