// What both viewers do before and after their windows.
#pragma once

#include <windows.h>
#include <ole2.h>

#include "common/errors.h"
#include "common/message.h"

namespace help {

// Runs the program's body; what ends it early is shown. The program's exit code.
// Not run by tests: they show the windows without the programs.
template <class Body>
int runProgram(Body&& body) noexcept {
  OleInitialize(nullptr);
  int code = 0;
  try {
    body();
  } catch (...) {
    showMessage(nullptr, errors::current().description(), MB_ICONHAND, L"Quillet Help");
    code = 1;
  }
  OleUninitialize();
  return code;
}

}  // namespace help
