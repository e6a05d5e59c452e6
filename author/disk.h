// Files and folders of the authors, read and written. Paths are full ones; such as are longer than
// the system's usual functions take can be read, so that something can be said of them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "author/Work.h"
#include "common/errors.h"
#include "common/handles.h"

namespace author {

// Without a backslash at its end, but for a drive's root. Raises an Error.
std::wstring fullPath(const std::wstring& path);

// The last part of a full path; empty for the root of a drive or share.
std::wstring nameOf(const std::wstring& path);

bool isFolder(const std::wstring& path);
bool isThere(const std::wstring& path);

struct FolderEntry {
  std::wstring path;  // below the folder, "\" between
  DWORD attributes = 0;
  std::uint64_t size = 0;

  bool isFolder() const noexcept { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  std::wstring name() const { return path.substr(path.rfind(L'\\') + 1); }
};

// What lies in a folder, all of it, sorted by path.
struct FolderTree {
  std::vector<FolderEntry> entries;
  // Folders below it, by path, that were not looked into: that could not be read, that lead to
  // another place, and whose path is longer than any program takes.
  std::vector<std::wstring> unreadable;
  std::vector<std::wstring> leadElsewhere;
  std::vector<std::wstring> tooDeep;
  bool isWhole = true;  // false for one with more than `mostEntries`

  static constexpr std::size_t mostEntries = 65535;
};

// Raises an Error when the folder itself cannot be read, 512 when `run` does not go on.
FolderTree listTree(const std::wstring& folder, KeepGoing& run);

// What lies directly in a folder, and the folders among it: names, sorted. Raises an Error.
std::vector<std::wstring> namesIn(const std::wstring& folder);
std::vector<std::wstring> foldersIn(const std::wstring& folder);

// All of a file. Raises an Error, also for one of more than `limit` bytes (overflow).
std::string readFile(const std::wstring& path, std::uint64_t limit);

// A file that is new, or made anew. What is not finished goes with it.
class NewFile {
 public:
  // Raises an Error. Missing folders are not made.
  explicit NewFile(std::wstring path);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(std::string_view bytes);
  // All is written and on the disk.
  void finish();
  const std::wstring& path() const noexcept { return path_; }

 private:
  std::wstring path_;
  handles::File file_;
};

void writeFile(const std::wstring& path, std::string_view bytes);

// With all missing folders above it. Raises an Error.
void makeFolders(const std::wstring& path);

// A folder and all that is in it; what cannot be removed stays. A link goes, not what it leads to.
void removeTree(const std::wstring& path) noexcept;

// Puts a finished file in the place of another one, in one step. Raises an Error.
void replaceFile(const std::wstring& made, const std::wstring& place);

// A path beside another one that nothing is at.
std::wstring pathBeside(const std::wstring& path);

// An error about a file or folder: its own description behind the path.
Error errorAbout(const std::wstring& path, DWORD code);

}  // namespace author
