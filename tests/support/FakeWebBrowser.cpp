#include "tests/support/FakeWebBrowser.h"

#include <mshtmhst.h>

#include <initializer_list>
#include <utility>

#include "host/pages/BareBrowser.h"
#include "host/pages/address.h"
#include "tests/support/ModalDriver.h"

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

ComPtr<IDispatch> makeDocument(std::wstring& bodyHtml, bool hasBody) {
  if (!hasBody) return ComPtr<IDispatch>::adopt(new OneProperty(L"pages", {}, {}));
  auto body = ComPtr<IDispatch>::adopt(new OneProperty(
      L"innerHTML", {}, [&bodyHtml](const std::wstring& html) { bodyHtml = html; }));
  return ComPtr<IDispatch>::adopt(new OneProperty(L"body", [body] { return body; }, {}));
}

com::Variant aFrame() {
  const auto frame = ComPtr<IDispatch>::adopt(new OneProperty(L"frame", {}, {}));
  return com::Variant(frame.get());
}

}  // namespace

class FakeBrowserObject final : public BareBrowser {
 public:
  explicit FakeBrowserObject(FakeWebBrowser& fake) : fake_(fake), strict_(fake.isStrict) {
    ++fake_.alive_;
    fake_.newest_ = this;
  }

  bool isResting() const noexcept { return next_ == Next::nothing; }
  HWND window() const noexcept { return window_; }
  bool isActive() const noexcept { return active_; }
  int stop() const noexcept { return stop_; }

  bool mayGo(const std::wstring& address) { return mayNavigate(self(), fake_.reported(address)); }

