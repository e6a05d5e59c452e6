#include "html/TokenReader.h"

#include "tests/support/text_output.h"

using namespace html;

namespace {

std::wstring textOf(const std::wstring& html) {
  std::wstring text;
  TokenReader reader(html);
  Token token;
  while (reader.next(token)) text += token.text;
  return text;
}

}  // namespace

TEST_CASE("scripts and style sheets end at their closing tags in any letter case") {
  CHECK(textOf(L"a<script>b</script>c") == L"ac");
  CHECK(textOf(L"a<SCRIPT>b</SCRIPT>c<Style>d</sTYLE >e") == L"ace");
  CHECK(textOf(L"a<script>b</scrap></script>c") == L"ac");
  CHECK(textOf(L"a<script>b") == L"a");
}

TEST_CASE("entities are looked for no farther than their names are long") {
  CHECK(withoutEntities(L"&amp;&#228;&none;&middot;&") == L"&\u00E4&none;\u00B7&");
  const std::wstring marks(1'000'000, L'&');
  CHECK(withoutEntities(marks) == marks);
}
