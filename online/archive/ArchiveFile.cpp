#include "online/archive/ArchiveFile.h"

#include <windows.h>

#include "common/NoSystemBoxes.h"
#include "common/errors.h"

namespace archive {

ArchiveFile::ArchiveFile(const std::wstring& path) {
  const NoSystemBoxes quiet;
  file_.reset(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file_) throw errors::fromLastError();
  BY_HANDLE_FILE_INFORMATION about = {};
  if (!GetFileInformationByHandle(file_.get(), &about)) throw errors::fromLastError();
  size_ = static_cast<std::uint64_t>(about.nFileSizeHigh) << 32 | about.nFileSizeLow;
}

std::size_t ArchiveFile::read(std::uint64_t offset, char* buffer, std::size_t count) {
  const NoSystemBoxes quiet;
  auto high = static_cast<LONG>(offset >> 32);
  SetLastError(NO_ERROR);
  DWORD got = 0;
  if ((SetFilePointer(file_.get(), static_cast<LONG>(offset), &high, FILE_BEGIN) ==
           INVALID_SET_FILE_POINTER &&
       GetLastError() != NO_ERROR) ||
      !ReadFile(file_.get(), buffer, static_cast<DWORD>(count), &got, nullptr))
    throw errors::fromLastError();
  return got;
}

}  // namespace archive
