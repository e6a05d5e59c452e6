// The text that the user has on the clipboard, put back when this ends. Anything else is lost.
#pragma once

#include <string>

class ClipboardText {
 public:
  ClipboardText();
  ~ClipboardText();
  ClipboardText(const ClipboardText&) = delete;
  ClipboardText& operator=(const ClipboardText&) = delete;

 private:
  std::wstring text_;
};
