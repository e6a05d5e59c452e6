// The shipped module in the stand-in host: what the host's user sees of it.
#include <windows.h>
#include <commctrl.h>

#include "catalogue/resource.h"
#include "common/Dispatch.h"
#include "host/model/Host.h"
#include "online/resource.h"
#include "tests/addin/ShippedModule.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/Frame.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t copyToWeb[] = L"Browse/Copy Dynamic Web Template to Web...";
constexpr wchar_t dwtOnline[] = L"Dynamic Web Templates Online...";

// A host, and the module connected to it through its class object.
struct Connected {
  explicit Connected(standin::HostOptions options = {}, const std::wstring& web = {})
      : host(std::move(options), web) {
    outcome = addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
    addIn->OnStartupComplete(nullptr);
  }
  void disconnect(RemoveMode mode) {
    addIn->OnBeginShutdown(nullptr);
    CHECK(addIn->OnDisconnection(mode, nullptr) == S_OK);
  }
  // From the next window on.
  void switchLogOn() {
    registry.setString(HKEY_CURRENT_USER,
                       L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings",
                       L"Logging", L"1");
  }
  std::size_t entries() const {
    return (host.button(copyToWeb) ? 1U : 0U) + (host.button(dwtOnline) ? 1U : 0U);
  }

  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  ShippedModule module;
  ComPtr<IDTExtensibility2> addIn = module.connection();
  HRESULT outcome = E_FAIL;
};

constexpr wchar_t browserCaption[] = L"Dynamic Web Template Browser";
constexpr wchar_t onlineCaption[] = L"DWT Online";

// What the online catalogue's window needs to open.
struct InstalledCatalogue {
  explicit InstalledCatalogue(Connected& connected) {
    connected.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                                 L"DWTOnline", L"http://127.0.0.1/start.htm");
    connected.registry.setString(
        HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
        L"AppData", data.path());
  }
  ScratchFolder data;
  FakeWebBrowser page;
};

void closeWindow(HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); }

