// The host's own browser where the system's is asked for.
#include "host/pages/PageBrowser.h"

#include <exdisp.h>
#include <exdispid.h>
#include <oleidl.h>

#include "common/com.h"
#include "host/pages/BareBrowser.h"
#include "host/pages/address.h"
#include "html/PageView.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

using Lines = std::vector<std::wstring>;

// Notes the events that the browser fires.
class Listener final : public standin::pages::Counted<IDispatch> {
 public:
  Lines lines;
  std::wstring refused;  // navigations to addresses that end so are cancelled

  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IDispatch && id != DIID_DWebBrowserEvents2)
      return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    const VARIANT* const arguments = given->rgvarg;
    if (event == DISPID_BEFORENAVIGATE2) {
      const std::wstring address = arguments[5].pvarVal->bstrVal;
      if (!refused.empty() && address.ends_with(refused)) *arguments[0].pboolVal = VARIANT_TRUE;
      note(L"before", address);
    } else if (event == DISPID_DOCUMENTCOMPLETE) {
      note(L"complete", arguments[0].pvarVal->bstrVal);
    } else if (event == DISPID_NAVIGATEERROR) {
      note(L"error", arguments[3].pvarVal->bstrVal);
    } else if (event == DISPID_COMMANDSTATECHANGE) {
      lines.push_back((arguments[1].lVal == 2 ? L"back " : L"forward ") +
                      std::wstring(arguments[0].boolVal ? L"on" : L"off"));
    }
    return S_OK;
  }

 private:
  void note(const wchar_t* what, const std::wstring& address) {
    lines.push_back(what + (L" " + address.substr(address.rfind(L'/') + 1)));
  }
};

struct Browser {
  Browser() {
    REQUIRE(CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, IID_IWebBrowser2,
                             reinterpret_cast<void**>(browser.put())) == S_OK);
    const RECT place = {0, 0, 300, 200};
    REQUIRE(browser.as<IOleObject>()->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, parent,
                                             &place) == S_OK);
    ComPtr<IConnectionPoint> events;
    browser.as<IConnectionPointContainer>()->FindConnectionPoint(DIID_DWebBrowserEvents2,
                                                                 events.put());
    DWORD cookie = 0;
    REQUIRE(events->Advise(listener.get(), &cookie) == S_OK);
    browser.as<IOleInPlaceObject>()->GetWindow(&window);
    disk.writeFile(L"one.htm", "<title>One</title><p><a href=two.htm?q>go on</a>");
    disk.writeFile(L"two.htm", "<title>Two</title><p>text");
  }
  ~Browser() {
    browser.as<IOleObject>()->Close(OLECLOSE_NOSAVE);
    browser.reset();
    DestroyWindow(parent);
  }

  HRESULT navigate(const std::wstring& address) const {
    const com::Variant url(address);
    return browser->Navigate2(const_cast<VARIANT*>(&url.get()), nullptr, nullptr, nullptr, nullptr);
  }
  std::wstring title() const {
    wchar_t text[64] = {};
    GetWindowTextW(window, text, 64);
    return text;
  }
  void click(const std::wstring& link) const {
    POINT place = {};
    REQUIRE(html::linkPlace(window, link, place));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
  }
  bool shows(const std::wstring& expected) const {
    return pumpUntil([&] { return title() == expected; });
  }

  standin::pages::PageBrowsers browsers;
  ScratchFolder disk;
  HWND parent = CreateWindowW(L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                              nullptr, nullptr, nullptr);
  ComPtr<Listener> listener = ComPtr<Listener>::adopt(new Listener);
  ComPtr<IWebBrowser2> browser;
  HWND window = nullptr;
};

}  // namespace

TEST_CASE("the host's own browser shows a page of the disk and tells of it") {
  Browser browser;
  CHECK(browser.navigate(browser.disk / L"one.htm") == S_OK);
  CHECK(browser.title().empty());  // it comes later
  CHECK(browser.shows(L"One"));
  CHECK(browser.listener->lines ==
        Lines{L"before one.htm", L"back off", L"forward off", L"complete one.htm"});
}

TEST_CASE("the host's own browser names a page of the disk as the system's does") {
  Browser browser;
  browser.disk.makeFolder(L"sub");
  browser.disk.writeFile(L"a page.htm", "<title>One</title><p><a href=sub/../two.htm>go on</a>");
  const auto shown = [&] {
    com::Bstr url;
    browser.browser->get_LocationURL(url.put());
    return url.text();
  };
  browser.navigate(browser.disk / L"sub\\..\\a page.htm");
  CHECK(browser.shows(L"One"));
  CHECK(shown() == standin::pages::addressOf(browser.disk / L"a page.htm"));
  browser.click(L"go on");
  CHECK(browser.shows(L"Two"));
  CHECK(shown() == standin::pages::addressOf(browser.disk / L"two.htm"));
}

TEST_CASE("a click on a link follows it and the way leads back and forward") {
  Browser browser;
  browser.disk.writeFile(L"one.htm", "<title>One</title><p><a href=two.htm>go on</a>");
  browser.navigate(browser.disk / L"one.htm");
  CHECK(browser.shows(L"One"));
  CHECK(browser.browser->GoBack() == E_FAIL);
  browser.click(L"go on");
  CHECK(browser.shows(L"Two"));
  browser.listener->lines.clear();
  CHECK(browser.browser->GoForward() == E_FAIL);
  CHECK(browser.browser->GoBack() == S_OK);
  CHECK(browser.shows(L"One"));
  CHECK(browser.browser->GoForward() == S_OK);
  CHECK(browser.shows(L"Two"));
  CHECK(browser.listener->lines == Lines{L"before one.htm", L"back off", L"forward on",
                                         L"complete one.htm", L"before two.htm", L"back on",
                                         L"forward off", L"complete two.htm"});
}

TEST_CASE("a cancelled navigation leaves the page as it is") {
  Browser browser;
  browser.navigate(browser.disk / L"one.htm");
  CHECK(browser.shows(L"One"));
  browser.listener->refused = L"two.htm?q";
  browser.listener->lines.clear();
  browser.click(L"go on");
  CHECK(browser.listener->lines == Lines{L"before two.htm?q"});
  pumpUntil([] { return false; }, 100);
  CHECK(browser.title() == L"One");
}

TEST_CASE("a page that is not there is told of and shown as such") {
  Browser browser;
  browser.navigate(L"http://127.0.0.1:1/none.htm");
  CHECK(browser.shows(L"The page cannot be displayed"));
  CHECK(browser.listener->lines == Lines{L"before none.htm", L"error none.htm"});
}

TEST_CASE("a link is only found by its whole text") {
  Browser browser;
  browser.navigate(browser.disk / L"one.htm");
  CHECK(browser.shows(L"One"));
  POINT place = {};
  CHECK_FALSE(html::linkPlace(browser.window, L"go", place));
  CHECK_FALSE(html::linkPlace(browser.parent, L"go on", place));
}

TEST_CASE("without the host's own browser the class is the system's again") {
  { const Browser browser; }
  ComPtr<IWebBrowser2> browser;
  CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, IID_IWebBrowser2,
                   reinterpret_cast<void**>(browser.put()));
  ComPtr<IDispatch> application;
  REQUIRE(browser);
  VARIANT_BOOL offline = VARIANT_FALSE;
  CHECK(browser->get_Offline(&offline) != E_NOTIMPL);
}
