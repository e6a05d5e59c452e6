#include "common/forms/page_address.h"

#include <windows.h>

#include "common/text.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using forms::fileBeside;
using forms::isSamePage;

namespace {

// As engines write the address of a file, with its blanks escaped and nothing else.
std::wstring urlOf(const std::wstring& path) {
  return L"file:///" + text::replaceAll(text::replaceAll(path, L"\\", L"/"), L" ", L"%20");
}

std::wstring shortNameOf(const std::wstring& path) {
  wchar_t name[MAX_PATH] = {};
  GetShortPathNameW(path.c_str(), name, MAX_PATH);
  return name;
}

// Notes every file that is opened, and whose full name is looked up.
class FilesLookedAt {
 public:
  FilesLookedAt() { names_.clear(); }
  static const std::vector<std::wstring>& names() { return names_; }

 private:
  static HANDLE WINAPI open(LPCWSTR name, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD,
                            HANDLE) {
    names_.push_back(name);
    SetLastError(ERROR_FILE_NOT_FOUND);
    return INVALID_HANDLE_VALUE;
  }
  static DWORD WINAPI longName(LPCWSTR name, LPWSTR, DWORD) {
    names_.push_back(name);
    return 0;
  }
  static inline std::vector<std::wstring> names_;
  ImportPatch open_{nullptr, "kernel32.dll", "CreateFileW", open};
  ImportPatch longName_{nullptr, "kernel32.dll", "GetLongPathNameW", longName};
};

// Two files are told apart by their names alone.
class NoFileNumbers {
 private:
  static BOOL WINAPI none(HANDLE, LPBY_HANDLE_FILE_INFORMATION data) {
    *data = {};
    return TRUE;
  }
  ImportPatch patch_{nullptr, "kernel32.dll", "GetFileInformationByHandle", none};
};

}  // namespace

