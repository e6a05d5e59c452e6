#include <algorithm>

#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using standin::Host;

namespace {

// A web over a folder of its own.
struct OpenWeb {
  ScratchFolder folder;
  Host host{{}, folder.path()};
  LateBound web{LateBound(host.application()).child(L"ActiveWeb")};

  LateBound root() const { return web.child(L"RootFolder"); }
  LateBound folders() const { return root().child(L"Folders"); }
  LateBound locateFolder(const std::wstring& path) const {
    return LateBound(web.call(L"LocateFolder", {path}));
  }
  LateBound locateFile(const std::wstring& path) const {
    return LateBound(web.call(L"LocateFile", {path}));
  }
  std::wstring url() const { return web.text(L"Url"); }
};

std::vector<std::wstring> names(const LateBound& collection) {
  std::vector<std::wstring> result;
  const long count = collection.number(L"Count");
  for (long i = 0; i < count; ++i) result.push_back(collection.item(i).text(L"Name"));
  return result;
}

using Names = std::vector<std::wstring>;

}  // namespace

TEST_CASE("a web on disk has a file address with three slashes and blanks as they are") {
  const OpenWeb open;
  std::wstring expected = L"file:///" + open.folder.path();
  std::replace(expected.begin(), expected.end(), L'\\', L'/');
  CHECK(open.url() == expected);
  CHECK(open.url().find(L' ') != std::wstring::npos);
  CHECK(open.web.text(L"Title") == expected.substr(expected.rfind(L'/') + 1));
}

TEST_CASE("a web on a share has its server as the address host") {
  Host host({}, L"\\\\server\\share\\site");
  CHECK(LateBound(host.application()).child(L"ActiveWeb").text(L"Url") ==
        L"file://server/share/site");
}

TEST_CASE("a web can have a server address over the same folder") {
  OpenWeb open;
  open.folder.writeFile(L"dwts\\a.dwt");
  open.host.options().webUrl = L"http://server/sub";
  CHECK(open.url() == L"http://server/sub");
  CHECK(open.locateFolder(L"dwts").text(L"Url") == L"http://server/sub/dwts");
  CHECK(open.locateFile(L"http://server/sub/dwts/a.dwt").text(L"Url") ==
        L"http://server/sub/dwts/a.dwt");
}

TEST_CASE("folders and files are located web-relative and absolute") {
  const OpenWeb open;
  open.folder.writeFile(L"dwts\\Blue Sky\\a b.dwt");
  CHECK(open.locateFolder(L"dwts/Blue Sky").text(L"Name") == L"Blue Sky");
  CHECK(open.locateFolder(open.url() + L"/dwts").text(L"Name") == L"dwts");
  CHECK(open.locateFolder(L"").flag(L"IsRoot"));
  CHECK(open.locateFolder(open.url()).flag(L"IsRoot"));
  CHECK(open.locateFile(L"dwts/Blue Sky/a b.dwt").text(L"Name") == L"a b.dwt");
  CHECK(open.locateFile(open.url() + L"/DWTS/Blue Sky/A B.dwt"));
}

TEST_CASE("what lies outside the web is not located") {
  const OpenWeb open;
  CHECK_FALSE(open.locateFolder(L".."));
  CHECK_FALSE(open.locateFolder(L"http://elsewhere"));
  CHECK_FALSE(open.locateFolder(open.url() + L" too"));
}

TEST_CASE("a file is no folder and a folder is no file") {
  const OpenWeb open;
  open.folder.writeFile(L"dwts\\a.dwt");
  CHECK_FALSE(open.locateFile(L"dwts"));
  CHECK_FALSE(open.locateFolder(L"dwts/a.dwt"));
}

TEST_CASE("an absent folder or file is nothing or an error") {
  OpenWeb open;
  CHECK(open.web.call(L"LocateFolder", {L"none"}).result == S_OK);
  CHECK_FALSE(open.locateFolder(L"none"));
  CHECK(open.web.call(L"LocateFile", {L"none.htm"}).result == S_OK);
  open.host.options().absentFolderIsError = true;
  CHECK(open.web.call(L"LocateFolder", {L"none"}).result == DISP_E_EXCEPTION);
  CHECK(open.web.call(L"LocateFile", {L"none.htm"}).result == S_OK);
  open.host.options().absentFileIsError = true;
  CHECK(open.web.call(L"LocateFile", {L"none.htm"}).description ==
        L"Cannot find the file \"none.htm\".");
}

