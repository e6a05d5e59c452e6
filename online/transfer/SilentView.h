// A download that nobody looks at.
#pragma once

#include "online/transfer/DownloadView.h"

class SilentView : public DownloadView {
 public:
  void showCaption(const std::wstring&) override {}
  void showCurrent(const std::wstring&) override {}
  void showCurrentSize(const std::wstring&) override {}
  void showOverallSize(const std::wstring&) override {}  // Not run by tests: the dialog's.
  void resetCurrent(short) override {}
  void stepCurrent(short) override {}
  void resetOverall(short) override {}
  void stepOverall() override {}
  void disableCancel() override {}  // Not run by tests: unpacking's.

 protected:
  ~SilentView() = default;
};
