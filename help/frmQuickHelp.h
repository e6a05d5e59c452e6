// One page in a small window: a template's notes.
#pragma once

#include <string>

#include "common/forms/Form.h"
#include "common/forms/controls.h"
#include "help/PageBox.h"
#include "help/command_line.h"

class frmQuickHelp : public forms::Form {
 public:
  frmQuickHelp();

  // Returns when the user has closed the window. Its caption is the page's title and the one that
  // is given.
  void ShowQuickHelp(const help::QuickHelpRequest& request);

 private:
  void Form_Load() override;
  void Form_Unload() override;
  void showPage(const std::wstring& file);
  void btnPrint_Click();

  help::QuickHelpRequest request_;

  help::PageBox pgPage;
  forms::Button btnPrint;
  forms::Button btnClose;
};
