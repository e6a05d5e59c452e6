// How often the clipboard has been asked for its data. Some versions of Wine keep a block of memory
// each time, which is not the module's doing.
#pragma once

#include <windows.h>

#include "tests/support/ImportPatch.h"

namespace torture {

// By this program and by the module, while it lives.
class ClipboardLooks {
 public:
  explicit ClipboardLooks(HMODULE module);
  ~ClipboardLooks();
  ClipboardLooks(const ClipboardLooks&) = delete;
  ClipboardLooks& operator=(const ClipboardLooks&) = delete;

  // What one costs, with a text on the clipboard.
  void measure();
  long count() const noexcept;
  // How much memory the process has lost by it, in bytes.
  SIZE_T lost() const noexcept { return static_cast<SIZE_T>(count()) * lostByOne_; }

 private:
  SIZE_T lostByOne_ = 0;
  ImportPatch module_;
  ImportPatch program_;
};

SIZE_T memoryOfProcess();

}  // namespace torture
