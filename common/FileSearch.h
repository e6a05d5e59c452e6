// A directory's entries, in the file system's order, by the system's ANSI find-first and find-next.
//
// The ANSI record holds names of up to 259 characters. What the code page lacks of a name arrives
// as the character that looks most like it, or as "?": the name may be that of another file then.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "common/handles.h"

struct FileEntry {
  std::wstring name;  // cut at its first NUL character
  DWORD attributes = 0;

  bool isFolder() const noexcept { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  // "." and "..", the folder itself and the one above.
  bool isDots() const noexcept { return name == L"." || name == L".."; }
};

class FileSearch {
 public:
  // Starts at once; `found` tells whether there is a first entry, `startError` the system's code
  // when there is not.
  explicit FileSearch(std::wstring_view pattern);

  bool found() const noexcept { return static_cast<bool>(search_); }
  DWORD startError() const noexcept { return startError_; }

  const FileEntry& entry() const noexcept { return entry_; }
  // On to the next entry; false at the end.
  bool next();
  // The system's code when the search broke off before its last entry, as on a share that is gone.
  DWORD endError() const noexcept { return endError_; }

 private:
  void take(const WIN32_FIND_DATAA& data);

  handles::Find search_;
  DWORD startError_ = ERROR_SUCCESS;
  DWORD endError_ = ERROR_SUCCESS;
  FileEntry entry_;
};
