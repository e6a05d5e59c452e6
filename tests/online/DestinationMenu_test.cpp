#include "online/DestinationMenu.h"

#include "tests/folders/folder_support.h"
#include "tests/support/text_output.h"

namespace {

// Each entry as "tag text".
std::vector<std::wstring> lines(const DestinationMenu& menu) {
  std::vector<std::wstring> result;
  for (const auto& entry : menu.entries()) result.push_back(entry.tag + L" " + entry.text);
  return result;
}

}  // namespace

TEST_CASE("without folders the destination menu holds Browse alone") {
  CHECK(lines(DestinationMenu()) == std::vector<std::wstring>{L" Browse..."});
}

TEST_CASE("the destination menu separates the two lists and its last entry") {
  CHECK(lines(DestinationMenu(folderList({L"GC:\\Shared", L"GD:\\More", L"UC:\\Mine"}))) ==
        std::vector<std::wstring>{L"G C:\\Shared", L"G D:\\More", L" -", L"U C:\\Mine", L" -",
                                  L" Browse..."});
}

TEST_CASE("one list alone has only the separator before Browse") {
  CHECK(lines(DestinationMenu(folderList({L"UC:\\Mine"}))) ==
        std::vector<std::wstring>{L"U C:\\Mine", L" -", L" Browse..."});
}

TEST_CASE("a folder without a name is left out of the destination menu") {
  CHECK(lines(DestinationMenu(folderList({L"G", L"UC:\\Mine", L"U"}))) ==
        std::vector<std::wstring>{L"U C:\\Mine", L" -", L" Browse..."});
  CHECK(lines(DestinationMenu(folderList({L"G", L"U"}))) ==
        std::vector<std::wstring>{L" Browse..."});
}

TEST_CASE("a folder's tag is found without regard to letter case") {
  const DestinationMenu menu(folderList({L"GC:\\Shared"}));
  CHECK(menu.tagOf(L"c:\\SHARED") == L"G");
  CHECK(menu.has(L"c:\\SHARED"));
}

TEST_CASE("a folder chosen by browsing has the tag of the user's list") {
  CHECK(DestinationMenu(folderList({L"GC:\\Shared"})).tagOf(L"C:\\Elsewhere") == L"U");
}
