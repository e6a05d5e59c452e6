// Makes the product believe that its module stands in a scratch folder, for what it loads from
// there.
#pragma once

#include <windows.h>

#include <string>

#include "common/module.h"
#include "tests/support/ScratchFolder.h"

class OwnModule {
 public:
  OwnModule() : before_(module::instance()) {
    CopyFileW(testLibrary().c_str(), (folder_ / L"module.dll").c_str(), FALSE);
    module_ = LoadLibraryW((folder_ / L"module.dll").c_str());
    module::setInstance(module_);
  }
  ~OwnModule() {
    module::setInstance(before_);
    FreeLibrary(module_);
  }
  OwnModule(const OwnModule&) = delete;
  OwnModule& operator=(const OwnModule&) = delete;

  static std::wstring besideProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring program = path;
    return program.substr(0, program.rfind(L'\\') + 1) + name;
  }

  const ScratchFolder& folder() const noexcept { return folder_; }
  // What the user is told when no library works that lies there.
  std::wstring complaint() const {
    return L"The unzip library \" " + (folder_ / L"unzip32.dll") +
           L" \" could not be loaded. The product may have to be reinstalled.";
  }
  void useStandIn() const {
    CopyFileW(testLibrary().c_str(), (folder_ / L"unzip32.dll").c_str(), FALSE);
  }

 private:
  static std::wstring testLibrary() { return besideProgram(L"standin-unzip32.dll"); }

  HINSTANCE before_;
  ScratchFolder folder_;
  HMODULE module_ = nullptr;
};
