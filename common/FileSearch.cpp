#include "common/FileSearch.h"

#include "common/NoSystemBoxes.h"
#include "common/ansi.h"

FileSearch::FileSearch(std::wstring_view pattern) {
  // The "?" for a character outside the code page would be a wild card here.
  if (!text::fitsAnsi(pattern)) {
    startError_ = ERROR_INVALID_NAME;
    return;
  }
  const NoSystemBoxes quiet;
  WIN32_FIND_DATAA data;
  const HANDLE search = FindFirstFileA(text::toAnsi(pattern).c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) {
    startError_ = GetLastError();
    return;
  }
  search_.reset(search);
  take(data);
}

bool FileSearch::next() {
  WIN32_FIND_DATAA data;
  if (!search_) return false;
  const NoSystemBoxes quiet;
  if (!FindNextFileA(search_.get(), &data)) {
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES) endError_ = error;
    return false;
  }
  take(data);
  return true;
}

void FileSearch::take(const WIN32_FIND_DATAA& data) {
  entry_.name = text::fromAnsi({data.cFileName, strnlen(data.cFileName, sizeof data.cFileName)});
  entry_.attributes = data.dwFileAttributes;
}
