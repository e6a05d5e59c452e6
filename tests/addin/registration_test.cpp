// What registering writes, and that unregistering takes exactly that away.
#include <set>

#include "addin/identity.h"
#include "tests/addin/ShippedModule.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

void dump(HKEY root, const std::wstring& path, std::vector<std::wstring>& lines) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  const std::wstring prefix = (root == HKEY_CURRENT_USER ? L"HKCU\\" : L"HKLM\\") + path;
  lines.push_back(prefix);
  for (DWORD index = 0;; ++index) {
    wchar_t name[256] = {};
    BYTE data[1024] = {};
    DWORD length = 256;
    DWORD size = sizeof data;
    DWORD type = 0;
    if (RegEnumValueW(key, index, name, &length, nullptr, &type, data, &size) != ERROR_SUCCESS)
      break;
    std::wstring line = prefix + L" [" + name + L"] = ";
    if (type == REG_DWORD)
      line += L"dword " + std::to_wstring(*reinterpret_cast<DWORD*>(data));
    else if (type == REG_SZ)
      line += L"\"" + std::wstring(reinterpret_cast<wchar_t*>(data), size / 2 - 1) + L"\"";
    else
      line += L"type " + std::to_wstring(type);
    lines.push_back(line);
  }
  for (DWORD index = 0;; ++index) {
    wchar_t name[256] = {};
    if (RegEnumKeyW(key, index, name, 256) != ERROR_SUCCESS) break;
    dump(root, path.empty() ? name : path + L"\\" + name, lines);
  }
  RegCloseKey(key);
}

// Both roots: every key that holds something or nothing at all, and every value, as sorted lines.
std::vector<std::wstring> everything() {
  std::vector<std::wstring> lines;
  dump(HKEY_CURRENT_USER, L"Software", lines);
  dump(HKEY_LOCAL_MACHINE, L"Software", lines);
  std::set<std::wstring> sorted;
  for (auto& line : lines) {
    const bool isKey = line.find(L" [") == line.npos;
    bool hasMore = false;
    for (const auto& other : lines)
      hasMore =
          hasMore || (other.size() > line.size() && other.compare(0, line.size(), line) == 0 &&
                      (other[line.size()] == L'\\' || other[line.size()] == L' '));
    if (!isKey || !hasMore) sorted.insert(line);
  }
  return {sorted.begin(), sorted.end()};
}

constexpr wchar_t classId[] = L"{EA65D517-CDCA-46D0-BD68-449BB8328D69}";
constexpr wchar_t libraryId[] = L"{C5C4A6FE-C4FE-4D30-8B40-F7F9865B65BE}";

// What must be there, for the class below `root` ("HKLM" or "HKCU").
std::vector<std::wstring> expected(const std::wstring& root, const std::wstring& file) {
  const std::wstring folder = file.substr(0, file.rfind(L'\\'));
  const std::wstring classes = root + L"\\Software\\Classes\\";
  const std::wstring clsid = classes + L"CLSID\\" + classId;
  const std::wstring library = classes + L"TypeLib\\" + libraryId + L"\\1.0";
  const std::wstring addIn =
      L"HKCU\\Software\\Microsoft\\Office\\FrontPage\\Addins\\DWT.DWTemplate";
  const std::set<std::wstring> lines = {
      clsid + L" [] = \"Orlique Dynamic Web Template\"",
      clsid + L"\\InprocServer32 [] = \"" + file + L"\"",
      clsid + L"\\InprocServer32 [ThreadingModel] = \"Apartment\"",
      clsid + L"\\ProgID [] = \"DWT.DWTemplate\"",
      clsid + L"\\Programmable",
      clsid + L"\\TypeLib [] = \"" + libraryId + L"\"",
      clsid + L"\\Version [] = \"1.0\"",
      classes + L"DWT.DWTemplate [] = \"Orlique Dynamic Web Template\"",
      classes + L"DWT.DWTemplate\\CLSID [] = \"" + classId + L"\"",
      library + L" [] = \"Orlique Dynamic Web Template\"",
      library + L"\\0\\win32 [] = \"" + file + L"\"",
      library + L"\\FLAGS [] = \"0\"",
      library + L"\\HELPDIR [] = \"" + folder + L"\"",
      addIn + L" [FriendlyName] = \"Orlique Quillet\"",
      addIn + L" [Description] = \"Orlique Dynamic Web Template\"",
      addIn + L" [LoadBehavior] = dword 3",
      addIn + L" [CommandLineSafe] = dword 0",
  };
  return {lines.begin(), lines.end()};
}

