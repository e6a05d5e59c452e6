#include "webcopy/web_folders.h"

#include "common/file_names.h"
#include "webcopy/web_folder_path.h"

namespace webfolder {

std::vector<OfferedFolder> offeredFolders(const HostFolder& parent) {
  std::vector<OfferedFolder> offered;
  for (const HostFolder& folder : parent.folders())
    if (!folder.isWeb()) offered.push_back({folder.name(), folder.hasFolders()});
  return offered;
}

std::vector<std::wstring> folderNames(const HostFolder& parent) {
  std::vector<std::wstring> names;
  for (const HostFolder& folder : parent.folders()) names.push_back(folder.name());
  return names;
}

NameCheck checkNewName(const HostFolder& parent, std::wstring_view name) {
  if (!modCommon::IsValidFileName(name)) return NameCheck::invalid;
  return contains(folderNames(parent), name) ? NameCheck::exists : NameCheck::accepted;
}

}  // namespace webfolder
