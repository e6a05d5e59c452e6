#include "catalogue/TemplateList.h"

#include "common/errors.h"
#include "tests/support/text_output.h"

TEST_CASE("listed templates are known by their numbers and by their keys in any letter case") {
  TemplateList list;
  CHECK(list.add({L"C:\\a\\Page.dwt", L"Page", L"C:\\a"}) == 0);
  CHECK(list.add({L"C:\\b\\page.dwt", L"Page", L"C:\\b"}) == 1);
  CHECK(list.count() == 2);
  CHECK(list[1].folder == L"C:\\b");
  CHECK(list.has(L"c:\\A\\page.DWT"));
  CHECK_FALSE(list.has(L"C:\\c\\page.dwt"));
}

TEST_CASE("a list of templates that is cleared knows none of them") {
  TemplateList list;
  list.add({L"C:\\a\\page.dwt", L"Page", L"C:\\a"});
  list.clear();
  CHECK(list.count() == 0);
  CHECK_FALSE(list.has(L"C:\\a\\page.dwt"));
  CHECK_THROWS_AS(list[0], Error);
}
