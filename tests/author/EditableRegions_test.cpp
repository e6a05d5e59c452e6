#include "author/EditableRegions.h"

#include "tests/support/text_output.h"

using namespace author;

namespace {

std::vector<std::wstring> namesIn(const EditableRegions& read) {
  std::vector<std::wstring> names;
  for (const EditableRegion& each : read.regions) names.push_back(each.name);
  return names;
}

using Names = std::vector<std::wstring>;

}  // namespace

TEST_CASE("editable regions are found by their marks in any letter case") {
  const auto read = readRegions(
      L"<!-- #BeginEditable \"body\" -->x<!-- #EndEditable --><!--#begineditable 'foot'-->"
      L"<!--#ENDEDITABLE-->");
  CHECK(namesIn(read) == Names{L"body", L"foot"});
  CHECK(read.regions[0].offset == 0);
  CHECK(read.findings.empty());
}

TEST_CASE("other comments are no editable regions") {
  const auto read = readRegions(L"<!-- BeginEditable \"a\" --><!-- begin --><!-- never ends");
  CHECK(read.regions.empty());
  CHECK(read.findings.empty());
}

TEST_CASE("a region named twice points to the first one") {
  const auto read = readRegions(
      L"<!-- #BeginEditable \"Body\" --><!-- #EndEditable -->"
      L"<!-- #BeginEditable \"body\" --><!-- #EndEditable -->");
  CHECK(namesIn(read) == Names{L"Body"});
  REQUIRE(read.findings.size() == 1);
  CHECK(read.findings[0].fault == RegionFault::repeated);
  CHECK(read.findings[0].name == L"body");
  CHECK(read.findings[0].offset == 51);
  CHECK(read.findings[0].other == 0);
}

TEST_CASE("a region inside of another one and its second end do not fit together") {
  const auto read = readRegions(
      L"<!-- #BeginEditable \"a\" --><!-- #BeginEditable \"b\" --><!-- #EndEditable -->"
      L"<!-- #EndEditable -->");
  REQUIRE(read.findings.size() == 2);
  CHECK(read.findings[0].fault == RegionFault::nested);
  CHECK(read.findings[0].name == L"b");
  CHECK(read.findings[1].fault == RegionFault::unopened);
}

TEST_CASE("a page of nothing but regions is read in one go") {
  std::wstring page;
  for (int i = 0; i < 40000; ++i)
    page += L"<!-- #BeginEditable \"" + std::to_wstring(i) + L"\" --><!-- #EndEditable -->";
  const auto read = readRegions(page);
  CHECK(read.regions.size() == 40000);
  CHECK(read.findings.empty());
}

TEST_CASE("a region that does not end and one without a name are faults") {
  const auto read = readRegions(
      L"<!-- #BeginEditable \" \" --><!-- #EndEditable -->\n"
      L"<!-- #BeginEditable \"a\" -->");
  REQUIRE(read.findings.size() == 2);
  CHECK(read.findings[0].fault == RegionFault::unnamed);
  CHECK(read.findings[1].fault == RegionFault::unclosed);
  CHECK(read.findings[1].name == L"a");
}
