// The module's entry points.
#include <windows.h>
#include <olectl.h>

#include "addin/ClassFactory.h"
#include "addin/identity.h"
#include "addin/registration.h"
#include "common/letter_case.h"
#include "common/lifetime.h"
#include "common/module.h"

namespace {

HRESULT outcome(LONG systemCode) noexcept { return HRESULT_FROM_WIN32(systemCode); }

}  // namespace

// Nothing but the handle: the host's loader lock is held here.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) module::setInstance(instance);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (classId != identity::classId) return CLASS_E_CLASSNOTAVAILABLE;
  try {
    return ClassFactory::make()->QueryInterface(iid, object);
  } catch (...) {  // Not run by tests: no memory.
    return E_OUTOFMEMORY;
  }
}

STDAPI DllCanUnloadNow() { return lifetime::references() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return outcome(registration::add(registration::Scope::machine)); }

STDAPI DllUnregisterServer() { return outcome(registration::remove(registration::Scope::machine)); }

// "user" registers for the current user alone, "list" only enters the module that the machine has
// into that user's list of add-ins; nothing or an empty text is the machine-wide way.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
  try {
    auto scope = registration::Scope::machine;
    if (commandLine && *commandLine) {
      if (text::equalIgnoringCase(commandLine, L"user"))
        scope = registration::Scope::user;
      else if (text::equalIgnoringCase(commandLine, L"list"))
        scope = registration::Scope::list;
      else
        return E_INVALIDARG;
    }
    return outcome(install ? registration::add(scope) : registration::remove(scope));
  } catch (...) {  // Not run by tests: no memory.
    return E_OUTOFMEMORY;
  }
}
