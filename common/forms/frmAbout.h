// The about box, with the switch of the diagnostic log.
#pragma once

#include "common/forms/Form.h"
#include "common/forms/controls.h"

class frmAbout : public forms::Form {
 public:
  frmAbout();

  void ShowAbout(HWND owner);

 private:
  void Form_Load() override;
  void cmdOK_Click();

  forms::Label lblVersion;
  forms::CheckBox chkLogging;
  forms::Button cmdOK;
};
