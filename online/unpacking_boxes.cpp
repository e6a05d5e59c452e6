#include "online/unpacking_boxes.h"

#include "common/forms/frmInputBox.h"
#include "common/message.h"
#include "common/text.h"

namespace online {
namespace {

// 48 (exclamation) and 3 (Yes, No and Cancel), joined as texts instead of added. The system shows
// the buttons and no icon; kept as it stands.
constexpr UINT overwriteStyle = 483;

}  // namespace

UnpackingQuestions::Overwrite askToOverwrite(HWND owner, const std::wstring& name) {
  switch (showMessage(owner, text::join({L"Overwrite ", name, L"?"}), overwriteStyle,
                      L"VBUnZip32 - File Already Exists!")) {
    case IDYES:
      return UnpackingQuestions::Overwrite::yes;
    case IDNO:
      return UnpackingQuestions::Overwrite::no;
    default:
      return UnpackingQuestions::Overwrite::none;
  }
}

std::optional<std::wstring> askForPassword(HWND owner, int longest) {
  return forms::askForText(L"Please Enter The Password!", longest, owner);
}

}  // namespace online
