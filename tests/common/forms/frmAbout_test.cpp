#include "common/forms/frmAbout.h"

#include "common/forms/resource.h"
#include "common/log.h"
#include "common/settings.h"
#include "common/version.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t settingsKey[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";

constexpr wchar_t purpose[] =
    L"Browses Dynamic Web Templates and copies them, with their themes, into the web that is open "
    L"in FrontPage.";

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

TEST_CASE("the about box says what it is about") {
  const ScratchRegistry registry;
  std::vector<std::wstring> texts;
  ModalDriver driver;
  driver.onDialog(L"About Quillet", [&](HWND dialog) {
    for (const int id :
         {IDC_ABOUT_TITLE, IDC_ABOUT_VERSION, IDC_ABOUT_TEXT, IDC_ABOUT_LOGGING, IDOK})
      texts.push_back(windowText(dialog, id));
    press(dialog, IDOK);
  });
  frmAbout().ShowAbout(nullptr);
  CHECK(texts == std::vector<std::wstring>{L"Quillet Viewer",
                                           L"Version " + std::to_wstring(QUILLET_VERSION_MAJOR) +
                                               L"." + std::to_wstring(QUILLET_VERSION_MINOR) +
                                               L"." + std::to_wstring(QUILLET_VERSION_REVISION),
                                           purpose, L"Write a diagnostic &log", L"OK"});
}

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

TEST_CASE("a grey state is shown and OK leaves the log off") {
  const AboutSession session(2, BST_INDETERMINATE);
  CHECK(session.shownAs == BST_INDETERMINATE);
  CHECK(session.output.lines().empty());
  CHECK(modCommon::loggingFlag() == 2);
  CHECK(session.registry.string(HKEY_CURRENT_USER, settingsKey, L"Logging") == L"2");
}

TEST_CASE("a flag that no check box has is shown as off") {
  CHECK(AboutSession(-1, BST_UNCHECKED).shownAs == BST_UNCHECKED);
}

TEST_CASE("a click ticks the box and the next one unticks it") {
  const ScratchRegistry registry;
  modCommon::setLoggingFlag(2);
  std::vector<LRESULT> states;
  ModalDriver driver;
  driver.onDialog(L"About Quillet", [&](HWND dialog) {
    for (int click = 0; click < 2; ++click) {
      press(dialog, IDC_ABOUT_LOGGING);
      states.push_back(SendMessageW(GetDlgItem(dialog, IDC_ABOUT_LOGGING), BM_GETCHECK, 0, 0));
    }
    press(dialog, IDOK);
  });
  frmAbout().ShowAbout(nullptr);
  modCommon::setLoggingFlag(0);
  CHECK(states == std::vector<LRESULT>{BST_UNCHECKED, BST_CHECKED});
}

TEST_CASE("a switch that cannot be saved is logged and the about box stays") {
  const ScratchRegistry registry;
  const DebugOutput output;
  modCommon::setLoggingFlag(1);
  modCommon::SetLogIndent(0);
  const ImportPatch refuse(
      GetModuleHandleW(nullptr), "advapi32.dll", "RegCreateKeyA",
      +[](HKEY, LPCSTR, PHKEY) -> LSTATUS { return ERROR_ACCESS_DENIED; });
  bool stayed = false;
  ModalDriver driver;
  driver.onDialog(L"About Quillet", [&](HWND dialog) {
    press(dialog, IDOK);
    stayed = IsWindowVisible(dialog) != FALSE;
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  });
  frmAbout().ShowAbout(nullptr);
  const int flag = modCommon::loggingFlag();
  modCommon::setLoggingFlag(0);
  CHECK(stayed);
  CHECK(flag == 1);
  CHECK(output.messages() ==
        std::vector<std::wstring>{L"ERROR in procedure cmdOK_Click of Form frmAbout. Error : "
                                  L"5\tInvalid procedure call or argument"});
}
