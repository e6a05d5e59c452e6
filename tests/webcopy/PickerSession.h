// The folder picker at work over the fixture's web.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"
#include "tests/webcopy/FolderTree.h"
#include "webcopy/frmSelectWebFolder.h"
#include "webcopy/resource.h"

using Lines = std::vector<std::wstring>;

inline constexpr wchar_t pickerCaption[] = L"Select a web folder";
inline constexpr wchar_t newFolderCaption[] = L"Create New Folder";

inline FolderTree treeOf(HWND dialog) {
  return FolderTree(GetDlgItem(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS));
}

// The picker over the fixture's web; `script` works it.
struct PickerSession {
  explicit PickerSession(standin::HostOptions options = {}) : fixture(std::move(options)) {}

  void makeFolders(const Lines& folders) const {
    for (const auto& folder : folders) fixture.disk.makeFolder(L"webs\\site\\" + folder);
  }
  bool pick(std::function<void(HWND)> script) {
    driver.onDialog(pickerCaption, std::move(script));
    const auto web = fixture.application().activeWeb();
    REQUIRE(web.has_value());
    return SelectWebFolder(*web, path, allowNewFolder, absolute, nullptr);
  }
  // Opens, reads and cancels.
  void look(std::function<void(const FolderTree&)> reader) {
    bool seen = false;
    pick([&](HWND dialog) {
      seen = true;
      reader(treeOf(dialog));
      press(dialog, IDCANCEL);
    });
    CHECK(seen);
  }
  // The selected path of a picker that opens with `initial`.
  std::wstring opensAt(const std::wstring& initial) {
    path = initial;
    std::wstring selected;
    look([&](const FolderTree& tree) { selected = tree.selectedPath(); });
    return selected;
  }
  bool existsInWeb(const std::wstring& folder) const {
    return fixture.disk.exists(L"webs\\site\\" + folder);
  }
  int calls(const wchar_t* member) const { return fixture.host.faults().calls(member); }

  CopyFixture fixture;
  ModalDriver driver;
  std::wstring path;
  bool allowNewFolder = true;
  bool absolute = false;
};

// Presses "New..." and works the dialog that opens.
inline void makeFolder(PickerSession& session, HWND dialog, std::function<void(HWND)> script) {
  session.driver.onDialog(newFolderCaption, std::move(script));
  press(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER);
}

inline std::function<void(HWND)> confirming(const std::wstring& name) {
  return [name](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_NEWFOLDER_TXTFOLDERNAME, name.c_str());
    press(dialog, IDOK);
  };
}
