// An archive that is being received.
#pragma once

#include <windows.h>

#include <string>

#include "common/handles.h"

// Replaces what is at its path. A file that has not come whole is deleted, whatever ended it.
class IncomingFile {
 public:
  explicit IncomingFile(std::wstring path);
  ~IncomingFile();
  IncomingFile(const IncomingFile&) = delete;
  IncomingFile& operator=(const IncomingFile&) = delete;

  void write(const char* bytes, DWORD count);
  void close() noexcept { file_.reset(); }
  // Closed and here to stay.
  void complete() noexcept;

 private:
  void DeleteRelatedFiles() noexcept;

  std::wstring path_;
  handles::File file_;
  bool complete_ = false;
};
