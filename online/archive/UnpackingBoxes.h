// The questions of unpacking as boxes.
#pragma once

#include <windows.h>

#include "online/archive/UnpackingQuestions.h"

class UnpackingBoxes final : public UnpackingQuestions {
 public:
  // Modal to `owner`. `run` is asked whether to go on; without one, nothing stops it.
  explicit UnpackingBoxes(HWND owner, KeepGoing* run = nullptr) : owner_(owner), run_(run) {}

  bool keepGoing() override;
  // True once `run` did not want to go on. It is not asked again then.
  bool wasStopped() const noexcept { return stopped_; }
  Overwrite overwrite(const std::wstring& name) override;
  std::optional<std::wstring> password(int longest) override;
  void fail(std::wstring_view text) noexcept override;

 private:
  HWND owner_;
  KeepGoing* run_;
  bool stopped_ = false;
};
