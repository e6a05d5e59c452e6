#include "bench/BarePage.h"

#include "bench/measure.h"

namespace bench {
namespace {

class Site final : public IOleClientSite, public IOleInPlaceSite, public IOleInPlaceFrame {
 public:
  explicit Site(HWND place) noexcept : place_(place) {}

  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IOleClientSite)
      *object = static_cast<IOleClientSite*>(this);
    else if (id == IID_IOleWindow || id == IID_IOleInPlaceSite)
      *object = static_cast<IOleInPlaceSite*>(this);
    else
      return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP SaveObject() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) noexcept override {
    *container = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP ShowObject() noexcept override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* window) noexcept override {
    *window = place_;
    return S_OK;
  }
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }

  STDMETHODIMP CanInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnUIActivate() noexcept override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                RECT* position, RECT* clip,
                                OLEINPLACEFRAMEINFO* info) noexcept override {
    *frame = this;
    AddRef();
    *document = nullptr;
    GetClientRect(place_, position);
    *clip = *position;
    info->fMDIApp = FALSE;
    info->hwndFrame = GetAncestor(place_, GA_ROOT);
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
  }
  STDMETHODIMP Scroll(SIZE) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() noexcept override { return S_OK; }
  STDMETHODIMP DiscardUndoState() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT*) noexcept override { return S_OK; }

  STDMETHODIMP GetBorder(RECT*) noexcept override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) noexcept override {
    return INPLACE_E_NOTOOLSPACE;
  }
  STDMETHODIMP SetBorderSpace(const BORDERWIDTHS*) noexcept override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject*, const wchar_t*) noexcept override {
    return S_OK;
  }
  STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) noexcept override { return S_OK; }
  STDMETHODIMP RemoveMenus(HMENU) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(const wchar_t*) noexcept override { return S_OK; }
  STDMETHODIMP EnableModeless(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP TranslateAccelerator(MSG*, WORD) noexcept override { return S_FALSE; }

 private:
  ~Site() = default;

  HWND place_;
  ULONG references_ = 1;
};

void check(HRESULT result) {
  if (FAILED(result)) throw CannotRun{"the system's web browser control cannot be shown"};
}

}  // namespace

BarePage::BarePage(HWND place) {
  check(CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject,
                         reinterpret_cast<void**>(object_.put())));
  const auto site = ComPtr<Site>::adopt(new Site(place));
  check(object_->SetClientSite(site.get()));
  if (const auto state = object_.as<IPersistStreamInit>()) check(state->InitNew());
  browser_ = object_.as<IWebBrowser2>();
  RECT all;
  GetClientRect(place, &all);
  check(object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.get(), 0, place, &all));
}

BarePage::~BarePage() {
  if (const auto inPlace = object_.as<IOleInPlaceObject>()) inPlace->InPlaceDeactivate();
  object_->SetClientSite(nullptr);
  object_->Close(OLECLOSE_NOSAVE);
}

void BarePage::navigate(const wchar_t* address) {
  com::Variant url(address);
  com::Variant none = com::Variant::missing();
  auto* const left = const_cast<VARIANT*>(&none.get());
  check(browser_->Navigate2(const_cast<VARIANT*>(&url.get()), left, left, left, left));
}

}  // namespace bench