// A top-level window of the host's process.
class HostWindow {
 public:
  HostWindow(const wchar_t* className, DWORD style, DWORD extendedStyle = 0, HWND owner = nullptr) {
    WNDCLASSW definition = {};
    definition.lpfnWndProc = DefWindowProcW;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = className;
    RegisterClassW(&definition);
    window_ = CreateWindowExW(extendedStyle, className, L"", style | WS_VISIBLE, 50, 50, 300, 200,
                              owner, nullptr, definition.hInstance, nullptr);
    SetActiveWindow(window_);
    REQUIRE(GetActiveWindow() == window_);
  }
  ~HostWindow() { DestroyWindow(window_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  HWND get() const { return window_; }

 private:
  HWND window_ = nullptr;
};

constexpr wchar_t frameClass[] = L"FrontPageExplorerWindow40";
constexpr wchar_t otherClass[] = L"Other window of the host";
constexpr DWORD barStyle = WS_POPUP | WS_CAPTION;

// Who owns what the clicks on both entries show: without a web a box, with one a window.
void checkOwner(HWND expected) {
  for (const wchar_t* entry : {copyToWeb, dwtOnline}) {
    Connected connected;
    const HWND active = GetActiveWindow();
    connected.host.click(entry);
    REQUIRE(connected.modal.boxes().size() == 1);
    CHECK(connected.modal.boxes().front().owner == expected);

    const InstalledCatalogue catalogue(connected);
    const ScratchFolder web;
    connected.host.openWeb(web.path());
    HWND owner = GetDesktopWindow();
    for (const wchar_t* caption : {browserCaption, onlineCaption})
      connected.modal.onDialog(caption, [&](HWND dialog) {
        owner = GetWindow(dialog, GW_OWNER);
        closeWindow(dialog);
      });
    SetActiveWindow(active);
    connected.host.click(entry);
    CHECK(owner == expected);
  }
}

constexpr WPARAM quilletButton = 7;  // counted with the gaps

void pressToolbarButton(HWND toolbar, WPARAM index) {
  TBBUTTON button = {};
  REQUIRE(SendMessageW(toolbar, TB_GETBUTTON, index, reinterpret_cast<LPARAM>(&button)));
  SendMessageW(GetParent(toolbar), WM_COMMAND, static_cast<WPARAM>(button.idCommand),
               reinterpret_cast<LPARAM>(toolbar));
}

standin::HostOptions withVersion(const wchar_t* version) {
  standin::HostOptions options;
  options.version = version;
  return options;
}

void checkNoWebMessage(Connected& connected, const wchar_t* entry) {
  bool cancelled = false;
  REQUIRE(connected.host.click(entry, &cancelled));
  REQUIRE(connected.modal.boxes().size() == 1);
  const ShownBox& box = connected.modal.boxes().front();
  CHECK(box.text == L"No web is currently open.");
  CHECK(box.title == L"Microsoft FrontPage");
  CHECK(box.icon == MB_ICONINFORMATION);
  CHECK(box.buttons == std::vector<std::wstring>{L"OK"});
  CHECK(connected.modal.dialogs().empty());
  CHECK_FALSE(cancelled);
}

// Every call that the connection makes, by the host's names.
const std::vector<std::wstring>& membersUsed() {
  static const std::vector<std::wstring> members = {
      L"Application.CommandBars",      L"CommandBars.ActiveMenuBar", L"CommandBar.Type",
      L"CommandBar.FindControl",       L"CommandBarControl.Type",    L"CommandBarControl.Id",
      L"CommandBarControl.Index",      L"CommandBarControl.Tag",     L"CommandBarControl.Caption",
      L"CommandBarControl.BeginGroup", L"CommandBarPopup.Controls",  L"CommandBarControls.Count",
      L"CommandBarControls.Item",      L"CommandBarControls.Add",    L"CommandBarButton.Style",
      L"CommandBarButton.PasteFace",   L"CommandBars.FindControl",   L"CommandBarControl.Delete",
      L"Application.Version",          L"Application.Name",          L"Application.ActiveWeb",
  };
  return members;
}

// All that a host does with an add-in, and lets go of it.
void checkVisit(standin::Host& host, const ShippedModule& module, const std::wstring& member) {
  // A click asks the application alone.
  const bool clicked = member.find(L"Application.") == 0;

  auto addIn = module.connection();
  CHECK(addIn->OnConnection(host.application(), atStartup, nullptr, nullptr) == S_OK);
  CHECK(addIn->OnStartupComplete(nullptr) == S_OK);
  if (clicked) {
    host.click(copyToWeb);
    host.click(dwtOnline);
  }
  CHECK(addIn->OnDisconnection(userClosed, nullptr) == S_OK);
  addIn.reset();
  CHECK(module.canUnload());
}

void checkNothingIsMetQuietly(const standin::HostOptions& options) {
  ScratchRegistry registry;
  ModalDriver modal;
  const ShippedModule module;
  for (const auto& member : membersUsed()) {
    CAPTURE(member);
    standin::Host host(options);
    host.faults().returnNothing(member);
    checkVisit(host, module, member);
  }
}

}  // namespace

TEST_CASE("Connecting puts the two entries behind their anchors") {
  Connected connected;
  CHECK(connected.outcome == S_OK);
  CHECK(connected.host.captions() == std::vector<std::wstring>{
                                         L"&Attach Dynamic Web Template...",
                                         L"&Browse/Copy Dynamic Web Template to Web...",
                                         L"&Detach from Dynamic Web Template",
                                         L"&Open Attached Dynamic Web Template",
                                         L"&Update Selected Page",
                                         L"Update All &Pages",
                                         L"&Manage Editable Regions...",
                                         L"D&ynamic Web Templates Online...",
                                     });
  CHECK(connected.modal.boxes().empty());
}

TEST_CASE("An entry is a temporary button with its text as tag and no separator above") {
  Connected connected;
  for (const wchar_t* text : {copyToWeb, dwtOnline}) {
    const standin::CommandBarButton* button = connected.host.button(text);
    REQUIRE(button);
    CHECK(button->type == standin::typeButton);
    CHECK(button->id == 1);
    CHECK(button->tag == text);
    CHECK(button->parameter == text);
    CHECK(standin::plainCaption(button->caption) == text);
    CHECK(button->temporary);
    CHECK_FALSE(button->beginGroup);
    CHECK(button->style() == 3);
  }
}

TEST_CASE("Each entry has a face of 16 by 16 pixels of its own") {
  for (const bool masked : {false, true}) {
    standin::HostOptions options;
    options.maskedFaces = masked;
    Connected connected(options);
    std::vector<DWORD> middles;
    for (const wchar_t* text : {copyToWeb, dwtOnline}) {
      DIBSECTION face = {};
      REQUIRE(GetObjectW(connected.host.button(text)->face(), sizeof face, &face));
      CHECK(face.dsBm.bmWidth == 16);
      CHECK(face.dsBm.bmHeight == 16);
      REQUIRE(face.dsBm.bmBitsPixel == 32);
      const auto* pixels = static_cast<const DWORD*>(face.dsBm.bmBits);
      // A host that takes the bitmap alone finds the button's own grey around the picture, one
      // that takes the mask too can see through there.
      const DWORD alpha = masked ? 0xFF000000 : 0;
      const COLORREF grey = GetSysColor(COLOR_3DFACE);
      const DWORD around = static_cast<DWORD>(GetRValue(grey)) << 16 |
                           static_cast<DWORD>(GetGValue(grey)) << 8 | GetBValue(grey);
      for (const std::size_t corner : {0U, 15U, 240U})
        CHECK(pixels[corner] == (masked ? 0 : around));
      middles.push_back(pixels[7 * 16 + 7]);
      CHECK((middles.back() & 0xFF000000) == alpha);
    }
    CHECK(middles[0] != middles[1]);
  }
}

TEST_CASE("Connecting twice finds the first entries and creates no duplicates") {
  Connected connected;
  const auto captions = connected.host.captions();
  const auto* button = connected.host.button(copyToWeb);
  const auto second = connected.module.connection();
  CHECK(second->OnConnection(connected.host.application(), afterStartup, nullptr, nullptr) == S_OK);
  CHECK(connected.host.captions() == captions);
  CHECK(connected.host.button(copyToWeb) == button);
  second->OnDisconnection(userClosed, nullptr);
}

TEST_CASE("An object that is connected twice hears each click once") {
  Connected connected;
  connected.addIn->OnConnection(connected.host.application(), afterStartup, nullptr, nullptr);
  CHECK(connected.host.button(copyToWeb)->listeners() == 1);
  CHECK(connected.host.button(dwtOnline)->listeners() == 1);
  checkNoWebMessage(connected, copyToWeb);
}

TEST_CASE("An object that is connected anew to a host without a menu bar leaves its entries") {
  Connected connected;
  standin::HostOptions options;
  options.menuBar = false;
  const standin::Host other(options);
  connected.addIn->OnConnection(other.application(), afterStartup, nullptr, nullptr);
  CHECK(connected.host.button(copyToWeb)->listeners() == 0);
  CHECK(connected.host.button(dwtOnline)->listeners() == 0);
  connected.addIn->OnDisconnection(userClosed, nullptr);
  connected.addIn.reset();
}

TEST_CASE("Entries whose host lost their tags are removed and nothing else is") {
  Connected connected;
  const auto control = [&](const wchar_t* caption) { return connected.host.button(caption); };
  const auto all = [&] {
    std::vector<std::wstring> captions;
    for (const auto* each : connected.host.commandBars().allControls())
      captions.push_back(each->caption);
    return captions;
  };
  REQUIRE(control(copyToWeb));
  control(copyToWeb)->tag.clear();
  control(dwtOnline)->tag.clear();
  auto expected = all();
  for (const wchar_t* entry : {copyToWeb, dwtOnline}) std::erase(expected, control(entry)->caption);
  connected.disconnect(userClosed);
  CHECK(all() == expected);
}

TEST_CASE("At shutdown of a host of version 6 an entry that lost its tag stays too") {
  Connected connected(withVersion(L"6.0"));
  for (const wchar_t* entry : {copyToWeb, dwtOnline}) connected.host.button(entry)->tag.clear();
  connected.disconnect(hostShutdown);
  CHECK(connected.host.button(copyToWeb));
  CHECK(connected.host.button(dwtOnline));
}

TEST_CASE("A menu bar that is not of type 1 gets no entries and no message") {
  for (const long type : {0L, 2L}) {
    standin::HostOptions options;
    options.menuBarType = type;
    Connected connected(options);
    CHECK(connected.outcome == S_OK);
    CHECK(connected.entries() == 0);
    CHECK(connected.modal.boxes().empty());
  }
}

TEST_CASE("A host without a menu bar is connected without entries") {
  for (const bool empty : {false, true}) {
    standin::HostOptions options;
    options.menuBar = false;
    options.nothingIsEmpty = empty;
    Connected connected(options);
    CHECK(connected.outcome == S_OK);
    CHECK(connected.entries() == 0);
    CHECK(connected.modal.boxes().empty());
  }
}

TEST_CASE("With anchor 7121 absent the first entry goes to the end of the menu") {
  for (const bool refused : {false, true}) {
    standin::HostOptions options;
    options.copyAnchor = false;
    options.beforePastEndRefused = refused;
    Connected connected(options);
    const auto captions = connected.host.captions();
    REQUIRE(captions.size() == 7);
    CHECK(captions[5] == L"D&ynamic Web Templates Online...");
    CHECK(captions[6] == L"&Browse/Copy Dynamic Web Template to Web...");
  }
}

TEST_CASE("With anchor 7127 absent the second entry goes to the end of the menu") {
  for (const bool refused : {false, true}) {
    standin::HostOptions options;
    options.onlineAnchor = false;
    options.beforePastEndRefused = refused;
    Connected connected(options);
    const auto captions = connected.host.captions();
    REQUIRE(captions.size() == 7);
    CHECK(captions[1] == L"&Browse/Copy Dynamic Web Template to Web...");
    CHECK(captions[6] == L"D&ynamic Web Templates Online...");
  }
}

TEST_CASE(
    "The second entry goes behind its anchor under a host that refuses a place past the end") {
  standin::HostOptions options;
  options.beforePastEndRefused = true;
  Connected connected(options);
  CHECK(connected.host.captions().back() == L"D&ynamic Web Templates Online...");
}

TEST_CASE("Without the parent menu one message is shown and the second entry is not tried") {
  standin::HostOptions options;
  options.templatesMenu = false;
  Connected connected(options);
  CHECK(connected.outcome == S_OK);
  REQUIRE(connected.modal.boxes().size() == 1);
  const ShownBox& box = connected.modal.boxes().front();
  CHECK(box.text == L"The menu item could not be created. The Quillet will not be available.");
  CHECK(box.title == L"Dynamic Web Template Browser");
  CHECK(box.icon == MB_ICONINFORMATION);
  CHECK(box.buttons == std::vector<std::wstring>{L"OK"});
  CHECK(connected.entries() == 0);
}

TEST_CASE("A parent that opens no menu gets no entries and no message") {
  standin::HostOptions options;
  options.templatesMenuType = 1;
  Connected connected(options);
  CHECK(connected.outcome == S_OK);
  CHECK(connected.entries() == 0);
  CHECK(connected.modal.boxes().empty());
}

TEST_CASE("Every kind of pop-up is a parent") {
  for (const long type : {10L, 12L, 13L}) {
    standin::HostOptions options;
    options.templatesMenuType = type;
    CHECK(Connected(options).entries() == 2);
  }
}

TEST_CASE("With F and E taken and an escaped ampersand before S the first entry gets its B") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  host.clearEntries();
  host.addEntry(standin::templatesMenuId, 7121, L"&File");
  host.addEntry(standin::templatesMenuId, 2, L"&Edit");
  host.addEntry(standin::templatesMenuId, 3, L"Find && Save");
  ShippedModule module;
  const auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  CHECK(host.captions() ==
        std::vector<std::wstring>{L"&File", L"&Browse/Copy Dynamic Web Template to Web...",
                                  L"&Edit", L"Find && Save", L"&Dynamic Web Templates Online..."});
  addIn->OnDisconnection(userClosed, nullptr);
}

