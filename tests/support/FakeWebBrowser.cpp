#include "tests/support/FakeWebBrowser.h"

#include <initializer_list>

#include "host/pages/BareBrowser.h"

using standin::pages::BareBrowser;
using standin::pages::BareFactory;
using standin::pages::Counted;

namespace {

// An object with one property, by name.
class OneProperty final : public Counted<IDispatch> {
 public:
  using Get = std::function<ComPtr<IDispatch>()>;
  using Put = std::function<void(const std::wstring&)>;
  OneProperty(const wchar_t* name, Get get, Put put)
      : name_(name), get_(std::move(get)), put_(std::move(put)) {}

  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IDispatch) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR** names, UINT, LCID, DISPID* ids) noexcept override {
    if (name_ != names[0]) return DISP_E_UNKNOWNNAME;
    ids[0] = 1;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO*, UINT*) noexcept override {
    if ((flags & DISPATCH_PROPERTYPUT) && put_) {
      put_(arguments->rgvarg[0].bstrVal);
      return S_OK;
    }
    if (!(flags & DISPATCH_PROPERTYGET) || !get_) return DISP_E_MEMBERNOTFOUND;
    result->vt = VT_DISPATCH;
    result->pdispVal = get_().release();
    return S_OK;
  }

 private:
  std::wstring name_;
  Get get_;
  Put put_;
};

ComPtr<IDispatch> makeDocument(std::wstring& bodyHtml) {
  auto body = ComPtr<IDispatch>::adopt(new OneProperty(
      L"innerHTML", {}, [&bodyHtml](const std::wstring& html) { bodyHtml = html; }));
  return ComPtr<IDispatch>::adopt(new OneProperty(L"body", [body] { return body; }, {}));
}

}  // namespace

class FakeBrowserObject final : public BareBrowser {
 public:
  explicit FakeBrowserObject(FakeWebBrowser& fake) : fake_(fake) {
    ++fake_.alive_;
    fake_.newest_ = this;
  }

  void arrive(const std::wstring& address) {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    if (!mayNavigate(self(), address)) return;
    if (!fake_.hasDocument || fake_.unreachable(address)) {
      VARIANT_BOOL cancel = VARIANT_FALSE;
      fire(DISPID_NAVIGATEERROR, {self(), address, L"", 404}, &cancel);
      return;
    }
    fake_.address_ = address;
    fake_.bodyHtml_.clear();
    document_ = makeDocument(fake_.bodyHtml_);
    fire(DISPID_NAVIGATECOMPLETE2, {self(), address});
    fire(DISPID_DOCUMENTCOMPLETE, {self(), address});
  }

  ComPtr<IUnknown> siteObject() const { return site().as<IUnknown>(); }

  long ambient(DISPID property) {
    const auto site = this->site().as<IDispatch>();
    com::Variant value;
    DISPPARAMS none = {};
    if (!site || FAILED(site->Invoke(property, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                     &none, value.put(), nullptr, nullptr)))
      return 0;
    return value.number();
  }

  // IWebBrowser2

  STDMETHODIMP Navigate2(VARIANT* address, VARIANT*, VARIANT*, VARIANT*,
                         VARIANT*) noexcept override {
    const std::wstring target = address->bstrVal;
    fake_.navigations_.push_back(target);
    if (!fake_.isSlow) arrive(target);
    return S_OK;
  }
  STDMETHODIMP GoBack() noexcept override { return note(L"GoBack"); }
  STDMETHODIMP GoForward() noexcept override { return note(L"GoForward"); }
  STDMETHODIMP Stop() noexcept override { return note(L"Stop"); }
  STDMETHODIMP Refresh() noexcept override { return note(L"Refresh"); }
  STDMETHODIMP ExecWB(OLECMDID command, OLECMDEXECOPT option, VARIANT*,
                      VARIANT*) noexcept override {
    return note(L"ExecWB " + std::to_wstring(command) + L" " + std::to_wstring(option));
  }
  STDMETHODIMP get_Document(IDispatch** document) noexcept override {
    *document = nullptr;
    if (!document_) return S_FALSE;
    *document = ComPtr<IDispatch>(document_).release();
    return S_OK;
  }
  STDMETHODIMP get_LocationURL(BSTR* url) noexcept override {
    *url = SysAllocString(fake_.address_.c_str());
    return S_OK;
  }
  STDMETHODIMP get_Busy(VARIANT_BOOL* busy) noexcept override {
    *busy = fake_.isBusy ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  STDMETHODIMP put_Silent(VARIANT_BOOL on) noexcept override {
    return note(on ? L"Silent" : L"not Silent");
  }
  STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL on) noexcept override {
    return note(on ? L"drop target" : L"no drop target");
  }

