// The folders of a web as the user is offered them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "addin/host/HostWeb.h"

namespace webfolder {

struct OfferedFolder {
  std::wstring name;
  bool hasFolders = false;
};

// The immediate sub-folders in the host's order, without the roots of sub-webs. What lies in them
// is not read.
std::vector<OfferedFolder> offeredFolders(const HostFolder& parent);

// The names of all immediate sub-folders.
std::vector<std::wstring> folderNames(const HostFolder& parent);

enum class NameCheck { accepted, invalid, exists };

// Whether a new sub-folder of `parent` can bear the name. The name itself stays as it was typed,
// blanks at its ends included.
NameCheck checkNewName(const HostFolder& parent, std::wstring_view name);

}  // namespace webfolder
