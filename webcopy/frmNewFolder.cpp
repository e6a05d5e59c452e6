#include "webcopy/frmNewFolder.h"

#include "webcopy/resource.h"
#include "webcopy/web_folder_path.h"
#include "webcopy/web_folders.h"

bool AskNewFolderName(const HostFolder& parent, std::wstring& name, HWND owner) {
  return frmNewFolder().AskNewFolderName(parent, name, owner);
}

void showFolderRefused(HWND owner, std::wstring_view text) noexcept {
  showMessage(owner, text, MB_OK | MB_ICONERROR, L"Create Web Folder");
}

frmNewFolder::frmNewFolder()
    : Form(L"frmNewFolder", IDD_NEWFOLDER, L"NewFolder"),
      lblMsg1(*this, IDC_NEWFOLDER_LBLMSG1),
      lblParentFolder(*this, IDC_NEWFOLDER_LBLPARENTFOLDER),
      lblFolderName(*this, IDC_NEWFOLDER_LBLFOLDERNAME),
      txtFolderName(*this, IDC_NEWFOLDER_TXTFOLDERNAME),
      btnOK(*this, IDOK),
      btnCancel(*this, IDCANCEL) {
  btnOK.onClick = [this] { btnOK_Click(); };
  btnCancel.onClick = [this] { btnCancel_Click(); };
}

bool frmNewFolder::AskNewFolderName(const HostFolder& parent, std::wstring& name, HWND owner) {
  parent_ = parent;
  showModal(owner);
  parent_.reset();
  if (ok_) name = name_;
  return ok_;
}

void frmNewFolder::Form_Load() {
  txtFolderName.setText(webfolder::freeFolderName(webfolder::folderNames(*parent_)));
  txtFolderName.focus();
  txtFolderName.selectAll();
  lblParentFolder.setText(webfolder::displayPath(parent_->url(), parent_->web().url()));
}

void frmNewFolder::btnOK_Click() {
  handle(L"btnOK_Click", [this] {
    const std::wstring name = txtFolderName.text();
    const auto check = webfolder::checkNewName(*parent_, name);
    if (isUnloaded()) return;  // while the host answered
    switch (check) {
      case webfolder::NameCheck::invalid:
        return refuse(L"Invalid folder name specified.");
      case webfolder::NameCheck::exists:
        return refuse(L"Folder with this name already exists.");
      case webfolder::NameCheck::accepted:
        name_ = name;
        ok_ = true;
        return unload();
    }
  });
}

void frmNewFolder::refuse(const wchar_t* text) {
  showFolderRefused(hwnd(), text);
  txtFolderName.focus();
}

void frmNewFolder::btnCancel_Click() {
  handle(L"btnCancel_Click", [this] {
    ok_ = false;
    unload();
  });
}
