#include "folders/TemplateFolderList.h"

#include <limits>

#include "common/RegKey.h"
#include "common/errors.h"
#include "common/log.h"
#include "common/module.h"
#include "common/settings.h"
#include "common/text.h"

namespace {

std::wstring machineWideKey() {
  return std::wstring(L"Software\\Korvel Software\\") + module::title + L"\\" + settings::folders;
}

void append(TemplateFolderList& list, ListedFolder folder) {
  if (list.size() >= static_cast<std::size_t>(std::numeric_limits<short>::max()))
    throw Error(errors::overflow);
  list.push_back(std::move(folder));
}

void readMachineWide(TemplateFolderList& list) {
  RegKey key;
  if (!key.OpenKey(HKEY_LOCAL_MACHINE, machineWideKey())) return;
  modCommon::WriteLog(L"key opened");
  std::wstring name;
  DWORD type = 0;
  for (;;) {
    if (key.EnumValue(name, type)) {
      append(list, {FolderList::machine, name});
      modCommon::WriteLog({L"Global - ", name});
    } else if (key.GetLastError() != ERROR_MORE_DATA) {
      break;  // a name that is too long for any path hides only itself
    }
  }
  key.CloseKey();
}

void readPerUser(TemplateFolderList& list) {
  for (const auto& [name, data] : settings::GetAllSettings(settings::folders)) {
    append(list, {FolderList::user, name});
    modCommon::WriteLog({L"User - ", name});
  }
}

}  // namespace

namespace modCommon {

short ReadTemplateFolderList(TemplateFolderList& list) {
  WriteLog(L"Reading DWT folders list...");
  list.clear();
  readMachineWide(list);
  readPerUser(list);
  const auto count = static_cast<short>(list.size());
  WriteLog({L"DWT folders list contains ", text::decimal(count), L" items."});
  return count;
}

}  // namespace modCommon
