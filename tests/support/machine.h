// Whose machine the tests run on.
#pragma once

#include <windows.h>

#include "tests/support/Skipped.h"

namespace machine {

// Stands in the environment where the machine is somebody's own and has to stay as it is.
inline constexpr wchar_t isKept[] = L"QUILLET_TESTS_KEEP_MACHINE";

// Comes before what a test changes for all programs of the machine. Throws Skipped when it must
// not.
inline void mayChange() {
  if (GetEnvironmentVariableW(isKept, nullptr, 0) == 0) return;
  throw Skipped("it registers components, which only run.cmd /all may do");
}

}  // namespace machine
