#include "host/model/ClickPoint.h"

#include <olectl.h>

namespace standin {

STDMETHODIMP CommandBarButton::ClickPoint::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IConnectionPoint) return E_NOINTERFACE;
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) CommandBarButton::ClickPoint::Release() {
  const long left = --references_;
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

STDMETHODIMP CommandBarButton::ClickPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = buttonEvents;
  return S_OK;
}

STDMETHODIMP CommandBarButton::ClickPoint::GetConnectionPointContainer(
    IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  *container = button_;
  if (!button_) return E_UNEXPECTED;
  button_->AddRef();
  return S_OK;
}

STDMETHODIMP CommandBarButton::ClickPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  if (const HRESULT watched = watchedCall(L"events Advise"); FAILED(watched)) return watched;
  ComPtr<IDispatch> events;
  if (FAILED(sink->QueryInterface(buttonEvents, reinterpret_cast<void**>(events.put()))))
    return CONNECT_E_CANNOTCONNECT;
  *cookie = ++lastCookie_;
  sinks_[*cookie] = std::move(events);
  return S_OK;
}

STDMETHODIMP CommandBarButton::ClickPoint::Unadvise(DWORD cookie) {
  if (const HRESULT watched = watchedCall(L"events Unadvise"); FAILED(watched)) return watched;
  return sinks_.erase(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
}

HRESULT CommandBarButton::ClickPoint::watchedCall(const wchar_t* name) const noexcept {
  return button_ ? button_->session()->faults.watchedBare(name) : S_OK;
}

STDMETHODIMP CommandBarButton::ClickPoint::EnumConnections(IEnumConnections** connections) {
  if (connections) *connections = nullptr;
  return E_NOTIMPL;
}

bool CommandBarButton::ClickPoint::fire(CommandBarButton& clicked) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  // A copy: a listener may unadvise itself while it is told.
  const auto sinks = sinks_;
  for (const auto& [cookie, sink] : sinks) {
    VARIANTARG arguments[2] = {};
    arguments[1].vt = VT_DISPATCH;
    arguments[1].pdispVal = static_cast<AutomationObject*>(&clicked);
    arguments[0].vt = VT_BYREF | VT_BOOL;
    arguments[0].pboolVal = &cancel;
    DISPPARAMS parameters = {arguments, nullptr, 2, 0};
    com::Variant result;
    sink->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, result.put(),
                 nullptr, nullptr);
  }
  return cancel != VARIANT_FALSE;
}

}  // namespace standin