TEST_CASE("When every character is taken the caption stays without an ampersand") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  host.clearEntries();
  for (const wchar_t letter : std::wstring(L"BROWSE/COPYDNAMITL.U"))
    host.addEntry(standin::templatesMenuId, 2, std::wstring(L"&") + letter);
  ShippedModule module;
  const auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  REQUIRE(host.button(copyToWeb));
  CHECK(host.button(copyToWeb)->caption == copyToWeb);
  addIn->OnDisconnection(userClosed, nullptr);
}

TEST_CASE("Unloading by the user deletes the entries under every version") {
  for (const wchar_t* version : {L"6.0", L"6.0.6356", L"11.0.5510"}) {
    Connected connected(withVersion(version));
    REQUIRE(connected.entries() == 2);
    connected.disconnect(userClosed);
    CHECK(connected.entries() == 0);
    CHECK(connected.host.captions().size() == 6);
  }
}

TEST_CASE("Unloading by the user deletes the entries of a host that refuses its version") {
  Connected connected;
  connected.host.faults().refuse(L"Application.Version", L"No.");
  connected.disconnect(userClosed);
  CHECK(connected.entries() == 0);
}

TEST_CASE("Unloading by the user deletes the second entry when the first is gone already") {
  Connected connected;
  standin::CommandBarButton* first = connected.host.button(copyToWeb);
  REQUIRE(first);
  first->bar->erase(first);
  connected.disconnect(userClosed);
  CHECK(connected.entries() == 0);
}