int writesBefore = 0;
decltype(&RegSetValueExW) realSetValue = nullptr;

// Refuses one write, as a registry with a protected key does.
LSTATUS WINAPI setValueButOne(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                              DWORD size) {
  if (writesBefore-- == 0) return ERROR_ACCESS_DENIED;
  return realSetValue(key, name, reserved, type, data, size);
}

LSTATUS WINAPI openDenied(HKEY, LPCWSTR, DWORD, REGSAM, PHKEY) { return ERROR_ACCESS_DENIED; }

LSTATUS WINAPI keepModel(HKEY key, LPCWSTR name) {
  if (std::wstring_view(name) == L"ThreadingModel") return ERROR_ACCESS_DENIED;
  return RegDeleteValueW(key, name);
}

}  // namespace

TEST_CASE("Registering writes the class for the machine and the add-in entry for the user") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  CHECK(everything() == expected(L"HKLM", ShippedModule::builtPath()));
}

TEST_CASE("Registering per user writes everything below the user's own key") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.install(true, L"user") == S_OK);
  CHECK(everything() == expected(L"HKCU", ShippedModule::builtPath()));
}

TEST_CASE("A user can be given the entry in the host's list alone") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.install(true, L"list") == S_OK);
  std::vector<std::wstring> entry;
  for (const auto& line : expected(L"HKLM", ShippedModule::builtPath()))
    if (line.find(L"Addins") != line.npos) entry.push_back(line);
  CHECK(entry.size() == 4);
  CHECK(everything() == entry);
  CHECK(module.install(false, L"list") == S_OK);
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, L"Software\\Microsoft"));
}

TEST_CASE("Taking the entry from a user leaves the class that the machine has") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  CHECK(module.install(false, L"list") == S_OK);
  std::vector<std::wstring> rest;
  for (const auto& line : expected(L"HKLM", ShippedModule::builtPath()))
    if (line.find(L"Addins") == line.npos) rest.push_back(line);
  std::vector<std::wstring> machine;
  for (const auto& line : everything())
    if (line.find(L"HKLM") == 0) machine.push_back(line);
  CHECK(machine == rest);
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, L"Software\\Microsoft"));
}

TEST_CASE("Unregistering leaves nothing") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  CHECK(module.unregisterServer() == S_OK);
  CHECK(everything().size() <= 2);
  for (const auto& line : everything()) CHECK(line.find(L'\\') == 4);
  CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, L"Software\\Classes\\CLSID"));
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, L"Software\\Microsoft"));
}

TEST_CASE("Unregistering per user leaves nothing") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.install(true, L"USER") == S_OK);
  CHECK(module.install(false, L"User") == S_OK);
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID"));
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, L"Software\\Classes\\TypeLib"));
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, L"Software\\Microsoft"));
}

TEST_CASE("Unregistering what was never registered is no failure") {
  ShippedModule module;
  ScratchRegistry registry;
  CHECK(module.unregisterServer() == S_OK);
  CHECK(module.install(false, L"user") == S_OK);
  CHECK(everything().empty());
}

TEST_CASE("Unregistering leaves the entries of others alone") {
  ShippedModule module;
  ScratchRegistry registry;
  registry.setString(HKEY_LOCAL_MACHINE, L"Software\\Classes\\CLSID\\{other}", L"", L"other");
  registry.setString(HKEY_LOCAL_MACHINE,
                     L"Software\\Classes\\Interface\\{B65AD801-ABAF-11D0-BB8B-00A0C90F2744}", L"",
                     L"the host's");
  registry.setNumber(HKEY_CURRENT_USER,
                     L"Software\\Microsoft\\Office\\FrontPage\\Addins\\Other.AddIn",
                     L"LoadBehavior", 3);
  const auto before = everything();
  REQUIRE(module.registerServer() == S_OK);
  CHECK(everything().size() == before.size() + 17);
  REQUIRE(module.unregisterServer() == S_OK);
  CHECK(everything() == before);
}

