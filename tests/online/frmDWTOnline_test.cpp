// The online catalogue's window and its download dialog, with a stand-in browser and a real server.
#include "online/frmDWTOnline.h"

#include "tests/online/OnlineWindow.h"
#include "tests/support/LaunchRecorder.h"
#include "tests/support/Launches.h"

namespace {

// The destination's drop-down menu as it opens: what it holds; then the keys are typed that the
// test wants.
class OpenedMenu {
 public:
  explicit OpenedMenu(std::vector<WPARAM> keys) {
    keys_ = std::move(keys);
    entries_.clear();
    flags_.clear();
    SetTimer(nullptr, 0, 10, look);
  }
  OpenedMenu(const OpenedMenu&) = delete;
  OpenedMenu& operator=(const OpenedMenu&) = delete;

  const Lines& entries() const { return entries_; }  // empty for a separator
  const std::vector<UINT>& flags() const { return flags_; }

 private:
  static void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD) {
    constexpr UINT menuOfWindow = 0x01E1;  // MN_GETHMENU
    const HWND window = FindWindowW(L"#32768", nullptr);
    if (!window || !IsWindowVisible(window)) return;
    KillTimer(nullptr, timer);
    const auto menu = reinterpret_cast<HMENU>(SendMessageW(window, menuOfWindow, 0, 0));
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
      wchar_t text[MAX_PATH] = {};
      GetMenuStringW(menu, static_cast<UINT>(i), text, MAX_PATH, MF_BYPOSITION);
      entries_.push_back(text);
      flags_.push_back(GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION));
    }
    for (const WPARAM key : keys_) PostMessageW(GetActiveWindow(), WM_KEYDOWN, key, 0);
  }

  static inline std::vector<WPARAM> keys_;
  static inline Lines entries_;
  static inline std::vector<UINT> flags_;
};

// Presses Cancel in the download dialog once bytes have come in.
struct CancelWhenReading {
  static inline HWND dialog = nullptr;

  static void CALLBACK tick(HWND, UINT, UINT_PTR timer, DWORD) {
    if (!dialog) dialog = FindWindowW(nullptr, L"Downloading 1 of 1 files.");
    if (!dialog || windowText(dialog, IDC_DOWNLOAD_CURRENTSIZE).empty()) return;
    KillTimer(nullptr, timer);
    press(dialog, IDCANCEL);
  }
};

}  // namespace

// Start

TEST_CASE("the window opens the catalogue's start page") {
  OnlineWindow online;
  CHECK(online.show() == 0);
  CHECK(online.page.navigations() == Lines{startPage});
  CHECK(online.driver.boxes().empty());
}

TEST_CASE("a start page that cannot be cracked opens the blank page") {
  OnlineWindow online;
  online.registry.setString(HKEY_LOCAL_MACHINE, machineKey, L"DWTOnline", L"no address");
  online.show();
  CHECK(online.page.navigations() == Lines{L"about:blank"});
  CHECK(online.driver.boxes().empty());
}

TEST_CASE("without a start page the window does not open and says why") {
  for (const bool empty : {false, true}) {
    OnlineWindow online;
    ScratchRegistry registry;
    registry.setString(HKEY_CURRENT_USER, userSettings, L"Logging", L"1");
    if (empty) registry.setString(HKEY_LOCAL_MACHINE, machineKey, L"DWTOnline", L"");
    const std::wstring missing =
        L"The required registry settings cannot be found. The product may have to be reinstalled.";
    frmDWTOnline form(online.application());
    CHECK(form.RunOnline(false, nullptr) == 0);
    REQUIRE(online.driver.boxes().size() == 1);
    CHECK(online.driver.boxes()[0].text == missing);
    CHECK(online.driver.boxes()[0].title == L"DWT Online");
    CHECK(online.driver.boxes()[0].icon == MB_ICONHAND);
    CHECK(online.driver.dialogs().empty());
    CHECK(online.log.has(L"ERROR in procedure Form_Load of Form frmDWTOnline. Error : 513\t" +
                         missing));
    CHECK_FALSE(
        registry.binary(HKEY_CURRENT_USER, userSettings, L"DWTOnlinePlacement").has_value());
  }
}

TEST_CASE("opening the window from the template browser disables its Quillet button") {
  OnlineWindow online;
  online.show([&] { CHECK_FALSE(online.enabled(quillet)); }, true);
}