TEST_CASE("At shutdown a host of version 6 keeps its temporary entries") {
  for (const wchar_t* version : {L"6.0", L"6.0.6356", L"6."}) {
    Connected connected(withVersion(version));
    connected.disconnect(hostShutdown);
    CHECK(connected.entries() == 2);
  }
}

TEST_CASE("At shutdown the entries are deleted under every other version") {
  for (const wchar_t* version : {L"11.0.5510", L"6", L"16.0", L"60.1", L""}) {
    Connected connected(withVersion(version));
    connected.disconnect(hostShutdown);
    CHECK(connected.entries() == 0);
  }
}

TEST_CASE("After the disconnection no button tells the add-in of its clicks") {
  Connected connected(withVersion(L"6.0"));
  CHECK(connected.host.button(copyToWeb)->listeners() == 1);
  connected.disconnect(hostShutdown);
  CHECK(connected.host.button(copyToWeb)->listeners() == 0);
  CHECK(connected.host.button(dwtOnline)->listeners() == 0);
  connected.host.click(copyToWeb);
  CHECK(connected.modal.boxes().empty());
}

TEST_CASE("A reconnection reuses entries that were left and hears their clicks") {
  Connected connected(withVersion(L"6.0"));
  connected.disconnect(hostShutdown);
  connected.addIn = connected.module.connection();
  connected.addIn->OnConnection(connected.host.application(), afterStartup, nullptr, nullptr);
  CHECK(connected.host.captions().size() == 8);
  checkNoWebMessage(connected, copyToWeb);
}

