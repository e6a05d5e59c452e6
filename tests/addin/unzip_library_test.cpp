// The file of the unzip library that ships beside the module: it reads what strangers made, inside
// the host's process.
#include <windows.h>
#include <doctest/doctest.h>

#include "tests/addin/PortableExecutable.h"
#include "tests/addin/ShippedModule.h"

namespace {

PortableExecutable unzipLibrary() {
  const std::wstring module = ShippedModule::builtPath();
  return PortableExecutable(module.substr(0, module.rfind(L'\\') + 1) + L"unzip32.dll");
}

}  // namespace

TEST_CASE("The unzip library can lie at any address and runs no data") {
  const PortableExecutable file = unzipLibrary();
  CHECK((file.dllCharacteristics() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE) != 0);
  CHECK((file.dllCharacteristics() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT) != 0);
  CHECK(file.hasRelocations());
}

TEST_CASE("The unzip library stops when its stack is overwritten") {
  // The last words of the compiler's stack protection, linked in only where it is used.
  CHECK(unzipLibrary().contains("*** stack smashing detected ***"));
}

TEST_CASE("The unzip library needs no library that Windows XP lacks") {
  for (const auto& import : unzipLibrary().imports()) {
    CAPTURE(import);
    const std::string library = import.substr(0, import.find(' '));
    CHECK((library == "KERNEL32.DLL" || library == "USER32.DLL" || library == "ADVAPI32.DLL" ||
           library == "MSVCRT.DLL"));
  }
}
