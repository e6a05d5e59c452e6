// What the browser object sees of its place: OLE's site interfaces, the host of its documents and
// the sink of its events.
#pragma once

#include <exdispid.h>
#include <mshtmdid.h>
#include <mshtmhst.h>

#include "common/Counted.h"
#include "common/forms/WebBrowser.h"

namespace forms {

// The browser may hold on to it for longer than the form lives.
class WebBrowser::Site final
    : public com::Counted<IOleClientSite, IOleInPlaceSite, IOleInPlaceFrame, IOleControlSite,
                          IDocHostUIHandler, IDispatch> {
 public:
  explicit Site(WebBrowser& owner) noexcept : owner_(&owner) {}

  // Called back after this, it finds nobody.
  void detach() noexcept { owner_ = nullptr; }

  // IUnknown
  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override;

  // IOleClientSite
  STDMETHODIMP SaveObject() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept override;
  STDMETHODIMP GetContainer(IOleContainer** container) noexcept override;
  STDMETHODIMP ShowObject() noexcept override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }

  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) noexcept override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }

  // IOleInPlaceSite
  STDMETHODIMP CanInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnUIActivate() noexcept override;
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                RECT* position, RECT* clip,
                                OLEINPLACEFRAMEINFO* info) noexcept override;
  STDMETHODIMP Scroll(SIZE) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) noexcept override;
  STDMETHODIMP OnInPlaceDeactivate() noexcept override { return S_OK; }
  STDMETHODIMP DiscardUndoState() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT* position) noexcept override;

  // IOleInPlaceUIWindow, IOleInPlaceFrame: a frame without menus, tool bars and status line
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

  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() noexcept override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch** control) noexcept override;
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) noexcept override;
  STDMETHODIMP OnFocus(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() noexcept override { return E_NOTIMPL; }

  // IDocHostUIHandler
  STDMETHODIMP ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*) noexcept override {
    return S_OK;  // shown: by nobody
  }
  STDMETHODIMP GetHostInfo(DOCHOSTUIINFO* info) noexcept override;
  STDMETHODIMP ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*, IOleInPlaceFrame*,
                      IOleInPlaceUIWindow*) noexcept override {
    return S_OK;
  }
  STDMETHODIMP HideUI() noexcept override { return S_OK; }
  STDMETHODIMP UpdateUI() noexcept override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnFrameWindowActivate(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP ResizeBorder(const RECT*, IOleInPlaceUIWindow*, BOOL) noexcept override {
    return S_OK;
  }
  STDMETHODIMP TranslateAccelerator(MSG* message, const GUID*, DWORD) noexcept override;
  STDMETHODIMP GetOptionKeyPath(OLECHAR** key, DWORD) noexcept override;
  STDMETHODIMP GetDropTarget(IDropTarget*, IDropTarget**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetExternal(IDispatch** external) noexcept override;
  STDMETHODIMP TranslateUrl(DWORD, OLECHAR*, OLECHAR** url) noexcept override;
  STDMETHODIMP FilterDataObject(IDataObject*, IDataObject** object) noexcept override;

  // IDispatch: ambient properties and events
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO*, UINT*) noexcept override;

 private:
  ~Site() override = default;

  HRESULT ambient(DISPID property, VARIANT* result) const noexcept;
  void onEvent(DISPID event, const DISPPARAMS& arguments);
  void beforeNavigate(const DISPPARAMS& arguments);
  void navigateError(const DISPPARAMS& arguments);
  void pageEvent(DISPID event, const DISPPARAMS& arguments);
  void fileDownload(const DISPPARAMS& arguments);

  WebBrowser* owner_;
};

}  // namespace forms
