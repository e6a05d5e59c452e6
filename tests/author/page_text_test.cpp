#include "author/page_text.h"

#include "tests/support/text_output.h"

using namespace author;

namespace {

using Words = std::vector<std::wstring>;

Words addressesIn(const std::vector<Link>& links) {
  Words addresses;
  for (const Link& each : links) addresses.push_back(each.address);
  return addresses;
}

// "kind path", with a backslash behind a folder.
std::wstring target(std::wstring_view address, std::wstring_view page = L"page.htm") {
  const Target found = targetOf(address, page);
  constexpr const wchar_t* kinds[] = {L"elsewhere", L"in", L"outside", L"disk"};
  return std::wstring(kinds[static_cast<int>(found.kind)]) +
         (found.path.empty() ? L"" : L" " + found.path) + (found.isFolder ? L"\\" : L"");
}

}  // namespace

TEST_CASE("a page's tags and styles name files") {
  const Words expected = {L"s.css", L"b.gif", L"a.htm?x=1&y=2", L"p.gif", L"next.htm", L"t.gif"};
  CHECK(addressesIn(linksOfPage(
            L"<link href=s.css><body background=\"b.gif\"><a href='a.htm?x=1&amp;y=2'>"
            L"<img src=\" p.gif \" alt=\"q.gif\"><meta http-equiv=Refresh content=\"5; "
            L"URL=next.htm\">"
            L"<td style=\"background: url('t.gif')\"><base href=\"far/\"><a name=x>")) == expected);
}

TEST_CASE("a page's own style sheet names files and its scripts and comments do not") {
  const std::wstring page =
      L"<!-- <img src=no.gif> --><style>\n@import \"one.css\";\nb { background: url(two.gif) "
      L"}</style>"
      L"<script>x = '<img src=three.gif>'</script>";
  const auto links = linksOfPage(page);
  CHECK(addressesIn(links) == Words{L"one.css", L"two.gif"});
  CHECK(lineOf(page, links[0].offset) == 2);
  CHECK(lineOf(page, links[1].offset) == 3);
}

TEST_CASE("the host's own components name files in comments") {
  CHECK(addressesIn(linksOfPage(
            L"<!--webbot bot=\"Include\" U-Include=\"head.htm\" tag=\"BODY\" startspan -->")) ==
        Words{L"head.htm"});
}

TEST_CASE("a style sheet's comments name no files") {
  CHECK(addressesIn(linksOfStyleSheet(L"/* url(a.gif) */ x { src: URL( \"b.gif\" ) } @import "
                                      L"url(c.css); @import 'd.css'; /* url(e.gif)")) ==
        Words{L"b.gif", L"c.css", L"d.css"});
}

TEST_CASE("an empty name in a style sheet ends at its own quotation mark") {
  CHECK(addressesIn(linksOfStyleSheet(L"@import ''; @import 'b.css';")) == Words{L"b.css"});
  CHECK(addressesIn(linksOfStyleSheet(L"x { src: url() } y { src: url(b.gif) }")) ==
        Words{L"b.gif"});
}

TEST_CASE("scripts are those between tags and those of events") {
  CHECK(scriptsOf(L"<script>one</script><p onclick=\"two\">three") == L"<script>one</script>two\n");
}

TEST_CASE("an address leads into the folder when it is a path that stays there") {
  CHECK(target(L"a.gif") == L"in a.gif");
  CHECK(target(L"images/a%20b.gif?x#y") == L"in images\\a b.gif");
  CHECK(target(L"../a.gif", L"pages\\one.htm") == L"in a.gif");
  CHECK(target(L"./x/../a.gif", L"pages\\one.htm") == L"in pages\\a.gif");
  CHECK(target(L"pages/") == L"in pages\\");
  CHECK(target(L"gr%C3%BCn.gif") == L"in gr\u00FCn.gif");
  CHECK(target(L"gr%FCn.gif") == L"in gr\u00FCn.gif");
  CHECK(target(L":a.gif") == L"in :a.gif");
}

TEST_CASE("an address leads out of the folder when it climbs or begins at the root") {
  CHECK(target(L"../a.gif") == L"outside");
  CHECK(target(L"a/../../b.gif") == L"outside");
  CHECK(target(L"/a.gif") == L"outside");
}

TEST_CASE("an address of the network or of the page itself is no file") {
  for (const wchar_t* each :
       {L"http://a/b", L"mailto:a@b", L"javascript:x()", L"//a/b", L"#top", L"?x", L"", L"news:a"})
    CHECK(target(each) == L"elsewhere");
}

TEST_CASE("an address of a drive or share is one of this computer") {
  for (const wchar_t* each : {L"C:\\a.gif", L"d:/a.gif", L"file:///C:/a.gif", L"\\\\server\\a.gif"})
    CHECK(target(each) == L"disk");
}

TEST_CASE("pages and style sheets made to take long do not") {
  constexpr std::size_t many = 1u << 20;
  const auto repeated = [](const wchar_t* piece) {
    std::wstring text;
    while (text.size() < many) text += piece;
    return text;
  };
  CHECK(linksOfStyleSheet(repeated(L"url(")).size() == 1);
  CHECK(linksOfStyleSheet(repeated(L"@import '")).size() > 1);
  CHECK(linksOfPage(repeated(L"<a href=x>")).size() > 100000);
  CHECK(linksOfPage(L"<a href=\"" + repeated(L"&") + L"\">").size() == 1);
  CHECK(commentsOf(repeated(L"<!--")).size() == 1);
}

TEST_CASE("lines of many places are those of each") {
  const std::wstring text = L"a\nb\r\n\nc";
  const LineNumbers lines(text);
  for (std::size_t at = 0; at <= text.size() + 1; ++at) CHECK(lines.of(at) == lineOf(text, at));
}

TEST_CASE("lines are counted from one") {
  CHECK(lineOf(L"a\nb\r\nc", 0) == 1);
  CHECK(lineOf(L"a\nb\r\nc", 2) == 2);
  CHECK(lineOf(L"a\nb\r\nc", 99) == 3);
}
