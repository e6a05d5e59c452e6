// The module as it ships, loaded from its file.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <string>

#include "addin/IDTExtensibility2.h"
#include "common/com.h"

// Connect and remove modes, as published.
enum ConnectMode : long { afterStartup = 0, atStartup = 1 };
enum RemoveMode : long { hostShutdown = 0, userClosed = 1 };

class ShippedModule {
 public:
  // Stands beside the test program. Throws std::runtime_error when it cannot be loaded.
  explicit ShippedModule(const std::wstring& path = builtPath());
  ~ShippedModule();
  ShippedModule(const ShippedModule&) = delete;
  ShippedModule& operator=(const ShippedModule&) = delete;

  static std::wstring builtPath();

  HMODULE handle() const noexcept { return module_; }

  template <class Function>
  Function* entry(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  ComPtr<IClassFactory> factory() const;
  ComPtr<IDTExtensibility2> connection() const;
  bool canUnload() const;
  HRESULT registerServer() const;
  HRESULT unregisterServer() const;
  HRESULT install(bool install, const wchar_t* commandLine) const;

 private:
  HMODULE module_ = nullptr;
};

// Registered for the machine while it lives. Throws Skipped where the machine has to stay as it is.
class RegisteredModule {
 public:
  RegisteredModule();
  ~RegisteredModule();
  RegisteredModule(const RegisteredModule&) = delete;
  RegisteredModule& operator=(const RegisteredModule&) = delete;

  HRESULT outcome() const noexcept { return outcome_; }

 private:
  ShippedModule module_;
  HRESULT outcome_ = E_FAIL;
};
