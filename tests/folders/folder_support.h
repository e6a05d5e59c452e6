// What the tests of the listed folders share with those of the rooms that use them.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "common/log.h"
#include "folders/TemplateFolderList.h"
#include "tests/support/ScratchRegistry.h"

inline constexpr wchar_t machineFolders[] =
    L"Software\\Korvel Software\\Quillet Viewer\\DWT Folders";
inline constexpr wchar_t userFolders[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\DWT Folders";

using Lines = std::vector<std::wstring>;

inline void listForMachine(ScratchRegistry& registry, std::wstring_view path) {
  registry.setString(HKEY_LOCAL_MACHINE, machineFolders, path, L"");
}

inline void listForUser(ScratchRegistry& registry, std::wstring_view path) {
  registry.setString(HKEY_CURRENT_USER, userFolders, path, path);
}

// The diagnostic log switched on.
class LoggingOn {
 public:
  LoggingOn() {
    modCommon::SetLogIndent(0);
    modCommon::setLoggingFlag(1);
  }
  ~LoggingOn() { modCommon::setLoggingFlag(0); }
  LoggingOn(const LoggingOn&) = delete;
  LoggingOn& operator=(const LoggingOn&) = delete;
};

// Each folder with its list's letter in front.
inline Lines tagged(const TemplateFolderList& folders) {
  Lines result;
  for (const auto& folder : folders) result.push_back(letterOf(folder.list) + folder.path);
  return result;
}

// The other way round.
inline TemplateFolderList folderList(const Lines& tagged) {
  TemplateFolderList result;
  for (const auto& entry : tagged)
    result.push_back({static_cast<FolderList>(entry.front()), entry.substr(1)});
  return result;
}
