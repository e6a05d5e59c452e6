// Makes the connection class.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include "common/Counted.h"
#include "common/com.h"

class ClassFactory final : public com::Counted<IClassFactory> {
 public:
  static ComPtr<ClassFactory> make();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  ClassFactory() = default;
  ~ClassFactory() override = default;
};
