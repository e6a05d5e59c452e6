// Makes the connection class.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include "common/com.h"
#include "common/lifetime.h"

class ClassFactory final : public IClassFactory {
 public:
  static ComPtr<ClassFactory> make();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  ClassFactory() = default;
  ~ClassFactory() = default;

  lifetime::ModuleReference moduleReference_;
  LONG references_ = 1;
};
