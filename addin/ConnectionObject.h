// The COM side of a connection class: its interfaces, and calls by name.
#pragma once

#include "addin/IDTExtensibility2.h"
#include "common/Counted.h"

// Calls by name reach the same methods as calls through the table. They are taken generously: only
// the arguments that a connection uses must have their types.
//
// The type library could dispatch them too. It would turn away a host that leaves the arguments
// empty for which it has nothing, and read the module's file at each call, to save 1 KB.
class ConnectionObject : public com::Counted<IDTExtensibility2> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) final;
  // From the module's embedded type library.
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) final;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) final;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) final;

 protected:
  ConnectionObject() noexcept = default;

 private:
  HRESULT dispatch(DISPID id, const DISPPARAMS& parameters);
};
