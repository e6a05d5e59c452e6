// The online catalogue's window under its user's hands: keys, size and destination.
#include <initializer_list>
#include <optional>

#include "tests/online/OnlineWindow.h"
#include "tests/support/HeldKeys.h"

namespace {

RECT placeOf(HWND control, HWND window) {
  RECT place;
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace

TEST_CASE("the right Alt key and P do not print") {
  OnlineWindow online;
  std::optional<HeldKeys> held;
  online.show([&] {
    online.page.clear();
    held.emplace(std::initializer_list<int>{VK_CONTROL, VK_MENU});
    online.type(WM_KEYDOWN, 'P');
  });
  CHECK(online.asked() == Lines{});
}

TEST_CASE("the window's parts follow its size") {
  OnlineWindow online;
  online.show([&] {
    const RECT bar = placeOf(online.control(IDC_ONLINE_TOOLBAR), online.dialog);
    const RECT box = placeOf(online.control(IDC_ONLINE_DESTINATION), online.dialog);
    const RECT page = placeOf(online.control(IDC_ONLINE_BROWSER), online.dialog);
    const RECT label = placeOf(online.control(IDC_ONLINE_SAVEIN), online.dialog);
    RECT window;
    GetWindowRect(online.dialog, &window);
    SetWindowPos(online.dialog, nullptr, 0, 0, window.right - window.left + 40,
                 window.bottom - window.top + 30, SWP_NOMOVE | SWP_NOZORDER);
    const auto grown = [&](int id, const RECT& before, int wider, int taller) {
      const RECT now = placeOf(online.control(id), online.dialog);
      CHECK(now.left == before.left);
      CHECK(now.top == before.top);
      CHECK(now.right == before.right + wider);
      CHECK(now.bottom == before.bottom + taller);
    };
    grown(IDC_ONLINE_TOOLBAR, bar, 40, 0);
    grown(IDC_ONLINE_DESTINATION, box, 40, 0);
    grown(IDC_ONLINE_BROWSER, page, 40, 30);
    grown(IDC_ONLINE_SAVEIN, label, 0, 0);
    RECT button = {};
    SendMessageW(online.control(IDC_ONLINE_DESTINATION), TB_GETITEMRECT, 0,
                 reinterpret_cast<LPARAM>(&button));
    RECT client;
    GetClientRect(online.control(IDC_ONLINE_DESTINATION), &client);
    CHECK(button.right - button.left == client.right);
  });
}

TEST_CASE("themes for a destination of the machine's list go to the machine's themes") {
  const HttpServer server(
      {{"/t.zip", HttpServer::ok(ZipMaker().add("blue/x.inf", "a theme").bytes())}});
  OnlineWindow online;
  online.host().options().version = L"6.0";
  const std::wstring machine = online.disk.makeFolder(L"machine");
  const std::wstring user = online.disk.makeFolder(L"user");
  listForMachine(online.registry, machine);
  listForUser(online.registry, user);
  online.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Shared tools",
                            L"SharedFilesDir", online.disk.makeFolder(L"shared") + L"\\");
  online.disk.makeFolder(L"shared\\Themes11");
  const std::wstring page =
      downloadPage(L"?theme1=" + server.url(L"/t.zip") + L"&success=about:blank");
  online.show([&] {
    online.choose(0);
    online.page.follow(page);
    CHECK(online.disk.readFile(L"shared\\Themes11\\blue\\x.inf") == "a theme");
    CHECK_FALSE(online.disk.exists(L"data\\Microsoft\\Themes\\blue\\x.inf"));
    online.choose(2);
    online.driver.answer(IDYES);
    online.page.follow(page);
    CHECK(online.disk.readFile(L"data\\Microsoft\\Themes\\blue\\x.inf") == "a theme");
  });
}

TEST_CASE("the destination's tip tells its whole path") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  const std::wstring user = online.disk.makeFolder(L"user");
  listForUser(online.registry, user);
  online.show([&] {
    CHECK(toolTip(online.dialog, IDC_ONLINE_DESTINATION) == online.disk.path());
    online.choose(0);
    CHECK(toolTip(online.dialog, IDC_ONLINE_DESTINATION) == user);
  });
}
