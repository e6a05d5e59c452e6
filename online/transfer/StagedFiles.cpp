#include "online/transfer/StagedFiles.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "common/NoSystemBoxes.h"
#include "common/errors.h"
#include "common/handles.h"
#include "common/letter_case.h"
#include "common/paths.h"
#include "online/transfer/file_address.h"

StagedFiles::StagedFiles(std::wstring folder) : folder_(std::move(folder)) {}

std::wstring StagedFiles::ordinaryPath(std::wstring_view address) const {
  const auto name = online::fileNameOf(address);
  if (!name) throw Error(errors::badFileName);
  return modCommon::withBackslash(folder_) + *name;
}

std::wstring StagedFiles::freePath(std::wstring_view address) const {
  const std::wstring ordinary = ordinaryPath(address);
  std::wstring path = ordinary;
  for (int number = 2; isTaken(path); ++number) path = online::numbered(ordinary, number);
  return path;
}

void StagedFiles::take(const std::wstring& path) { taken_.push_back({path, identityOf(path)}); }

// A file system may not tell files apart; their names always do.
bool StagedFiles::isTaken(const std::wstring& path) const {
  if (taken_.empty()) return false;
  const Identity identity = identityOf(path);
  return std::any_of(taken_.begin(), taken_.end(), [&](const Taken& each) {
    return text::equalIgnoringCase(each.path, path) ||
           (identity != Identity() && each.identity == identity);
  });
}

// All zero for a file that is not there, or whose file system does not tell.
StagedFiles::Identity StagedFiles::identityOf(const std::wstring& path) {
  const NoSystemBoxes quiet;
  const handles::File file(CreateFileW(path.c_str(), 0,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  BY_HANDLE_FILE_INFORMATION information = {};
  if (!file || !GetFileInformationByHandle(file.get(), &information)) return {};
  return {information.dwVolumeSerialNumber, information.nFileIndexHigh, information.nFileIndexLow};
}
