// What every stand-in for the system's web browser control has in common: its interfaces, its site
// and its events. All that nobody asks of it is refused.
#pragma once

#include <windows.h>

#include <exdisp.h>
#include <exdispid.h>
#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "common/com.h"

namespace standin::pages {

// A COM object that lives as long as it is referred to.
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

#define NOT_ASKED(name, ...) \
  STDMETHODIMP name(__VA_ARGS__) noexcept override { return E_NOTIMPL; }

class BareBrowser
    : public Counted<IWebBrowser2, IOleObject, IOleInPlaceObject, IOleInPlaceActiveObject,
                     IPersistStreamInit, IConnectionPointContainer, IConnectionPoint> {
 public:
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

  // Events. The arguments stand in the order of their declaration. Those of navigations are passed
  // by reference, but for the browser that navigates.

  void fire(DISPID event, std::initializer_list<com::Variant> arguments,
            VARIANT_BOOL* cancel = nullptr) {
    fire(event, arguments, cancel, {});
  }

  // The cancel flag stands before the last arguments.
  void fire(DISPID event, std::initializer_list<com::Variant> arguments, VARIANT_BOOL* cancel,
            std::initializer_list<com::Variant> last) {
    if (!sink_) return;
    const bool byReference = event == DISPID_BEFORENAVIGATE2 || event == DISPID_NAVIGATEERROR ||
                             event == DISPID_NAVIGATECOMPLETE2 || event == DISPID_DOCUMENTCOMPLETE;
    std::vector<VARIANT> reversed;
    for (auto each = std::rbegin(last); each != std::rend(last); ++each)
      reversed.push_back(each->get());
    if (cancel) reversed.push_back(reference(cancel));
    for (auto each = std::rbegin(arguments); each != std::rend(arguments); ++each)
      reversed.push_back(byReference && each != std::rend(arguments) - 1 ? reference(*each)
                                                                         : each->get());
    DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    const ComPtr<IDispatch> sink = sink_;
    sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                 nullptr, nullptr);
  }

  static VARIANT reference(VARIANT_BOOL* flag) noexcept {
    VARIANT argument = {};
    argument.vt = VT_BYREF | VT_BOOL;
    argument.pboolVal = flag;
    return argument;
  }
  static VARIANT reference(const com::Variant& value) noexcept {
    VARIANT argument = {};
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = const_cast<VARIANT*>(&value.get());
    return argument;
  }

  com::Variant self() {
    return com::Variant(static_cast<IDispatch*>(static_cast<IWebBrowser2*>(this)));
  }

  bool mayNavigate(const com::Variant& frame, const std::wstring& address) {
    VARIANT_BOOL cancel = VARIANT_FALSE;
    fire(DISPID_BEFORENAVIGATE2, {frame, address, 0, L"", com::Variant(), L""}, &cancel);
    return cancel == VARIANT_FALSE;
  }

  // IWebBrowser2

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
  NOT_ASKED(get_Busy, VARIANT_BOOL*)
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
    return S_OK;
  }
  STDMETHODIMP GetClientSite(IOleClientSite** site) noexcept override {
    *site = ComPtr<IOleClientSite>(site_).release();
    return S_OK;
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
    return S_OK;
  }
  STDMETHODIMP Unadvise(DWORD) noexcept override {
    sink_.reset();
    return S_OK;
  }
  NOT_ASKED(EnumConnectionPoints, IEnumConnectionPoints**)
  NOT_ASKED(GetConnectionInterface, IID*)
  NOT_ASKED(GetConnectionPointContainer, IConnectionPointContainer**)
  NOT_ASKED(EnumConnections, IEnumConnections**)

 protected:
  const ComPtr<IOleClientSite>& site() const noexcept { return site_; }

 private:
  ComPtr<IOleClientSite> site_;
  ComPtr<IDispatch> sink_;
};

#undef NOT_ASKED

// Makes objects of one class; each factory knows how.
class BareFactory : public Counted<IClassFactory> {
 public:
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
    const auto made = ComPtr<BareBrowser>::adopt(make());
    return made ? made->QueryInterface(id, object) : CLASS_E_CLASSNOTAVAILABLE;
  }
  STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }

 private:
  virtual BareBrowser* make() noexcept = 0;  // null when it cannot be made
};

}  // namespace standin::pages