TEST_CASE("a leading slash in a path is taken only where the switch says so") {
  OpenWeb open;
  open.folder.makeFolder(L"dwts");
  CHECK_FALSE(open.locateFolder(L"/dwts"));
  CHECK(open.folders().call(L"Add", {L"/new"}).result == DISP_E_EXCEPTION);
  open.host.options().leadingSlashTaken = true;
  CHECK(open.locateFolder(L"/dwts"));
  CHECK(open.folders().call(L"Add", {L"/new"}).result == S_OK);
  CHECK(open.folder.exists(L"new"));
}

TEST_CASE("a trailing slash in a path is taken only where the switch says so") {
  OpenWeb open;
  open.folder.makeFolder(L"dwts");
  CHECK(open.locateFolder(L"dwts/"));
  open.host.options().trailingSlashTaken = false;
  CHECK_FALSE(open.locateFolder(L"dwts/"));
}

TEST_CASE("a folder tells what it is and what it belongs to") {
  const OpenWeb open;
  open.folder.makeFolder(L"dwts\\Blue");
  const LateBound blue = open.locateFolder(L"dwts/Blue");
  CHECK(blue.text(L"Url") == open.url() + L"/dwts/Blue");
  CHECK_FALSE(blue.flag(L"IsRoot"));
  CHECK_FALSE(blue.flag(L"IsWeb"));
  CHECK(blue.child(L"Parent").text(L"Name") == L"dwts");
  CHECK(blue.child(L"Web").text(L"Url") == open.url());
  CHECK_FALSE(open.root().child(L"Parent"));
  CHECK(open.root().flag(L"IsRoot"));
  CHECK(open.root().text(L"Url") == open.url());
}

TEST_CASE("a folder with service files of its own is a web") {
  OpenWeb open;
  open.folder.makeFolder(L"shop\\_vti_pvt");
  CHECK(open.locateFolder(L"shop").flag(L"IsWeb"));
  CHECK_FALSE(open.root().flag(L"IsWeb"));
  open.host.options().rootIsWeb = true;
  CHECK(open.root().flag(L"IsWeb"));
}

TEST_CASE("folders are listed by index from 0 and by name without the host's own") {
  OpenWeb open;
  for (const wchar_t* name : {L"images", L"_private", L"_vti_cnf", L"Dwts"})
    open.folder.makeFolder(name);
  CHECK(names(open.folders()) == Names{L"_private", L"Dwts", L"images"});
  CHECK(open.folders().item(L"DWTS").text(L"Name") == L"Dwts");
  CHECK(open.folders().get(L"Item", {3}).result == DISP_E_EXCEPTION);
  CHECK(open.folders().get(L"Item", {-1}).result == DISP_E_EXCEPTION);
  CHECK(open.folders().get(L"Item", {L"none"}).result == DISP_E_EXCEPTION);
  open.host.options().vtiFoldersListed = true;
  CHECK(open.folders().number(L"Count") == 4);
}

TEST_CASE("folders and files are listed in the order of their names or in another") {
  OpenWeb open;
  for (const wchar_t* name : {L"a", L"b", L"c"}) open.folder.makeFolder(name);
  for (const wchar_t* name : {L"1.htm", L"2.htm"}) open.folder.writeFile(name);
  open.host.options().listedUnsorted = true;
  CHECK(names(open.folders()) == Names{L"c", L"b", L"a"});
  CHECK(names(open.root().child(L"Files")) == Names{L"2.htm", L"1.htm"});
}

TEST_CASE("the addresses of the web and of what is in it are escaped where the switches say so") {
  OpenWeb open;
  open.folder.makeFolder(L"50% \u00e4");
  open.host.options().webUrl = L"http://server/my web";
  const auto item = [&] { return open.locateFolder(L"50% \u00e4").text(L"Url"); };
  CHECK(open.url() == L"http://server/my web");
  CHECK(item() == L"http://server/my web/50% \u00e4");
  open.host.options().itemUrlsEscaped = true;
  CHECK(open.url() == L"http://server/my web");
  CHECK(item() == L"http://server/my%20web/50%25%20%C3%A4");
  open.host.options().webUrlEscaped = true;
  CHECK(open.url() == L"http://server/my%20web");
  CHECK(item() == L"http://server/my%20web/50%25%20%C3%A4");
  open.host.options().itemUrlsEscaped = false;
  CHECK(item() == L"http://server/my web/50% \u00e4");
}

