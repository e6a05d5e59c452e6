// Pages that ask for a download again as soon as one was refused.
#include "tests/online/OnlineWindow.h"

namespace {

// Asks for nothing that could be downloaded, which is refused with one box.
const std::wstring nothing = downloadPage(L"?x");

constexpr wchar_t ignored[] =
    L"A page asks for a download again although one was refused. It is ignored until the user has "
    L"acted.";

// A message of the mouse or keyboard, as the window's own loop meets it.
void input(const OnlineWindow& online, UINT message, WPARAM key = 0, LPARAM details = 0) {
  PostMessageW(online.control(IDC_ONLINE_BROWSER), message, key, details);
  forms::yieldToMessages();
}

}  // namespace

TEST_CASE("a page that asks again as soon as its download was refused is shown one box") {
  OnlineWindow online;
  online.show([&] {
    for (int i = 0; i < 30; ++i) {
      CHECK_FALSE(online.page.follow(nothing));
      CHECK_FALSE(online.page.followInFrame(nothing));
    }
  });
  CHECK(online.driver.boxes().size() == 1);
  CHECK(online.log.has(ignored));
}

TEST_CASE("a page whose download was cancelled is not asked for anew by its frames") {
  HttpServer::Answer endless = HttpServer::raw(HttpServer::head(100000000));
  endless.endless = true;
  const HttpServer server({{"/d.zip", endless}});
  const std::wstring page = downloadPage(L"?dwt1=" + server.url(L"/d.zip"));
  OnlineWindow online;
  online.driver.onDialog(L"Downloading...", [](HWND dialog) { press(dialog, IDCANCEL); });
  online.show([&] {
    for (int i = 0; i < 3; ++i) CHECK_FALSE(online.page.followInFrame(page));
  });
  CHECK(online.driver.dialogs() == Lines{L"DWT Online", L"Downloading..."});
}

TEST_CASE("after a refused download the user's mouse and keys let a page ask again") {
  struct Act {
    UINT message;
    WPARAM key;
  };
  for (const Act act :
       {Act{WM_LBUTTONDOWN, 0}, Act{WM_LBUTTONDBLCLK, 0}, Act{WM_RBUTTONDOWN, 0},
        Act{WM_MBUTTONDOWN, 0}, Act{WM_KEYDOWN, VK_RETURN}, Act{WM_SYSKEYDOWN, 'D'}}) {
    CAPTURE(act.message);
    OnlineWindow online;
    online.show([&] {
      for (int i = 0; i < 3; ++i) {
        online.page.follow(nothing);
        online.page.follow(nothing);
        input(online, act.message, act.key);
      }
    });
    CHECK(online.driver.boxes().size() == 3);
  }
}

TEST_CASE("a button of the window lets a page ask again after a refused download") {
  OnlineWindow online;
  online.show([&] {
    online.page.follow(nothing);
    online.click(refresh);
    online.page.follow(nothing);
  });
  CHECK(online.driver.boxes().size() == 2);
}

TEST_CASE("a button lets a page ask again that is there before the button's work is done") {
  OnlineWindow online;
  online.page.onRefresh = [&] { online.page.follow(nothing); };
  online.show([&] {
    online.page.follow(nothing);
    online.click(refresh);
  });
  CHECK(online.driver.boxes().size() == 2);
}

TEST_CASE("a moving mouse or a key that is kept down is no act of the user") {
  constexpr LPARAM wasDown = 1 << 30;
  OnlineWindow online;
  online.show([&] {
    online.page.follow(nothing);
    input(online, WM_MOUSEMOVE);
    input(online, WM_LBUTTONUP);
    // Enter that has closed the message and is still held.
    input(online, WM_KEYDOWN, VK_RETURN, wasDown);
    input(online, WM_KEYUP, VK_RETURN, wasDown);
    online.page.follow(nothing);
  });
  CHECK(online.driver.boxes().size() == 1);
}

TEST_CASE("the next page may ask after a refused download and only the user lets it do so again") {
  OnlineWindow online;
  online.show([&] {
    for (int i = 0; i < 5; ++i) {
      online.page.follow(nothing);
      online.page.follow(nothing);
      online.page.follow(L"http://127.0.0.1/again.htm");
      CHECK(online.driver.boxes().size() == (i == 0 ? 1 : 2));
      online.page.completeLate(L"http://127.0.0.1/again.htm");
    }
    input(online, WM_LBUTTONDOWN);
    online.page.follow(nothing);
  });
  CHECK(online.driver.boxes().size() == 3);
}

TEST_CASE("a page that is complete only after its download was refused may not ask again") {
  OnlineWindow online;
  online.show([&] {
    online.page.follow(nothing);
    online.page.completeLate(startPage);
    online.page.follow(nothing);
    // Neither may one that another frame has gone on from.
    online.page.followInFrame(L"http://127.0.0.1/frame.htm");
    online.page.completeLate(startPage);
    online.page.follow(nothing);
  });
  CHECK(online.driver.boxes().size() == 1);
}

TEST_CASE("a download that was completed lets the next page ask at once") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const std::wstring good =
      downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=about:blank");
  OnlineWindow online;
  online.driver.answer(IDYES);
  online.show([&] {
    online.page.follow(good);
    online.page.follow(good);
  });
  CHECK(online.page.navigations() == Lines{startPage, L"about:blank", L"about:blank"});
}
