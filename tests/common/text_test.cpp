#include "common/text.h"

#include "tests/support/text_output.h"

TEST_CASE("a message pattern gets its line breaks before its argument") {
  CHECK(text::message(L"The DWT named | \" %s. \"|", L"a|b") ==
        L"The DWT named \r\n \" a|b. \"\r\n");
}

TEST_CASE("trimming takes blanks at both ends and nothing else") {
  CHECK(text::trimBlanks(L"  a b\t ") == L"a b\t");
  CHECK(text::trimBlanks(L"   ") == L"");
}
