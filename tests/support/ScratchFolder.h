// A folder of a test's own on the real disk, gone with everything in it afterwards.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::wstring& path() const noexcept { return path_; }  // no trailing backslash
  // The full path of something in it; "relative" with backslashes.
  std::wstring operator/(std::wstring_view relative) const;

  // Both make missing folders on the way and answer with the full path.
  std::wstring makeFolder(std::wstring_view relative) const;
  std::wstring writeFile(std::wstring_view relative, std::string_view bytes = {}) const;

  bool exists(std::wstring_view relative) const;
  std::string readFile(std::wstring_view relative) const;  // empty when missing
  // Every file and folder below it (folders with a trailing backslash), relative, sorted.
  std::vector<std::wstring> tree() const;

 private:
  std::wstring path_;
};
