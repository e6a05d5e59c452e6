#include "tests/support/FakeWebBrowser.h"

#include <exdisp.h>
#include <exdispid.h>
#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include <initializer_list>

namespace {

template <class... Interfaces>
class Counted : public Interfaces... {
 public:
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  ULONG references_ = 1;
};

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

#define NOT_ASKED(name, ...) \
  STDMETHODIMP name(__VA_ARGS__) noexcept override { return E_NOTIMPL; }

class FakeBrowserObject final
    : public Counted<IWebBrowser2, IOleObject, IOleInPlaceObject, IOleInPlaceActiveObject,
                     IPersistStreamInit, IConnectionPointContainer, IConnectionPoint> {
 public:
  explicit FakeBrowserObject(FakeWebBrowser& fake) : fake_(fake) {
    ++fake_.alive_;
    fake_.newest_ = this;
  }

  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id == IID_IUnknown || id == IID_IDispatch || id == IID_IWebBrowser ||
        id == IID_IWebBrowserApp || id == IID_IWebBrowser2)
      *object = static_cast<IWebBrowser2*>(this);
    else if (id == IID_IOleObject)
      *object = static_cast<IOleObject*>(this);
    else if (id == IID_IOleInPlaceObject)
      *object = static_cast<IOleInPlaceObject*>(this);
    else if (id == IID_IOleInPlaceActiveObject)
      *object = static_cast<IOleInPlaceActiveObject*>(this);
    else if (id == IID_IPersistStreamInit)
      *object = static_cast<IPersistStreamInit*>(this);
    else if (id == IID_IConnectionPointContainer)
      *object = static_cast<IConnectionPointContainer*>(this);
    else if (id == IID_IConnectionPoint)
      *object = static_cast<IConnectionPoint*>(this);
    else
      return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  // Events. The arguments stand in the order of their declaration.

