#include "common/settings.h"

#include <windows.h>

#include "common/errors.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

namespace {

using Pairs = std::vector<std::pair<std::wstring, std::wstring>>;

constexpr wchar_t ownKey[] = L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";
constexpr wchar_t folderKey[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\DWT Folders";

LSTATUS WINAPI refuseToCreate(HKEY, LPCSTR, PHKEY) { return ERROR_ACCESS_DENIED; }
LSTATUS WINAPI refuseToDelete(HKEY, LPCSTR) { return ERROR_ACCESS_DENIED; }
LSTATUS WINAPI refuseToDeleteValue(HKEY, LPCSTR, LPCSTR) { return ERROR_ACCESS_DENIED; }

LSTATUS WINAPI refuseValue(HKEY, LPCSTR, DWORD, DWORD, const BYTE*, DWORD) {
  return ERROR_ACCESS_DENIED;
}

}  // namespace

TEST_CASE("a section lies below the application in the current user's tree of settings") {
  CHECK(settings::keyPath(L"Quillet Viewer", L"Settings") == ownKey);
}

TEST_CASE("a download folder that was never written reads as an empty string") {
  ScratchRegistry registry;
  CHECK(settings::GetSetting(settings::general, settings::downloadFolder) == L"");
}

TEST_CASE("a missing value reads as the given default although its section exists") {
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER, ownKey, L"Other", L"1");
  CHECK(settings::GetSetting(settings::general, settings::logging, L"0") == L"0");
}

TEST_CASE("a value of another type than string reads as the default") {
  ScratchRegistry registry;
  registry.setNumber(HKEY_CURRENT_USER, ownKey, L"Logging", 1);
  CHECK(settings::GetSetting(settings::general, settings::logging, L"0") == L"0");
}

TEST_CASE("an empty value is a value and no default takes its place") {
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER, ownKey, L"DWTDownloadDir", L"");
  CHECK(settings::GetSetting(settings::general, settings::downloadFolder, L"C:\\x") == L"");
}

TEST_CASE("saving a setting makes the missing keys and writes a registry string") {
  ScratchRegistry registry;
  settings::SaveSetting(settings::general, settings::downloadFolder, L"C:\\Vorlagen f\u00fcr mich");
  CHECK(registry.string(HKEY_CURRENT_USER, ownKey, L"DWTDownloadDir") ==
        std::wstring(L"C:\\Vorlagen f\u00fcr mich"));
  CHECK(settings::GetSetting(settings::general, settings::downloadFolder) ==
        L"C:\\Vorlagen f\u00fcr mich");
}

TEST_CASE("saving a setting again replaces it whatever type it had") {
  ScratchRegistry registry;
  registry.setNumber(HKEY_CURRENT_USER, ownKey, L"Logging", 1);
  settings::SaveSetting(settings::general, settings::logging, L"1");
  CHECK(settings::GetSetting(settings::general, settings::logging) == L"1");
  CHECK(registry.valueNames(HKEY_CURRENT_USER, ownKey).size() == 1);
}

TEST_CASE("a setting that cannot be saved raises an invalid procedure call") {
  ScratchRegistry registry;
  ImportPatch patch(nullptr, "advapi32.dll", "RegCreateKeyA", refuseToCreate);
  CHECK(numberOf([] { settings::SaveSetting(settings::general, settings::logging, L"1"); }) == 5);
}

TEST_CASE("deleting a setting leaves the others of its section") {
  ScratchRegistry registry;
  settings::SaveSetting(settings::general, L"One", L"1");
  settings::SaveSetting(settings::general, L"Two", L"2");
  settings::DeleteSetting(settings::general, L"One");
  CHECK(settings::GetAllSettings(settings::general) == Pairs{{L"Two", L"2"}});
}

TEST_CASE("deleting a section takes its values and its subkeys and leaves its neighbours") {
  ScratchRegistry registry;
  settings::SaveSetting(settings::folders, L"C:\\a", L"C:\\a");
  settings::SaveSetting(settings::general, settings::logging, L"1");
  registry.setString(HKEY_CURRENT_USER, std::wstring(folderKey) + L"\\deeper", L"x", L"y");
  settings::DeleteSetting(settings::folders);
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, folderKey));
  CHECK(settings::GetSetting(settings::general, settings::logging) == L"1");
}

TEST_CASE("deleting what does not exist is no error") {
  ScratchRegistry registry;
  CHECK_NOTHROW(settings::DeleteSetting(settings::folders));
  CHECK_NOTHROW(settings::DeleteSetting(settings::folders, L"C:\\a"));
  settings::SaveSetting(settings::folders, L"C:\\b", L"C:\\b");
  CHECK_NOTHROW(settings::DeleteSetting(settings::folders, L"C:\\a"));
  CHECK(settings::GetAllSettings(settings::folders).size() == 1);
}

TEST_CASE("a value that the registry refuses raises an invalid procedure call") {
  ScratchRegistry registry;
  ImportPatch value(nullptr, "advapi32.dll", "RegSetValueExA", refuseValue);
  CHECK(numberOf([] { settings::SaveSetting(settings::folders, L"a", L"b"); }) == 5);
}

TEST_CASE("a deletion that the registry refuses raises an invalid procedure call") {
  ScratchRegistry registry;
  ImportPatch key(nullptr, "shlwapi.dll", "SHDeleteKeyA", refuseToDelete);
  ImportPatch value(nullptr, "shlwapi.dll", "SHDeleteValueA", refuseToDeleteValue);
  CHECK(numberOf([] { settings::DeleteSetting(settings::folders); }) == 5);
  CHECK(numberOf([] { settings::DeleteSetting(settings::folders, L"a"); }) == 5);
}

TEST_CASE("a section lists its pairs in the order of the registry") {
  ScratchRegistry registry;
  for (const auto* name : {L"C:\\b", L"C:\\a", L"C:\\c"})
    settings::SaveSetting(settings::folders, name, std::wstring(name) + L" data");
  Pairs expected;
  for (const auto& name : registry.valueNames(HKEY_CURRENT_USER, folderKey))
    expected.emplace_back(name, name + L" data");
  REQUIRE(expected.size() == 3);
  CHECK(settings::GetAllSettings(settings::folders) == expected);
}

TEST_CASE("a missing section lists nothing") {
  ScratchRegistry registry;
  CHECK(settings::GetAllSettings(settings::folders).empty());
}

TEST_CASE("a listed section leaves out what is no string or bears a name too long to read") {
  ScratchRegistry registry;
  registry.setNumber(HKEY_CURRENT_USER, folderKey, L"number", 1);
  registry.setBinary(HKEY_CURRENT_USER, folderKey, L"bytes", {1, 2});
  registry.setString(HKEY_CURRENT_USER, folderKey, std::wstring(3000, L'n'), L"too long");
  registry.setString(HKEY_CURRENT_USER, folderKey, L"C:\\a", L"");
  registry.setString(HKEY_CURRENT_USER, folderKey, L"Z:\\z", L"behind it");
  CHECK(settings::GetAllSettings(settings::folders) ==
        Pairs{{L"C:\\a", L""}, {L"Z:\\z", L"behind it"}});
}
