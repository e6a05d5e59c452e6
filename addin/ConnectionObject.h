// The COM side of a connection class: references, and calls by name.
#pragma once

#include "addin/IDTExtensibility2.h"
#include "common/lifetime.h"

// Calls by name reach the same methods as calls through the table. They are taken generously: only
// the arguments that a connection uses must have their types.
class ConnectionObject : public IDTExtensibility2 {
 public:
  ConnectionObject(const ConnectionObject&) = delete;
  ConnectionObject& operator=(const ConnectionObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final;
  ULONG STDMETHODCALLTYPE AddRef() final;
  ULONG STDMETHODCALLTYPE Release() final;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) final;
  // From the module's embedded type library.
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) final;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) final;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) final;

 protected:
  // Born with one reference.
  ConnectionObject() noexcept = default;
  virtual ~ConnectionObject() = default;

 private:
  HRESULT dispatch(DISPID id, const DISPPARAMS& parameters);

  lifetime::ModuleReference moduleReference_;
  LONG references_ = 1;
};