TEST_CASE("opened from the menu the Quillet button is enabled and asks for the browser") {
  OnlineWindow online;
  const short reason = online.show([&] {
    CHECK(online.enabled(quillet));
    online.click(quillet);
    CHECK_FALSE(online.open());
  });
  CHECK(reason == 2);
}

TEST_CASE("the window keeps its place") {
  OnlineWindow online;
  online.show([&] { MoveWindow(online.dialog, 20, 30, 760, 560, TRUE); });
  RECT place = {};
  online.show([&] { GetWindowRect(online.dialog, &place); });
  CHECK(place.left == 20);
  CHECK(place.top == 30);
  CHECK(place.right == 780);
  CHECK(place.bottom == 590);
}

TEST_CASE("without a remembered place the window is centred on the screen") {
  OnlineWindow online;
  online.show([&] {
    RECT place;
    GetWindowRect(online.dialog, &place);
    RECT screen;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    CHECK(std::abs(place.left + place.right - screen.left - screen.right) <= 2);
    CHECK(std::abs(place.top + place.bottom - screen.top - screen.bottom) <= 2);
  });
}

TEST_CASE("closing the window writes the separator line") {
  OnlineWindow online;
  online.show();
  CHECK(online.log.has(L"-----------------------------------------------------"));
}

TEST_CASE("without a browser control the window says so and still works") {
  OnlineWindow online;
  online.page.canBeMade = false;
  const std::wstring user = online.disk.makeFolder(L"user");
  listForUser(online.registry, user);
  const short reason = online.show([&] {
    for (const Button each : {stop, refresh, print}) online.click(each);
    online.choose(0);
    CHECK(online.destination() == user);
    online.click(quillet);
  });
  CHECK(reason == 2);
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text == L"ActiveX component can't create object");
  CHECK(online.driver.boxes()[0].title == L"DWT Online");
  CHECK(online.log.has(
      L"ERROR in procedure Form_Load of Form frmDWTOnline. Error : 429\tActiveX component can't "
      L"create object"));
}

// Navigation

TEST_CASE("the toolbar moves the browser") {
  OnlineWindow online;
  online.show([&] {
    online.page.clear();
    for (const Button each : {back, next, stop, refresh, print}) online.click(each);
    CHECK(online.page.calls() ==
          Lines{L"GoBack", L"GoForward", L"Stop", L"Refresh", L"ExecWB 6 0"});
  });
}

TEST_CASE("the window's keys do what its buttons do") {
  OnlineWindow online;
  online.show([&] {
    online.page.setCommandState(1, true);
    online.page.setCommandState(2, true);
    online.page.clear();
    online.type(WM_SYSKEYDOWN, VK_LEFT);
    online.type(WM_SYSKEYDOWN, VK_RIGHT);
    online.type(WM_KEYDOWN, VK_ESCAPE);
    online.type(WM_KEYDOWN, VK_F5);
  });
  CHECK(online.asked() == Lines{L"GoBack", L"GoForward", L"Stop", L"Refresh"});
}

TEST_CASE("the keys for going back and forward do nothing while their buttons are off") {
  OnlineWindow online;
  online.show([&] {
    online.page.clear();
    online.type(WM_SYSKEYDOWN, VK_LEFT);
    online.type(WM_SYSKEYDOWN, VK_RIGHT);
  });
  CHECK(online.asked() == Lines{});
}

TEST_CASE("Ctrl and P print the page and P alone does not") {
  for (const bool control : {true, false}) {
    OnlineWindow online;
    BYTE keys[256] = {};
    online.show([&] {
      online.page.clear();
      keys[VK_CONTROL] = control ? 0x80 : 0;
      SetKeyboardState(keys);
      online.type(WM_KEYDOWN, 'P');
    });
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    CHECK(online.asked() == (control ? Lines{L"ExecWB 6 0"} : Lines{}));
  }
}

TEST_CASE("the Help button and F1 open the window's help topic") {
  static const ScratchFolder viewers;  // looked up once in a process
  LaunchRecorder viewer(viewers / L"KorvelHelp.exe");
  OnlineWindow online;
  online.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software", L"CommonPath",
                            viewers.path());
  const std::wstring launched = L"\"" + (viewers / L"KorvelHelp.exe") + L"\" \"" +
                                module::folder() + L"QuilletHelp\\\" /cDWTOnline";
  online.show([&] {
    online.click(help);
    CHECK(viewer.commandLine() == launched);
    online.type(WM_KEYDOWN, VK_F1);
  });
  CHECK(viewer.commandLine() == launched);
  CHECK(online.driver.boxes().empty());
}

