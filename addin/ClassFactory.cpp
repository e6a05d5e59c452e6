#include "addin/ClassFactory.h"

#include "addin/DWTemplate.h"
#include "common/lifetime.h"

ComPtr<ClassFactory> ClassFactory::make() { return ComPtr<ClassFactory>::adopt(new ClassFactory); }

HRESULT ClassFactory::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  try {
    return DWTemplate::make()->QueryInterface(iid, object);
  } catch (...) {  // Not run by tests: no memory.
    return E_OUTOFMEMORY;
  }
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  if (lock)
    lifetime::addReference();
  else
    lifetime::removeReference();
  return S_OK;
}
