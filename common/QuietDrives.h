// Keeps the system's own "no disk in drive" boxes away.
#pragma once

#include <windows.h>

// While it lives, a file function that meets a drive without a medium fails with its code instead
// of asking the user. The error mode belongs to the whole process, so it is kept only around single
// calls, never while events are handled.
class QuietDrives {
 public:
  QuietDrives() noexcept : before_(SetErrorMode(SEM_FAILCRITICALERRORS)) {
    SetErrorMode(before_ | SEM_FAILCRITICALERRORS);
  }
  ~QuietDrives() { SetErrorMode(before_); }
  QuietDrives(const QuietDrives&) = delete;
  QuietDrives& operator=(const QuietDrives&) = delete;

 private:
  UINT before_;
};
