// Web pages: what is read out of HTML and where it is put.
#include "html/Page.h"
#include "html/Layout.h"
#include "html/TokenReader.h"
#include "tests/support/text_output.h"

using namespace html;

namespace {

using Texts = std::vector<std::wstring>;

std::wstring textOf(const Block& block) {
  std::wstring text;
  for (const Piece& piece : block.pieces) text += piece.text;
  return text;
}

struct NoPictures final : PictureSizes {
  SIZE sizeOf(const std::wstring&) override { return {40, 30}; }
};

Layout laidOut(const std::wstring& html, int width) {
  Fonts fonts;
  NoPictures pictures;
  return layOut(parsePage(html), width, fonts, pictures);
}

Texts textsOf(const Layout& layout) {
  Texts texts;
  for (const Item& item : layout.items)
    if (item.kind == Item::Kind::text) texts.push_back(item.text);
  return texts;
}

}  // namespace

TEST_CASE("a page has its title and its paragraphs") {
  const Page page = parsePage(
      L"<html><head><title> A\r\n page </title></head><body><h1>One</h1>"
      L"<p>two  <b>and</b>\nmore<p>three</body></html>");
  CHECK(page.title == L"A page");
  REQUIRE(page.body.blocks.size() == 3);
  CHECK(textOf(page.body.blocks[0]) == L"One");
  CHECK(page.body.blocks[0].pieces[0].style.bold);
  CHECK(textOf(page.body.blocks[1]) == L"two and more");
  CHECK(page.body.blocks[1].pieces[1].style.bold);
  CHECK_FALSE(page.body.blocks[1].pieces[2].style.bold);
  CHECK(textOf(page.body.blocks[2]) == L"three");
}

TEST_CASE("scripts and styles and comments are no text of a page") {
  const Page page = parsePage(
      L"<!DOCTYPE html><!-- a > b --><style>p { x }</style><p>seen<script>if (a<b) c</script>");
  REQUIRE(page.body.blocks.size() == 1);
  CHECK(textOf(page.body.blocks[0]) == L"seen");
}

TEST_CASE("a link keeps its address as it is written but for entities") {
  const Page page = parsePage(L"<a href='d.htm?a=http://b/c%20d&amp;e=f'>go</a><a name=x>here</a>");
  CHECK(page.links == Texts{L"d.htm?a=http://b/c%20d&e=f"});
  const auto& pieces = page.body.blocks[0].pieces;
  CHECK(pieces[0].style.link == 0);
  CHECK(pieces[1].style.link == noLink);
}

TEST_CASE("small and big letters are a step from the usual ones") {
  const Page page = parsePage(L"a<small>b</small><big>c</big>");
  const auto& pieces = page.body.blocks[0].pieces;
  CHECK(pieces[0].style.size == 16);
  CHECK(pieces[1].style.size == 13);
  CHECK(pieces[2].style.size == 18);
}

TEST_CASE("sizes of letters go from one to seven") {
  const auto sizeOf = [](const std::wstring& size) {
    return parsePage(L"<font size=" + size + L">a").body.blocks[0].pieces[0].style.size;
  };
  CHECK(sizeOf(L"1") == 10);
  CHECK(sizeOf(L"7") == 48);
  CHECK(sizeOf(L"8") == 48);
  CHECK(sizeOf(L"0") == 16);
}

TEST_CASE("lists and what is quoted stand farther in") {
  for (const wchar_t* tag : {L"ul", L"ol", L"blockquote", L"dd"}) {
    const std::wstring name = tag;
    const Page page = parsePage(L"a<" + name + L">b</" + name + L">c");
    REQUIRE(page.body.blocks.size() == 3);
    CHECK(page.body.blocks[0].indent == 0);
    CHECK(page.body.blocks[1].indent == 30);
    CHECK(page.body.blocks[2].indent == 0);
  }
  CHECK(parsePage(L"<div>a").body.blocks[0].indent == 0);
}

