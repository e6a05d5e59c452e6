#include "common/forms/WebBrowserSite.h"

#include "common/report.h"

namespace forms {
namespace {

// Which kinds of content pages may load. The flag for pictures stands for those of the disk too:
// what a passive page would fetch from a server is kept away by the flag that forbids the network.
constexpr long activePages = DLCTL_DLIMAGES | DLCTL_VIDEOS | DLCTL_BGSOUNDS | DLCTL_SILENT;
constexpr long passivePages = DLCTL_DLIMAGES | DLCTL_NO_SCRIPTS | DLCTL_NO_JAVA |
                              DLCTL_NO_RUNACTIVEXCTLS | DLCTL_NO_DLACTIVEXCTLS |
                              DLCTL_NO_BEHAVIORS | DLCTL_NO_CLIENTPULL | DLCTL_FORCEOFFLINE |
                              DLCTL_SILENT;

// An argument counted from the end, as the run-time stores them; events of older browsers may have
// fewer.
com::Variant argument(const DISPPARAMS& arguments, UINT fromEnd) {
  com::Variant value;
  if (fromEnd >= arguments.cArgs) return value;
  const HRESULT copied = VariantCopyInd(value.put(), &arguments.rgvarg[fromEnd]);
  if (FAILED(copied)) throw errors::fromHResult(copied);
  return value;
}

void answer(const DISPPARAMS& arguments, bool cancel) noexcept {
  if (!cancel || arguments.cArgs == 0) return;
  const VARIANT& target = arguments.rgvarg[0];
  if (target.vt == (VT_BYREF | VT_BOOL)) *target.pboolVal = VARIANT_TRUE;
}

}  // namespace

HRESULT WebBrowser::Site::QueryInterface(REFIID id, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (id == IID_IUnknown || id == IID_IOleClientSite)
    *object = static_cast<IOleClientSite*>(this);
  else if (id == IID_IOleWindow || id == IID_IOleInPlaceSite)
    *object = static_cast<IOleInPlaceSite*>(this);
  else if (id == IID_IOleInPlaceUIWindow || id == IID_IOleInPlaceFrame)
    *object = static_cast<IOleInPlaceFrame*>(this);
  else if (id == IID_IOleControlSite)
    *object = static_cast<IOleControlSite*>(this);
  else if (id == IID_IDocHostUIHandler)
    *object = static_cast<IDocHostUIHandler*>(this);
  else if (id == IID_IDispatch || id == DIID_DWebBrowserEvents2)
    *object = static_cast<IDispatch*>(this);
  else
    return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT WebBrowser::Site::GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept {
  if (moniker) *moniker = nullptr;
  return E_NOTIMPL;
}

HRESULT WebBrowser::Site::GetContainer(IOleContainer** container) noexcept {
  if (container) *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT WebBrowser::Site::GetWindow(HWND* window) noexcept {
  if (!window) return E_POINTER;
  *window = owner_ ? owner_->hwnd() : nullptr;
  return owner_ ? S_OK : E_FAIL;
}

HRESULT WebBrowser::Site::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                           RECT* position, RECT* clip,
                                           OLEINPLACEFRAMEINFO* info) noexcept {
  if (!frame || !document || !position || !clip || !info) return E_POINTER;
  if (!owner_) return E_FAIL;
  *frame = this;
  AddRef();
  *document = nullptr;
  GetClientRect(owner_->hwnd(), position);
  *clip = *position;
  info->fMDIApp = FALSE;
  info->hwndFrame = owner_->form().hwnd();
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

HRESULT WebBrowser::Site::OnPosRectChange(const RECT*) noexcept {
  if (owner_) owner_->resizeObject();
  return S_OK;
}

HRESULT WebBrowser::Site::OnUIActivate() noexcept {
  if (owner_) owner_->hasKeyboard_ = true;
  return S_OK;
}

HRESULT WebBrowser::Site::OnUIDeactivate(BOOL) noexcept {
  if (owner_) owner_->hasKeyboard_ = false;
  return S_OK;
}

HRESULT WebBrowser::Site::GetExtendedControl(IDispatch** control) noexcept {
  if (control) *control = nullptr;
  return E_NOTIMPL;
}

// The Tab key past the last link of the page goes on to the form's next control.
HRESULT WebBrowser::Site::TranslateAccelerator(MSG* message, DWORD) noexcept {
  if (!owner_ || !message || message->message != WM_KEYDOWN || message->wParam != VK_TAB)
    return S_FALSE;
  owner_->leaveByTab(GetKeyState(VK_SHIFT) < 0);
  return S_OK;
}

HRESULT WebBrowser::Site::GetHostInfo(DOCHOSTUIINFO* info) noexcept {
  if (!info) return E_POINTER;
  info->dwFlags = DOCHOSTUIFLAG_NO3DBORDER | DOCHOSTUIFLAG_THEME;
  info->dwDoubleClick = DOCHOSTUIDBLCLK_DEFAULT;
  return S_OK;
}

// The browser's own keys for other windows and files are not for an embedded page.
HRESULT WebBrowser::Site::TranslateAccelerator(MSG* message, const GUID*, DWORD) noexcept {
  if (!message || message->message != WM_KEYDOWN || GetKeyState(VK_CONTROL) >= 0) return S_FALSE;
  const WPARAM key = message->wParam;
  return key == L'N' || key == L'O' || key == L'L' ? S_OK : S_FALSE;
}

HRESULT WebBrowser::Site::GetOptionKeyPath(OLECHAR** key, DWORD) noexcept {
  if (key) *key = nullptr;
  return S_FALSE;
}

HRESULT WebBrowser::Site::GetExternal(IDispatch** external) noexcept {
  if (external) *external = nullptr;
  return E_NOTIMPL;
}

HRESULT WebBrowser::Site::TranslateUrl(DWORD, OLECHAR*, OLECHAR** url) noexcept {
  if (url) *url = nullptr;
  return S_FALSE;
}

HRESULT WebBrowser::Site::FilterDataObject(IDataObject*, IDataObject** object) noexcept {
  if (object) *object = nullptr;
  return S_FALSE;
}

HRESULT WebBrowser::Site::GetTypeInfoCount(UINT* count) noexcept {
  if (count) *count = 0;
  return S_OK;
}

HRESULT WebBrowser::Site::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
  if (info) *info = nullptr;
  return E_NOTIMPL;
}

HRESULT WebBrowser::Site::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                                 VARIANT* result, EXCEPINFO*, UINT*) noexcept {
  if (!owner_) return DISP_E_MEMBERNOTFOUND;
  if (flags & DISPATCH_PROPERTYGET && member < 0) return ambient(member, result);
  if (!arguments) return E_POINTER;
  if (arguments->cNamedArgs > 0) return DISP_E_NONAMEDARGS;  // their places would be others
  try {
    // An event may end with the form's last reference to this object.
    const ComPtr<IDispatch> self(static_cast<IDispatch*>(this));
    onEvent(member, *arguments);
    return S_OK;
  } catch (...) {
    // The page goes on as if nobody had listened.
    modCommon::reportModuleError(L"Invoke", errors::current(), L"WebBrowser");
    return E_FAIL;
  }
}

HRESULT WebBrowser::Site::ambient(DISPID property, VARIANT* result) const noexcept {
  if (property != DISPID_AMBIENT_DLCONTROL || !result) return DISP_E_MEMBERNOTFOUND;
  result->vt = VT_I4;
  result->lVal = owner_->passive_ ? passivePages : activePages;
  return S_OK;
}

void WebBrowser::Site::onEvent(DISPID event, const DISPPARAMS& arguments) {
  switch (event) {
    case DISPID_BEFORENAVIGATE2:
      return beforeNavigate(arguments);
    case DISPID_NAVIGATEERROR:
      return navigateError(arguments);
    case DISPID_NAVIGATECOMPLETE2:
    case DISPID_DOCUMENTCOMPLETE:
      return pageEvent(event, arguments);
    case DISPID_FILEDOWNLOAD:
      return fileDownload(arguments);
    case DISPID_NEWWINDOW2:
    case DISPID_NEWWINDOW3:
      // Its cancel flag is the second argument; a window of the browser's own would stand outside
      // the form. NEWWINDOW3 has three arguments more behind it.
      if (const UINT place = event == DISPID_NEWWINDOW2 ? 0 : 3;
          place < arguments.cArgs && arguments.rgvarg[place].vt == (VT_BYREF | VT_BOOL))
        *arguments.rgvarg[place].pboolVal = VARIANT_TRUE;
      return;
    case DISPID_WINDOWCLOSING:
      return answer(arguments, true);  // a page cannot close the control
    case DISPID_COMMANDSTATECHANGE:
      if (owner_->onCommandStateChange)
        owner_->onCommandStateChange(argument(arguments, 1).number(),
                                     argument(arguments, 0).boolean());
      return;
    default:
      return;
  }
}

void WebBrowser::Site::beforeNavigate(const DISPPARAMS& arguments) {
  if (arguments.cArgs < 7 || !owner_->onBeforeNavigate2) return;
  const auto frame = argument(arguments, 6).object();
  const bool top = owner_->isTopFrame(frame.get());
  const std::wstring address = argument(arguments, 5).text();
  bool cancel = false;
  owner_->onBeforeNavigate2(address, top, cancel);
  answer(arguments, cancel);
  // Nothing more is told of a page that was refused.
  if (cancel && owner_) owner_->settle(address, top);
}

void WebBrowser::Site::navigateError(const DISPPARAMS& arguments) {
  if (arguments.cArgs < 5) return;
  const auto frame = argument(arguments, 4).object();
  const bool top = owner_->isTopFrame(frame.get());
  const std::wstring address = argument(arguments, 3).text();
  owner_->settle(address, top);
  bool cancel = false;
  if (owner_->onNavigateError) owner_->onNavigateError(address, top, cancel);
  answer(arguments, cancel);
}

void WebBrowser::Site::pageEvent(DISPID event, const DISPPARAMS& arguments) {
  if (arguments.cArgs < 2) return;
  const auto frame = argument(arguments, 1).object();
  const bool top = owner_->isTopFrame(frame.get());
  const std::wstring address = argument(arguments, 0).text();
  if (event == DISPID_DOCUMENTCOMPLETE)
    owner_->documentComplete(address, top);
  else if (owner_->onNavigateComplete2)
    owner_->onNavigateComplete2(address, top);
}

void WebBrowser::Site::fileDownload(const DISPPARAMS& arguments) {
  // Pages that the browser shows itself come this way too, marked as its own documents.
  const bool document = arguments.cArgs > 1 && argument(arguments, 1).boolean();
  answer(arguments, owner_->passive_ && !document);
}

}  // namespace forms
