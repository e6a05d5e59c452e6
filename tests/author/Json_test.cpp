#include "author/Json.h"

#include "tests/support/text_output.h"

using author::Json;
using author::jsonText;

TEST_CASE("JSON escapes quotes and backslashes and control characters") {
  CHECK(jsonText(L"a \"b\" c:\\d\n\x1F\x7F \u00E4") ==
        L"\"a \\\"b\\\" c:\\\\d\\u000a\\u001f\\u007f \u00E4\"");
}

TEST_CASE("JSON escapes characters that need two halves") {
  CHECK(jsonText(L"\xD83D\xDEA2") == L"\"\\ud83d\\udea2\"");
}

TEST_CASE("JSON is written with a level's blanks in front") {
  Json json;
  json.openObject()
      .text(L"a", L"b")
      .openList(L"c")
      .number({}, -1)
      .openObject()
      .closeObject()
      .closeList()
      .openList(L"d")
      .closeList()
      .truth(L"e", true)
      .nothing(L"f")
      .closeObject();
  CHECK(json.written() ==
        L"{\n  \"a\": \"b\",\n  \"c\": [\n    -1,\n    {}\n  ],\n  \"d\": [],\n  \"e\": true,\n"
        L"  \"f\": null\n}\n");
}
