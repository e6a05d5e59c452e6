// Asks for one line of text.
#pragma once

#include <optional>
#include <string>

#include "common/forms/controls.h"

class frmInputBox final : public forms::Form {
 public:
  frmInputBox();

  // What was typed, at most `limit` characters; nothing when the user cancelled. Raises an Error
  // (429) when there can be no window.
  std::optional<std::wstring> Ask(const std::wstring& prompt, int limit, HWND owner);

 private:
  void Form_Load() override;
  void btnOK_Click();
  void btnCancel_Click();

  forms::Label lblPrompt;
  forms::TextBox txtInput;
  forms::Button btnOK;
  forms::Button btnCancel;

  std::wstring prompt_;
  int limit_ = 0;
  std::optional<std::wstring> answer_;
};