TEST_CASE("a list's entry has one mark at its beginning") {
  const Page page = parsePage(L"<ul><li>one<p>more<li>two</ul>");
  REQUIRE(page.body.blocks.size() == 3);
  CHECK(page.body.blocks[0].bullet);
  CHECK_FALSE(page.body.blocks[1].bullet);
  CHECK(page.body.blocks[2].bullet);
}

TEST_CASE("an entry between a table and its cells keeps its mark to itself") {
  const Page page = parsePage(L"<table><li>one<td>two</table>");
  REQUIRE(page.body.blocks.size() == 2);
  CHECK(page.body.blocks[1].bullet);
  CHECK_FALSE(page.body.blocks[0].table->rows[0][0].blocks[0].bullet);
}

TEST_CASE("a paragraph between a table and its cells keeps its distance to itself") {
  const Page page = parsePage(L"<table><p>one<td>two</table>");
  REQUIRE(page.body.blocks.size() == 2);
  CHECK(page.body.blocks[1].above == 14);
  CHECK(page.body.blocks[0].table->rows[0][0].blocks[0].above == 0);
}

TEST_CASE("a paragraph that a table ends in ends with the next one") {
  const Page page = parsePage(L"<p align=right><table><tr><td>a</table><p>b");
  REQUIRE(page.body.blocks.size() == 2);
  CHECK(page.body.blocks[0].align == Align::right);
  CHECK(page.body.blocks[1].align == Align::left);
}

TEST_CASE("entities become the letters that they mean") {
  CHECK(withoutEntities(L"&lt;&amp;&uuml;&#65;&#x42;&none; & x;") ==
        L"<&\xFC"
        L"AB&none; & x;");
}

TEST_CASE("a tag that is not closed and a bare bracket do no harm") {
  CHECK(textOf(parsePage(L"<p>a < b <i").body.blocks[0]) == L"a < b ");
  CHECK(parsePage(L"</td></table></p>").body.blocks.empty());
  CHECK(textOf(parsePage(L"<td>x").body.blocks[0]) == L"x");
}

TEST_CASE("a table in a cell stays in it") {
  const Page page = parsePage(
      L"<table><tr><td>a<table><tr><td>b</table>c<td bgcolor=#102030>d</tr><tr><td colspan=2>e"
      L"</table><p>f");
  REQUIRE(page.body.blocks.size() == 2);
  const Table& table = *page.body.blocks[0].table;
  REQUIRE(table.rows.size() == 2);
  REQUIRE(table.rows[0].size() == 2);
  REQUIRE(table.rows[0][0].blocks.size() == 3);
  CHECK(textOf(table.rows[0][0].blocks[1].table->rows[0][0].blocks[0]) == L"b");
  CHECK(textOf(table.rows[0][0].blocks[2]) == L"c");
  CHECK(table.rows[0][1].background == RGB(0x10, 0x20, 0x30));
  CHECK(table.rows[1][0].columns == 2);
  CHECK(textOf(page.body.blocks[1]) == L"f");
}

TEST_CASE("words go on in the next line where the page ends") {
  const Layout wide = laidOut(L"<p>one two three four", 2000);
  CHECK(textsOf(wide) == Texts{L"one two three four"});
  const Layout narrow = laidOut(L"<p>one two three four", 60);
  CHECK(textsOf(narrow).size() > 1);
  CHECK(narrow.height > wide.height);
  for (const Item& item : narrow.items) CHECK(item.place.left == 10);
}

TEST_CASE("centred and right text keeps its distance from the left") {
  const Layout layout = laidOut(L"<p>x<p align=center>x<p align=right>x", 400);
  REQUIRE(layout.items.size() == 3);
  const LONG width = layout.items[0].place.right - layout.items[0].place.left;
  CHECK(layout.items[1].place.left == 10 + (380 - width) / 2);
  CHECK(layout.items[2].place.right == 390);
}

