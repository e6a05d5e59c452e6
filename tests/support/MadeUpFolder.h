// A folder with more entries than a test could make on the disk. Searches for it are answered from
// here while it lives, all others by the system.
#pragma once

#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "tests/support/ImportPatch.h"

// The system's search functions that the test program, and what is linked into it, calls.
struct AnsiSearch {
  using Char = char;
  using Data = WIN32_FIND_DATAA;
  static constexpr char first[] = "FindFirstFileA";
  static constexpr char next[] = "FindNextFileA";
};

struct WideSearch {
  using Char = wchar_t;
  using Data = WIN32_FIND_DATAW;
  static constexpr char first[] = "FindFirstFileW";
  static constexpr char next[] = "FindNextFileW";
};

template <class Search>
class MadeUpFolder {
  using Char = typename Search::Char;
  using Data = typename Search::Data;

 public:
  // Stands in for every folder that has `part` in its path's last name. Lists `folders` folders,
  // each empty, then `files` files; none of them can be opened.
  MadeUpFolder(std::basic_string<Char> part, int folders, int files)
      : part_(std::move(part)), folders_(folders), files_(files) {
    current_ = this;
  }
  ~MadeUpFolder() { current_ = nullptr; }
  MadeUpFolder(const MadeUpFolder&) = delete;
  MadeUpFolder& operator=(const MadeUpFolder&) = delete;

 private:
  static HANDLE WINAPI findFirst(const Char* pattern, Data* data) {
    const std::basic_string_view<Char> path(pattern);
    const auto place = path.find(current_->part_);
    if (place == path.npos)
      return current_->first_.template original<decltype(findFirst)>()(pattern, data);
    const bool isEntry =
        path.find(Char('\\'), place + current_->part_.size()) != path.rfind(Char('\\'));
    if (isEntry) {
      fill(*data, ".", FILE_ATTRIBUTE_DIRECTORY);
      return &current_->emptySearch_;
    }
    current_->given_ = 0;
    current_->give(*data);
    return &current_->given_;
  }

  static BOOL WINAPI findNext(HANDLE search, Data* data) {
    if (!current_->isOwn(search))
      return current_->next_.template original<decltype(findNext)>()(search, data);
    if (search == &current_->given_ && current_->give(*data)) return TRUE;
    SetLastError(ERROR_NO_MORE_FILES);
    return FALSE;
  }

  static BOOL WINAPI findClose(HANDLE search) {
    return current_->isOwn(search) ||
           current_->close_.template original<decltype(findClose)>()(search);
  }

  bool isOwn(HANDLE search) const { return search == &given_ || search == &emptySearch_; }

  bool give(Data& data) {
    if (given_ == folders_ + files_) return false;
    const DWORD attributes = given_ < folders_ ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    fill(data, "entry" + std::to_string(given_++), attributes);
    return true;
  }

  static void fill(Data& data, std::string_view name, DWORD attributes) {
    data = {};
    data.dwFileAttributes = attributes;
    std::ranges::copy(name, data.cFileName);
  }

  static inline MadeUpFolder* current_ = nullptr;

  const std::basic_string<Char> part_;
  const int folders_;
  const int files_;
  // The addresses of these two serve as the handles of the searches.
  int given_ = 0;
  char emptySearch_ = 0;
  const ImportPatch first_{nullptr, "kernel32.dll", Search::first, findFirst};
  const ImportPatch next_{nullptr, "kernel32.dll", Search::next, findNext};
  const ImportPatch close_{nullptr, "kernel32.dll", "FindClose", findClose};
};
