// Ends the test program when it hangs.
#pragma once

#include <windows.h>

#include <cstdio>

#include "tests/support/utf8.h"

// For code that may never come round: the program fails when this still lives after that time.
class Watchdog {
 public:
  explicit Watchdog(DWORD milliseconds)
      : limit_(milliseconds),
        done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
        thread_(CreateThread(nullptr, 0, watch, this, 0, nullptr)) {}
  ~Watchdog() {
    SetEvent(done_);
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
    CloseHandle(done_);
  }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

 private:
  // It waits for somebody to close it, most often. The text is asked of the system, since the
  // thread of the window may answer nothing any more.
  static BOOL CALLBACK tell(HWND window, LPARAM) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
    wchar_t text[128] = {};
    InternalGetWindowText(window, text, 128);
    const char* const state =
        IsWindowEnabled(window) ? "  a window is up: " : "  a window is disabled: ";
    std::fputs((state + toUtf8(text) + "\n").c_str(), stderr);
    return TRUE;
  }

  static DWORD WINAPI watch(void* self) {
    const auto& dog = *static_cast<const Watchdog*>(self);
    if (WaitForSingleObject(dog.done_, dog.limit_) == WAIT_OBJECT_0) return 0;
    std::fputs("ERROR: the test hangs\n", stderr);
    EnumWindows(tell, 0);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 3);
    return 0;
  }

  DWORD limit_;
  HANDLE done_;
  HANDLE thread_;
};
