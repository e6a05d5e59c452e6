#include "webcopy/web_folder_path.h"

#include "common/errors.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

using Names = std::vector<std::wstring>;

TEST_CASE("the root of the folder tree bears the last part of the web's address") {
  CHECK(webfolder::rootName(L"file:///C:/My Webs/site") == L"site");
  CHECK(webfolder::rootName(L"http://server") == L"server");
  CHECK(webfolder::rootName(L"site") == L"site");
  CHECK(webfolder::rootName(L"") == L"");
}

TEST_CASE("an initial path below the web's URL is cut so that the URL's last character stays") {
  CHECK(webfolder::initialPath(L"http://server/web/dwts", L"http://server/web") == L"b/dwts");
  CHECK(webfolder::initialPath(L"HTTP://Server/WEB/dwts", L"http://server/web") == L"B/dwts");
  CHECK(webfolder::initialPath(L"http://server/web", L"http://server/web") == L"b");
}

TEST_CASE("an initial path below a URL that ends in a slash keeps that slash") {
  CHECK(webfolder::initialPath(L"http://server/web/dwts", L"http://server/web/") == L"/dwts");
}

TEST_CASE("an initial path elsewhere stays as it is") {
  CHECK(webfolder::initialPath(L"/dwts", L"http://server/web") == L"/dwts");
  CHECK(webfolder::initialPath(L"http://other/dwts", L"http://server/web") == L"http://other/dwts");
  CHECK(webfolder::initialPath(L"http://server/we", L"http://server/web") == L"http://server/we");
  CHECK(webfolder::initialPath(L"", L"http://server/web") == L"");
  CHECK(webfolder::initialPath(L"/dwts", L"") == L"/dwts");
}

TEST_CASE("a path's folders begin behind its first slash") {
  CHECK(webfolder::foldersOf(L"/dwts") == Names{L"dwts"});
  CHECK(webfolder::foldersOf(L"b/dwts/blue") == Names{L"dwts", L"blue"});
  CHECK(webfolder::foldersOf(L"dwts").empty());
  CHECK(webfolder::foldersOf(L"").empty());
}

TEST_CASE("a lone slash leads to no folder") { CHECK(webfolder::foldersOf(L"/").empty()); }

TEST_CASE("a slash at a path's end asks for a folder without a name") {
  CHECK(webfolder::foldersOf(L"/dwts/") == Names{L"dwts", L""});
}

TEST_CASE("the path below the root is what follows the first slash") {
  CHECK(webfolder::belowRoot(L"site/dwts/blue") == L"dwts/blue");
  CHECK(webfolder::belowRoot(L"site") == L"site");
}

TEST_CASE("choosing the root gives an empty path") {
  CHECK(webfolder::chosenPath(L"site", L"http://server/site", false) == L"");
}

TEST_CASE("choosing the root gives the web's URL and a slash when it shall be absolute") {
  CHECK(webfolder::chosenPath(L"site", L"http://server/site", true) == L"http://server/site/");
}

TEST_CASE("choosing a folder gives its path below the root") {
  CHECK(webfolder::chosenPath(L"site/dwts/blue", L"http://server/site", false) == L"dwts/blue");
  CHECK(webfolder::chosenPath(L"site/dwts/blue", L"http://server/site", true) ==
        L"http://server/site/dwts/blue");
}

TEST_CASE("a folder reads as its URL without the web's") {
  CHECK(webfolder::displayPath(L"http://server/site/dwts", L"http://server/site") == L"/dwts");
  CHECK(webfolder::displayPath(L"http://server/site/a/b c", L"http://server/site") == L"/a/b c");
}

TEST_CASE("a folder reads as it is called however its URL or the web's is escaped") {
  CHECK(webfolder::displayPath(L"file:///C:/my%20web/a%20b", L"file:///C:/my web") == L"/a b");
  CHECK(webfolder::displayPath(L"file:///C:/my web/a%20b", L"file:///C:/my%20web") == L"/a%20b");
  CHECK(webfolder::displayPath(L"file:///C:/my%20web", L"file:///C:/my web") == L"<web root>");
}

TEST_CASE("an initial path below the web's URL in another spelling is cut behind it") {
  CHECK(webfolder::initialPath(L"file:///C:/my%20web/a%20b", L"file:///C:/my web") == L"/a%20b");
  CHECK(webfolder::initialPath(L"file:///C:/my%20web", L"file:///C:/my web") == L"");
}

TEST_CASE("the web's root reads as web root in angle brackets") {
  CHECK(webfolder::displayPath(L"http://server/site", L"http://server/site") == L"<web root>");
  CHECK(webfolder::displayPath(L"http://server/site/", L"http://server/site") == L"<web root>");
  CHECK(webfolder::displayPath(L"", L"http://server/site") == L"<web root>");
}

TEST_CASE("names of folders are compared ignoring letter case") {
  CHECK(webfolder::contains({L"a", L"NEWS"}, L"news"));
  CHECK(webfolder::contains({L"\u00dcber"}, L"\u00fcBER"));
  CHECK_FALSE(webfolder::contains({L"NEWS"}, L"news "));
  CHECK_FALSE(webfolder::contains({}, L"news"));
}

TEST_CASE("the first new folder is offered without a number") {
  CHECK(webfolder::freeFolderName({}) == L"New_Folder");
  CHECK(webfolder::freeFolderName({L"New_Folder1"}) == L"New_Folder");
}

TEST_CASE("a parent with New_Folder and New_Folder1 is offered New_Folder2") {
  CHECK(webfolder::freeFolderName({L"New_Folder", L"New_Folder1"}) == L"New_Folder2");
  CHECK(webfolder::freeFolderName({L"NEW_FOLDER1", L"new_folder"}) == L"New_Folder2");
}

TEST_CASE("the first gap among the numbers of new folders is offered") {
  CHECK(webfolder::freeFolderName({L"New_Folder", L"New_Folder2"}) == L"New_Folder1");
}

TEST_CASE("the number of a new folder is a 16-bit number") {
  Names taken = {L"New_Folder"};
  for (int number = 1; number < 32767; ++number)
    taken.push_back(L"New_Folder" + std::to_wstring(number));
  CHECK(webfolder::freeFolderName(taken) == L"New_Folder32767");
  taken.push_back(L"New_Folder32767");
  CHECK(numberOf([&] { webfolder::freeFolderName(taken); }) == errors::overflow);
}
