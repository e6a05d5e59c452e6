// A rule that takes in what comes from outside, and what it promises whatever that is. Each file
// beside this one is such a target; it is built in two ways: natively, where a fuzzer makes up
// inputs (./dev fuzz), and for Windows, where a test gives it the inputs that are kept.
#pragma once

#include <string_view>

#include "tests/fuzz/Input.h"

namespace fuzz {

// Natively there is one in each program.
class Target {
 public:
  using Run = void (*)(Input input);
  Target(const char* name, Run run) noexcept;  // `name` is also its folder below corpus/

  const char* name() const noexcept { return name_; }
  void run(std::string_view bytes) const { run_(Input(bytes)); }

  // The list of all of them.
  static const Target* first() noexcept;
  const Target* next() const noexcept { return next_; }

 private:
  const char* name_;
  Run run_;
  const Target* next_;
};

// Ends the run with that promise when it is broken.
void promise(bool kept, const char* what);

}  // namespace fuzz