TEST_CASE("what is to be located is its name or an address where the switch says so") {
  OpenWeb open;
  for (const wchar_t* name : {L"index.htm", L"a b\\50% x.htm", L"a%20b\\50%25 x.htm"})
    open.folder.writeFile(name);
  const auto file = [&](const std::wstring& path) { return open.locateFile(path).text(L"Url"); };
  CHECK(file(L"a%20b/50%25 x.htm") == open.url() + L"/a%20b/50%25 x.htm");
  CHECK(open.locateFolder(L"a%20b").text(L"Name") == L"a%20b");
  CHECK_FALSE(open.locateFile(L"index.htm#top"));
  open.host.options().locateUnescapes = true;
  CHECK(file(L"a%20b/50%25 x.htm") == open.url() + L"/a b/50% x.htm");
  CHECK(open.locateFolder(L"a%20b").text(L"Name") == L"a b");
  CHECK(file(L"index.htm#top") == open.url() + L"/index.htm");
  CHECK(file(L"a b/%2e%2E/./index.htm") == open.url() + L"/index.htm");
  open.host.options().webUrl = L"http://server/my%20web";
  CHECK(file(L"http://server/my web/a%20b/50%25 x.htm") == L"http://server/my%20web/a b/50% x.htm");
}

TEST_CASE("a folder is added under its name or under what that stands for") {
  OpenWeb open;
  CHECK(LateBound(open.folders().call(L"Add", {L"a%20b"})).text(L"Name") == L"a%20b");
  open.host.options().addUnescapes = true;
  CHECK(LateBound(open.folders().call(L"Add", {L"a%20b#c"})).text(L"Name") == L"a b");
  CHECK(open.folders().call(L"Add", {L"%2e%2e"}).result == DISP_E_EXCEPTION);
}

TEST_CASE("all folders and files of the web are listed flat and sub-webs are not entered") {
  const OpenWeb open;
  open.folder.writeFile(L"index.htm");
  open.folder.writeFile(L"dwts\\Blue\\a.dwt");
  open.folder.writeFile(L"shop\\_vti_pvt\\service.cnf");
  open.folder.writeFile(L"shop\\cart\\cart.htm");
  CHECK(names(open.web.child(L"AllFolders")) == Names{L"dwts", L"shop", L"Blue"});
  CHECK(names(open.web.child(L"AllFiles")) == Names{L"index.htm", L"a.dwt"});
}

TEST_CASE("a folder is added by its plain name") {
  const OpenWeb open;
  const LateBound added(open.folders().call(L"Add", {L"New Folder"}));
  CHECK(added.text(L"Url") == open.url() + L"/New Folder");
  CHECK(open.folder.exists(L"New Folder"));
  CHECK(LateBound(added.child(L"Folders").call(L"Add", {L"below"})).text(L"Name") == L"below");
  CHECK(open.folder.exists(L"New Folder\\below"));
}

TEST_CASE("a folder cannot bear the name of a device") {
  const OpenWeb open;
  for (const wchar_t* name : {L"CON", L"nul", L"COM1", L"NUL.txt"}) {
    CAPTURE(name);
    const Answer answer = open.folders().call(L"Add", {name});
    CHECK(answer.result == DISP_E_EXCEPTION);
    CHECK(answer.description ==
          L"\"" + std::wstring(name) + L"\" is not the name of a new folder.");
  }
}

TEST_CASE("adding a folder that exists refuses or gives it") {
  OpenWeb open;
  open.folder.makeFolder(L"dwts");
  CHECK(open.folders().call(L"Add", {L"DWTS"}).description ==
        L"The folder \"DWTS\" already exists.");
  open.host.options().addExistingFolderGivesIt = true;
  CHECK(LateBound(open.folders().call(L"Add", {L"dwts"})).text(L"Name") == L"dwts");
}

TEST_CASE("adding a folder where a file has that name refuses") {
  OpenWeb open;
  open.folder.writeFile(L"dwts");
  open.host.options().addExistingFolderGivesIt = true;
  CHECK(open.folders().call(L"Add", {L"dwts"}).result == DISP_E_EXCEPTION);
}

TEST_CASE("adding several levels at once refuses or makes them") {
  OpenWeb open;
  CHECK(open.folders().call(L"Add", {L"dwts/Blue"}).result == DISP_E_EXCEPTION);
  CHECK_FALSE(open.folder.exists(L"dwts"));
  open.host.options().addMakesLevels = true;
  CHECK(open.folders().call(L"Add", {L"dwts/Blue"}).result == S_OK);
  CHECK(open.folder.exists(L"dwts\\Blue"));
}

TEST_CASE("adding a folder by its absolute address refuses or makes it") {
  OpenWeb open;
  const std::wstring url = open.url() + L"/dwts";
  CHECK(open.folders().call(L"Add", {url}).result == DISP_E_EXCEPTION);
  open.host.options().addTakesUrl = true;
  CHECK(LateBound(open.folders().call(L"Add", {url})).text(L"Url") == url);
  CHECK(open.folders().call(L"Add", {url}).result == DISP_E_EXCEPTION);
  CHECK(open.folders().call(L"Add", {L"http://elsewhere/dwts"}).result == DISP_E_EXCEPTION);
}