TEST_CASE("F1 opens the topic of the download dialog over the catalogue's window") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const Launches launches;
  OnlineWindow online;
  online.driver.onDialog(L"Downloading...", [](HWND dialog) {
    PostMessageW(GetDlgItem(dialog, IDCANCEL), WM_KEYDOWN, VK_F1, 0);
    forms::yieldToMessages();
  });
  online.show([&] { online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))); });
  CHECK(launches.topics() == Lines{L"Downloading"});
}

TEST_CASE("keys do nothing while the window is switched off") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    online.page.clear();
    online.type(WM_KEYDOWN, VK_F5);
    online.type(WM_KEYDOWN, VK_ESCAPE);
  });
  CHECK(online.asked() == Lines{});
}

TEST_CASE("the browser enables the buttons for going back and forward") {
  OnlineWindow online;
  online.show([&] {
    online.page.setCommandState(1, true);
    CHECK(online.enabled(next));
    CHECK_FALSE(online.enabled(back));
    online.page.setCommandState(2, true);
    online.page.setCommandState(1, false);
    CHECK_FALSE(online.enabled(next));
    CHECK(online.enabled(back));
    online.page.setCommandState(3, false);
    CHECK(online.enabled(back));
  });
}

TEST_CASE("other pages are let happen") {
  OnlineWindow online;
  online.show([&] {
    CHECK(online.page.follow(L"http://127.0.0.1/xDWTOnlineDownload.htm?dwt1=a"));
    CHECK(online.page.follow(L"http://127.0.0.1/DWTOnlineDownload.htm/next.htm"));
    CHECK(online.page.follow(L"about:blank"));
  });
  CHECK(online.driver.boxes().empty());
}

// The destination

TEST_CASE("the destination begins as the remembered download folder") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  online.show([&] { CHECK(online.destination() == online.disk.path()); });
}

TEST_CASE("the destination has the width of its bar from the start") {
  OnlineWindow online;
  online.saveIn(L"C:\\windows");
  online.show([&] {
    RECT bar = {};
    RECT button = {};
    GetClientRect(online.control(IDC_ONLINE_DESTINATION), &bar);
    SendMessageW(online.control(IDC_ONLINE_DESTINATION), TB_GETITEMRECT, 0,
                 reinterpret_cast<LPARAM>(&button));
    CHECK(button.right - button.left == bar.right);
  });
}

TEST_CASE("without a download folder the one of the application data is made and used") {
  OnlineWindow online;
  online.show([&] {
    CHECK(online.destination() == online.disk / L"data\\Korvel Software\\DWTs");
    CHECK_FALSE(online.hasMachinePicture());
  });
  CHECK(online.disk.exists(L"data\\Korvel Software\\DWTs"));
}

TEST_CASE("choosing a listed folder makes it the destination with its list's picture") {
  OnlineWindow online;
  const std::wstring machine = online.disk.makeFolder(L"machine & all");
  const std::wstring user = online.disk.makeFolder(L"user");
  listForMachine(online.registry, machine);
  listForUser(online.registry, user);
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == machine);
    CHECK(online.hasMachinePicture());
    online.choose(2);
    CHECK(online.destination() == user);
    CHECK_FALSE(online.hasMachinePicture());
  });
}

TEST_CASE("the opened list of destinations has a separator behind each of its lists") {
  OnlineWindow online;
  const std::wstring machine = online.disk.makeFolder(L"machine & all");
  const std::wstring first = online.disk.makeFolder(L"user 1");
  const std::wstring second = online.disk.makeFolder(L"user 2");
  listForMachine(online.registry, machine);
  listForUser(online.registry, first);
  listForUser(online.registry, second);
  online.show([&] {
    const OpenedMenu menu({VK_ESCAPE});
    const std::wstring before = online.destination();
    online.openDestinations();
    CHECK(menu.entries() ==
          Lines{online.disk / L"machine && all", L"", first, second, L"", L"Browse..."});
    for (const std::size_t separator : {1U, 4U})
      CHECK((menu.flags()[separator] & MF_SEPARATOR) != 0);
    CHECK(online.destination() == before);
  });
}

