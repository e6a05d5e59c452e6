#include "tests/runner/ClipboardText.h"

#include <windows.h>

#include "common/handles.h"

namespace {

class OpenedClipboard {
 public:
  // Another program may hold it for a moment.
  OpenedClipboard() {
    constexpr int tries = 50;
    constexpr DWORD between = 20;  // milliseconds
    for (int time = 0; time < tries && !isOpen_; ++time) {
      if (time > 0) Sleep(between);
      isOpen_ = OpenClipboard(nullptr) != FALSE;
    }
  }
  ~OpenedClipboard() {
    if (isOpen_) CloseClipboard();
  }
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  explicit operator bool() const { return isOpen_; }

 private:
  bool isOpen_ = false;
};

}  // namespace

ClipboardText::ClipboardText() {
  const OpenedClipboard clipboard;
  const HANDLE memory = clipboard ? GetClipboardData(CF_UNICODETEXT) : nullptr;
  const auto* const text = memory ? static_cast<const wchar_t*>(GlobalLock(memory)) : nullptr;
  if (!text) return;
  text_ = text;
  GlobalUnlock(memory);
}

ClipboardText::~ClipboardText() {
  const OpenedClipboard clipboard;
  if (!clipboard || !EmptyClipboard() || text_.empty()) return;
  const SIZE_T size = (text_.size() + 1) * sizeof(wchar_t);
  handles::Global memory(GlobalAlloc(GMEM_MOVEABLE, size));
  if (!memory) return;
  text_.copy(static_cast<wchar_t*>(GlobalLock(memory.get())), text_.size());
  static_cast<wchar_t*>(GlobalLock(memory.get()))[text_.size()] = L'\0';
  GlobalUnlock(memory.get());
  GlobalUnlock(memory.get());
  if (SetClipboardData(CF_UNICODETEXT, memory.get())) (void)memory.release();
}
