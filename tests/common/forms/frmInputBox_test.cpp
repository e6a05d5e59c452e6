#include "common/forms/frmInputBox.h"

#include "common/forms/resource.h"
#include "tests/support/Frame.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

namespace {

// The answer of a user who types a text and presses a button.
std::optional<std::wstring> answer(std::wstring_view typed, int button, int limit = 20) {
  const Frame frame;
  ModalDriver driver;
  driver.onDialog(L"Quillet Viewer", [&](HWND dialog) {
    CHECK(windowText(dialog, IDC_INPUTBOX_LBLPROMPT) == L"What & where?");
    CHECK(GetFocus() == GetDlgItem(dialog, IDC_INPUTBOX_TXTINPUT));
    CHECK(GetWindow(dialog, GW_OWNER) == frame.get());
    for (const wchar_t letter : typed)
      SendDlgItemMessageW(dialog, IDC_INPUTBOX_TXTINPUT, WM_CHAR, letter, 0);
    press(dialog, button);
  });
  return forms::askForText(L"What & where?", limit, frame.get());
}

}  // namespace

TEST_CASE("the input box answers with what was typed") {
  CHECK(answer(L"here", IDOK) == L"here");
  CHECK(answer(L"", IDOK) == L"");
}

TEST_CASE("a cancelled input box answers nothing") { CHECK_FALSE(answer(L"here", IDCANCEL)); }

TEST_CASE("the input box takes no more than its limit") {
  CHECK(answer(L"twelve", IDOK, 3) == L"twe");
}
