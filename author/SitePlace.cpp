#include "author/SitePlace.h"

#include <windows.h>

#include <utility>

#include "author/disk.h"
#include "common/errors.h"

namespace author {

SitePlace::SitePlace(std::wstring folder) : folder_(std::move(folder)) {
  if (nameOf(folder_).empty())
    throw Error(errors::badFileName, folder_ + L": A catalogue needs a folder of its own.");
  const bool isReplaceable =
      !isThere(folder_) ||
      (isFolder(folder_) && (namesIn(folder_).empty() || isThere(folder_ + L"\\" + mark)));
  if (!isReplaceable)
    throw Error(errors::fileAlreadyExists,
                folder_ + L": There is something else than a catalogue. It is left as it is.");
  const std::wstring staging = pathBeside(folder_);
  if (!CreateDirectoryW(staging.c_str(), nullptr)) throw errorAbout(folder_, GetLastError());
  staging_ = staging;
}

SitePlace::~SitePlace() {
  if (!staging_.empty()) removeTree(staging_);
}

void SitePlace::take() {
  std::wstring old;
  if (isThere(folder_)) {
    old = pathBeside(folder_);
    if (!MoveFileW(folder_.c_str(), old.c_str())) throw errorAbout(folder_, GetLastError());
  }
  if (!MoveFileW(staging_.c_str(), folder_.c_str())) {
    const DWORD code = GetLastError();
    if (!old.empty()) MoveFileW(old.c_str(), folder_.c_str());
    throw errorAbout(folder_, code);
  }
  staging_.clear();
  if (!old.empty()) removeTree(old);
}

}  // namespace author
