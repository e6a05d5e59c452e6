#include "common/forms/frmAbout.h"

#include "common/forms/resource.h"
#include "common/log.h"
#include "common/settings.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t settingsKey[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";

// Opens the about box with the log on or off, sets the check box and presses OK.
struct AboutSession {
  ScratchRegistry registry;
  DebugOutput output;
  WPARAM shownAs = 99;

  AboutSession(int flagBefore, WPARAM checkBox) {
    modCommon::setLoggingFlag(flagBefore);
    modCommon::SetLogIndent(0);
    ModalDriver driver;
    driver.onDialog(L"About Quillet", [&](HWND dialog) {
      const HWND box = GetDlgItem(dialog, IDC_ABOUT_LOGGING);
      shownAs = static_cast<WPARAM>(SendMessageW(box, BM_GETCHECK, 0, 0));
      SendMessageW(box, BM_SETCHECK, checkBox, 0);
      press(dialog, IDOK);
    });
    frmAbout().ShowAbout(nullptr);
  }
  ~AboutSession() { modCommon::setLoggingFlag(0); }
};

}  // namespace

TEST_CASE("the about box shows the state of the log") {
  CHECK(AboutSession(0, BST_UNCHECKED).shownAs == BST_UNCHECKED);
  CHECK(AboutSession(1, BST_CHECKED).shownAs == BST_CHECKED);
}

TEST_CASE("switching the log on shows no confirmation line") {
  const AboutSession session(0, BST_CHECKED);
  CHECK(session.output.lines().empty());
  CHECK(modCommon::loggingFlag() == 1);
  CHECK(session.registry.string(HKEY_CURRENT_USER, settingsKey, L"Logging") == L"1");
}

TEST_CASE("switching the log off shows exactly one line") {
  const AboutSession session(1, BST_UNCHECKED);
  CHECK(session.output.messages() == std::vector<std::wstring>{L"Logging facility : DISABLED"});
  CHECK(modCommon::loggingFlag() == 0);
  CHECK(session.registry.string(HKEY_CURRENT_USER, settingsKey, L"Logging") == L"0");
}

TEST_CASE("leaving the log on writes the state and the hyphen line") {
  const AboutSession session(1, BST_CHECKED);
  CHECK(session.output.messages() ==
        std::vector<std::wstring>{L"Logging facility : ENABLED",
                                  L"-----------------------------------------------------"});
}

TEST_CASE("leaving the about box with Escape changes nothing") {
  const ScratchRegistry registry;
  modCommon::setLoggingFlag(0);
  ModalDriver driver;
  driver.onDialog(L"About Quillet", [](HWND dialog) {
    SendMessageW(GetDlgItem(dialog, IDC_ABOUT_LOGGING), BM_SETCHECK, BST_CHECKED, 0);
    SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  frmAbout().ShowAbout(nullptr);
  CHECK(modCommon::loggingFlag() == 0);
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, settingsKey));
}