TEST_CASE("the columns of a table have the widths that are said and share the rest") {
  const Layout layout = laidOut(
      L"<table width=300 cellspacing=0 cellpadding=0><tr><td width=60><img src=a><td><img src=b>"
      L"<td bgcolor=#000001><img src=c width=10 height=200></table>",
      1000);
  REQUIRE(layout.items.size() == 4);
  CHECK(layout.items[0].place.left == 10);
  CHECK(layout.items[1].place.left == 70);
  CHECK(layout.items[1].place.right == 110);
  CHECK(layout.items[3].place.left == 190);
  // A cell's ground is as high as its row.
  CHECK(layout.items[2].kind == Item::Kind::fill);
  CHECK(layout.items[2].place.right == 310);
  CHECK(layout.items[2].place.bottom - layout.items[2].place.top == 200);
}

// What pages that come from anywhere may hold.

namespace {

std::wstring repeated(const std::wstring& text, int times) {
  std::wstring result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

std::size_t depthOf(const Cell& cell) {
  std::size_t depth = 0;
  for (const Block& block : cell.blocks)
    if (block.table)
      for (const auto& row : block.table->rows)
        for (const Cell& each : row) depth = std::max(depth, depthOf(each));
  return depth + 1;
}

}  // namespace

TEST_CASE("what stands between a table and its cells goes before the table") {
  const Page page = parsePage(L"<table><hr><table><tr><td>b</table></table>c");
  REQUIRE(page.body.blocks.size() == 4);
  CHECK(page.body.blocks[0].table->rows.empty());
  CHECK(page.body.blocks[1].rule);
  CHECK(textOf(page.body.blocks[2].table->rows[0][0].blocks[0]) == L"b");
  CHECK(textOf(page.body.blocks[3]) == L"c");
}

TEST_CASE("tables in tables end at some depth") {
  const Page page = parsePage(repeated(L"<table><tr><td>x", 90'000));
  CHECK(depthOf(page.body) == 17);
  Fonts fonts;
  NoPictures pictures;
  CHECK_FALSE(layOut(page, 400, fonts, pictures).items.empty());
}

TEST_CASE("tags that are never closed are counted up to a limit") {
  const Page page = parsePage(repeated(L"<b>", 170'000) + repeated(L"</i>", 120'000) + L"x");
  REQUIRE(page.body.blocks.size() == 1);
  CHECK(page.body.blocks[0].pieces[0].style.bold);
}

TEST_CASE("letters in letters get neither endlessly large nor small") {
  CHECK(parsePage(repeated(L"<big>", 300) + L"x").body.blocks[0].pieces[0].style.size == 200);
  CHECK(parsePage(repeated(L"<small>", 300) + L"x").body.blocks[0].pieces[0].style.size == 6);
}

TEST_CASE("sizes beyond every screen are cut") {
  const Page page = parsePage(
      L"<img width=2147483647 height=99999999999><table width=99999999% cellspacing=2147483647 "
      L"cellpadding=2147483647><tr><td colspan=2147483647 width=2147483647>x<td "
      L"colspan=2147483647>y</table>");
  CHECK(page.body.blocks[0].pieces[0].width == 10'000);
  CHECK(page.body.blocks[0].pieces[0].height == 10'000);
  const Table& table = *page.body.blocks[1].table;
  CHECK(table.width.value == 100);
  CHECK(table.spacing == 100);
  CHECK(table.padding == 100);
  CHECK(table.rows[0][0].columns == 100);
  CHECK(table.rows[0][0].width.value == 10'000);
  Fonts fonts;
  NoPictures pictures;
  CHECK(layOut(page, 400, fonts, pictures).height > 0);
}

TEST_CASE("a title is cut where no caption would show it") {
  const Page page = parsePage(L"<title>" + repeated(L"a<b>", 200'000) + L"</title>x");
  CHECK(page.title == repeated(L"a", 250));
}
