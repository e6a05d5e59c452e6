// When the online catalogue's window is switched off and on again by pages and downloads.
#include <optional>

#include "tests/online/OnlineWindow.h"

namespace {

HttpServer serverOfArchive() { return HttpServer({{"/d.zip", HttpServer::ok(archive())}}); }

// The page that downloads the server's archive and asks for `success` afterwards.
std::wstring pageWithSuccess(const HttpServer& server, const std::wstring& success) {
  return downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=" + success);
}

bool isOn(const OnlineWindow& online) { return IsWindowEnabled(online.dialog) != FALSE; }

// Does something as soon as a window is disabled.
class WhenDisabled {
 public:
  WhenDisabled(HWND window, std::function<void()> action) : window_(window) {
    action_ = std::move(action);
    former_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }
  ~WhenDisabled() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  WhenDisabled(const WhenDisabled&) = delete;
  WhenDisabled& operator=(const WhenDisabled&) = delete;

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ENABLE && !wParam) action_();
    return CallWindowProcW(former_, window, message, wParam, lParam);
  }

  HWND window_;
  static inline std::function<void()> action_;
  static inline WNDPROC former_ = nullptr;
};

UINT_PTR WINAPI noTimer(HWND, UINT_PTR, UINT, TIMERPROC) { return 0; }

constexpr wchar_t done[] = L"http://127.0.0.1/done.htm";

}  // namespace

TEST_CASE("a page that arrives under the download dialog leaves the window switched off") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  bool arrived = false;
  online.driver.onDialog(L"Downloading...", [&](HWND) {
    CHECK_FALSE(isOn(online));
    online.page.arrive(L"http://127.0.0.1/late.htm");
    online.page.unreachable = [](const std::wstring&) { return true; };
    online.page.arrive(L"http://127.0.0.1/gone.htm");
    arrived = true;
    CHECK_FALSE(isOn(online));
  });
  online.show([&] { online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))); });
  CHECK(arrived);
}

TEST_CASE("a success page that arrives under the next download dialog leaves it modal") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  online.driver.onDialog(L"Downloading...", [](HWND) {});
  online.driver.onDialog(L"Downloading...", [&](HWND) {
    online.page.arrive(done);
    CHECK_FALSE(isOn(online));
  });
  online.show([&] {
    online.page.isSlow = true;
    online.page.follow(pageWithSuccess(server, done));
    online.page.follow(pageWithSuccess(server, done));
    CHECK_FALSE(isOn(online));
    online.page.arrive(done);
    CHECK(isOn(online));
  });
}

TEST_CASE("a page that arrives under a message box leaves the window switched off") {
  OnlineWindow online;
  listForUser(online.registry, online.disk / L"gone");
  online.show([&] {
    bool offUnderBox = false;
    const WhenDisabled covered(online.dialog, [&] {
      online.page.arrive(L"http://127.0.0.1/late.htm");
      offUnderBox = !isOn(online);
    });
    online.choose(0);
    CHECK(offUnderBox);
    CHECK(isOn(online));
  });
}

TEST_CASE("a success page that asks for a download without files leaves the window usable") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  online.show([&] {
    online.page.follow(pageWithSuccess(server, L"http://127.0.0.1/DWTOnlineDownload.htm"));
    online.page.settle();
    CHECK(online.open());
    CHECK(isOn(online));
  });
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text == L"Could not extract download information.");
}

TEST_CASE("a success page that asks for a download that fails leaves the window usable") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  online.show([&] {
    online.page.follow(
        pageWithSuccess(server, downloadPage(L"?dwt1=http://127.0.0.1/.hidden.zip")));
    online.page.settle();
    CHECK(isOn(online));
  });
}

TEST_CASE("a download page that fails while the window waits to close leaves it open and usable") {
  const HttpServer server = serverOfArchive();
  const UnloadTimer timer;
  OnlineWindow online;
  online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK_FALSE(isOn(online));
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/gone.zip")));
    CHECK(isOn(online));
    timer.tick(online.dialog);
    timer.tick(online.dialog);
    CHECK(online.open());
  });
}

TEST_CASE("the unload timer does not close the window under a second download") {
  const HttpServer server = serverOfArchive();
  const UnloadTimer timer;
  OnlineWindow online;
  online.driver.onDialog(L"Downloading...", [](HWND) {});
  online.driver.onDialog(L"Downloading...", [&](HWND) {
    timer.tick(online.dialog);
    timer.tick(online.dialog);
    CHECK(online.open());
  });
  const short reason = online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(online.open());
    timer.tick(online.dialog);
    CHECK(online.open());
    timer.tick(online.dialog);
    CHECK_FALSE(online.open());
  });
  CHECK(reason == 1);
}

TEST_CASE("the unload timer of an earlier download does not close the window with a success page") {
  const HttpServer server = serverOfArchive();
  const UnloadTimer timer;
  OnlineWindow online;
  online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(timer.isRunning());
    online.page.follow(pageWithSuccess(server, done));
    CHECK_FALSE(timer.isRunning());
    online.page.settle();
    for (int i = 0; i < 3; ++i) timer.tick(online.dialog);
    CHECK(online.open());
    CHECK(isOn(online));
  });
}