  void fire(DISPID event, std::initializer_list<com::Variant> arguments,
            VARIANT_BOOL* cancel = nullptr) {
    if (!sink_) return;
    std::vector<VARIANT> reversed;
    if (cancel) {
      VARIANT flag = {};
      flag.vt = VT_BYREF | VT_BOOL;
      flag.pboolVal = cancel;
      reversed.push_back(flag);
    }
    for (auto each = std::rbegin(arguments); each != std::rend(arguments); ++each)
      reversed.push_back(each->get());
    DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    const ComPtr<IDispatch> sink = sink_;
    sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                 nullptr, nullptr);
  }

  com::Variant self() {
    return com::Variant(static_cast<IDispatch*>(static_cast<IWebBrowser2*>(this)));
  }

  bool mayNavigate(const com::Variant& frame, const std::wstring& address) {
    VARIANT_BOOL cancel = VARIANT_FALSE;
    fire(DISPID_BEFORENAVIGATE2, {frame, address, 0, L"", com::Variant(), L""}, &cancel);
    return cancel == VARIANT_FALSE;
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

  ComPtr<IUnknown> site() const { return site_.as<IUnknown>(); }

  long ambient(DISPID property) {
    const auto site = ComPtr<IOleClientSite>(site_).as<IDispatch>();
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

  NOT_ASKED(GetTypeInfoCount, UINT*)
  NOT_ASKED(GetTypeInfo, UINT, LCID, ITypeInfo**)
  NOT_ASKED(GetIDsOfNames, REFIID, OLECHAR**, UINT, LCID, DISPID*)
  NOT_ASKED(Invoke, DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
  NOT_ASKED(GoHome)
  NOT_ASKED(GoSearch)
  NOT_ASKED(Navigate, BSTR, VARIANT*, VARIANT*, VARIANT*, VARIANT*)
  NOT_ASKED(Refresh2, VARIANT*)
  NOT_ASKED(get_Application, IDispatch**)
  NOT_ASKED(get_Parent, IDispatch**)
  NOT_ASKED(get_Container, IDispatch**)
  NOT_ASKED(get_TopLevelContainer, VARIANT_BOOL*)
  NOT_ASKED(get_Type, BSTR*)
  NOT_ASKED(get_Left, long*)
  NOT_ASKED(put_Left, long)
  NOT_ASKED(get_Top, long*)
  NOT_ASKED(put_Top, long)
  NOT_ASKED(get_Width, long*)
  NOT_ASKED(put_Width, long)
  NOT_ASKED(get_Height, long*)
  NOT_ASKED(put_Height, long)
  NOT_ASKED(get_LocationName, BSTR*)
  NOT_ASKED(Quit)
  NOT_ASKED(ClientToWindow, int*, int*)
  NOT_ASKED(PutProperty, BSTR, VARIANT)
  NOT_ASKED(GetProperty, BSTR, VARIANT*)
  NOT_ASKED(get_Name, BSTR*)
  NOT_ASKED(get_HWND, SHANDLE_PTR*)
  NOT_ASKED(get_FullName, BSTR*)
  NOT_ASKED(get_Path, BSTR*)
  NOT_ASKED(get_Visible, VARIANT_BOOL*)
  NOT_ASKED(put_Visible, VARIANT_BOOL)
  NOT_ASKED(get_StatusBar, VARIANT_BOOL*)
  NOT_ASKED(put_StatusBar, VARIANT_BOOL)
  NOT_ASKED(get_StatusText, BSTR*)
  NOT_ASKED(put_StatusText, BSTR)
  NOT_ASKED(get_ToolBar, int*)
  NOT_ASKED(put_ToolBar, int)
  NOT_ASKED(get_MenuBar, VARIANT_BOOL*)
  NOT_ASKED(put_MenuBar, VARIANT_BOOL)
  NOT_ASKED(get_FullScreen, VARIANT_BOOL*)
  NOT_ASKED(put_FullScreen, VARIANT_BOOL)
  NOT_ASKED(QueryStatusWB, OLECMDID, OLECMDF*)
  NOT_ASKED(ShowBrowserBar, VARIANT*, VARIANT*, VARIANT*)
  NOT_ASKED(get_ReadyState, READYSTATE*)
  NOT_ASKED(get_Offline, VARIANT_BOOL*)
  NOT_ASKED(put_Offline, VARIANT_BOOL)
  NOT_ASKED(get_Silent, VARIANT_BOOL*)
  NOT_ASKED(get_RegisterAsBrowser, VARIANT_BOOL*)
  NOT_ASKED(put_RegisterAsBrowser, VARIANT_BOOL)
  NOT_ASKED(get_RegisterAsDropTarget, VARIANT_BOOL*)
  NOT_ASKED(get_TheaterMode, VARIANT_BOOL*)
  NOT_ASKED(put_TheaterMode, VARIANT_BOOL)
  NOT_ASKED(get_AddressBar, VARIANT_BOOL*)
  NOT_ASKED(put_AddressBar, VARIANT_BOOL)
  NOT_ASKED(get_Resizable, VARIANT_BOOL*)
  NOT_ASKED(put_Resizable, VARIANT_BOOL)

  // IOleObject

  STDMETHODIMP SetClientSite(IOleClientSite* site) noexcept override {
    site_ = ComPtr<IOleClientSite>(site);
    return note(site ? L"SetClientSite" : L"SetClientSite nothing");
  }
  STDMETHODIMP GetClientSite(IOleClientSite** site) noexcept override {
    *site = ComPtr<IOleClientSite>(site_).release();
    return S_OK;
  }
  STDMETHODIMP Close(DWORD) noexcept override { return note(L"Close"); }
  STDMETHODIMP DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND, const RECT*) noexcept override {
    return note(verb == OLEIVERB_INPLACEACTIVATE ? L"in-place activate" : L"focus");
  }
  NOT_ASKED(SetHostNames, const wchar_t*, const wchar_t*)
  NOT_ASKED(SetMoniker, DWORD, IMoniker*)
  NOT_ASKED(GetMoniker, DWORD, DWORD, IMoniker**)
  NOT_ASKED(InitFromData, IDataObject*, BOOL, DWORD)
  NOT_ASKED(GetClipboardData, DWORD, IDataObject**)
  NOT_ASKED(EnumVerbs, IEnumOLEVERB**)
  NOT_ASKED(Update)
  NOT_ASKED(IsUpToDate)
  NOT_ASKED(GetUserClassID, CLSID*)
  NOT_ASKED(GetUserType, DWORD, LPOLESTR*)
  NOT_ASKED(SetExtent, DWORD, SIZEL*)
  NOT_ASKED(GetExtent, DWORD, SIZEL*)
  NOT_ASKED(Advise, IAdviseSink*, DWORD*)
  NOT_ASKED(EnumAdvise, IEnumSTATDATA**)
  NOT_ASKED(GetMiscStatus, DWORD, DWORD*)
  NOT_ASKED(SetColorScheme, LOGPALETTE*)

  // IOleInPlaceObject, IOleInPlaceActiveObject

  STDMETHODIMP InPlaceDeactivate() noexcept override { return note(L"InPlaceDeactivate"); }
  STDMETHODIMP SetObjectRects(const RECT*, const RECT*) noexcept override { return S_OK; }
  STDMETHODIMP TranslateAccelerator(MSG*) noexcept override { return S_FALSE; }
  NOT_ASKED(GetWindow, HWND*)
  NOT_ASKED(ContextSensitiveHelp, BOOL)
  NOT_ASKED(UIDeactivate)
  NOT_ASKED(ReactivateAndUndo)
  NOT_ASKED(OnFrameWindowActivate, BOOL)
  NOT_ASKED(OnDocWindowActivate, BOOL)
  NOT_ASKED(ResizeBorder, const RECT*, IOleInPlaceUIWindow*, BOOL)
  NOT_ASKED(EnableModeless, BOOL)

  // IPersistStreamInit

  STDMETHODIMP InitNew() noexcept override { return S_OK; }
  NOT_ASKED(GetClassID, CLSID*)
  NOT_ASKED(IsDirty)
  NOT_ASKED(Load, IStream*)
  NOT_ASKED(Save, IStream*, BOOL)
  NOT_ASKED(GetSizeMax, ULARGE_INTEGER*)

  // IConnectionPointContainer, IConnectionPoint

  STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) noexcept override {
    *point = nullptr;
    if (id != DIID_DWebBrowserEvents2) return CONNECT_E_NOCONNECTION;
    *point = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) noexcept override {
    if (FAILED(
            sink->QueryInterface(DIID_DWebBrowserEvents2, reinterpret_cast<void**>(sink_.put()))))
      return CONNECT_E_CANNOTCONNECT;
    *cookie = 1;
    return note(L"Advise");
  }
  STDMETHODIMP Unadvise(DWORD) noexcept override {
    sink_.reset();
    return note(L"Unadvise");
  }
  NOT_ASKED(EnumConnectionPoints, IEnumConnectionPoints**)
  NOT_ASKED(GetConnectionInterface, IID*)
  NOT_ASKED(GetConnectionPointContainer, IConnectionPointContainer**)
  NOT_ASKED(EnumConnections, IEnumConnections**)

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
  ComPtr<IOleClientSite> site_;
  ComPtr<IDispatch> sink_;
  ComPtr<IDispatch> document_;
};

class FakeBrowserFactory final : public Counted<IClassFactory> {
 public:
  explicit FakeBrowserFactory(FakeWebBrowser& fake) : fake_(fake) {}

  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    if (!fake_.canBeMade) return CLASS_E_CLASSNOTAVAILABLE;
    auto* made = new FakeBrowserObject(fake_);
    const HRESULT result = made->QueryInterface(id, object);
    static_cast<IWebBrowser2*>(made)->Release();
    return result;
  }
  STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }

 private:
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

ComPtr<IUnknown> FakeWebBrowser::site() const { return newest_ ? newest_->site() : nullptr; }

long FakeWebBrowser::ambient(DISPID property) { return newest_ ? newest_->ambient(property) : 0; }

bool FakeWebBrowser::follow(const std::wstring& address) {
  return newest_->mayNavigate(newest_->self(), address);
}

bool FakeWebBrowser::followInFrame(const std::wstring& address) {
  const auto frame = ComPtr<IDispatch>::adopt(new OneProperty(L"frame", {}, {}));
  return newest_->mayNavigate(com::Variant(frame.get()), address);
}

void FakeWebBrowser::arrive(const std::wstring& address) { newest_->arrive(address); }

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