TEST_CASE("without folders the opened list of destinations offers to browse alone") {
  OnlineWindow online;
  online.show([&] {
    const OpenedMenu menu({VK_ESCAPE});
    online.openDestinations();
    CHECK(menu.entries() == Lines{L"Browse..."});
  });
}

TEST_CASE("a folder is chosen from the opened list of destinations by keys") {
  OnlineWindow online;
  const std::wstring machine = online.disk.makeFolder(L"machine");
  const std::wstring user = online.disk.makeFolder(L"user");
  listForMachine(online.registry, machine);
  listForUser(online.registry, user);
  online.show([&] {
    const OpenedMenu menu({VK_DOWN, VK_DOWN, VK_RETURN});
    online.openDestinations();
    CHECK(pumpUntil([&] { return online.destination() == user; }));
    CHECK_FALSE(online.hasMachinePicture());
  });
}

TEST_CASE("a listed folder that cannot be written to is not chosen") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  listForUser(online.registry, online.disk / L"gone");
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == online.disk.path());
  });
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].title == L"DWT Online");
  CHECK(online.driver.boxes()[0].owner == online.dialog);
}

TEST_CASE("browsing chooses a folder of the disk") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  const std::wstring chosen = online.disk.makeFolder(L"chosen");
  online.picker.choose(chosen);
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == chosen);
    CHECK_FALSE(online.hasMachinePicture());
  });
  REQUIRE(online.picker.shown.size() == 1);
  CHECK(online.picker.shown[0].prompt ==
        L"Select the folder where downloaded DWTs will be stored.");
  CHECK(online.picker.shown[0].start == online.disk.path());
  CHECK(online.picker.shown[0].owner == online.dialog);
}

TEST_CASE("browsing to a listed folder of the machine shows the machine's picture") {
  OnlineWindow online;
  const std::wstring machine = online.disk.makeFolder(L"machine");
  listForMachine(online.registry, machine);
  online.picker.choose(machine);
  online.show([&] {
    online.choose(2);
    CHECK(online.destination() == machine);
    CHECK(online.hasMachinePicture());
  });
}

TEST_CASE("browsing to a virtual folder shows the message and keeps the destination") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  online.picker.chooseVirtualFolder();
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == online.disk.path());
  });
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text ==
        L"Invalid path. Please select a valid file system path to search for DWT's.");
  CHECK(online.driver.boxes()[0].title == L"DWT Online");
  CHECK(online.driver.boxes()[0].icon == MB_ICONASTERISK);
  CHECK(online.driver.boxes()[0].owner == online.dialog);
}

TEST_CASE("a cancelled folder picker keeps the destination") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  online.picker.cancel();
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == online.disk.path());
  });
  CHECK(online.driver.boxes().empty());
}

TEST_CASE("a failure while a destination is chosen is logged and keeps the destination") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  online.picker.fail([] { throw Error(errors::outOfMemory); });
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == online.disk.path());
  });
  CHECK(online.log.has(
      L"ERROR in procedure mnuFolder_Click of Form frmDWTOnline. Error : 7\tOut of memory"));
  CHECK(online.driver.boxes().empty());
}