TEST_CASE("a download page in a download dialog starts no second one") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  online.driver.onDialog(L"Downloading...", [&](HWND) {
    CHECK_FALSE(online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))));
    CHECK_FALSE(online.page.followInFrame(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))));
  });
  online.show([&] { online.page.follow(pageWithSuccess(server, L"about:blank")); });
  CHECK(online.driver.dialogs() == Lines{L"DWT Online", L"Downloading..."});
  CHECK(online.page.navigations() == Lines{startPage, L"about:blank"});
}

TEST_CASE("Esc stops a success page that does not come and switches the window on") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  std::optional<Meanwhile> closing;
  online.driver.onDialog(L"DWT Online", [&](HWND window) {
    online.dialog = window;
    online.page.isSlow = true;
    online.page.isBusy = true;
    online.page.follow(pageWithSuccess(server, done));
    CHECK_FALSE(isOn(online));
    online.page.clear();
    online.type(WM_KEYDOWN, VK_F5);
    online.type(WM_KEYDOWN, VK_ESCAPE);
    const DWORD began = GetTickCount();
    closing.emplace([&online, began] { return isOn(online) || GetTickCount() - began > 5000; },
                    [&] {
                      CHECK(isOn(online));
                      PostMessageW(online.dialog, WM_CLOSE, 0, 0);
                    });
  });
  frmDWTOnline form(online.application());
  CHECK(form.RunOnline(false, nullptr) == 1);
  CHECK(online.asked() == Lines{L"Stop"});
}

TEST_CASE("a browser that shows nothing for the success page leaves the window usable") {
  const HttpServer server = serverOfArchive();
  for (const wchar_t* success : {L"ftp://127.0.0.1/more.exe", L"http://127.0.0.1/more.zip"}) {
    OnlineWindow online;
    online.show([&] {
      online.page.isSlow = true;
      online.page.isBusy = true;
      online.page.follow(pageWithSuccess(server, success));
      CHECK_FALSE(isOn(online));
      // As the watch over the browser does it.
      SendMessageW(online.dialog, WM_TIMER, 2, 0);
      CHECK_FALSE(isOn(online));
      online.page.isBusy = false;
      CHECK(pumpUntil([&] { return isOn(online); }));
      CHECK(online.open());
    });
  }
}

TEST_CASE("a browser that refuses the success page leaves the window usable") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  online.show([&] {
    online.page.refusesAll = true;
    online.page.follow(pageWithSuccess(server, L"http://127.0.0.1/done.htm"));
    CHECK(online.page.navigations().back() == L"http://127.0.0.1/done.htm");
    CHECK(isOn(online));
    CHECK(online.open());
    CHECK(online.log.hasLineWith(L"ERROR in procedure wbDWTOnline_BeforeNavigate2"));
  });
}

TEST_CASE("without timers the window is usable after a download") {
  const HttpServer server = serverOfArchive();
  const ImportPatch none(nullptr, "user32.dll", "SetTimer", noTimer);
  for (const wchar_t* success : {L"", L"&success=http://127.0.0.1/done.htm"}) {
    OnlineWindow online;
    const short reason = online.show([&] {
      online.page.isSlow = true;
      online.page.isBusy = true;
      online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip") + success));
      CHECK(isOn(online));
      CHECK(online.open());
    });
    CHECK(reason == 1);
  }
}

// Addresses of the download page that the system's function does not take apart

TEST_CASE("a download page with a query that is too long is not shown by the browser") {
  OnlineWindow online;
  online.show([&] {
    const std::wstring query = L"?dwt1=http://127.0.0.1/" + std::wstring(1100, L'x');
    CHECK_FALSE(online.page.follow(downloadPage(query)));
    CHECK(online.open());
  });
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text == L"Could not extract download information.");
}

TEST_CASE("a download page with letters of another alphabet is not shown by the browser") {
  OnlineWindow online;
  online.show([&] {
    CHECK_FALSE(online.clickLink(L"http://127.0.0.1/\u4E2D/DWTONLINEDOWNLOAD.htm?dwt1=a"));
    CHECK_FALSE(online.clickLink(L"http://127.0.0.1/DWTOnlineDownload.htm\u4E2D#dwt1=a"));
    CHECK(online.page.follow(L"http://127.0.0.1/\u4E2D/other.htm?/DWTOnlineDownload.htm"));
    CHECK(online.page.follow(L"http://DWTOnlineDownload.htm?\u4E2D"));
    CHECK(online.page.follow(L"http://127.0.0.1/other.htm?" + std::wstring(1100, L'x')));
  });
  CHECK(online.driver.boxes().size() == 2);
}

TEST_CASE("a query with letters of another alphabet keeps its other parts") {
  const HttpServer server = serverOfArchive();
  OnlineWindow online;
  online.saveIn(online.disk.makeFolder(L"new"));
  online.show([&] {
    CHECK_FALSE(online.page.follow(
        downloadPage(L"?name=\u4E2D&dwt1=" + server.url(L"/d.zip") + L"&success=about:blank")));
  });
  CHECK(online.disk.readFile(L"new\\home.dwt") == "a page");
  CHECK(online.page.navigations() == Lines{startPage, L"about:blank"});
}
