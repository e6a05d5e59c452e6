#include "common/module.h"

#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

namespace {

std::wstring longPath() { return L"C:\\" + std::wstring(600, L'd') + L"\\Quillet.dll"; }

// As of a module that lies deeper than most paths reach; what does not fit is cut.
DWORD WINAPI tellLong(HMODULE, LPWSTR buffer, DWORD size) {
  const std::wstring path = longPath();
  const std::size_t length = path.copy(buffer, size);
  if (length < size) buffer[length] = L'\0';
  return static_cast<DWORD>(length);
}

}  // namespace

TEST_CASE("a module whose path is longer than most knows all of it") {
  const ImportPatch patch(nullptr, "kernel32.dll", "GetModuleFileNameW", tellLong);
  CHECK(module::path() == longPath());
  CHECK(module::folder() == L"C:\\" + std::wstring(600, L'd') + L"\\");
}
