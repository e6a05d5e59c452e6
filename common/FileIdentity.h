// What is the same under all names of a file or folder: short ones, links, other names of a drive.
#pragma once

#include <string>

namespace modCommon {

struct FileIdentity {
  unsigned long volume = 0;
  unsigned long indexHigh = 0;
  unsigned long indexLow = 0;

  // False for what is not there, or whose file system does not tell.
  explicit operator bool() const noexcept { return indexHigh != 0 || indexLow != 0; }
  bool operator==(const FileIdentity&) const = default;
};

FileIdentity identityOf(const std::wstring& path);

}  // namespace modCommon
