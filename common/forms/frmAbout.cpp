#include "common/forms/frmAbout.h"

#include "common/ansi.h"
#include "common/forms/resource.h"
#include "common/log.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/version.h"

frmAbout::frmAbout()
    : Form(L"frmAbout", IDD_ABOUT, L"About"),
      lblVersion(*this, IDC_ABOUT_VERSION),
      chkLogging(*this, IDC_ABOUT_LOGGING),
      cmdOK(*this, IDOK) {
  // Grey only shows what was saved so; a click leaves it, as in a box of two states.
  chkLogging.onClick = [this] { chkLogging.setValue(chkLogging.value() == 0 ? 1 : 0); };
  cmdOK.onClick = [this] { cmdOK_Click(); };
}

void frmAbout::ShowAbout(HWND owner) { showModal(owner); }

void frmAbout::Form_Load() {
  lblVersion.setText(L"Version " + text::fromAnsi(QUILLET_VERSION_TEXT));
  const int flag = modCommon::loggingFlag();
  chkLogging.setValue(flag >= 0 && flag <= 2 ? flag : 0);
}

// The flag changes last, so the lines written here follow the old state: switching the log on is
// silent, switching it off is its last line.
void frmAbout::cmdOK_Click() {
  handle(L"cmdOK_Click", [this] {
    const int value = chkLogging.value();
    settings::SaveSetting(settings::general, settings::logging, text::decimal(value));
    modCommon::WriteLog(value == 1 ? L"Logging facility : ENABLED"
                                   : L"Logging facility : DISABLED");
    if (value == 1) modCommon::WriteLog(modCommon::logSeparator);
    modCommon::setLoggingFlag(value);
    unload();
  });
}
