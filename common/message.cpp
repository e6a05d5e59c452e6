#include "common/message.h"

#include <string>

#include "common/log.h"
#include "common/visual_styles.h"

int showMessage(HWND owner, std::wstring_view text, UINT style, std::wstring_view title) noexcept {
  int answer = 0;
  try {
    const VisualStyles styles;
    answer = MessageBoxW(owner, std::wstring(text).c_str(), std::wstring(title).c_str(), style);
  } catch (...) {
    // no memory for the words themselves
  }
  if (answer == 0) modCommon::WriteLog(text);
  return answer;
}
