// The online catalogue's window for its tests, with a stand-in browser.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "common/log.h"
#include "host/model/Host.h"
#include "online/frmDWTOnline.h"
#include "online/resource.h"
#include "tests/catalogue/catalogue_support.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/FolderPicker.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

inline constexpr wchar_t machineKey[] = L"SOFTWARE\\Korvel Software\\Quillet Viewer";
inline constexpr wchar_t userSettings[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";
inline constexpr wchar_t startPage[] = L"http://127.0.0.1/catalogue/start.htm";

enum Button : WPARAM { back, next, stop, refresh, print, quillet, help };

// The real window over a real disk.
class OnlineWindow {
 public:
  explicit OnlineWindow(const standin::HostOptions& options = {})
      : host_(options, web_.path(), themes_.path()) {
    registry.setString(HKEY_CURRENT_USER, userSettings, L"Logging", L"1");
    registry.setString(HKEY_LOCAL_MACHINE, machineKey, L"DWTOnline", startPage);
    registry.setString(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                       L"AppData", disk.makeFolder(L"data"));
    registry.setNumber(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings",
                       L"ProxyEnable", 0);
    registry.setString(HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Office\\11.0\\Common\\General",
                       L"Themes", L"Themes");
    disk.makeFolder(L"data\\Microsoft\\Themes");
  }
  ~OnlineWindow() { modCommon::setLoggingFlag(0); }

  // Shows the window; `script` runs once it is on the screen, then it is closed by its close box
  // unless the script has done so.
  short show(
      const std::function<void()>& script = [] {}, bool fromBrowser = false) {
    driver.onDialog(L"DWT Online", [&](HWND window) {
      dialog = window;
      script();
      if (open()) PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    frmDWTOnline form(application());
    return form.RunOnline(fromBrowser, owner);
  }

  HostApplication application() const {
    return HostApplication(com::Dispatch(ComPtr<IDispatch>(host_.application())));
  }
  standin::Faults& hostFaults() const { return host_.faults(); }
  standin::Host& host() { return host_; }
  bool open() const { return IsWindow(dialog) && IsWindowVisible(dialog); }
  HWND control(int id) const { return GetDlgItem(dialog, id); }

  // The navigation buttons in their order, without the gaps.
  int command(Button button) const {
    TBBUTTON description = {};
    WPARAM left = button;
    for (WPARAM index = 0;; ++index) {
      if (!SendMessageW(control(IDC_ONLINE_TOOLBAR), TB_GETBUTTON, index,
                        reinterpret_cast<LPARAM>(&description)))
        return -1;
      if (description.fsStyle & BTNS_SEP) continue;
      if (left-- == 0) return description.idCommand;
    }
  }
  bool enabled(Button button) const {
    return SendMessageW(control(IDC_ONLINE_TOOLBAR), TB_ISBUTTONENABLED,
                        static_cast<WPARAM>(command(button)), 0) != 0;
  }
  void click(Button button) const {
    SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(command(button)),
                 reinterpret_cast<LPARAM>(control(IDC_ONLINE_TOOLBAR)));
  }
  // For the window's own loop, which goes on after the script.
  void type(UINT message, WPARAM key) const {
    PostMessageW(control(IDC_ONLINE_BROWSER), message, key, 0);
  }
  // As the user clicks a link in the page: even after a refused download that may ask for another.
  bool clickLink(const std::wstring& address) {
    PostMessageW(control(IDC_ONLINE_BROWSER), WM_LBUTTONDOWN, 0, 0);
    forms::yieldToMessages();
    return page.follow(address);
  }
  // What the browser was asked until the window let go of it.
  Lines asked() const {
    const auto& calls = page.calls();
    return {calls.begin(), std::find(calls.begin(), calls.end(), L"InPlaceDeactivate")};
  }
  // As the mouse opens it; returns when it has closed.
  void openDestinations() const {
    RECT place;
    GetClientRect(control(IDC_ONLINE_DESTINATION), &place);
    const LPARAM point = MAKELPARAM(place.right / 2, place.bottom / 2);
    SendMessageW(control(IDC_ONLINE_DESTINATION), WM_LBUTTONDOWN, MK_LBUTTON, point);
    SendMessageW(control(IDC_ONLINE_DESTINATION), WM_LBUTTONUP, 0, point);
  }
  // As the drop-down menu reports it; separators count.
  void choose(WORD entry) const {
    SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(0x6000 + entry), 0);
  }

  TBBUTTON destinationButton() const {
    TBBUTTON description = {};
    SendMessageW(control(IDC_ONLINE_DESTINATION), TB_GETBUTTON, 0,
                 reinterpret_cast<LPARAM>(&description));
    return description;
  }
  std::wstring destination() const {
    wchar_t text[1024] = {};
    SendMessageW(control(IDC_ONLINE_DESTINATION), TB_GETBUTTONTEXTW,
                 static_cast<WPARAM>(destinationButton().idCommand),
                 reinterpret_cast<LPARAM>(text));
    return text;
  }
  bool hasMachinePicture() const { return destinationButton().iBitmap == 0; }

  std::wstring saved(const wchar_t* name) const {
    return registry.string(HKEY_CURRENT_USER, userSettings, name).value_or(L"");
  }
  void saveIn(const std::wstring& folder) {
    registry.setString(HKEY_CURRENT_USER, userSettings, L"DWTDownloadDir", folder);
  }

  ScratchFolder disk;
  ScratchRegistry registry;
  FakeWebBrowser page;
  ModalDriver driver;
  DebugOutput log;
  FolderPicker picker;
  HWND dialog = nullptr;
  HWND owner = nullptr;

 private:
  ScratchFolder web_;
  ScratchFolder themes_;
  standin::Host host_;
};

inline std::string archive() { return ZipMaker().add("home.dwt", "a page").bytes(); }

inline std::wstring downloadPage(const std::wstring& query) {
  return L"http://127.0.0.1/DWTOnlineDownload.htm" + query;
}

// The window's unload timer, which ticks when the test wants it to.
class UnloadTimer {
 public:
  UnloadTimer() {
    intervals_.clear();
    isRunning_ = false;
    realStop_ = stopPatch_.original<std::remove_pointer_t<decltype(realStop_)>>();
  }
  // In milliseconds, of every timer that was started.
  static const std::vector<UINT>& intervals() { return intervals_; }
  static bool isRunning() { return isRunning_; }
  static void tick(HWND window) { SendMessageW(window, WM_TIMER, 1, 0); }

 private:
  static UINT_PTR WINAPI start(HWND window, UINT_PTR id, UINT interval, TIMERPROC) {
    intervals_.push_back(interval);
    if (window && id == 1) isRunning_ = true;
    return id;
  }
  static BOOL WINAPI stop(HWND window, UINT_PTR id) {
    if (window && id == 1) isRunning_ = false;
    return realStop_(window, id);
  }

  static inline std::vector<UINT> intervals_;
  static inline bool isRunning_ = false;
  static inline decltype(&KillTimer) realStop_ = nullptr;
  ImportPatch stopPatch_{nullptr, "user32.dll", "KillTimer", stop};
  ImportPatch patch_{nullptr, "user32.dll", "SetTimer", start};
};

using Intervals = std::vector<UINT>;

// Does something once, as soon as a condition holds, while other loops than the test's run.
class Meanwhile {
 public:
  Meanwhile(std::function<bool()> condition, std::function<void()> action)
      : condition_(std::move(condition)), action_(std::move(action)) {
    current_ = this;
    SetTimer(nullptr, 0, 10, tick);
  }
  ~Meanwhile() { current_ = nullptr; }
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;

  bool happened() const noexcept { return happened_; }

 private:
  static void CALLBACK tick(HWND, UINT, UINT_PTR timer, DWORD) {
    if (current_ && !current_->condition_()) return;
    KillTimer(nullptr, timer);
    if (!current_) return;
    current_->happened_ = true;
    current_->action_();
  }
  static inline Meanwhile* current_ = nullptr;

  std::function<bool()> condition_;
  std::function<void()> action_;
  bool happened_ = false;
};