TEST_CASE("Unregistering leaves a value that somebody else put beside ours") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  const wchar_t entry[] = L"Software\\Microsoft\\Office\\FrontPage\\Addins\\DWT.DWTemplate";
  registry.setString(HKEY_CURRENT_USER, entry, L"Note", L"mine");
  REQUIRE(module.unregisterServer() == S_OK);
  CHECK(registry.valueNames(HKEY_CURRENT_USER, entry) == std::vector<std::wstring>{L"Note"});
}

TEST_CASE("Registering again repairs what the host wrote after a failed load") {
  ShippedModule module;
  ScratchRegistry registry;
  registry.setNumber(HKEY_CURRENT_USER,
                     L"Software\\Microsoft\\Office\\FrontPage\\Addins\\DWT.DWTemplate",
                     L"LoadBehavior", 2);
  REQUIRE(module.registerServer() == S_OK);
  CHECK(everything() == expected(L"HKLM", ShippedModule::builtPath()));
}

TEST_CASE("A registration that fails half-way leaves the registry as it was") {
  ShippedModule module;
  for (int writes = 0; writes < 16; ++writes) {
    CAPTURE(writes);
    ScratchRegistry registry;
    registry.setString(HKEY_LOCAL_MACHINE, std::wstring(L"Software\\Classes\\CLSID\\") + classId,
                       L"", L"an older one");
    registry.setNumber(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Office\\FrontPage\\Addins\\DWT.DWTemplate",
                       L"LoadBehavior", 2);
    const auto before = everything();
    {
      const ImportPatch patch(module.handle(), "ADVAPI32.dll", "RegSetValueExW", &setValueButOne);
      realSetValue =
          patch.original<LSTATUS WINAPI(HKEY, LPCWSTR, DWORD, DWORD, const BYTE*, DWORD)>();
      writesBefore = writes;
      CHECK(module.registerServer() == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    }
    CHECK(everything() == before);
  }
}

TEST_CASE("Unregistering tells that it was denied") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  const ImportPatch patch(module.handle(), "ADVAPI32.dll", "RegOpenKeyExW", &openDenied);
  CHECK(module.unregisterServer() == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

TEST_CASE("Unregistering goes on behind what it was denied and tells of it") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  {
    const ImportPatch patch(module.handle(), "ADVAPI32.dll", "RegDeleteValueW", &keepModel);
    CHECK(module.unregisterServer() == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  }
  std::vector<std::wstring> values = everything();
  std::erase_if(values, [](const auto& line) { return line.find(L" [") == line.npos; });
  REQUIRE(values.size() == 1);
  CHECK(values[0].find(L"[ThreadingModel]") != std::wstring::npos);
}

TEST_CASE("Unregistering leaves the system's own first levels though nothing is in them") {
  for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    const wchar_t* scope = root == HKEY_CURRENT_USER ? L"user" : L"";
    ShippedModule module;
    ScratchRegistry registry;
    REQUIRE(module.install(true, scope) == S_OK);
    REQUIRE(module.install(false, scope) == S_OK);
    CHECK(registry.hasKey(root, L"Software\\Classes"));
    CHECK_FALSE(registry.hasKey(root, L"Software\\Classes\\CLSID"));
  }
}

TEST_CASE("A module in a folder outside the code page is registered by its true path") {
  ScratchFolder folder;
  const std::wstring path = folder.makeFolder(L"\u4f60\u597d \u0416") + L"\\Quillet.dll";
  REQUIRE(CopyFileW(ShippedModule::builtPath().c_str(), path.c_str(), TRUE));
  ShippedModule module(path);
  ScratchRegistry registry;
  REQUIRE(module.registerServer() == S_OK);
  CHECK(everything() == expected(L"HKLM", path));
}

TEST_CASE("Installing without a command line registers for the machine") {
  ShippedModule module;
  ScratchRegistry registry;
  REQUIRE(module.install(true, nullptr) == S_OK);
  CHECK(everything() == expected(L"HKLM", ShippedModule::builtPath()));
  REQUIRE(module.install(false, L"") == S_OK);
  CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, L"Software\\Classes\\CLSID"));
}

TEST_CASE("Installing with an unknown command line is refused and writes nothing") {
  ShippedModule module;
  ScratchRegistry registry;
  CHECK(module.install(true, L"everybody") == E_INVALIDARG);
  CHECK(module.install(false, L"users") == E_INVALIDARG);
  CHECK(everything().empty());
}
