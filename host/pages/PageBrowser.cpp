#include "host/pages/PageBrowser.h"

#include "common/text.h"
#include "host/pages/BareBrowser.h"
#include "host/pages/address.h"
#include "host/pages/fetch.h"
#include "html/PageView.h"
#include "html/encoding.h"

namespace standin::pages {
namespace {

constexpr wchar_t blankPage[] = L"about:blank";

// The numbers of CommandStateChange.
constexpr long forwardCommand = 1;
constexpr long backCommand = 2;

constexpr long notFound = 404;

class PageBrowser final : public BareBrowser {
 public:
  PageBrowser() {
    view_.onLink = [this](const std::wstring& link) {
      go(addressOf(resolved(address_, link)), Way::onward);
    };
    view_.onLater = [this] { load(); };
    view_.onPicture = [this](const std::wstring& picture) {
      std::string bytes;
      fetch(resolved(address_, picture), bytes);
      return std::make_shared<html::Picture>(bytes);
    };
  }

  // IWebBrowser2

  STDMETHODIMP Navigate2(VARIANT* address, VARIANT*, VARIANT*, VARIANT*,
                         VARIANT*) noexcept override {
    if (address->vt != VT_BSTR) return E_INVALIDARG;
    return guarded([&] { go(addressOf(address->bstrVal), Way::onward); });
  }
  STDMETHODIMP GoBack() noexcept override {
    return at_ > 0 ? guarded([this] { go(history_[at_ - 1], Way::back); }) : E_FAIL;
  }
  STDMETHODIMP GoForward() noexcept override {
    return at_ + 1 < history_.size() ? guarded([this] { go(history_[at_ + 1], Way::forward); })
                                     : E_FAIL;
  }
  STDMETHODIMP Stop() noexcept override {
    pending_.clear();
    return S_OK;
  }
  STDMETHODIMP Refresh() noexcept override {
    return guarded([this] { go(address_, Way::again); });
  }
  STDMETHODIMP get_Document(IDispatch** document) noexcept override {
    *document = nullptr;
    return S_FALSE;
  }
  STDMETHODIMP get_LocationURL(BSTR* url) noexcept override {
    *url = SysAllocString(address_.c_str());
    return S_OK;
  }
  STDMETHODIMP get_Busy(VARIANT_BOOL* busy) noexcept override {
    *busy = pending_.empty() ? VARIANT_FALSE : VARIANT_TRUE;
    return S_OK;
  }
  // Nothing is printed, runs or can be dropped here.
  STDMETHODIMP ExecWB(OLECMDID, OLECMDEXECOPT, VARIANT*, VARIANT*) noexcept override {
    return OLECMDERR_E_NOTSUPPORTED;
  }
  STDMETHODIMP put_Silent(VARIANT_BOOL) noexcept override { return S_OK; }
  STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL) noexcept override { return S_OK; }

  // IOleObject

  STDMETHODIMP DoVerb(LONG verb, MSG*, IOleClientSite*, LONG, HWND parent,
                      const RECT* place) noexcept override {
    if (!view_.handle() && !view_.create(parent, *place)) return E_FAIL;
    if (verb == OLEIVERB_UIACTIVATE) SetFocus(view_.handle());
    return S_OK;
  }
  STDMETHODIMP Close(DWORD) noexcept override { return InPlaceDeactivate(); }

  // IOleInPlaceObject

  STDMETHODIMP GetWindow(HWND* window) noexcept override {
    *window = view_.handle();
    return *window ? S_OK : E_FAIL;
  }
  STDMETHODIMP SetObjectRects(const RECT* place, const RECT*) noexcept override {
    MoveWindow(view_.handle(), place->left, place->top, place->right - place->left,
               place->bottom - place->top, TRUE);
    return S_OK;
  }
  STDMETHODIMP InPlaceDeactivate() noexcept override {
    if (view_.handle()) DestroyWindow(view_.handle());
    return S_OK;
  }

 private:
  enum class Way { onward, back, forward, again };

  template <class Work>
  HRESULT guarded(Work work) noexcept {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    try {
      work();
      return S_OK;
    } catch (...) {
      return E_FAIL;
    }
  }

  // The page comes later, when whoever asked for it is done.
  void go(const std::wstring& address, Way way) {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    if (!mayNavigate(self(), address)) return;
    pending_ = address;
    way_ = way;
    view_.askLater();
  }

  void load() {
    const ComPtr<IUnknown> alive(static_cast<IOleObject*>(this));
    const std::wstring address = std::exchange(pending_, {});
    if (address.empty()) return;
    std::string bytes;
    if (address != blankPage && !fetch(address.substr(0, address.find(L'#')), bytes)) {
      fail(address);
      return;
    }
    address_ = address;
    remember(address);
    view_.show(html::parsePage(html::decodePage(bytes)));
    fire(DISPID_NAVIGATECOMPLETE2, {self(), address});
    fire(DISPID_DOCUMENTCOMPLETE, {self(), address});
  }

  void fail(const std::wstring& address) {
    VARIANT_BOOL cancel = VARIANT_FALSE;
    fire(DISPID_NAVIGATEERROR, {self(), address, L"", notFound}, &cancel);
    if (cancel != VARIANT_FALSE) return;
    const std::wstring title = L"The page cannot be displayed";
    view_.show(html::parsePage(text::join(
        {L"<title>", title, L"</title><h2>", title, L"</h2><p>Nothing was found at ", address})));
  }

  void remember(const std::wstring& address) {
    if (way_ == Way::back) --at_;
    if (way_ == Way::forward) ++at_;
    if (way_ == Way::onward) {
      history_.resize(history_.empty() ? 0 : at_ + 1);
      history_.push_back(address);
      at_ = history_.size() - 1;
    }
    fire(DISPID_COMMANDSTATECHANGE, {backCommand, at_ > 0});
    fire(DISPID_COMMANDSTATECHANGE, {forwardCommand, at_ + 1 < history_.size()});
  }

  html::PageView view_;
  std::wstring address_ = blankPage;
  std::wstring pending_;  // a page that is on its way
  Way way_ = Way::onward;
  std::vector<std::wstring> history_;
  std::size_t at_ = 0;
};

class PageBrowserFactory final : public BareFactory {
  BareBrowser* make() noexcept override { return new PageBrowser; }
};

}  // namespace

PageBrowsers::PageBrowsers() {
  const auto factory = ComPtr<IClassFactory>::adopt(new PageBrowserFactory);
  CoRegisterClassObject(CLSID_WebBrowser, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                        &cookie_);
}

PageBrowsers::~PageBrowsers() { CoRevokeClassObject(cookie_); }

}  // namespace standin::pages