TEST_CASE("names that the disk cannot hold are refused") {
  const OpenWeb open;
  for (const wchar_t* name : {L"", L"..", L"a\\b", L"what?", L"a:b", L"\"a\""})
    CHECK(open.folders().call(L"Add", {name}).result == DISP_E_EXCEPTION);
}

TEST_CASE("importing copies a local file into the folder") {
  const OpenWeb open;
  const ScratchFolder local;
  const std::wstring source = local.writeFile(L"Blue.dwt", "content");
  const LateBound file(open.root().child(L"Files").call(L"Add", {source}));
  CHECK(file.text(L"Name") == L"Blue.dwt");
  CHECK(file.text(L"Extension") == L"dwt");
  CHECK(file.text(L"Url") == open.url() + L"/Blue.dwt");
  CHECK(open.folder.readFile(L"Blue.dwt") == "content");
  CHECK(local.exists(L"Blue.dwt"));
}

TEST_CASE("importing over a file needs the overwrite flag") {
  const OpenWeb open;
  const ScratchFolder local;
  const std::wstring source = local.writeFile(L"a.htm", "new");
  open.folder.writeFile(L"a.htm", "old");
  const LateBound files = open.root().child(L"Files");
  CHECK(files.call(L"Add", {source}).description == L"The file \"a.htm\" already exists.");
  CHECK(files.call(L"Add", {source, false}).result == DISP_E_EXCEPTION);
  CHECK(open.folder.readFile(L"a.htm") == "old");
  CHECK(files.call(L"Add", {source, true}).result == S_OK);
  CHECK(open.folder.readFile(L"a.htm") == "new");
}

TEST_CASE("importing a file that is not there is refused") {
  const OpenWeb open;
  CHECK(open.root().child(L"Files").call(L"Add", {L"C:\\none.htm"}).result == DISP_E_EXCEPTION);
}

TEST_CASE("an imported copy of a read-only file can be deleted") {
  const OpenWeb open;
  const ScratchFolder local;
  const std::wstring source = local.writeFile(L"a.htm");
  SetFileAttributesW(source.c_str(), FILE_ATTRIBUTE_READONLY);
  const LateBound file(open.root().child(L"Files").call(L"Add", {source}));
  CHECK(file.call(L"Delete").result == S_OK);
  CHECK_FALSE(open.folder.exists(L"a.htm"));
}

TEST_CASE("files are listed and found by name") {
  const OpenWeb open;
  open.folder.writeFile(L"b.htm");
  open.folder.writeFile(L"A.css");
  open.folder.writeFile(L"sub\\c.htm");
  const LateBound files = open.root().child(L"Files");
  CHECK(names(files) == Names{L"A.css", L"b.htm"});
  CHECK(files.item(L"B.HTM").text(L"Name") == L"b.htm");
}

TEST_CASE("deleting removes the file and a second time refuses") {
  const OpenWeb open;
  open.folder.writeFile(L"a.htm");
  const LateBound file = open.locateFile(L"a.htm");
  CHECK(file.call(L"Delete").result == S_OK);
  CHECK_FALSE(open.folder.exists(L"a.htm"));
  CHECK(file.call(L"Delete").result == DISP_E_EXCEPTION);
}

TEST_CASE("a file that is held open cannot be deleted") {
  const OpenWeb open;
  const std::wstring path = open.folder.writeFile(L"a.htm");
  const HANDLE held =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  CHECK(open.locateFile(L"a.htm").call(L"Delete").result == DISP_E_EXCEPTION);
  CloseHandle(held);
  CHECK(open.folder.exists(L"a.htm"));
}

TEST_CASE("a page's title is what stands between its tags and else its name") {
  const OpenWeb open;
  open.folder.writeFile(L"a.htm", "<html><TITLE>Blue page</TITLE></html>");
  open.folder.writeFile(L"b.htm", "<html></html>");
  CHECK(open.locateFile(L"a.htm").text(L"Title") == L"Blue page");
  CHECK(open.locateFile(L"b.htm").text(L"Title") == L"b.htm");
}

TEST_CASE("a file without a point has no extension") {
  const OpenWeb open;
  open.folder.writeFile(L"readme");
  CHECK(open.locateFile(L"readme").text(L"Extension").empty());
}

TEST_CASE("refreshing the web tells whoever shows it") {
  const OpenWeb open;
  int refreshed = 0;
  open.host.session().webChanged = [&] { ++refreshed; };
  CHECK(open.web.call(L"Refresh").result == S_OK);
  CHECK(open.web.call(L"Refresh", {true}).result == S_OK);
  CHECK(refreshed == 2);
}
