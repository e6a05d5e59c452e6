// What unpacking asks and tells whoever shows it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "common/KeepGoing.h"

// Told to stop, it leaves what it has written, and goes no further than the file at hand.
class UnpackingQuestions : public KeepGoing {
 public:
  enum class Overwrite { yes, no, none };
  virtual Overwrite overwrite(const std::wstring& name) = 0;
  // Of `longest` letters at most; nothing when the user gives up.
  virtual std::optional<std::wstring> password(int longest) = 0;
  // A message with the critical icon and the application's title.
  virtual void fail(std::wstring_view text) noexcept = 0;

 protected:
  ~UnpackingQuestions() = default;
};
