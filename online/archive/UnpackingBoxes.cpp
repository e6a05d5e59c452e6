#include "online/archive/UnpackingBoxes.h"

#include "common/forms/frmInputBox.h"
#include "common/message.h"
#include "common/text.h"

namespace {

// 48 (exclamation) and 3 (Yes, No and Cancel), joined as texts instead of added. The system shows
// the buttons and no icon; kept as it stands.
constexpr UINT overwriteStyle = 483;

}  // namespace

bool UnpackingBoxes::keepGoing() {
  if (!stopped_ && run_ && !run_->keepGoing()) stopped_ = true;
  return !stopped_;
}

UnpackingQuestions::Overwrite UnpackingBoxes::overwrite(const std::wstring& name) {
  switch (showMessage(owner_, text::join({L"Overwrite ", name, L"?"}), overwriteStyle,
                      L"VBUnZip32 - File Already Exists!")) {
    case IDYES:
      return Overwrite::yes;
    case IDNO:
      return Overwrite::no;
    default:
      return Overwrite::none;
  }
}

std::optional<std::wstring> UnpackingBoxes::password(int longest) {
  return forms::askForText(L"Please Enter The Password!", longest, owner_);
}

void UnpackingBoxes::fail(std::wstring_view text) noexcept {
  showMessage(owner_, text, MB_ICONHAND);
}
