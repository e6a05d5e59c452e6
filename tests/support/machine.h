// Whose machine the tests run on.
#pragma once

#include <windows.h>

#include <string>

#include "tests/support/Skipped.h"

namespace machine {

// Stands in the environment where the machine is somebody's own and has to stay as it is.
inline constexpr wchar_t isKept[] = L"QUILLET_TESTS_KEEP_MACHINE";

// Comes before what a test does to more than its own folder and registry. Throws Skipped when it
// must not. `what` goes on from "it".
inline void mayChange(const std::string& what = "registers components") {
  if (GetEnvironmentVariableW(isKept, nullptr, 0) == 0) return;
  throw Skipped("it " + what + ", which only run.cmd /all may do");
}

}  // namespace machine
