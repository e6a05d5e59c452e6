#include "addin/owner.h"

#include "addin/host/environment.h"

namespace {

bool isOrdinary(HWND window) noexcept {
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
  const auto extended = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
  return (style & WS_CAPTION) == WS_CAPTION && !(extended & WS_EX_TOOLWINDOW);
}

}  // namespace

HWND ownerOfWindows() noexcept {
  HWND frame = modCommon::GetHostMainWindow();
  if (!frame) {
    // A host whose frame is of another class.
    frame = GetAncestor(GetActiveWindow(), GA_ROOTOWNER);
    if (!frame || !isOrdinary(frame)) return nullptr;
  }
  const HWND dialog = IsWindowEnabled(frame) ? nullptr : GetLastActivePopup(frame);
  return dialog && isOrdinary(dialog) ? dialog : frame;
}
