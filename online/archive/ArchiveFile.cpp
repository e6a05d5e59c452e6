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
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(offset);
  DWORD got = 0;
  if (!SetFilePointerEx(file_.get(), place, nullptr, FILE_BEGIN) ||
      !ReadFile(file_.get(), buffer, static_cast<DWORD>(count), &got, nullptr))
    throw errors::fromLastError();
  return got;
}

}  // namespace archive
