// Keeps the system from putting up boxes of its own.
#pragma once

#include <windows.h>

// While it lives, a drive without a medium fails the call that asks for it, instead of asking the
// user for a disk. The process' mode is the host's and is put back.
class NoSystemBoxes {
 public:
  NoSystemBoxes() noexcept : previous_(SetErrorMode(SEM_FAILCRITICALERRORS)) {
    SetErrorMode(previous_ | SEM_FAILCRITICALERRORS);
  }
  ~NoSystemBoxes() { SetErrorMode(previous_); }
  NoSystemBoxes(const NoSystemBoxes&) = delete;
  NoSystemBoxes& operator=(const NoSystemBoxes&) = delete;

 private:
  UINT previous_;
};