TEST_CASE("a page is recognised however the browser writes its address") {
  CHECK(isSamePage(L"C:\\My pages\\a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file:///C:/My%20pages/a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file:///c:/my pages/A.HTM#below", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file:///C:/My%20pages/a.htm?query#below", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file:///C|/My%20pages/a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file://C:\\My pages\\a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"FILE:C:/My%20pages/a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"file://localhost/C:/My%20pages/a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"C:/My pages/a.htm", L"C:\\My pages\\a.htm"));
  CHECK(isSamePage(L"C:\\a#b\\c.htm", L"C:\\a#b\\c.htm"));
  CHECK(isSamePage(L"about:blank", L"about:blank"));
}

TEST_CASE("a page is recognised however it was asked for") {
  for (const wchar_t* wanted :
       {L"C:\\pages\\sub/page.htm", L"C:\\pages\\other\\..\\sub\\page.htm",
        L"C:\\pages\\\\sub\\page.htm", L"C:\\pages\\sub\\\\page.htm", L"c:/PAGES/sub/page.htm",
        L"C:\\pages\\.\\sub\\page.htm", L"file:///C:/pages/other/../sub/page.htm"}) {
    CAPTURE(wanted);
    CHECK(isSamePage(L"file:///C:/pages/sub/page.htm", wanted));
    CHECK_FALSE(isSamePage(L"file:///C:/pages/sub/page2.htm", wanted));
    CHECK_FALSE(isSamePage(L"file:///C:/page.htm", wanted));
  }
}

TEST_CASE("letters outside ASCII may be written as they are or escaped in either way") {
  const std::wstring wanted = L"C:\\caf\u00E9\\men\u00FC.htm";
  CHECK(isSamePage(L"file:///C:/caf\u00E9/men\u00FC.htm", wanted));
  CHECK(isSamePage(L"file:///C:/caf%C3%A9/men%C3%BC.htm", wanted));
  CHECK(isSamePage(L"file:///C:/caf%E9/men%FC.htm", wanted));
  CHECK(isSamePage(L"file:///C:/caf%e9/men\u00FC.htm", wanted));
  CHECK_FALSE(isSamePage(L"file:///C:/caf%C3%A8/men%C3%BC.htm", wanted));
  CHECK_FALSE(isSamePage(L"file:///C:/caf%E8/men%FC.htm", wanted));
}

TEST_CASE("signs that mean something in an address are part of a file's name") {
  CHECK(isSamePage(L"file:///C:/C%23%201/100%25.htm", L"C:\\C# 1\\100%.htm"));
  CHECK(isSamePage(L"file:///C:/C# 1/100%.htm", L"C:\\C# 1\\100%.htm"));
  CHECK(isSamePage(L"file:///C:/50%2520off.htm", L"C:\\50%20off.htm"));
  CHECK(isSamePage(L"file:///C:/a%2.htm", L"C:\\a%2.htm"));
  CHECK(isSamePage(L"file:///C:/a%zz.htm", L"C:\\a%zz.htm"));
  CHECK_FALSE(isSamePage(L"file:///C:/a%00.htm", L"C:\\a"));
  CHECK_FALSE(isSamePage(L"file:///C:/a%4", L"C:\\a@"));
}

TEST_CASE("a page on a server is recognised") {
  const std::wstring wanted = L"\\\\server\\share\\a page.htm";
  CHECK(isSamePage(L"file://server/share/a%20page.htm", wanted));
  CHECK(isSamePage(L"file://///Server/share/a%20page.htm", wanted));
  CHECK(isSamePage(L"\\\\server\\SHARE\\a page.htm", wanted));
  CHECK_FALSE(isSamePage(L"file://other/share/a%20page.htm", wanted));
  CHECK_FALSE(isSamePage(L"file:///server/share/a%20page.htm", wanted));
}

TEST_CASE("a page of the web is recognised with and without the engine's own spelling") {
  CHECK(isSamePage(L"http://server/", L"http://server"));
  CHECK(isSamePage(L"http://server/a%20page.htm", L"http://server/a page.htm"));
  CHECK(isSamePage(L"http://server/a.htm#below", L"http://server/a.htm"));
  CHECK_FALSE(isSamePage(L"http://server/a.htm?query", L"http://server/a.htm"));
  CHECK_FALSE(isSamePage(L"http://server/a.htm", L"http://server/b.htm"));
}

TEST_CASE("a page is recognised by its short name and by its long one") {
  const ScratchFolder disk;
  const std::wstring page = disk.writeFile(L"a long folder name\\a long page name.htm");
  const std::wstring other = disk.writeFile(L"a long folder name\\a long page title.htm");
  const std::wstring brief = shortNameOf(page);
  REQUIRE(brief != page);
  CHECK(isSamePage(urlOf(page), brief));
  CHECK(isSamePage(urlOf(brief), page));
  CHECK_FALSE(isSamePage(urlOf(other), brief));
  CHECK_FALSE(isSamePage(urlOf(brief), other));
  const NoFileNumbers none;
  CHECK(isSamePage(urlOf(page), brief));
  CHECK_FALSE(isSamePage(urlOf(other), brief));
}

TEST_CASE("a page is recognised where its folder is a link to another one") {
  const ScratchFolder disk;
  const std::wstring page = disk.writeFile(L"pages\\a.htm");
  const std::wstring link = disk / L"b.htm";
  REQUIRE(CreateHardLinkW(link.c_str(), page.c_str(), nullptr));
  CHECK(isSamePage(urlOf(page), link));
  const std::wstring other = disk.writeFile(L"pages\\b.htm");
  CHECK_FALSE(isSamePage(urlOf(other), link));
}

TEST_CASE("another page is told from the one that was asked for") {
  CHECK_FALSE(isSamePage(L"C:\\My pages\\b.htm", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"D:\\My pages\\a.htm", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"http://server/a.htm", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"about:blank", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"C:\\My pages\\a.htm", L"about:blank"));
  CHECK_FALSE(isSamePage(L"", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"file:", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"file:///", L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"file:" + std::wstring(3000, L'x'), L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"file:///C:/" + std::wstring(40000, L'x'), L"C:\\My pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"http://" + std::wstring(40000, L' '), L"http://server/"));
}

TEST_CASE("no other drive or server is asked whether it has the page") {
  const FilesLookedAt files;
  CHECK_FALSE(isSamePage(L"file://other/share/a.htm", L"C:\\pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"\\\\other\\share\\a.htm", L"\\\\server\\share\\a.htm"));
  CHECK_FALSE(isSamePage(L"\\\\server\\other\\a.htm", L"\\\\server\\share\\a.htm"));
  CHECK_FALSE(isSamePage(L"file:///A:/a.htm", L"C:\\pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"file://server", L"C:\\pages\\a.htm"));
  CHECK_FALSE(isSamePage(L"http://other/a.htm", L"C:\\pages\\a.htm"));
  CHECK(files.names().empty());
  CHECK_FALSE(isSamePage(L"file:///C:/b.htm", L"C:\\pages\\a.htm"));
  CHECK_FALSE(files.names().empty());
}

TEST_CASE("the file of an address is told when it lies on the page's own drive or share") {
  const std::wstring page = L"C:\\pages\\a.htm";
  CHECK(fileBeside(L"file:///C:/my%20pages/b.htm#below", page) == L"C:\\my pages\\b.htm");
  CHECK(fileBeside(L"file:///c:/pages/x/../b.htm?query.htm", page) == L"c:\\pages\\b.htm");
  CHECK(fileBeside(L"C:\\pages\\b.htm", page) == L"C:\\pages\\b.htm");
  CHECK(fileBeside(L"file://server/share/b.htm", L"\\\\SERVER\\share\\x\\a.htm") ==
        L"\\\\server\\share\\b.htm");
  for (const wchar_t* elsewhere :
       {L"file:///D:/pages/b.htm", L"file://server/share/b.htm", L"http://server/b.htm",
        L"about:blank", L"javascript:alert(1)", L"res://c:/a.htm", L"mk:@MSITStore:C:/a.htm", L""})
    CHECK_FALSE(fileBeside(elsewhere, page).has_value());
}
