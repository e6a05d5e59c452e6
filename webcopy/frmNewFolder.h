// Asks for the name of a new folder of the web.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "addin/host/HostWeb.h"
#include "common/forms/controls.h"

// True and the accepted name, as it was typed, when the user confirmed a valid name that no
// sub-folder of `parent` bears. Nothing is created yet. Raises an Error (429) when there can be no
// window.
bool AskNewFolderName(const HostFolder& parent, std::wstring& name, HWND owner);

// Why there can be no such folder, over the window that was to make it.
void showFolderRefused(HWND owner, std::wstring_view text) noexcept;

class frmNewFolder final : public forms::Form {
 public:
  frmNewFolder();

  bool AskNewFolderName(const HostFolder& parent, std::wstring& name, HWND owner);

 private:
  void Form_Load() override;
  void btnOK_Click();
  void btnCancel_Click();
  void refuse(const wchar_t* text);

  forms::Label lblMsg1;
  forms::Label lblParentFolder;
  forms::Label lblFolderName;
  forms::TextBox txtFolderName;
  forms::Button btnOK;
  forms::Button btnCancel;

  std::optional<HostFolder> parent_;
  std::wstring name_;
  bool ok_ = false;
};
