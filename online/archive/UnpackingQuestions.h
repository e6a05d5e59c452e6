// What unpacking asks and tells whoever shows it.
#pragma once

#include <optional>
#include <string>

#include "common/FailureView.h"
#include "common/KeepGoing.h"

// Told to stop, it leaves what it has written, and goes no further than the file at hand.
class UnpackingQuestions : public KeepGoing, public FailureView {
 public:
  enum class Overwrite { yes, no, none };
  virtual Overwrite overwrite(const std::wstring& name) = 0;
  // Of `longest` letters at most; nothing when the user gives up.
  virtual std::optional<std::wstring> password(int longest) = 0;

 protected:
  ~UnpackingQuestions() = default;
};
