#include "tests/addin/ShippedModule.h"

#include <stdexcept>

#include "addin/identity.h"
#include "tests/support/machine.h"

ShippedModule::ShippedModule(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {
  if (!module_) throw std::runtime_error("the module does not load");
}

ShippedModule::~ShippedModule() { FreeLibrary(module_); }

std::wstring ShippedModule::builtPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  return program.substr(0, program.rfind(L'\\') + 1) + L"Quillet.dll";
}

ComPtr<IClassFactory> ShippedModule::factory() const {
  ComPtr<IClassFactory> factory;
  const auto get = entry<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject");
  get(identity::classId, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
  return factory;
}

ComPtr<IDTExtensibility2> ShippedModule::connection() const {
  ComPtr<IDTExtensibility2> connection;
  factory()->CreateInstance(nullptr, IID_IDTExtensibility2,
                            reinterpret_cast<void**>(connection.put()));
  return connection;
}

bool ShippedModule::canUnload() const {
  return entry<HRESULT WINAPI()>("DllCanUnloadNow")() == S_OK;
}

HRESULT ShippedModule::registerServer() const {
  return entry<HRESULT WINAPI()>("DllRegisterServer")();
}

HRESULT ShippedModule::unregisterServer() const {
  return entry<HRESULT WINAPI()>("DllUnregisterServer")();
}

HRESULT ShippedModule::install(bool install, const wchar_t* commandLine) const {
  return entry<HRESULT WINAPI(BOOL, LPCWSTR)>("DllInstall")(install, commandLine);
}

RegisteredModule::RegisteredModule() {
  machine::mayChange();
  outcome_ = module_.registerServer();
}

RegisteredModule::~RegisteredModule() { module_.unregisterServer(); }
