#include "online/frmInputBox.h"

#include "online/resource.h"

frmInputBox::frmInputBox()
    : Form(L"frmInputBox", IDD_INPUTBOX),
      lblPrompt(*this, IDC_INPUTBOX_LBLPROMPT),
      txtInput(*this, IDC_INPUTBOX_TXTINPUT),
      btnOK(*this, IDOK),
      btnCancel(*this, IDCANCEL) {
  btnOK.onClick = [this] { btnOK_Click(); };
  btnCancel.onClick = [this] { btnCancel_Click(); };
}

std::optional<std::wstring> frmInputBox::Ask(const std::wstring& prompt, int limit, HWND owner) {
  prompt_ = prompt;
  limit_ = limit;
  showModal(owner);
  return answer_;
}

void frmInputBox::Form_Load() {
  handle(L"Form_Load", [this] {
    lblPrompt.setText(prompt_);
    SendMessageW(txtInput.hwnd(), EM_SETLIMITTEXT, static_cast<WPARAM>(limit_), 0);
    txtInput.focus();
  });
}

void frmInputBox::btnOK_Click() {
  handle(L"btnOK_Click", [this] {
    answer_ = txtInput.text();
    unload();
  });
}

void frmInputBox::btnCancel_Click() {
  handle(L"btnCancel_Click", [this] { unload(); });
}