  // IOleObject

  STDMETHODIMP SetClientSite(IOleClientSite* site) noexcept override {
    BareBrowser::SetClientSite(site);
    return note(site ? L"SetClientSite" : L"SetClientSite nothing");
  }
  STDMETHODIMP Close(DWORD) noexcept override { return note(L"Close"); }
  STDMETHODIMP DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND, const RECT*) noexcept override {
    return note(verb == OLEIVERB_INPLACEACTIVATE ? L"in-place activate" : L"focus");
  }

  // IOleInPlaceObject

  STDMETHODIMP InPlaceDeactivate() noexcept override { return note(L"InPlaceDeactivate"); }
  STDMETHODIMP SetObjectRects(const RECT*, const RECT*) noexcept override { return S_OK; }

  // IConnectionPoint

  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override {
    const HRESULT result = BareBrowser::Advise(sink, cookie);
    if (SUCCEEDED(result)) note(L"Advise");
    return result;
  }
  STDMETHODIMP Unadvise(DWORD cookie) noexcept override {
    BareBrowser::Unadvise(cookie);
    return note(L"Unadvise");
  }

 private:
  ~FakeBrowserObject() override {
    --fake_.alive_;
    if (fake_.newest_ == this) fake_.newest_ = nullptr;
    note(L"released");
  }

  HRESULT note(std::wstring call) noexcept {
    fake_.calls_.push_back(std::move(call));
    return S_OK;
  }

  FakeWebBrowser& fake_;
  ComPtr<IDispatch> document_;
};

class FakeBrowserFactory final : public BareFactory {
 public:
  explicit FakeBrowserFactory(FakeWebBrowser& fake) : fake_(fake) {}

 private:
  BareBrowser* make() noexcept override {
    return fake_.canBeMade ? new FakeBrowserObject(fake_) : nullptr;
  }

  FakeWebBrowser& fake_;
};

FakeWebBrowser::FakeWebBrowser() : factory_(new FakeBrowserFactory(*this)) {
  CoRegisterClassObject(CLSID_WebBrowser, factory_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                        &cookie_);
}

FakeWebBrowser::~FakeWebBrowser() {
  CoRevokeClassObject(cookie_);
  factory_->Release();
}

void FakeWebBrowser::clear() {
  navigations_.clear();
  calls_.clear();
}

ComPtr<IUnknown> FakeWebBrowser::site() const { return newest_ ? newest_->siteObject() : nullptr; }

long FakeWebBrowser::ambient(DISPID property) { return newest_ ? newest_->ambient(property) : 0; }

bool FakeWebBrowser::follow(const std::wstring& address) {
  return newest_->mayNavigate(newest_->self(), address);
}

bool FakeWebBrowser::followInFrame(const std::wstring& address) {
  const auto frame = ComPtr<IDispatch>::adopt(new OneProperty(L"frame", {}, {}));
  return newest_->mayNavigate(com::Variant(frame.get()), address);
}

void FakeWebBrowser::arrive(const std::wstring& address) { newest_->arrive(address); }

void FakeWebBrowser::completeLate(const std::wstring& address) {
  newest_->fire(DISPID_DOCUMENTCOMPLETE, {newest_->self(), address});
}

void FakeWebBrowser::failLate(const std::wstring& address) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_NAVIGATEERROR, {newest_->self(), address, L"", 404}, &cancel);
}

bool FakeWebBrowser::openWindow() {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_NEWWINDOW2, {com::Variant()}, &cancel);
  return cancel == VARIANT_FALSE;
}

bool FakeWebBrowser::download(bool isDocument) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_FILEDOWNLOAD, {isDocument}, &cancel);
  return cancel == VARIANT_FALSE;
}

void FakeWebBrowser::setCommandState(long command, bool enabled) {
  newest_->fire(DISPID_COMMANDSTATECHANGE, {command, enabled});
}
