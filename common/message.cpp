#include "common/message.h"

#include <string>

#include "common/visual_styles.h"

int showMessage(HWND owner, std::wstring_view text, UINT style, std::wstring_view title) noexcept {
  try {
    const VisualStyles styles;
    return MessageBoxW(owner, std::wstring(text).c_str(), std::wstring(title).c_str(), style);
  } catch (...) {  // Not run by tests: no memory.
    return 0;
  }
}
