// What shows a failure to the user.
#pragma once

#include <string_view>

#include "common/module.h"

class FailureView {
 public:
  // A message with the critical icon. Never fails.
  virtual void fail(std::wstring_view text, std::wstring_view title = module::title) noexcept = 0;

 protected:
  ~FailureView() = default;
};
