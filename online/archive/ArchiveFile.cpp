#include "online/archive/ArchiveFile.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "common/NoSystemBoxes.h"
#include "common/handles.h"
#include "common/paths.h"

namespace archive {
namespace {

constexpr std::string_view closingRecord("PK\5\6", 4);
constexpr std::size_t closingRecordSize = 22;
constexpr unsigned long long searched = 66000;

}  // namespace

bool hasDirectory(const std::wstring& path) {
  const NoSystemBoxes quiet;
  const handles::File file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return false;
  const auto wanted = static_cast<LONG>(std::min(modCommon::fileSize(path), searched));
  std::string tail(static_cast<std::size_t>(wanted), '\0');
  DWORD read = 0;
  SetFilePointer(file.get(), -wanted, nullptr, FILE_END);
  if (!ReadFile(file.get(), tail.data(), static_cast<DWORD>(wanted), &read, nullptr)) return false;
  return read >= closingRecordSize &&
         tail.rfind(closingRecord, read - closingRecordSize) != tail.npos;
}

}  // namespace archive