TEST_CASE("The browse entry says that no web is open however the host says so") {
  for (const bool error : {false, true}) {
    for (const bool empty : {false, true}) {
      standin::HostOptions options;
      options.noWebIsError = error;
      options.nothingIsEmpty = empty;
      Connected connected(options);
      checkNoWebMessage(connected, copyToWeb);
    }
  }
}

TEST_CASE("The online entry says that no web is open however the host says so") {
  for (const bool error : {false, true}) {
    for (const bool empty : {false, true}) {
      standin::HostOptions options;
      options.noWebIsError = error;
      options.nothingIsEmpty = empty;
      Connected connected(options);
      checkNoWebMessage(connected, dwtOnline);
    }
  }
}

TEST_CASE("With an open web the browse entry opens the browser over the active window") {
  ScratchFolder web;
  Connected connected({}, web.path());
  connected.modal.onDialog(L"Dynamic Web Template Browser",
                           [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
  bool cancelled = false;
  REQUIRE(connected.host.click(copyToWeb, &cancelled));
  REQUIRE(connected.modal.dialogs().size() == 1);
  CHECK(connected.modal.dialogs().front() == L"Dynamic Web Template Browser");
  CHECK_FALSE(cancelled);
}

TEST_CASE("A second click while the host is asked for its web opens no second window") {
  for (const wchar_t* entry : {copyToWeb, dwtOnline}) {
    const ScratchFolder web;
    Connected connected({}, web.path());
    const InstalledCatalogue catalogue(connected);
    const wchar_t* caption = entry == copyToWeb ? browserCaption : onlineCaption;
    for (int i = 0; i < 3; ++i) connected.modal.onDialog(caption, closeWindow);
    bool again = false;
    connected.host.faults().before(L"Application.ActiveWeb", [&] {
      if (!std::exchange(again, true)) connected.host.click(entry);
    });
    connected.host.click(entry);
    CHECK(connected.modal.dialogs().size() == 1);

    // Afterwards the entry opens its window again.
    connected.host.click(entry);
    CHECK(connected.modal.dialogs().size() == 2);
  }
}

TEST_CASE("A click on either entry while a window is open brings that window to the front") {
  for (const wchar_t* first : {copyToWeb, dwtOnline})
    for (const wchar_t* second : {copyToWeb, dwtOnline}) {
      const ScratchFolder web;
      Connected connected({}, web.path());
      const InstalledCatalogue catalogue(connected);
      const wchar_t* caption = first == copyToWeb ? browserCaption : onlineCaption;
      HWND front = nullptr;
      bool cancelled = true;
      connected.modal.onDialog(caption, [&](HWND dialog) {
        // The host shows another window meanwhile, and may close the web.
        const Frame other;
        SetForegroundWindow(other.get());
        if (first == second) connected.host.closeWeb();
        connected.host.click(second, &cancelled);
        front = GetForegroundWindow() == dialog ? GetActiveWindow() : nullptr;
        CHECK(front == dialog);
        closeWindow(dialog);
      });
      for (const wchar_t* further : {browserCaption, onlineCaption})
        connected.modal.onDialog(further, closeWindow);
      connected.host.click(first);
      CHECK(front);
      CHECK_FALSE(cancelled);
      CHECK(connected.modal.dialogs() == std::vector<std::wstring>{caption});
      CHECK(connected.modal.boxes().empty());

      // Afterwards the entries open windows again.
      connected.host.openWeb(web.path());
      connected.host.click(second);
      CHECK(connected.modal.dialogs().size() == 2);
    }
}

TEST_CASE("A click while the online catalogue is an icon restores it") {
  const ScratchFolder web;
  Connected connected({}, web.path());
  const InstalledCatalogue catalogue(connected);
  connected.modal.onDialog(onlineCaption, [&](HWND dialog) {
    ShowWindow(dialog, SW_MINIMIZE);
    CHECK(IsIconic(dialog));
    connected.host.click(dwtOnline);
    CHECK_FALSE(IsIconic(dialog));
    closeWindow(dialog);
  });
  connected.host.click(dwtOnline);
  CHECK(connected.modal.dialogs().size() == 1);
}

TEST_CASE("A click while a window that was closed waits for the host leaves the host in front") {
  const ScratchFolder web;
  Connected connected({}, web.path());
  bool seen = false;
  connected.modal.onDialog(browserCaption, [&](HWND dialog) {
    connected.host.faults().before(L"Application.Version", [&] {
      seen = true;
      SendMessageW(dialog, WM_CLOSE, 0, 0);
      const Frame other;
      SetForegroundWindow(other.get());
      connected.host.click(copyToWeb);
      CHECK(GetForegroundWindow() == other.get());
    });
    press(dialog, IDC_QUILLET_SELECT);
    connected.host.faults().clear();
  });
  connected.host.click(copyToWeb);
  CHECK(seen);
  CHECK(connected.modal.dialogs() == std::vector<std::wstring>{browserCaption});
}

TEST_CASE("A click while a box stands over the window brings the box to the front") {
  const ScratchFolder web;
  Connected connected({}, web.path());
  HWND front = nullptr;
  connected.modal.onDialog(browserCaption, [&](HWND dialog) {
    {
      const HostWindow box(otherClass, WS_POPUP | WS_CAPTION, 0, dialog);
      const Frame other;
      SetForegroundWindow(other.get());
      connected.host.click(copyToWeb);
      CHECK(GetForegroundWindow() == box.get());
    }
    front = dialog;
    closeWindow(dialog);
  });
  connected.modal.onDialog(browserCaption, closeWindow);
  connected.host.click(copyToWeb);
  CHECK(front);
  CHECK(connected.modal.dialogs().size() == 1);
}

TEST_CASE("The host's frame owns the windows and boxes whatever window of the host is active") {
  const HostWindow frame(frameClass, WS_OVERLAPPEDWINDOW);
  checkOwner(frame.get());
  {
    const HostWindow splash(otherClass, WS_POPUP);
    checkOwner(frame.get());
  }
  {
    const HostWindow bar(otherClass, barStyle, WS_EX_TOOLWINDOW);
    checkOwner(frame.get());
  }
  const HostWindow ownedBar(otherClass, barStyle, WS_EX_TOOLWINDOW, frame.get());
  checkOwner(frame.get());
}

TEST_CASE("A dialog for which the host has disabled its frame owns what is shown meanwhile") {
  const HostWindow frame(frameClass, WS_OVERLAPPEDWINDOW);
  const HostWindow dialog(otherClass, barStyle, 0, frame.get());
  EnableWindow(frame.get(), FALSE);
  checkOwner(dialog.get());
  {
    const HostWindow bar(otherClass, barStyle, WS_EX_TOOLWINDOW, frame.get());
    checkOwner(frame.get());
  }
  EnableWindow(frame.get(), TRUE);
}

TEST_CASE("Without the host's frame an ordinary active window owns what is shown") {
  {
    const HostWindow splash(otherClass, WS_POPUP);
    checkOwner(nullptr);
  }
  {
    const HostWindow bar(otherClass, barStyle, WS_EX_TOOLWINDOW);
    checkOwner(nullptr);
  }
  const HostWindow ordinary(otherClass, WS_OVERLAPPEDWINDOW);
  checkOwner(ordinary.get());
  const HostWindow bar(otherClass, barStyle, WS_EX_TOOLWINDOW, ordinary.get());
  checkOwner(ordinary.get());
}

TEST_CASE("The message about the missing menu stands over the host's frame") {
  const HostWindow frame(frameClass, WS_OVERLAPPEDWINDOW);
  const HostWindow splash(otherClass, WS_POPUP);
  standin::HostOptions options;
  options.templatesMenu = false;
  const Connected connected(options);
  REQUIRE(connected.modal.boxes().size() == 1);
  CHECK(connected.modal.boxes().front().owner == frame.get());
}

TEST_CASE("The host may let go of the add-in while its browser is shown") {
  ScratchFolder web;
  Connected connected({}, web.path());
  bool keptLoaded = false;
  connected.modal.onDialog(L"Dynamic Web Template Browser", [&](HWND dialog) {
    connected.disconnect(userClosed);
    connected.addIn.reset();
    keptLoaded = !connected.module.canUnload();
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  REQUIRE(connected.host.click(copyToWeb));
  CHECK(keptLoaded);
  CHECK(connected.entries() == 0);
  CHECK(connected.module.canUnload());
  connected.host.application()->AddRef();
  CHECK(connected.host.application()->Release() == 1);
}

TEST_CASE("The host may let go of the add-in while a click asks for the open web") {
  for (const wchar_t* entry : {copyToWeb, dwtOnline}) {
    Connected connected;
    connected.host.faults().before(L"Application.ActiveWeb", [&] {
      if (!connected.addIn) return;
      connected.disconnect(userClosed);
      connected.addIn.reset();
    });
    checkNoWebMessage(connected, entry);
    CHECK(connected.module.canUnload());
  }
}

TEST_CASE("The host may let go of the add-in while it is connected or disconnected") {
  for (const bool connecting : {true, false}) {
    ScratchRegistry registry;
    ModalDriver modal;
    standin::Host host;
    ShippedModule module;
    const auto references = [&] {
      host.application()->AddRef();
      return host.application()->Release();
    };
    auto addIn = module.connection();
    IDTExtensibility2* const called = addIn.get();
    ULONG before = 0;
    ULONG after = 0;
    const auto letGo = [&] {
      if (!addIn) return;
      before = references();
      addIn.reset();
      after = references();
    };
    if (connecting) host.faults().before(L"CommandBarControls.Add", letGo);
    called->OnConnection(host.application(), atStartup, nullptr, nullptr);
    if (!connecting) {
      host.faults().before(L"CommandBarControl.Delete", letGo);
      called->OnDisconnection(userClosed, nullptr);
    }
    // The application object is let go with the connection object, which is still at work.
    CHECK(before > 1);
    CHECK(after == before);
    CHECK(references() == 1);
    CHECK(module.canUnload());
  }
}

TEST_CASE("With an open web the online entry says that the catalogue is not installed") {
  ScratchFolder web;
  Connected connected({}, web.path());
  connected.switchLogOn();
  const DebugOutput output;
  connected.host.click(dwtOnline);
  const std::wstring missing =
      L"The required registry settings cannot be found. The product may have to be reinstalled.";
  CHECK(output.has(L"ERROR in procedure Form_Load of Form frmDWTOnline. Error : 513\t" + missing));
  REQUIRE(connected.modal.boxes().size() == 1);
  CHECK(connected.modal.boxes()[0].text == missing);
  CHECK(connected.modal.dialogs().empty());
}

TEST_CASE("What a host refuses is one line of the log with its number text and place") {
  ScratchFolder web;
  Connected connected({}, web.path());
  connected.switchLogOn();
  connected.host.click(dwtOnline);
  const DebugOutput output;
  connected.host.faults().refuse(L"CommandBarControl.Delete", L"This menu is locked.", 1004);
  connected.disconnect(userClosed);
  const std::wstring line =
      L"Error 1004 (This menu is locked.) in procedure RemoveAddInCommandBarButton of Module "
      L"DWTemplate";
  CHECK(output.messages() == std::vector<std::wstring>{line, line});  // one for each entry
}

TEST_CASE("A connection that made no entry leaves one line in the log when it ends") {
  ScratchFolder web;
  Connected connected({}, web.path());
  connected.switchLogOn();
  connected.host.click(dwtOnline);
  connected.disconnect(userClosed);
  connected.host.faults().refuse(L"CommandBarControls.Add", L"No.");
  const auto another = connected.module.connection();
  another->OnConnection(connected.host.application(), atStartup, nullptr, nullptr);
  const DebugOutput output;
  another->OnDisconnection(userClosed, nullptr);
  CHECK(output.messages() ==
        std::vector<std::wstring>{L"Error 91 (Object variable or With block variable not set) in "
                                  L"procedure IDTExtensibility2_OnDisconnection of Module "
                                  L"DWTemplate"});
}

TEST_CASE("The online catalogue's own button goes on to the browser and its close box does not") {
  for (const bool byButton : {true, false}) {
    ScratchFolder web;
    FakeWebBrowser page;
    Connected connected({}, web.path());
    connected.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                                 L"DWTOnline", L"http://127.0.0.1/start.htm");
    const ScratchFolder data;
    connected.registry.setString(
        HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
        L"AppData", data.path());
    connected.modal.onDialog(L"DWT Online", [&](HWND dialog) {
      if (byButton)
        pressToolbarButton(GetDlgItem(dialog, IDC_ONLINE_TOOLBAR), quilletButton);
      else
        PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    connected.modal.onDialog(L"Dynamic Web Template Browser",
                             [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
    bool cancelled = true;
    REQUIRE(connected.host.click(dwtOnline, &cancelled));
    CHECK_FALSE(cancelled);
    const std::vector<std::wstring> both = {L"DWT Online", L"Dynamic Web Template Browser"};
    CHECK(connected.modal.dialogs() ==
          std::vector<std::wstring>(both.begin(), both.end() - (byButton ? 0 : 1)));
    CHECK(connected.modal.boxes().empty());
  }
}

TEST_CASE("A host that refuses any one call is connected clicked and disconnected quietly") {
  ScratchRegistry registry;
  ModalDriver modal;
  const ShippedModule module;
  for (const auto& member : membersUsed()) {
    CAPTURE(member);
    standin::Host host;
    host.faults().refuse(member, L"The host will not.");
    checkVisit(host, module, member);
  }
}

TEST_CASE("A host that gives a null object for any one call is met as quietly") {
  checkNothingIsMetQuietly(standin::HostOptions());
}

TEST_CASE("A host that gives an empty value for any one call is met as quietly") {
  standin::HostOptions options;
  options.nothingIsEmpty = true;
  checkNothingIsMetQuietly(options);
}

TEST_CASE("A host that refuses the addition gets no entry and shows no message") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  const auto captions = host.captions();
  host.faults().refuse(L"CommandBarControls.Add", L"This menu is locked.");
  ShippedModule module;
  const auto addIn = module.connection();
  CHECK(addIn->OnConnection(host.application(), atStartup, nullptr, nullptr) == S_OK);
  CHECK(host.captions() == captions);
  CHECK(host.faults().calls(L"CommandBarControls.Add") == 1);
  CHECK(modal.boxes().empty());
}

TEST_CASE("An entry of which anything but the face is refused does not stay in the menu") {
  for (const wchar_t* member : {L"CommandBarControl.Tag", L"CommandBarControl.Caption",
                                L"CommandBarControl.BeginGroup", L"CommandBarButton.Style"}) {
    ScratchRegistry registry;
    ModalDriver modal;
    standin::Host host;
    const auto captions = host.captions();
    host.faults().refuse(member, L"No.");
    ShippedModule module;
    const auto addIn = module.connection();
    addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
    CHECK(host.captions() == captions);
    CHECK(host.faults().calls(L"CommandBarControls.Add") == 1);
    CHECK(host.faults().calls(L"CommandBarButton.PasteFace") == 0);
    CHECK(modal.boxes().empty());
  }
}

TEST_CASE("An entry whose face is refused stays without a face") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  host.faults().refuse(L"CommandBarButton.PasteFace", L"No.");
  ShippedModule module;
  const auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  REQUIRE(host.button(copyToWeb));
  CHECK_FALSE(host.button(copyToWeb)->face());
  CHECK(host.button(dwtOnline));
  addIn->OnDisconnection(userClosed, nullptr);
}

TEST_CASE("A host whose name is refused still lets its user know that no web is open") {
  Connected connected;
  connected.host.faults().refuse(L"Application.Name", L"No.");
  connected.host.click(copyToWeb);
  REQUIRE(connected.modal.boxes().size() == 1);
  CHECK(connected.modal.boxes().front().text == L"No web is currently open.");
  CHECK(connected.modal.boxes().front().title == L"Quillet Viewer");
}

TEST_CASE("A connection without an application object is no failure") {
  ScratchRegistry registry;
  ShippedModule module;
  const auto addIn = module.connection();
  CHECK(addIn->OnConnection(nullptr, atStartup, nullptr, nullptr) == S_OK);
  CHECK(addIn->OnDisconnection(userClosed, nullptr) == S_OK);
}

TEST_CASE("The application object is let go with the connection object") {
  ScratchRegistry registry;
  ModalDriver modal;
  ShippedModule module;
  standin::Host host;
  const auto references = [&] {
    host.application()->AddRef();
    return host.application()->Release();
  };
  const ULONG before = references();
  auto addIn = module.connection();
  addIn->OnConnection(host.application(), atStartup, nullptr, nullptr);
  addIn->OnDisconnection(userClosed, nullptr);
  CHECK(references() > before);
  addIn.reset();
  CHECK(references() == before);
}
