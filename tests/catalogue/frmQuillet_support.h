// The real browser window over a real disk, a stand-in host and a stand-in web browser control.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "addin/host/HostApplication.h"
#include "catalogue/frmQuillet.h"
#include "catalogue/resource.h"
#include "host/model/Host.h"
#include "tests/catalogue/catalogue_support.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

inline constexpr wchar_t browserCaption[] = L"Dynamic Web Template Browser";
inline constexpr wchar_t browserSettings[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";

// The rows of a list view as the user reads them.
inline Lines listTexts(HWND list) {
  Lines texts;
  for (int row = 0; row < ListView_GetItemCount(list); ++row) {
    wchar_t text[512] = {};
    LVITEMW item = {};
    item.pszText = text;
    item.cchTextMax = 512;
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    texts.push_back(text);
  }
  return texts;
}

// No window can be made of a dialog resource.
class NoDialogs {
 private:
  static HWND WINAPI refuse(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM) { return nullptr; }
  ImportPatch patch_{nullptr, "user32.dll", "CreateDialogIndirectParamW", refuse};
};

// Presses Cancel as soon as the first row has come into the browser's list.
class CancelAtRow {
 public:
  explicit CancelAtRow(HWND dialog) : list_(GetDlgItem(dialog, IDC_QUILLET_LIST)) {
    former_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }
  ~CancelAtRow() { SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  CancelAtRow(const CancelAtRow&) = delete;
  CancelAtRow& operator=(const CancelAtRow&) = delete;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == LVM_INSERTITEMW)
      PostMessageW(GetParent(window), WM_COMMAND, IDCANCEL,
                   reinterpret_cast<LPARAM>(GetDlgItem(GetParent(window), IDCANCEL)));
    return CallWindowProcW(former_, window, message, wParam, lParam);
  }

  HWND list_;
  static inline WNDPROC former_ = nullptr;
};

class BrowserWindow {
 public:
  explicit BrowserWindow(const standin::HostOptions& options = {})
      : host(options, web.path(), themes.path()), former_(hostApplication()) {
    hostApplication() = HostApplication(com::Dispatch(ComPtr<IDispatch>(host.application())));
    registry.setString(HKEY_CURRENT_USER, browserSettings, L"Logging", L"1");
  }
  ~BrowserWindow() {
    hostApplication() = former_;
    modCommon::setLoggingFlag(0);
  }

  // A template "name" of its own folder, listed for the user; what else lies in it is up to the
  // test.
  std::wstring addTemplate(const std::wstring& name, std::string_view description = {}) {
    if (!listed_) listForUser(registry, disk.path());
    listed_ = true;
    if (!description.empty()) disk.writeFile(name + L"\\quillet.ini", description);
    return disk.writeFile(name + L"\\" + name + L".dwt", "<html><body>a page</body></html>");
  }

  // Shows the window. `script` runs once its templates are listed; then it is closed, unless the
  // script has done so.
  void show(std::function<void()> script = [] {}) {
    driver.onDialog(browserCaption, [this, script](HWND window) {
      dialog = window;
      whenListed([this, script] {
        script();
        if (IsWindow(dialog) && IsWindowVisible(dialog)) press(dialog, IDCANCEL);
      });
    });
    run();
  }

  // Shows the window; `script` runs as soon as it is on the screen.
  void showAtOnce(std::function<void()> script) {
    driver.onDialog(browserCaption, [this, script](HWND window) {
      dialog = window;
      script();
    });
    run();
  }

  // Runs `next` when no scan is under way, no message stands over the window and no page is on its
  // way.
  void whenListed(std::function<void()> next) {
    next_ = std::move(next);
    waiting_ = this;
    SetTimer(nullptr, 0, 10, onTimer);
  }

  std::wstring webUrl() const { return hostApplication().activeWeb()->url(); }
  HWND control(int id) const { return GetDlgItem(dialog, id); }
  std::wstring text(int id) const { return windowText(dialog, id); }
  bool enabled(int id) const { return isEnabled(dialog, id); }
  bool visible(int id) const { return IsWindowVisible(control(id)) != FALSE; }
  // What the tool tip of the control says now.
  std::wstring tip(int id) const { return toolTip(dialog, id); }
  Lines rows() const { return listTexts(control(IDC_QUILLET_LIST)); }
  int columnWidth() const { return ListView_GetColumnWidth(control(IDC_QUILLET_LIST), 0); }
  // The column shows this text whole.
  bool columnFits(const std::wstring& text) const {
    return columnWidth() > SendMessageW(control(IDC_QUILLET_LIST), LVM_GETSTRINGWIDTHW, 0,
                                        reinterpret_cast<LPARAM>(text.c_str()));
  }
  int selectedRow() const {
    return ListView_GetNextItem(control(IDC_QUILLET_LIST), -1, LVNI_SELECTED);
  }
  void selectRow(int row) const {
    ListView_SetItemState(control(IDC_QUILLET_LIST), row, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
  }
  // The same; the page that comes with it has come.
  void showRow(int row) const {
    selectRow(row);
    page.settle();
  }
  // A key for whoever has the focus, by way of the window's own loop.
  static void type(WPARAM key) {
    PostMessageW(GetFocus(), WM_KEYDOWN, key, 0);
    MSG pending;
    for (int i = 0; i < 1000 && PeekMessageW(&pending, nullptr, 0, 0, PM_NOREMOVE); ++i)
      forms::yieldToMessages();
  }
  void chooseZoom(int item) const {
    SendMessageW(control(IDC_QUILLET_ZOOM), CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_QUILLET_ZOOM, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(control(IDC_QUILLET_ZOOM)));
  }

  // The list of sizes is off while there is no picture: its event comes nevertheless.
  void chooseZoomAllTheSame(int item) const {
    EnableWindow(control(IDC_QUILLET_ZOOM), TRUE);
    chooseZoom(item);
  }

  ScratchRegistry registry;
  ScratchFolder disk;
  ScratchFolder web;
  ScratchFolder themes;
  standin::Host host;
  FakeWebBrowser page;
  ModalDriver driver;
  DebugOutput log;
  HWND owner = nullptr;
  HWND dialog = nullptr;

 private:
  void run() {
    frmQuillet form(hostApplication());
    form.ShowQuillet(false, owner);
    checkOwners();
  }

  // The window's own boxes stand over it, whatever a test is about; those of the dialogs that it
  // opened over these.
  void checkOwners() const {
    for (const ShownBox& box : dialog ? driver.boxes() : std::vector<ShownBox>()) {
      CAPTURE(box.text);
      CHECK(box.owner);
      if (box.title == browserCaption) CHECK(box.owner == dialog);
    }
  }

  static void CALLBACK onTimer(HWND, UINT, UINT_PTR timer, DWORD) {
    if (!isEnabled(waiting_->dialog, IDC_QUILLET_SELECT) || !IsWindowEnabled(waiting_->dialog) ||
        !waiting_->page.isResting())
      return;
    KillTimer(nullptr, timer);
    const auto next = std::move(waiting_->next_);
    next();
  }

  HostApplication former_;
  bool listed_ = false;
  std::function<void()> next_;
  static inline BrowserWindow* waiting_ = nullptr;
};
