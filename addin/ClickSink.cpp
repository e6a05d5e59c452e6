#include "addin/ClickSink.h"

#include "common/report.h"

namespace {

constexpr GUID commandBarButtonEvents = {
    0x000C0351, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr DISPID click = 1;

// The arguments stand in reverse order: the button last. Named ones may stand in any order.
IDispatch* buttonOf(const DISPPARAMS& parameters) noexcept {
  if (parameters.cNamedArgs > 0 || parameters.cArgs < 2) return nullptr;
  const VARIANT& argument = parameters.rgvarg[1];
  return argument.vt == VT_DISPATCH ? argument.pdispVal : nullptr;
}

VARIANT_BOOL* cancelDefaultOf(const DISPPARAMS& parameters) noexcept {
  if (parameters.cNamedArgs > 0 || parameters.cArgs < 1) return nullptr;
  const VARIANT& argument = parameters.rgvarg[0];
  return argument.vt == (VT_BYREF | VT_BOOL) ? argument.pboolVal : nullptr;
}

}  // namespace

ComPtr<ClickSink> ClickSink::make(Handler handler) {
  return ComPtr<ClickSink>::adopt(new ClickSink(std::move(handler)));
}

HRESULT ClickSink::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch && iid != commandBarButtonEvents)
    return E_NOINTERFACE;
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

HRESULT ClickSink::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT ClickSink::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT ClickSink::GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) {
  if (ids)
    for (UINT index = 0; index < count; ++index) ids[index] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

HRESULT ClickSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                          EXCEPINFO*, UINT*) {
  if (id != click) return DISP_E_MEMBERNOTFOUND;
  if (!parameters) return E_POINTER;
  try {
    // The window behind a click runs for long: the connection may end meanwhile.
    const ComPtr<ClickSink> self(this);
    const Handler handler = handler_;
    if (handler) handler(buttonOf(*parameters), cancelDefaultOf(*parameters));
  } catch (...) {
    // The host is told nothing: a click has no outcome.
    modCommon::reportModuleError(L"Invoke", errors::current(), L"ClickSink");
  }
  return S_OK;
}

ButtonEvents::ButtonEvents(IDispatch* button, ClickSink::Handler handler) {
  const auto container = ComPtr<IDispatch>(button).as<IConnectionPointContainer>();
  if (!container) return;
  ComPtr<IConnectionPoint> point;
  if (FAILED(container->FindConnectionPoint(commandBarButtonEvents, point.put())) || !point) return;
  auto sink = ClickSink::make(std::move(handler));
  if (FAILED(point->Advise(sink.get(), &cookie_))) return;
  point_ = std::move(point);
  sink_ = std::move(sink);
}

ButtonEvents& ButtonEvents::operator=(ButtonEvents&& other) noexcept {
  disconnect();
  point_ = std::move(other.point_);
  sink_ = std::move(other.sink_);
  cookie_ = other.cookie_;
  return *this;
}

void ButtonEvents::disconnect() noexcept {
  if (sink_) sink_->detach();
  if (const auto point = std::move(point_)) point->Unadvise(cookie_);
  sink_.reset();
}
