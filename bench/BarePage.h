// The system's web browser control in a window, with the smallest site that it takes.
#pragma once

#include <windows.h>

#include <exdisp.h>
#include <oleidl.h>

#include <string>

#include "common/com.h"

namespace bench {

class BarePage {
 public:
  explicit BarePage(HWND place);
  ~BarePage();
  BarePage(const BarePage&) = delete;
  BarePage& operator=(const BarePage&) = delete;

  void navigate(const wchar_t* address);

 private:
  ComPtr<IOleObject> object_;
  ComPtr<IWebBrowser2> browser_;
};

}  // namespace bench
