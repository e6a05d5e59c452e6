#include "common/FileIdentity.h"

#include "common/NoSystemBoxes.h"
#include "common/handles.h"

namespace modCommon {

FileIdentity identityOf(const std::wstring& path) {
  const NoSystemBoxes quiet;
  const handles::File file(
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION data = {};
  if (!file || !GetFileInformationByHandle(file.get(), &data)) return {};
  return {data.dwVolumeSerialNumber, data.nFileIndexHigh, data.nFileIndexLow};
}

}  // namespace modCommon
