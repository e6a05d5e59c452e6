#include "common/settings.h"

#include <windows.h>

#include <shlwapi.h>

#include "common/RegKey.h"
#include "common/ansi.h"
#include "common/errors.h"
#include "common/module.h"

namespace settings {
namespace {

constexpr wchar_t store[] = L"Software\\VB and VBA Program Settings\\";

std::wstring ownPath(std::wstring_view section) { return keyPath(module::title, section); }

void requireDeleted(long result) {
  if (result != ERROR_SUCCESS && result != ERROR_FILE_NOT_FOUND)
    throw Error(errors::invalidArgument);
}

}  // namespace

std::wstring keyPath(std::wstring_view application, std::wstring_view section) {
  return std::wstring(store).append(application).append(L"\\").append(section);
}

std::wstring GetSetting(std::wstring_view section, std::wstring_view name,
                        std::wstring_view fallback) {
  RegKey key;
  std::wstring value;
  if (key.OpenKey(HKEY_CURRENT_USER, ownPath(section)) && key.QueryValueEx_SZ(name, value))
    return value;
  return std::wstring(fallback);
}

// Whatever the registry's reason, the store knows one error.
void SaveSetting(std::wstring_view section, std::wstring_view name, std::wstring_view value) {
  RegKey key;
  if (!key.CreateKey(HKEY_CURRENT_USER, ownPath(section)) || !key.SetValueEx_SZ(name, value))
    throw Error(errors::invalidArgument);
}

void DeleteSetting(std::wstring_view section, std::wstring_view name) {
  const std::string path = text::toAnsi(ownPath(section));
  if (name.empty()) {
    requireDeleted(SHDeleteKeyA(HKEY_CURRENT_USER, path.c_str()));
  } else {
    requireDeleted(SHDeleteValueA(HKEY_CURRENT_USER, path.c_str(), text::toAnsi(name).c_str()));
  }
}

std::vector<std::pair<std::wstring, std::wstring>> GetAllSettings(std::wstring_view section) {
  std::vector<std::pair<std::wstring, std::wstring>> settings;
  RegKey key;
  if (!key.OpenKey(HKEY_CURRENT_USER, ownPath(section))) return settings;
  for (long index = 0;; ++index) {
    std::wstring name;
    DWORD type = REG_NONE;
    const bool named = key.EnumValue(name, type, index);
    // A name too long for the reader hides itself, not the values behind it.
    if (!named && key.GetLastError() != ERROR_MORE_DATA) return settings;
    if (!named || type != REG_SZ) continue;
    // A name outside the code page can be told, but not asked for its data.
    std::wstring value;
    key.QueryValueEx_SZ(name, value);
    settings.emplace_back(std::move(name), std::move(value));
  }
}

}  // namespace settings
