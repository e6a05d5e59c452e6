#include "addin/host/web_path.h"
#include "common/ansi.h"
#include "tests/support/text_output.h"

using webpath::Spelling;

TEST_CASE("A path is cut into its levels whatever stands between them") {
  CHECK(webpath::levels(L"/dwts//plain\\images/") ==
        std::vector<std::wstring>{L"dwts", L"plain", L"images"});
  CHECK(webpath::levels(L"").empty());
  CHECK(webpath::levels(L"///").empty());
}

TEST_CASE("A path in normal form has no slash at either end") {
  CHECK(webpath::normal(L"/dwts") == L"dwts");
  CHECK(webpath::normal(L"dwts/") == L"dwts");
  CHECK(webpath::normal(L"/my dwts/a b/") == L"my dwts/a b");
  CHECK(webpath::normal(L"/") == L"");
}

TEST_CASE("Addresses are told from paths") {
  CHECK(webpath::isAbsolute(L"http://server/sub"));
  CHECK(webpath::isAbsolute(L"file:///C:/My Webs/site"));
  CHECK_FALSE(webpath::isAbsolute(L"/dwts"));
  CHECK_FALSE(webpath::isAbsolute(L"dwts/a://b"));
  CHECK_FALSE(webpath::isAbsolute(L"c:/dwts"));
  CHECK_FALSE(webpath::isAbsolute(L"c://dwts"));
  CHECK_FALSE(webpath::isAbsolute(L""));
}

TEST_CASE("Escapes are read as UTF-8") {
  CHECK(webpath::unescaped(L"my%20web") == L"my web");
  CHECK(webpath::unescaped(L"%c3%A4%E2%82%ac%F0%9F%98%80") == L"\u00e4\u20ac\xd83d\xde00");
  CHECK(webpath::unescaped(L"50%25") == L"50%");
  CHECK(webpath::unescaped(L"%2520") == L"%20");
  CHECK(webpath::unescaped(L"\u00e4 b") == L"\u00e4 b");
  CHECK(webpath::unescaped(L"") == L"");
}

TEST_CASE("What is no escape of a character stays as it is") {
  for (const wchar_t* text : {L"50%", L"50%2", L"%zz", L"%g0", L"%0g", L"a%00b"})
    CHECK(webpath::unescaped(text) == text);
}

TEST_CASE("Escapes that are no UTF-8 are read in the ANSI code page") {
  CHECK(webpath::unescaped(L"%E4%20b") == text::fromAnsi("\xe4 b"));
  CHECK(webpath::unescaped(L"%C3x") == text::fromAnsi("\xc3x"));
}

TEST_CASE("An address at or below another is told from one elsewhere") {
  const auto rest = [](const wchar_t* address, const wchar_t* root) {
    const auto below = webpath::below(address, root);
    return below ? below->path : L"none";
  };
  CHECK(rest(L"http://server/sub/dwts", L"http://server/sub") == L"/dwts");
  CHECK(rest(L"http://server/sub/dwts", L"http://server/sub/") == L"/dwts");
  CHECK(rest(L"http://server/sub", L"http://server/sub") == L"");
  CHECK(rest(L"http://server/sub/", L"http://server/sub") == L"/");
  CHECK(rest(L"HTTP:\\\\Server\\SUB\\a", L"http://server/sub") == L"\\a");
  CHECK(rest(L"http://server/subway", L"http://server/sub") == L"none");
  CHECK(rest(L"http://server", L"http://server/sub") == L"none");
  CHECK(rest(L"http://other/sub", L"http://server/sub") == L"none");
  CHECK(rest(L"http://server/sub", L"") == L"none");
  CHECK(rest(L"", L"http://server/sub") == L"none");
  CHECK(rest(L"/", L"/") == L"none");
}

TEST_CASE("The root that two addresses share tells how they are spelled") {
  const auto spelling = [](const wchar_t* address, const wchar_t* root) {
    const auto below = webpath::below(address, root);
    REQUIRE(below);
    return below->spelling;
  };
  CHECK(spelling(L"file:///C:/web/a%20b", L"file:///C:/web") == Spelling::unknown);
  CHECK(spelling(L"file:///C:/my%20web/a", L"file:///C:/my web") == Spelling::escaped);
  CHECK(spelling(L"file:///C:/my web/a", L"file:///C:/my%20web") == Spelling::plain);
  CHECK(spelling(L"file:///C:/a%2520b/a", L"file:///C:/a%20b") == Spelling::escaped);
  CHECK(spelling(L"file:///C:/a%20b/a", L"file:///C:/a%2520b") == Spelling::plain);
  CHECK(spelling(L"file:///C:/%6Dy%20web/a", L"file:///C:/my%20%77eb") == Spelling::escaped);
}