namespace {

HMENU WINAPI noMenu() {
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

}  // namespace

TEST_CASE("a list of destinations that cannot be opened is logged") {
  const ImportPatch patch(nullptr, "user32.dll", "CreatePopupMenu", noMenu);
  OnlineWindow online;
  online.show([&] { online.openDestinations(); });
  CHECK(online.log.has(
      L"Error in CreatePopupMenu procedure of frmDWTOnline. Error description :Out of memory"));
}

TEST_CASE("the window's label and buttons say what they are for") {
  OnlineWindow online;
  online.show([&] {
    CHECK(windowText(online.dialog) == L"DWT Online");
    CHECK(windowText(online.dialog, IDC_ONLINE_SAVEIN) == L"Save In: ");
    Lines texts;
    for (const Button each : {back, next, stop, refresh, print, quillet, help}) {
      wchar_t text[100] = {};
      SendMessageW(online.control(IDC_ONLINE_TOOLBAR), TB_GETBUTTONTEXTW,
                   static_cast<WPARAM>(online.command(each)), reinterpret_cast<LPARAM>(text));
      texts.push_back(text);
    }
    CHECK(texts == Lines{L"Back (Alt+Left)", L"Forward (Alt+Right)", L"Stop (Esc)", L"Refresh (F5)",
                         L"Print (Ctrl+P)", L"Browse and copy the templates on this computer",
                         L"Help (F1)"});
  });
}

// The download

TEST_CASE("the download page is never shown by the browser in any letter case") {
  OnlineWindow online;
  const short reason = online.show([&] {
    CHECK_FALSE(online.clickLink(L"http://127.0.0.1/a/dwtonlinedownload.HTM"));
    CHECK_FALSE(online.clickLink(L"http://127.0.0.1/DWTOnlineDownload.html"));
    online.click(stop);
    CHECK_FALSE(online.page.followInFrame(L"http://127.0.0.1/DWTONLINEDOWNLOAD.HTM?x"));
    CHECK(online.open());
    CHECK(IsWindowEnabled(online.dialog));
  });
  CHECK(reason == 0);
  REQUIRE(online.driver.boxes().size() == 3);
  for (const ShownBox& box : online.driver.boxes()) {
    CHECK(box.text == L"Could not extract download information.");
    CHECK(box.title == L"DWT Online");
    CHECK(box.icon == MB_ICONHAND);
    CHECK(box.owner == online.dialog);
  }
  CHECK(online.driver.dialogs() == Lines{L"DWT Online"});
  CHECK(online.page.navigations() == Lines{startPage});
  CHECK(online.saved(L"DWTDownloadDir").empty());
}

TEST_CASE("a download without a success page closes the window on the second tick") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  const std::wstring folder = online.disk.makeFolder(L"new");
  online.saveIn(folder);
  const short reason = online.show([&] {
    CHECK_FALSE(online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))));
    CHECK(timer.intervals() == Intervals{500});
    CHECK(online.open());
    CHECK_FALSE(IsWindowEnabled(online.dialog));
    timer.tick(online.dialog);
    CHECK(online.open());
    timer.tick(online.dialog);
    CHECK_FALSE(online.open());
  });
  CHECK(reason == 1);
  CHECK(online.disk.readFile(L"new\\home.dwt") == "a page");
  CHECK(online.saved(L"DWTDownloadDir") == folder);
  CHECK(online.registry.string(HKEY_CURRENT_USER, userFolders, folder) == folder);
  CHECK(online.driver.boxes().empty());
}

TEST_CASE("the unload timer does nothing before a download") {
  OnlineWindow online;
  const short reason = online.show([&] {
    for (int i = 0; i < 3; ++i) UnloadTimer::tick(online.dialog);
    CHECK(online.open());
  });
  CHECK(reason == 0);
}

TEST_CASE("a navigation between the two ticks keeps the window open for longer") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  const short reason = online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    timer.tick(online.dialog);
    online.page.follow(L"http://127.0.0.1/other.htm");
    online.page.arrive(L"http://127.0.0.1/other.htm");
    CHECK(IsWindowEnabled(online.dialog));
    timer.tick(online.dialog);
    CHECK(online.open());
    timer.tick(online.dialog);
    CHECK_FALSE(online.open());
  });
  CHECK(reason == 1);
}

TEST_CASE("a download with a success page shows it and stays open") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  const short reason = online.show([&] {
    CHECK_FALSE(online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip") +
                                                L"& SUCCESS=http://127.0.0.1/done.htm?a=b ")));
    online.page.settle();
    CHECK(online.page.navigations() == Lines{startPage, L"http://127.0.0.1/done.htm?a=b"});
    CHECK(online.open());
    CHECK(IsWindowEnabled(online.dialog));
    CHECK(timer.intervals() == Intervals{1000});  // the watch over the browser
  });
  CHECK(reason == 1);
}

TEST_CASE("the window is switched off until the success page has come") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  online.show([&] {
    online.page.isSlow = true;
    online.page.follow(
        downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=http://127.0.0.1/done.htm"));
    CHECK_FALSE(IsWindowEnabled(online.dialog));
    online.page.arrive(L"http://127.0.0.1/done.htm");
    CHECK(IsWindowEnabled(online.dialog));
  });
}

TEST_CASE("a success page that does not arrive leaves the window usable") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  online.page.unreachable = [](const std::wstring& address) {
    return address.ends_with(L"done.htm");
  };
  online.show([&] {
    online.page.follow(
        downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=http://127.0.0.1/done.htm"));
    online.page.settle();
    CHECK(IsWindowEnabled(online.dialog));
  });
}

