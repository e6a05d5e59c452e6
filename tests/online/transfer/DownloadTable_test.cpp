#include "online/transfer/DownloadTable.h"

#include "tests/support/text_output.h"

using Row = DownloadTable::Row;

namespace {

DownloadTable filled(std::wstring_view extraInfo) {
  DownloadTable table;
  table.fill(extraInfo);
  return table;
}

}  // namespace

TEST_CASE("a theme and a template of one item share a column and a template alone has its own") {
  const DownloadTable table =
      filled(L"?theme1=http://h/t1.zip&dwt1=http://h/d1.zip&dwt2=http://h/d2.zip");
  CHECK(table.columns() == 3);
  CHECK(table.itemCount() == 2);
  CHECK(table.addressCount() == 3);
  CHECK(table.text(0, Row::itemNumber) == L"1");
  CHECK(table.address(0, Row::theme) == L"http://h/t1.zip");
  CHECK(table.address(0, Row::dwt) == L"http://h/d1.zip");
  CHECK(table.text(1, Row::itemNumber) == L"2");
  CHECK(table.address(1, Row::theme) == L"");
  CHECK(table.address(1, Row::dwt) == L"http://h/d2.zip");
  CHECK(table.text(2, Row::itemNumber) == L"");
}

TEST_CASE("a query without usable parts gives no address") {
  for (const wchar_t* query : {L"", L"?", L"?   ", L"?theme1", L"?success=http://h/", L"?&&",
                               L"?=x", L"?themes=x", L"?theme=x", L"?dwt=x", L"?dwtx1=y"}) {
    CAPTURE(std::wstring(query));
    CHECK(filled(query).addressCount() == 0);
    CHECK(filled(query).itemCount() == 0);
  }
}

TEST_CASE("a part whose suffix is no number is ignored") {
  const DownloadTable table = filled(L"?themeX=a&theme1=b&dwt2nd=c");
  CHECK(table.addressCount() == 1);
  CHECK(table.itemCount() == 1);
  CHECK(table.address(0, Row::theme) == L"b");
}

TEST_CASE("names are told in any letter case") {
  const DownloadTable table = filled(L"?THEME1=A.ZIP&DwT1=B.zip");
  CHECK(table.address(0, Row::theme) == L"A.ZIP");
  CHECK(table.address(0, Row::dwt) == L"B.zip");
}

TEST_CASE("a value is everything after the first equals sign as it stands") {
  const DownloadTable table = filled(L"?dwt1=http://h/a%20b.zip=c?d+e");
  CHECK(table.address(0, Row::dwt) == L"http://h/a%20b.zip=c?d+e");
}

TEST_CASE("a repeated part replaces the earlier address and counts again") {
  const DownloadTable table = filled(L"?dwt1=first&dwt1=second");
  CHECK(table.addressCount() == 2);
  CHECK(table.itemCount() == 1);
  CHECK(table.address(0, Row::dwt) == L"second");
}

TEST_CASE("item numbers are compared as texts") {
  const DownloadTable table = filled(L"?theme1=a&dwt01=b");
  CHECK(table.itemCount() == 2);
  CHECK(table.text(1, Row::itemNumber) == L"01");
}

TEST_CASE("extra information without a question mark is taken whole") {
  CHECK(filled(L"dwt1=a").addressCount() == 1);
}

TEST_CASE("only the first question mark begins the list") {
  CHECK(filled(L"?dwt1=a?dwt2=b").address(0, Row::dwt) == L"a?dwt2=b");
}

TEST_CASE("a table is filled anew") {
  DownloadTable table = filled(L"?dwt1=a&dwt2=b");
  table.fill(L"?theme7=c");
  CHECK(table.itemCount() == 1);
  CHECK(table.addressCount() == 1);
  CHECK(table.text(0, Row::itemNumber) == L"7");
  table.fill(L"");
  CHECK(table.addressCount() == 0);
  CHECK(table.columns() == 0);
}

TEST_CASE("sizes are kept below their addresses") {
  DownloadTable table = filled(L"?theme1=a&dwt1=b");
  table.setSize(0, Row::theme, 5000000000ull);
  table.setSize(0, Row::dwt, 7);
  CHECK(table.text(0, Row::themeSize) == L"5000000000");
  CHECK(table.text(0, Row::dwtSize) == L"7");
  CHECK(table.size(0, Row::theme) == 5000000000ull);
}

TEST_CASE("addresses are handled item by item with the theme first") {
  const DownloadTable table = filled(L"?dwt2=a&dwt1=b&theme1=c&theme2=d");
  const auto places = table.places();
  REQUIRE(places.size() == 4);
  CHECK(table.address(places[0].column, places[0].kind) == L"d");
  CHECK(table.address(places[1].column, places[1].kind) == L"a");
  CHECK(table.address(places[2].column, places[2].kind) == L"c");
  CHECK(table.address(places[3].column, places[3].kind) == L"b");
}

TEST_CASE("a broken list does no harm") {
  CHECK(filled(std::wstring(L"?") + std::wstring(5000, L'&')).addressCount() == 0);
  CHECK(filled(L"?dwt1=\x1\xFFFF&theme1==&dwt99999999999999999999=x").addressCount() == 3);
}
