#include "author/page_template.h"

#include "common/errors.h"
#include "tests/support/text_output.h"

using author::fillIn;
using author::Values;

namespace {

std::wstring faultOf(const std::wstring& page, const Values& values = {}) {
  try {
    fillIn(page, values);
    return {};
  } catch (const Error& error) {
    return std::wstring(error.description());
  }
}

Values named(const std::wstring& name) {
  Values values;
  values.texts[L"name"] = name;
  return values;
}

}  // namespace

TEST_CASE("a gap gets its text fit to stand in a page") {
  CHECK(fillIn(L"<a href=\"{{name}}\">{{ name }}</a>", named(L"<a&\"b\">")) ==
        L"<a href=\"&lt;a&amp;&quot;b&quot;&gt;\">&lt;a&amp;&quot;b&quot;&gt;</a>");
}

TEST_CASE("a list is repeated with its own texts before those around it") {
  Values values = named(L"outside");
  values.texts[L"title"] = L"T";
  values.lists[L"items"] = {named(L"one"), named(L"two")};
  CHECK(fillIn(L"{{#items}}[{{title}} {{name}}]{{/items}} {{name}}", values) ==
        L"[T one][T two] outside");
}

TEST_CASE("what stands for an empty list is shown in its place alone") {
  Values values;
  values.lists[L"none"];
  values.lists[L"some"] = {named(L"x")};
  CHECK(
      fillIn(L"{{#none}}a{{name}}{{/none}}{{^none}}b{{/none}}{{#some}}c{{/some}}{{^some}}d{{name}}"
             L"{{/some}}",
             values) == L"bc");
}

TEST_CASE("lists stand inside of each other") {
  Values inner = named(L"i");
  Values outer;
  outer.lists[L"inner"] = {inner, inner};
  Values values;
  values.lists[L"outer"] = {outer, outer};
  values.lists[L"none"];
  CHECK(fillIn(L"{{#outer}}<{{#inner}}{{name}}{{/inner}}>{{/outer}}"
               L"{{#none}}{{#inner}}{{name}}{{/inner}}{{/none}}",
               values) == L"<ii><ii>");
}

TEST_CASE("a list within itself is refused and one of its entries of the same name is another") {
  Values inner;
  inner.lists[L"items"] = {named(L"i"), named(L"i")};
  Values values;
  values.lists[L"items"] = {inner};
  CHECK(fillIn(L"{{#items}}{{#items}}{{name}}{{/items}}{{/items}}", values) == L"ii");
  CHECK(faultOf(L"{{#items}}\n{{#items}}{{#items}}{{/items}}{{/items}}{{/items}}", values) ==
        L"Line 2: The list \"items\" stands within itself.");
}

TEST_CASE("lists within lists end at some depth whether they are shown or not") {
  for (const bool isShown : {true, false}) {
    CAPTURE(isShown);
    Values values;
    std::wstring page;
    std::wstring end;
    for (wchar_t name = L'a'; name < L'a' + 8; ++name) {
      values.lists[{name}].resize(isShown ? 1 : 0);
      page += std::wstring(L"{{#") + name + L"}}";
      end = std::wstring(L"{{/") + name + L"}}" + end;
    }
    CHECK(fillIn(page + end, values).empty());
    values.lists[L"z"];
    CHECK(faultOf(page + L"\n{{#z}}{{/z}}" + end, values) ==
          L"Line 2: There are too many lists within lists.");
  }
}

TEST_CASE("a page that is not well made is refused by line") {
  CHECK(faultOf(L"a\n{{nmae}}") == L"Line 2: There is no text \"nmae\" here.");
  CHECK(faultOf(L"{{#items}}{{/items}}") == L"Line 1: There is no list \"items\" here.");
  CHECK(faultOf(L"\n\n{{name") == L"Line 3: A gap does not end.");
  CHECK(faultOf(L"{{/items}}") == L"Line 1: \"items\" ends, but has not begun.");
  Values values;
  values.lists[L"items"];
  CHECK(faultOf(L"\n{{#items}}", values) == L"Line 2: The list \"items\" does not end.");
}
