#include "common/forms/frmInputBox.h"

#include "common/forms/controls.h"
#include "common/forms/resource.h"

namespace {

class frmInputBox final : public forms::Form {
 public:
  frmInputBox(const std::wstring& prompt, int limit);

  std::optional<std::wstring> Ask(HWND owner);

 private:
  void Form_Load() override;
  void btnOK_Click();
  void btnCancel_Click();

  forms::Label lblPrompt;
  forms::TextBox txtInput;
  forms::Button btnOK;
  forms::Button btnCancel;

  const std::wstring& prompt_;
  int limit_;
  std::optional<std::wstring> answer_;
};

frmInputBox::frmInputBox(const std::wstring& prompt, int limit)
    : Form(L"frmInputBox", IDD_INPUTBOX, L"Downloading"),
      lblPrompt(*this, IDC_INPUTBOX_LBLPROMPT),
      txtInput(*this, IDC_INPUTBOX_TXTINPUT),
      btnOK(*this, IDOK),
      btnCancel(*this, IDCANCEL),
      prompt_(prompt),
      limit_(limit) {
  btnOK.onClick = [this] { btnOK_Click(); };
  btnCancel.onClick = [this] { btnCancel_Click(); };
}

std::optional<std::wstring> frmInputBox::Ask(HWND owner) {
  showModal(owner);
  return answer_;
}

void frmInputBox::Form_Load() {
  lblPrompt.setText(prompt_);
  SendMessageW(txtInput.hwnd(), EM_SETLIMITTEXT, static_cast<WPARAM>(limit_), 0);
  txtInput.focus();
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

}  // namespace

std::optional<std::wstring> forms::askForText(const std::wstring& prompt, int limit, HWND owner) {
  return frmInputBox(prompt, limit).Ask(owner);
}