TEST_CASE("a download into a listed folder lists it once") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  const std::wstring folder = online.disk.makeFolder(L"New");
  listForUser(online.registry, online.disk / L"NEW");
  online.saveIn(folder);
  online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=about:blank"));
  });
  CHECK(online.registry.valueNames(HKEY_CURRENT_USER, userFolders) == Lines{online.disk / L"NEW"});
}

TEST_CASE("a download into a folder listed for the machine does not list it for the user too") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  const std::wstring folder = online.disk.makeFolder(L"New");
  listForMachine(online.registry, online.disk / L"NEW");
  online.saveIn(folder);
  online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=about:blank"));
  });
  CHECK(online.saved(L"DWTDownloadDir") == folder);
  CHECK_FALSE(online.registry.hasKey(HKEY_CURRENT_USER, userFolders));
}

TEST_CASE("a download that fails leaves the window on its page") {
  const HttpServer server({{"/d.zip", HttpServer::ok("no archive")}});
  OnlineWindow online;
  const short reason = online.show([&] {
    CHECK_FALSE(online.clickLink(downloadPage(L"?dwt1=" + server.url(L"/missing.zip"))));
    CHECK_FALSE(online.clickLink(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))));
    CHECK(online.open());
    CHECK(IsWindowEnabled(online.dialog));
  });
  CHECK(reason == 0);
  CHECK(online.driver.boxes().size() >= 2);
  CHECK(online.page.navigations() == Lines{startPage});
  CHECK(online.saved(L"DWTDownloadDir").empty());
}

TEST_CASE("after any failed download the window is usable and the next download works") {
  std::wstring refused;
  {
    const HttpServer gone({});
    refused = gone.url(L"/d.zip");
  }
  const HttpServer server(
      {{"/good.zip", HttpServer::ok(archive())},
       {"/error.zip",
        HttpServer::raw("HTTP/1.0 500 Oops\r\nContent-Length: 4\r\nConnection: close\r\n\r\noops")},
       {"/short.zip", HttpServer::raw(HttpServer::head(5000) + "short")},
       {"/reset.zip", {HttpServer::head(500000) + "short", true}},
       {"/nolength.zip", HttpServer::raw("HTTP/1.0 200 OK\r\nConnection: close\r\n\r\nbody")}});
  OnlineWindow online;
  const std::wstring folder = online.disk.makeFolder(L"new");
  online.saveIn(folder);
  const short reason = online.show([&] {
    for (const std::wstring& bad :
         {server.url(L"/missing.zip"), server.url(L"/error.zip"), server.url(L"/short.zip"),
          server.url(L"/reset.zip"), server.url(L"/nolength.zip"), refused,
          std::wstring(L"foo://127.0.0.1/d.zip"), server.url(L"/good.zip?x=y")}) {
      CAPTURE(bad);
      CHECK_FALSE(online.clickLink(downloadPage(L"?dwt1=" + bad)));
      CHECK(online.open());
      CHECK(IsWindowEnabled(online.dialog));
      CHECK_FALSE(online.disk.exists(L"new\\home.dwt"));
    }
    CHECK_FALSE(online.clickLink(
        downloadPage(L"?dwt1=" + server.url(L"/good.zip") + L"&success=about:blank")));
  });
  CHECK(reason == 1);
  CHECK(online.disk.readFile(L"new\\home.dwt") == "a page");
  CHECK(online.driver.boxes().size() == 8);
}

TEST_CASE("the download dialog's Cancel ends an endless download") {
  HttpServer::Answer endless = HttpServer::raw(HttpServer::head(100000000));
  endless.endless = true;
  const HttpServer server({{"/d.zip", endless}});
  OnlineWindow online;
  const short reason = online.show([&] {
    CancelWhenReading::dialog = nullptr;
    SetTimer(nullptr, 0, 20, CancelWhenReading::tick);
    CHECK_FALSE(online.clickLink(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))));
    CHECK(online.open());
    CHECK(IsWindowEnabled(online.dialog));
  });
  CHECK(reason == 0);
  CHECK(CancelWhenReading::dialog);
  CHECK_FALSE(online.disk.exists(L"data\\Korvel Software\\d.zip"));
  CHECK(online.log.has(
      L"Error 512 (Operation Cancelled.) in procedure Form_Activate of Form frmDownloadProgress"));
}
