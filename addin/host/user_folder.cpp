// GetUserFolderPath, which nothing in the module calls: in a file of its own it is linked only
// where it is.
#include "addin/host/environment.h"

#include "common/RegKey.h"
#include "common/errors.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/text.h"

namespace modCommon {
namespace {

constexpr wchar_t shellFolders[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

// The user's application-data folder as registered; false, and logged, when it is not.
bool readUserFolder(std::wstring& path) {
  RegKey key;
  if (!key.OpenKey(HKEY_CURRENT_USER, shellFolders)) {
    WriteLog(L"GetUserFolderPath: Failed to open the registry key");
    return false;
  }
  if (key.QueryValueEx_SZ(L"AppData", path)) return true;
  WriteLog({L"GetUserFolderPath: Failed to retrieve data - ", key.GetErrorDescription()});
  return false;
}

void descend(std::wstring& path, std::wstring_view level) {
  path += level;
  if (!folderExists(path)) makeFolder(path);
}

}  // namespace

std::wstring GetUserFolderPath() noexcept {
  std::wstring path;
  try {
    if (!readUserFolder(path)) return {};
    if (path.empty() || !folderExists(path)) {
      WriteLog({L"GetUserFolderPath: Empty path or path not found - ", path});
      return path;
    }
    path = withBackslash(path);
    for (const auto level : {L"Korvel Software", L"\\Orlique", L"\\_orlique\\"})
      descend(path, level);
    return path;
  } catch (...) {
    WriteLog({L"GetUserFolderPath: Error occured - ", errors::current().description(), L" Path: ",
              path});
    return {};
  }
}

}  // namespace modCommon
