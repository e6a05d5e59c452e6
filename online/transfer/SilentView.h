// A download that nobody looks at.
#pragma once

#include "online/transfer/DownloadView.h"

class SilentView : public DownloadView {
 public:
  void showCaption(const std::wstring&) override {}
  void showCurrent(const std::wstring&) override {}
  void showCurrentSize(const std::wstring&) override {}
  void showOverallSize(const std::wstring&) override {}
  void resetCurrent(short) override {}
  void stepCurrent(short) override {}
  void resetOverall(short) override {}
  void stepOverall() override {}
  void disableCancel() override {}

 protected:
  ~SilentView() = default;
};
