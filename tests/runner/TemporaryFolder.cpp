#include "tests/runner/TemporaryFolder.h"

#include <windows.h>

#include "common/handles.h"

namespace {

// As the disk has it: a test may have made names that the system would read as others, such as
// "a.".
std::wstring verbatim(const std::wstring& path) { return L"\\\\?\\" + path; }

// A folder that leads elsewhere goes, and what it leads to stays.
void removeTree(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return;
  if (!(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
    WIN32_FIND_DATAW entry;
    const handles::Find search(FindFirstFileW((path + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(search); more;
         more = FindNextFileW(search.get(), &entry) != FALSE) {
      const std::wstring name = entry.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring full = path + L"\\" + name;
      SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        removeTree(full);
      else
        DeleteFileW(full.c_str());
    }
  }
  RemoveDirectoryW(path.c_str());
}

}  // namespace

TemporaryFolder::TemporaryFolder(const std::wstring& path) : path_(path) {
  removeTree(verbatim(path_));
  CreateDirectoryW(path_.c_str(), nullptr);
}

TemporaryFolder::~TemporaryFolder() { removeTree(verbatim(path_)); }
