#include "tests/support/ScratchRegistry.h"

#include <stdexcept>

#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t scratchKey[] = L"Software\\Quillet scratch";

LONG WINAPI redirectNothing(HKEY, HKEY) { return ERROR_SUCCESS; }
LONG WINAPI refuse(HKEY, HKEY) { return ERROR_ACCESS_DENIED; }

bool isThere(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

std::wstring ownKey() {
  return std::wstring(scratchKey) + L"\\" + std::to_wstring(GetCurrentProcessId());
}

}  // namespace

TEST_CASE("what a test writes into the registry does not outlive it") {
  {
    ScratchRegistry registry;
    registry.setString(HKEY_CURRENT_USER, L"Software\\Quillet probe", L"a", L"b");
    CHECK(isThere(HKEY_CURRENT_USER, L"Software\\Quillet probe"));
    CHECK(registry.valueNames(HKEY_CURRENT_USER, L"").empty());
  }
  CHECK_FALSE(isThere(HKEY_CURRENT_USER, L"Software\\Quillet probe"));
  CHECK_FALSE(isThere(HKEY_CURRENT_USER, ownKey()));
}

// Else the test would go on in the registry of whoever runs it.
TEST_CASE("a registry that is not redirected ends the test") {
  for (auto* const instead : {&redirectNothing, &refuse}) {
    const ImportPatch patch(nullptr, "advapi32.dll", "RegOverridePredefKey", instead);
    CHECK_THROWS_WITH_AS(ScratchRegistry(), "the registry is not redirected", std::runtime_error);
    CHECK_FALSE(isThere(HKEY_CURRENT_USER, ownKey()));
    CHECK_FALSE(isThere(HKEY_CURRENT_USER, L"mark of a test"));
    CHECK_FALSE(isThere(HKEY_LOCAL_MACHINE, L"mark of a test"));
  }
}
