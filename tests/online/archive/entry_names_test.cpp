#include "online/archive/entry_names.h"

#include "tests/support/text_output.h"

TEST_CASE("a letter beyond the first 65,536 is read as the two halves that the system has for it") {
  CHECK(archive::fromUtf8("a\xF0\x9F\x9A\xA2\xF4\x8F\xBF\xBF"
                          "b") == std::wstring(L"a\xD83D\xDEA2\xDBFF\xDFFF"
                                               L"b"));
}
