#include "catalogue/frmManageDWTFolders.h"

#include "catalogue/resource.h"
#include "common/forms/folder_icons.h"
#include "common/forms/modBrowseForFolder.h"
#include "common/log.h"

namespace {

constexpr wchar_t pickerPrompt[] = L"Select a folder that contains Dynamic Web Templates";
constexpr wchar_t alreadyListed[] = L"Path already exists in the list.";

// The place of a list's icon in the image list.
int iconOf(FolderList list) { return list == FolderList::machine ? 0 : 1; }

}  // namespace

frmManageDWTFolders::frmManageDWTFolders()
    : Form(L"frmManageDWTFolders", IDD_FOLDERS, L"Folders"),
      Label1(*this, IDC_FOLDERS_LABEL),
      lvSelectedFolders(*this, IDC_FOLDERS_LIST, L"DWT folder list"),
      cmdAdd(*this, IDC_FOLDERS_ADD),
      cmdEdit(*this, IDC_FOLDERS_EDIT),
      cmdRemove(*this, IDC_FOLDERS_REMOVE),
      cmdRemoveAll(*this, IDC_FOLDERS_REMOVEALL),
      cmdOK(*this, IDOK),
      cmdCancel(*this, IDCANCEL) {
  lvSelectedFolders.onItemClick = [this] {
    handle(L"lvSelectedFolders_ItemClick", [this] { lvSelectedFolders_ItemClick(); });
  };
  lvSelectedFolders.onDoubleClick = [this] {
    if (cmdEdit.enabled()) cmdEdit_Click();
  };
  cmdAdd.onClick = [this] { cmdAdd_Click(); };
  cmdEdit.onClick = [this] { cmdEdit_Click(); };
  cmdRemove.onClick = [this] { cmdRemove_Click(); };
  cmdRemoveAll.onClick = [this] { cmdRemoveAll_Click(); };
  cmdOK.onClick = [this] { cmdOk_Click(); };
  cmdCancel.onClick = [this] { unload(); };
}

bool frmManageDWTFolders::ShowFolderDialog(HWND owner) {
  showModal(owner);
  return saved_;
}

ListedFolder frmManageDWTFolders::Rows::row(int index) const {
  const forms::ListRow& row = list_.row(index);
  return {static_cast<FolderList>(row.item), row.text};
}

int frmManageDWTFolders::Rows::add(const ListedFolder& row) {
  return list_.add({.text = row.path,
                    .toolTip = {},
                    .icon = iconOf(row.list),
                    .item = static_cast<std::size_t>(row.list)});
}

void frmManageDWTFolders::Form_Load() {
  const forms::WaitCursor wait;
  loadIcons();
  keepEdges();
  // A list that could not be read must not replace the stored one.
  cmdOK.setEnabled(false);
  edit_.Load();
  cmdOK.setEnabled(true);
  lvSelectedFolders.autoSizeColumn();
  lvSelectedFolders_ItemClick();
}

void frmManageDWTFolders::loadIcons() {
  ilIcons_ = forms::makeFolderIcons({forms::FolderIcon::ofMachine, forms::FolderIcon::ofUser});
  lvSelectedFolders.setImages(ilIcons_.get());
}

void frmManageDWTFolders::keepEdges() {
  using namespace forms;
  keep(lvSelectedFolders, left | top | right | bottom);
  for (const Button* button : {&cmdAdd, &cmdEdit, &cmdRemove, &cmdRemoveAll})
    keep(*button, top | right);
  for (const Button* button : {&cmdOK, &cmdCancel}) keep(*button, right | bottom);
}

bool frmManageDWTFolders::preTranslate(MSG& message) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_DELETE ||
      message.hwnd != lvSelectedFolders.hwnd())
    return false;
  if (cmdRemove.enabled()) cmdRemove_Click();
  return true;
}

void frmManageDWTFolders::lvSelectedFolders_ItemClick() {
  const FolderListEdit::Allowed allowed = edit_.allowed();
  cmdRemoveAll.setEnabled(allowed.removeAll);
  cmdRemove.setEnabled(allowed.remove);
  cmdEdit.setEnabled(allowed.edit);
}

void frmManageDWTFolders::cmdAdd_Click() {
  handle(L"cmdAdd_Click", [this] {
    std::wstring path = selectedPath();
    if (!pickFolder(path)) return;
    if (path.empty()) {
      message(modBrowseForFolder::invalidPath, MB_ICONINFORMATION);
      return;
    }
    if (edit_.Add(path)) lvSelectedFolders.autoSizeColumn();
    lvSelectedFolders_ItemClick();
  });
}

// An error here is logged under the name of the other handler, as it is for both.
void frmManageDWTFolders::cmdEdit_Click() {
  handle(L"cmdAdd_Click", [this] {
    if (lvSelectedFolders.selected() < 0) {
      tell(L"Please select an item to edit.", MB_ICONINFORMATION);
      return;
    }
    std::wstring path = selectedPath();
    modCommon::WriteLog({L"Path Name : ", path});
    if (!pickFolder(path)) return;
    if (path.empty()) {
      tell(modBrowseForFolder::invalidPath, MB_ICONINFORMATION);
      modCommon::WriteLog(modBrowseForFolder::invalidPath);
      return;
    }
    accept(path);
  });
}

void frmManageDWTFolders::accept(const std::wstring& path) {
  switch (edit_.Edit(path)) {
    case FolderListEdit::Change::none:
      return;
    case FolderListEdit::Change::alreadyListed:
      tell(path + L"\r\n" + alreadyListed, MB_ICONINFORMATION);
      modCommon::WriteLog({path, L": ", alreadyListed});
      return;
    case FolderListEdit::Change::done:
      lvSelectedFolders.autoSizeColumn();
      lvSelectedFolders_ItemClick();
      modCommon::WriteLog({L"New Path : ", path});
      return;
  }
}

void frmManageDWTFolders::cmdRemove_Click() {
  handle(L"cmdRemove_Click", [this] {
    if (lvSelectedFolders.selected() < 0) {
      tell(L"Please select an item to remove.", MB_ICONINFORMATION);
      return;
    }
    if (tell(L"Are you sure you want to remove the selected folder?", MB_ICONQUESTION | MB_YESNO) !=
        IDYES)
      return;
    edit_.Remove();
    lvSelectedFolders_ItemClick();
  });
}

void frmManageDWTFolders::cmdRemoveAll_Click() {
  handle(L"cmdRemoveAll_Click", [this] {
    if (tell(L"Are you sure you want to remove all folders?", MB_ICONQUESTION | MB_YESNO) != IDYES)
      return;
    edit_.RemoveAll();
    lvSelectedFolders_ItemClick();
  });
}

void frmManageDWTFolders::cmdOk_Click() {
  handle(L"cmdOk_Click", [this] {
    {
      const forms::WaitCursor wait;
      edit_.Save();
    }
    saved_ = true;
    unload();
  });
}

int frmManageDWTFolders::tell(std::wstring_view text, UINT style) const noexcept {
  return showMessage(boxOwner(), text, style);
}

bool frmManageDWTFolders::pickFolder(std::wstring& path) {
  return modBrowseForFolder::BrowseForFolder(hwnd(), pickerPrompt, path);
}

std::wstring frmManageDWTFolders::selectedPath() const {
  const int index = lvSelectedFolders.selected();
  return index < 0 ? std::wstring() : lvSelectedFolders.row(index).text;
}

bool ShowFolderDialog(HWND owner) { return frmManageDWTFolders().ShowFolderDialog(owner); }
