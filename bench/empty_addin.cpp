// An add-in that does nothing: what loading and connecting cost by themselves.
#include <windows.h>

#include <unknwn.h>

#include "addin/IDTExtensibility2.h"

namespace {

class Connection final : public IDTExtensibility2 {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IDispatch && id != IID_IDTExtensibility2)
      return E_NOINTERFACE;
    *object = static_cast<IDTExtensibility2*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return DISP_E_MEMBERNOTFOUND;
  }
  STDMETHODIMP OnConnection(IDispatch*, long, IDispatch*, SAFEARRAY**) noexcept override {
    return S_OK;
  }
  STDMETHODIMP OnDisconnection(long, SAFEARRAY**) noexcept override { return S_OK; }
  STDMETHODIMP OnAddInsUpdate(SAFEARRAY**) noexcept override { return S_OK; }
  STDMETHODIMP OnStartupComplete(SAFEARRAY**) noexcept override { return S_OK; }
  STDMETHODIMP OnBeginShutdown(SAFEARRAY**) noexcept override { return S_OK; }

 private:
  ULONG references_ = 0;
};

class Factory final : public IClassFactory {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return 2; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) noexcept override {
    return (new Connection)->QueryInterface(id, object);
  }
  STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }
};

Factory factory;

}  // namespace

// NOLINTNEXTLINE(misc-use-internal-linkage): exported by the linker.
STDAPI DllGetClassObject(REFCLSID, REFIID id, void** object) {
  return factory.QueryInterface(id, object);
}
