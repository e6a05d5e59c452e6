// A disk without room.
#pragma once

#include <windows.h>

#include "tests/support/ImportPatch.h"

// A disk that is full as soon as so many bytes are written.
class FullDisk {
 public:
  explicit FullDisk(DWORD room) : room_(room) { current_ = this; }
  ~FullDisk() { current_ = nullptr; }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  static BOOL WINAPI write(HANDLE file, const void* bytes, DWORD count, DWORD* written,
                           OVERLAPPED* overlapped) {
    if (count > current_->room_) {
      SetLastError(ERROR_DISK_FULL);
      return FALSE;
    }
    current_->room_ -= count;
    return current_->patch_.original<decltype(write)>()(file, bytes, count, written, overlapped);
  }
  static inline FullDisk* current_ = nullptr;
  DWORD room_;
  ImportPatch patch_{nullptr, "kernel32.dll", "WriteFile", write};
};