  void arrive(const std::wstring& address) {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    next_ = Next::nothing;
    if (mayGo(address)) load(address);
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
    if (fake_.refusesAll) return E_FAIL;
    go(target);
    return S_OK;
  }
  STDMETHODIMP GoBack() noexcept override {
    if (strict_ && !former_.empty()) go(former_);
    return note(L"GoBack");
  }
  STDMETHODIMP GoForward() noexcept override { return note(L"GoForward"); }
  STDMETHODIMP Stop() noexcept override {
    next_ = Next::nothing;
    return note(L"Stop");
  }
  STDMETHODIMP Refresh() noexcept override {
    if (strict_ && !fake_.address_.empty()) go(fake_.address_);
    fake_.onRefresh();
    return note(L"Refresh");
  }
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
    *busy = fake_.isBusy || !isResting() ? VARIANT_TRUE : VARIANT_FALSE;
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
  STDMETHODIMP Close(DWORD) noexcept override {
    next_ = Next::nothing;
    return note(L"Close");
  }
  STDMETHODIMP DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND, const RECT*) noexcept override {
    note(verb == OLEIVERB_INPLACEACTIVATE ? L"in-place activate" : L"focus");
    if (!strict_) return S_OK;
    if (!window_ && !activateInPlace()) return E_FAIL;
    // One that has the keys already thinks that it has the focus too.
    if (verb == OLEIVERB_UIACTIVATE && !active_) takeFocus();
    return S_OK;
  }

  // IOleInPlaceObject, IOleInPlaceActiveObject

  STDMETHODIMP InPlaceDeactivate() noexcept override {
    if (window_) {
      deactivate();
      if (const auto place = site().as<IOleInPlaceSite>()) place->OnInPlaceDeactivate();
      DestroyWindow(window_);
    }
    return note(L"InPlaceDeactivate");
  }
  STDMETHODIMP UIDeactivate() noexcept override {
    deactivate();
    return note(L"UIDeactivate");
  }
  STDMETHODIMP GetWindow(HWND* window) noexcept override {
    *window = window_;
    return window_ ? S_OK : E_FAIL;
  }
  STDMETHODIMP SetObjectRects(const RECT* place, const RECT*) noexcept override {
    if (window_)
      MoveWindow(window_, place->left, place->top, place->right - place->left,
                 place->bottom - place->top, TRUE);
    return S_OK;
  }

  // The host is asked first. Of what is left, the page eats all but letters.
  STDMETHODIMP TranslateAccelerator(MSG* message) noexcept override {
    if (!strict_ || !active_) return S_FALSE;
    const auto host = site().as<IDocHostUIHandler>();
    if (host && host->TranslateAccelerator(message, nullptr, 0) == S_OK) return S_OK;
    if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST) note(L"no key");
    if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN &&
        message->message != WM_SYSCHAR)
      return S_FALSE;
    fake_.keys_.push_back(message->wParam);
    const bool control = GetKeyState(VK_CONTROL) < 0;
    if (message->wParam == VK_TAB) tab(*message);
    if (message->wParam == VK_F5) Refresh();
    if (message->wParam == VK_BACK) GoBack();
    if (message->wParam == VK_ESCAPE) Stop();
    if (control && message->wParam == 'N') note(L"a window of the engine's own");
    if (control && (message->wParam == 'O' || message->wParam == 'L'))
      note(L"a dialog of the engine's own");
    return S_OK;
  }

  void takeFocus() {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    if (!active_) {
      active_ = true;
      stop_ = 1;
      if (const auto place = site().as<IOleInPlaceSite>()) place->OnUIActivate();
    }
    SetFocus(window_);
  }

  void closeItself() {
    note(L"closed by itself");
    InPlaceDeactivate();
  }

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
  // What the message that is on its way will do.
  enum class Next { nothing, ask, load };
  static constexpr UINT nextMessage = WM_APP + 1;

  ~FakeBrowserObject() override {
    if (window_) DestroyWindow(window_);
    --fake_.alive_;
    if (fake_.newest_ == this) fake_.newest_ = nullptr;
    note(L"released");
  }

  HRESULT note(std::wstring call) noexcept {
    fake_.calls_.push_back(std::move(call));
    return S_OK;
  }

  // A page that is asked for takes the place of one that is on its way.
  void go(const std::wstring& address) {
    if (fake_.isSlow) return;
    if (!strict_) {
      arrive(address);
      return;
    }
    coming_ = address;
    later(Next::ask);
  }

  void later(Next next) {
    next_ = next;
    PostMessageW(window_, nextMessage, ++turn_, 0);
  }

  void onNext() {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    const Next next = std::exchange(next_, Next::nothing);
    const std::wstring address = coming_;
    if (next == Next::load) load(address);
    if (next != Next::ask) return;
    const WPARAM turn = turn_;
    // Whoever is asked may ask for another page.
    if (mayGo(address) && turn == turn_ && window_) later(Next::load);
  }

  void load(const std::wstring& address) {
    const std::wstring reported = fake_.reported(address);
    if (!fake_.hasDocument || fake_.unreachable(address)) {
      VARIANT_BOOL cancel = VARIANT_FALSE;
      fire(DISPID_NAVIGATEERROR, {self(), reported, L"", 404}, &cancel);
      return;
    }
    former_ = std::exchange(fake_.address_, reported);
    fake_.bodyHtml_.clear();
    document_ = makeDocument(fake_.bodyHtml_, fake_.hasBody);
    fire(DISPID_NAVIGATECOMPLETE2, {self(), reported});
    fire(DISPID_DOCUMENTCOMPLETE, {self(), reported});
  }

  bool activateInPlace() {
    const auto place = site().as<IOleInPlaceSite>();
    HWND parent = nullptr;
    if (!place || place->CanInPlaceActivate() != S_OK || FAILED(place->GetWindow(&parent)) ||
        FAILED(place->OnInPlaceActivate()))
      return false;
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> document;
    RECT position = {};
    RECT clip = {};
    OLEINPLACEFRAMEINFO info = {};
    info.cb = sizeof info;
    if (FAILED(place->GetWindowContext(frame.put(), document.put(), &position, &clip, &info)))
      return false;
    WNDCLASSW description = {};
    description.lpfnWndProc = windowProcedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"QuilletTestsPage";
    RegisterClassW(&description);
    window_ =
        CreateWindowW(description.lpszClassName, L"", WS_CHILD | WS_VISIBLE, position.left,
                      position.top, position.right - position.left, position.bottom - position.top,
                      parent, nullptr, description.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    return window_ != nullptr;
  }

  void deactivate() {
    if (!std::exchange(active_, false)) return;
    stop_ = 0;
    if (const auto place = site().as<IOleInPlaceSite>()) place->OnUIDeactivate(FALSE);
    if (GetFocus() == window_) SetFocus(GetParent(window_));
  }

  // From stop to stop; past the last one the container may take over, or it begins anew.
  void tab(MSG& message) {
    const int next = stop_ + (GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
    if (next >= 1 && next <= fake_.stops) {
      stop_ = next;
      return;
    }
    const auto container = site().as<IOleControlSite>();
    if (container && container->TranslateAccelerator(&message, 0) == S_OK) return;
    stop_ = next < 1 ? fake_.stops : 1;
  }

  static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam,
                                          LPARAM lParam) noexcept {
    auto* const object =
        reinterpret_cast<FakeBrowserObject*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
      case nextMessage:
        if (object && wParam == object->turn_) object->onNext();
        return 0;
      case WM_LBUTTONDOWN:
        if (object) object->takeFocus();
        return 0;
      case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
      case WM_NCDESTROY:
        if (object) object->window_ = nullptr;
        break;
      default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  FakeWebBrowser& fake_;
  bool strict_;
  HWND window_ = nullptr;
  bool active_ = false;
  int stop_ = 0;
  Next next_ = Next::nothing;
  WPARAM turn_ = 0;
  std::wstring coming_;
  std::wstring former_;
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
  keys_.clear();
}

std::wstring FakeWebBrowser::reported(const std::wstring& address) const {
  using standin::pages::Letters;
  return isStrict ? standin::pages::addressOf(address, Letters::escaped) : address;
}

bool FakeWebBrowser::isResting() const noexcept { return !newest_ || newest_->isResting(); }

bool FakeWebBrowser::settle() const {
  return pumpUntil([this] { return isResting(); });
}

HWND FakeWebBrowser::window() const noexcept { return newest_ ? newest_->window() : nullptr; }

bool FakeWebBrowser::isActive() const noexcept { return newest_ && newest_->isActive(); }

int FakeWebBrowser::stop() const noexcept { return newest_ ? newest_->stop() : 0; }

ComPtr<IUnknown> FakeWebBrowser::site() const { return newest_ ? newest_->siteObject() : nullptr; }

long FakeWebBrowser::ambient(DISPID property) { return newest_ ? newest_->ambient(property) : 0; }

bool FakeWebBrowser::follow(const std::wstring& address) { return newest_->mayGo(address); }

bool FakeWebBrowser::followInFrame(const std::wstring& address) {
  return newest_->mayNavigate(aFrame(), reported(address));
}

bool FakeWebBrowser::failInFrame(const std::wstring& address) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_NAVIGATEERROR, {aFrame(), reported(address), L"", 404}, &cancel);
  return cancel == VARIANT_FALSE;
}

