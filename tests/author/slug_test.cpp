#include "author/slug.h"

#include "tests/support/text_output.h"

using author::freeSlug;
using author::slugOf;

TEST_CASE("a name for the web is made of a title's letters and digits") {
  CHECK(slugOf(L"Harbour Light - Notice") == L"harbour-light-notice");
  CHECK(slugOf(L"Gr\u00FCner Daumen!") == L"gruener-daumen");
  CHECK(slugOf(L"  2 \u00D8re & more  ") == L"2-oere-more");
  CHECK(slugOf(L"\u6E2F") == L"item");
  CHECK(slugOf(L"") == L"item");
  CHECK(slugOf(std::wstring(200, L'x')).size() == 60);
}

TEST_CASE("a name for the web that is taken gets a number") {
  text::NameSet taken;
  CHECK(freeSlug(L"The Quay", taken) == L"the-quay");
  CHECK(freeSlug(L"the quay", taken) == L"the-quay-2");
  CHECK(freeSlug(L"The-Quay", taken) == L"the-quay-3");
}

TEST_CASE("a name for the web is none of the system's devices") {
  CHECK(slugOf(L"Con") == L"item-con");
  CHECK(slugOf(L"LPT 1") == L"lpt-1");
  CHECK(slugOf(L"Com1!") == L"item-com1");
  CHECK(slugOf(L"Console") == L"console");
}
