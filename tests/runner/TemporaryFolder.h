// A folder for what a test leaves behind, also when it was ended; gone with everything in it.
#pragma once

#include <string>

class TemporaryFolder {
 public:
  // Makes an empty folder of that path, which begins with its drive.
  explicit TemporaryFolder(const std::wstring& path);
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::wstring& path() const { return path_; }

 private:
  std::wstring path_;
};
