#include "common/forms/WebBrowser.h"

#include <oleidl.h>

#include "common/Dispatch.h"
#include "common/errors.h"
#include "common/forms/Painting.h"
#include "common/forms/WebBrowserSite.h"
#include "common/forms/page_address.h"
#include "common/forms/screen_reader.h"
#include "common/handles.h"

namespace forms {
namespace {

void check(HRESULT result) {
  if (FAILED(result)) throw errors::fromHResult(result);
}

}  // namespace

WebBrowser::WebBrowser(Form& form, int id)
    : Control(form, id), class_(className, windowProcedure) {}

WebBrowser::~WebBrowser() {
  if (hwnd() && IsWindow(hwnd())) SetWindowLongPtrW(hwnd(), GWLP_USERDATA, 0);
  tearDown();
}

void WebBrowser::onAttached() {
  SetWindowLongPtrW(hwnd(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  caption_ = text();
}

void WebBrowser::create() {
  if (browser_) return;
  try {
    activate();
    connectEvents();
  } catch (...) {
    tearDown();
    throw Error(errors::cannotCreateObject);
  }
}

void WebBrowser::activate() {
  check(CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject,
                         reinterpret_cast<void**>(object_.put())));
  site_ = ComPtr<Site>::adopt(new Site(*this));
  check(object_->SetClientSite(site_.get()));
  if (const auto state = object_.as<IPersistStreamInit>()) check(state->InitNew());
  browser_ = object_.as<IWebBrowser2>();
  if (!browser_) throw Error(errors::cannotCreateObject);
  browser_->put_Silent(VARIANT_TRUE);
  browser_->put_RegisterAsDropTarget(VARIANT_FALSE);
  RECT place;
  GetClientRect(hwnd(), &place);
  check(object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_.get(), 0, hwnd(), &place));
}

void WebBrowser::connectEvents() {
  const auto container = browser_.as<IConnectionPointContainer>();
  if (!container) throw Error(errors::cannotCreateObject);
  check(container->FindConnectionPoint(DIID_DWebBrowserEvents2, events_.put()));
  check(events_->Advise(static_cast<IDispatch*>(site_.get()), &cookie_));
}

// In this order: the members go first, so that whatever the browser calls back during the rest
// finds no browser; it leaves the window while that still exists, falls silent, loses its site, and
// is closed before the last references go.
void WebBrowser::tearDown() noexcept {
  const ComPtr<Site> site = std::move(site_);
  const ComPtr<IOleObject> object = std::move(object_);
  ComPtr<IWebBrowser2> browser = std::move(browser_);
  ComPtr<IConnectionPoint> events = std::move(events_);
  const DWORD cookie = std::exchange(cookie_, 0);
  if (site) site->detach();
  if (!object) return;
  if (const auto inPlace = object.as<IOleInPlaceObject>()) inPlace->InPlaceDeactivate();
  if (events && cookie) events->Unadvise(cookie);
  events.reset();
  object->SetClientSite(nullptr);
  object->Close(OLECLOSE_NOSAVE);
  browser.reset();
}

IWebBrowser2& WebBrowser::browser() {
  create();
  return *browser_.get();
}

void WebBrowser::navigate(const std::wstring& address) {
  IWebBrowser2& target = browser();
  body_.clear();
  text_.clear();
  setText(caption_);
  showObject(true);
  com::Variant url(address);
  com::Variant none = com::Variant::missing();
  auto* const left = const_cast<VARIANT*>(&none.get());
  requested_ = address;
  onItsWay_ = true;  // it may arrive, or fail, inside the call
  const HRESULT result = target.Navigate2(const_cast<VARIANT*>(&url.get()), left, left, left, left);
  if (FAILED(result)) onItsWay_ = false;
  check(result);
}

void WebBrowser::goBack() { check(browser().GoBack()); }
void WebBrowser::goForward() { check(browser().GoForward()); }
void WebBrowser::stop() { check(browser().Stop()); }
void WebBrowser::refresh() { check(browser().Refresh()); }

void WebBrowser::print() {
  check(browser().ExecWB(OLECMDID_PRINT, OLECMDEXECOPT_DODEFAULT, nullptr, nullptr));
}

bool WebBrowser::busy() const noexcept {
  VARIANT_BOOL busy = VARIANT_FALSE;
  return browser_ && SUCCEEDED(browser_->get_Busy(&busy)) && busy != VARIANT_FALSE;
}

void WebBrowser::setBodyHtml(const std::wstring& html, const std::wstring& text) {
  body_ = html;
  // A screen reader says it, as it says the text of a message.
  setText(text);
  NotifyWinEvent(EVENT_SYSTEM_ALERT, hwnd(), OBJID_CLIENT, CHILDID_SELF);
  // The page that is still shown would take the text away with it.
  if (!onItsWay_ && replaceBody(html)) return;
  text_ = text;
  showObject(false);
}

bool WebBrowser::replaceBody(const std::wstring& html) {
  ComPtr<IDispatch> document;
  if (!browser_ || FAILED(browser_->get_Document(document.put())) || !document) return false;
  try {
    com::Dispatch(document).object(L"body").put(L"innerHTML", html);
    return true;
  } catch (const Error&) {
    return false;  // a document of another kind than a page
  }
}

// True when an event is about the page that was asked for, which is no longer on its way then. The
// events of a page that has been left may come after the next one was asked for.
bool WebBrowser::settle(const std::wstring& address, bool topFrame) {
  if (!topFrame || !isSamePage(address, requested_)) return false;
  onItsWay_ = false;
  return true;
}

void WebBrowser::documentComplete(const std::wstring& address, bool topFrame) {
  if (settle(address, topFrame) && !body_.empty() && replaceBody(body_)) {
    text_.clear();
    showObject(true);
  }
  if (onDocumentComplete) onDocumentComplete(address, topFrame);
}

bool WebBrowser::isTopFrame(IDispatch* frame) const noexcept {
  const auto one = ComPtr<IDispatch>(frame).as<IUnknown>();
  const auto other = browser_.as<IUnknown>();
  return one && one.get() == other.get();
}

bool WebBrowser::hasFocus() const noexcept {
  const HWND focus = GetFocus();
  return focus == hwnd() || IsChild(hwnd(), focus);
}

// One that has the keyboard already would not take the focus anew.
void WebBrowser::focusPage() noexcept {
  letGoOfKeyboard();
  if (!object_ || !text_.empty()) return;
  RECT place;
  GetClientRect(hwnd(), &place);
  object_->DoVerb(OLEIVERB_UIACTIVATE, nullptr, site_.get(), 0, hwnd(), &place);
}

void WebBrowser::letGoOfKeyboard() noexcept {
  if (!hasKeyboard_) return;
  if (const auto inPlace = object_.as<IOleInPlaceObject>()) inPlace->UIDeactivate();
}

bool WebBrowser::preTranslate(MSG& message) {
  // Another window's focus is another matter: the page has it again when that one goes.
  if (IsChild(form().hwnd(), GetFocus()) && !hasFocus()) letGoOfKeyboard();
  if (!browser_ || message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  if (!IsChild(hwnd(), message.hwnd)) return false;
  // The form's cancel key stays the form's.
  if (message.wParam == VK_ESCAPE || message.message == WM_SYSKEYDOWN ||
      message.message == WM_SYSCHAR)
    return false;
  const auto active = browser_.as<IOleInPlaceActiveObject>();
  return active && active->TranslateAccelerator(&message) == S_OK;
}

void WebBrowser::leaveByTab(bool backwards) noexcept {
  const HWND dialog = form().hwnd();
  const HWND next = GetNextDlgTabItem(dialog, hwnd(), backwards);
  if (next) SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
}

LRESULT CALLBACK WebBrowser::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam) noexcept {
  auto* control = reinterpret_cast<WebBrowser*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  try {
    if (control && control->hwnd() == window) return control->onMessage(message, wParam, lParam);
  } catch (...) {  // Not run by tests: no message is known to fail.
    // The page keeps its place as it is.
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT WebBrowser::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      resizeObject();
      InvalidateRect(hwnd(), nullptr, FALSE);
      return 0;
    case WM_SETFOCUS:
      focusPage();
      return 0;
    case WM_GETOBJECT:
      if (const LRESULT told =
              body_.empty() ? 0 : tellScreenReader(hwnd(), wParam, lParam, ROLE_SYSTEM_ALERT))
        return told;
      return DefWindowProcW(hwnd(), message, wParam, lParam);
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      paintText(Painting(hwnd()).target());
      return 0;
    case WM_PRINTCLIENT:
      paintText(reinterpret_cast<HDC>(wParam));
      return 0;
    case WM_DESTROY:
      tearDown();
      return 0;
    default:
      return DefWindowProcW(hwnd(), message, wParam, lParam);
  }
}

void WebBrowser::resizeObject() noexcept {
  const auto inPlace = object_.as<IOleInPlaceObject>();
  if (!inPlace) return;
  RECT place;
  GetClientRect(hwnd(), &place);
  inPlace->SetObjectRects(&place, &place);
}

void WebBrowser::showObject(bool shown) noexcept {
  HWND window = nullptr;
  // What is hidden would swallow the keys.
  if (!shown && hasFocus()) SetFocus(hwnd());
  const auto inPlace = object_.as<IOleInPlaceObject>();
  if (inPlace && SUCCEEDED(inPlace->GetWindow(&window)) && window)
    ShowWindow(window, shown ? SW_SHOWNA : SW_HIDE);
  InvalidateRect(hwnd(), nullptr, FALSE);
}

// As the page itself would look: a red heading in the upper left corner.
void WebBrowser::paintText(HDC target) noexcept {
  RECT client;
  GetClientRect(hwnd(), &client);
  FillRect(target, &client, GetSysColorBrush(COLOR_WINDOW));
  const int perInch = GetDeviceCaps(target, LOGPIXELSY);
  const handles::Gdi font(CreateFontW(-MulDiv(14, perInch, 72), 0, 0, 0, FW_BOLD, FALSE, FALSE,
                                      FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                      CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, FF_SWISS, L"Arial"));
  const HGDIOBJ old = SelectObject(target, font.get());
  SetTextColor(target, RGB(255, 0, 0));
  SetBkMode(target, TRANSPARENT);
  const int margin = MulDiv(12, perInch, 96);
  InflateRect(&client, -margin, -margin);
  DrawTextW(target, text_.c_str(), -1, &client, DT_LEFT | DT_TOP | DT_WORDBREAK | DT_NOPREFIX);
  SelectObject(target, old);
}

}  // namespace forms