void FakeWebBrowser::arrive(const std::wstring& address) { newest_->arrive(address); }

void FakeWebBrowser::completeLate(const std::wstring& address) {
  newest_->fire(DISPID_DOCUMENTCOMPLETE, {newest_->self(), reported(address)});
}

void FakeWebBrowser::failLate(const std::wstring& address) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_NAVIGATEERROR, {newest_->self(), reported(address), L"", 404}, &cancel);
}

bool FakeWebBrowser::openWindow(DISPID event) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  if (event == DISPID_NEWWINDOW3)
    newest_->fire(event, {com::Variant()}, &cancel, {0, L"http://one/", L"http://two/"});
  else
    newest_->fire(event, {com::Variant()}, &cancel);
  return cancel == VARIANT_FALSE;
}

bool FakeWebBrowser::closeWindow() {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_WINDOWCLOSING, {false}, &cancel);
  if (cancel == VARIANT_FALSE) newest_->closeItself();
  return cancel == VARIANT_FALSE;
}

void FakeWebBrowser::click() { SendMessageW(window(), WM_LBUTTONDOWN, MK_LBUTTON, 0); }

bool FakeWebBrowser::download(bool isDocument) {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  newest_->fire(DISPID_FILEDOWNLOAD, {isDocument}, &cancel);
  return cancel == VARIANT_FALSE;
}

void FakeWebBrowser::setCommandState(long command, bool enabled) {
  newest_->fire(DISPID_COMMANDSTATECHANGE, {command, enabled});
}

HRESULT FakeWebBrowser::fire(const ComPtr<IUnknown>& site, DISPID event, DISPPARAMS& arguments) {
  return site.as<IDispatch>()->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                      &arguments, nullptr, nullptr, nullptr);
}
