// The connection class: the one object that the host creates.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "addin/ClickSink.h"
#include "addin/ConnectionObject.h"
#include "addin/host/HostCommandBars.h"
#include "common/com.h"

class ClipboardKeeper;

// A menu entry that is ours and its connected click event.
struct MenuButton {
  std::optional<HostControl> control;
  ButtonEvents events;
};

// Every operation ends quietly when the host refuses something: nothing is ever reported to the
// host as a failure of the connection.
class DWTemplate final : public ConnectionObject {
 public:
  static ComPtr<DWTemplate> make();

  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* Application, long ConnectMode,
                                         IDispatch* AddInInst,
                                         SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnDisconnection(long RemoveMode, SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) noexcept override;
  HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) noexcept override;

  // The entry of that tag: the one that is there already, otherwise a new one in the pop-up
  // `cbpval`, behind its entry `cbcval` (each an identifier or a tag, as the flag behind it says).
  // Nothing when there is no place for it. `pic` is borrowed and may be null.
  std::optional<HostControl> CreateFPMenuItem(const std::optional<HostCommandBar>& cbar,
                                              const com::Variant& cbpval, bool bcbpid,
                                              const com::Variant& cbcval, bool bcbcid,
                                              const std::wstring& sTag,
                                              const std::wstring& sCaption, HBITMAP pic,
                                              bool bAppend, long nType, bool bGroup) noexcept;
  // Deletes the entry of that tag; false when the host does so itself.
  bool RemoveAddInCommandBarButton(long RemoveMode, const std::wstring& ctl_key) noexcept;
  // Raises an Error (7) or std::bad_alloc where there is no memory for the caption itself.
  std::wstring AddAcceleratorKey(const HostControl& bar, const std::wstring& caption);
  // Through the clipboard, whose content survives; where it cannot, the button stays without a
  // face.
  void SetButtonFace(const HostControl& button, HBITMAP picture) noexcept;

 private:
  DWTemplate() noexcept;
  ~DWTemplate() override;

  void IDTExtensibility2_OnConnection(IDispatch* Application) noexcept;
  void IDTExtensibility2_OnDisconnection(long RemoveMode) noexcept;
  // Nothing to do: the entries are made and removed by the two above.
  void IDTExtensibility2_OnAddInsUpdate() noexcept {}
  void IDTExtensibility2_OnStartupComplete() noexcept {}
  void IDTExtensibility2_OnBeginShutdown() noexcept {}
  void m_btnCopyToWeb_Click(IDispatch* Ctrl, VARIANT_BOOL* CancelDefault) noexcept;
  void m_btnDWTOnline_Click(IDispatch* Ctrl, VARIANT_BOOL* CancelDefault) noexcept;

  bool isWebOpen();

  using Click = void (DWTemplate::*)(IDispatch*, VARIANT_BOOL*) noexcept;
  MenuButton menuButton(const std::optional<HostCommandBar>& bar, long anchor,
                        const std::wstring& caption, int picture, Click click);
  std::optional<HostControl> newMenuItem(const HostControl& parent, long position,
                                         const std::wstring& sTag, const std::wstring& sCaption,
                                         HBITMAP pic, long nType, bool bGroup);

  MenuButton m_btnCopyToWeb;
  MenuButton m_btnDWTOnline;
  bool asking_ = false;                   // the host for its web, which may let a click through
  ClipboardKeeper* clipboard_ = nullptr;  // while the entries get their faces
};
