#include "addin/ConnectionObject.h"

#include <oleauto.h>

#include "common/com.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/module.h"

namespace {

struct Method {
  const wchar_t* name;
  UINT arguments;
};

// By dispatch identifier, from 1.
constexpr Method methods[] = {
    {L"OnConnection", 4},      {L"OnDisconnection", 2}, {L"OnAddInsUpdate", 1},
    {L"OnStartupComplete", 1}, {L"OnBeginShutdown", 1},
};

enum MethodId : DISPID {
  onConnection = 1,
  onDisconnection,
  onAddInsUpdate,
  onStartupComplete,
  onBeginShutdown,
};

// The argument at a position counted from the first one, which stands last. A reference is
// followed.
com::Variant argument(const DISPPARAMS& parameters, UINT position) {
  com::Variant value;
  const HRESULT copied =
      VariantCopyInd(value.put(), &parameters.rgvarg[parameters.cArgs - 1 - position]);
  if (FAILED(copied)) throw errors::fromHResult(copied);
  return value;
}

}  // namespace

HRESULT ConnectionObject::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch && iid != IID_IDTExtensibility2)
    return E_NOINTERFACE;
  *object = static_cast<IDTExtensibility2*>(this);
  AddRef();
  return S_OK;
}

HRESULT ConnectionObject::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT ConnectionObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  try {
    ComPtr<ITypeLib> library;
    const HRESULT loaded = LoadTypeLibEx(module::path().c_str(), REGKIND_NONE, library.put());
    if (FAILED(loaded)) return loaded;
    return library->GetTypeInfoOfGuid(IID_IDTExtensibility2, info);
  } catch (...) {  // Not run by tests: no memory.
    return E_OUTOFMEMORY;
  }
}

HRESULT ConnectionObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!names || !ids) return E_POINTER;
  for (UINT index = 0; index < count; ++index) ids[index] = DISPID_UNKNOWN;
  try {
    DISPID id = 0;
    for (const Method& method : methods) {
      ++id;
      if (count > 0 && text::equalIgnoringCase(method.name, names[0])) ids[0] = id;
    }
  } catch (...) {  // Not run by tests: no memory.
    return E_OUTOFMEMORY;
  }
  // Arguments are taken by position only, so the names of arguments are unknown.
  return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT ConnectionObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                 VARIANT* result, EXCEPINFO*, UINT* badArgument) {
  if (!parameters) return E_POINTER;
  if (id < onConnection || id > onBeginShutdown || !(flags & DISPATCH_METHOD))
    return DISP_E_MEMBERNOTFOUND;
  if (parameters->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
  if (parameters->cArgs != methods[id - 1].arguments) return DISP_E_BADPARAMCOUNT;
  if (result) VariantInit(result);
  try {
    return dispatch(id, *parameters);
  } catch (...) {
    if (badArgument) *badArgument = parameters->cArgs - 1;
    return DISP_E_TYPEMISMATCH;
  }
}

HRESULT ConnectionObject::dispatch(DISPID id, const DISPPARAMS& parameters) {
  switch (id) {
    case onConnection: {
      const ComPtr<IDispatch> application = argument(parameters, 0).object();
      return OnConnection(application.get(), 0, nullptr, nullptr);
    }
    case onDisconnection:
      return OnDisconnection(argument(parameters, 0).number(), nullptr);
    case onAddInsUpdate:
      return OnAddInsUpdate(nullptr);
    case onStartupComplete:
      return OnStartupComplete(nullptr);
    default:
      return OnBeginShutdown(nullptr);
  }
}
