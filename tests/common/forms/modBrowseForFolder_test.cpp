#include "common/forms/modBrowseForFolder.h"

#include "common/FileSearch.h"
#include "tests/support/FolderPicker.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

using modBrowseForFolder::BrowseForFolder;

constexpr wchar_t pickerCaption[] = L"Browse for Folder";

struct Answer {
  bool chosen = true;
  std::wstring path;
};

// On a thread whose apartment is not one that OLE can use.
DWORD WINAPI askInOtherApartment(LPVOID answer) {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  auto& result = *static_cast<Answer*>(answer);
  result.chosen = BrowseForFolder(nullptr, L"Prompt", result.path);
  CoUninitialize();
  return 0;
}

// Under Wine the picker knows a folder by its times too, and a changed folder gets a new access
// time when it is first read: that must not happen between two looks of the picker.
void settleAccessTimes(const std::wstring& path) {
  for (auto slash = path.find(L'\\'); slash != path.npos; slash = path.find(L'\\', slash + 1))
    for (FileSearch search(path.substr(0, slash) + L"\\*"); search.next();) continue;
  for (FileSearch search(path + L"\\*"); search.next();) continue;
}

}  // namespace

TEST_CASE("the folder picker opens at the current folder and gives the chosen one") {
  const ScratchFolder folder;
  std::wstring path = folder.makeFolder(L"templates here");
  settleAccessTimes(path);
  ModalDriver driver;
  driver.onDialog(pickerCaption, [](HWND dialog) { press(dialog, IDOK); });
  const std::wstring start = path;
  CHECK(BrowseForFolder(nullptr, L"Select a folder", path));
  CHECK(path == start);
  CHECK(driver.dialogs() == std::vector<std::wstring>{pickerCaption});
}

TEST_CASE("a cancelled folder picker leaves the path as it was") {
  const ScratchFolder folder;
  std::wstring path = folder.path();
  ModalDriver driver;
  driver.onDialog(pickerCaption, [](HWND dialog) { press(dialog, IDCANCEL); });
  CHECK_FALSE(BrowseForFolder(nullptr, L"Select a folder", path));
  CHECK(path == folder.path());
}

TEST_CASE("a virtual folder has an empty path") {
  FolderPicker picker;
  picker.chooseVirtualFolder();
  std::wstring path = L"C:\\before";
  CHECK(BrowseForFolder(nullptr, L"Prompt", path));
  CHECK(path == L"");
}

TEST_CASE("a folder that no ANSI file function could open has an empty path") {
  const ScratchFolder folder;
  FolderPicker picker;
  picker.choose(folder.makeFolder(L"\x4E2D\x6587"));
  std::wstring path;
  CHECK(BrowseForFolder(nullptr, L"Prompt", path));
  CHECK(path == L"");
}

TEST_CASE("a chosen folder keeps blanks and umlauts and percent signs in its path") {
  const ScratchFolder folder;
  const std::wstring name = folder.makeFolder(L"100% \x00E4\x00F6\x00FC's");
  FolderPicker picker;
  picker.choose(name);
  std::wstring path;
  CHECK(BrowseForFolder(nullptr, L"Prompt", path));
  CHECK(path == name);
}

TEST_CASE("the folder picker is shown in its new style over its owner") {
  FolderPicker picker;
  std::wstring path;
  CHECK_FALSE(BrowseForFolder(GetDesktopWindow(), L"Prompt", path));
  REQUIRE(picker.shown.size() == 1);
  CHECK(picker.shown[0].owner == GetDesktopWindow());
  CHECK(picker.shown[0].prompt == L"Prompt");
  CHECK(picker.shown[0].start == L"");
  CHECK((picker.shown[0].flags & BIF_NEWDIALOGSTYLE) != 0);
}

TEST_CASE("the folder picker falls back to its old style where OLE is not to be had") {
  const ScratchFolder folder;
  FolderPicker picker;
  picker.choose(folder.path());
  Answer answer;
  const HANDLE thread = CreateThread(nullptr, 0, askInOtherApartment, &answer, 0, nullptr);
  WaitForSingleObject(thread, 10000);
  CloseHandle(thread);
  CHECK(answer.chosen);
  CHECK(answer.path == folder.path());
  REQUIRE(picker.shown.size() == 1);
  CHECK((picker.shown[0].flags & BIF_NEWDIALOGSTYLE) == 0);
}
