// What the online catalogue's window shows after a download: pages of the network, nothing else.
#include "tests/online/OnlineWindow.h"

namespace {

// The page that downloads the server's archive and asks for `success` afterwards.
std::wstring pageWithSuccess(const HttpServer& server, const std::wstring& success) {
  return downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=" + success);
}

// All but plain addresses of the network.
const Lines& refusedAddresses() {
  static const Lines addresses = {
      L"javascript:alert(1)",
      L"JavaScript:alert(1)",
      L"vbscript:x",
      L"file:///C:/windows/win.ini",
      L"file://server/share/x.htm",
      L"res://mshtml.dll/blank.htm",
      L"shell:startup",
      L"mk:@MSITStore:x.chm::/x.htm",
      L"ms-its:x.chm::/x.htm",
      L"data:text/html,x",
      L"mailto:someone@127.0.0.1",
      L"view-source:http://127.0.0.1/done.htm",
      L"about:home",
      L"about:blank/..",
      L"about:<script>x</script>",
      L"C:\\windows\\win.ini",
      L"\\\\server\\share\\x.htm",
      L"//server/x.htm",
      L"/done.htm",
      L"done.htm",
      L"127.0.0.1/done.htm",
      L"?done",
      L"http:",
      L"http:done.htm",
      L"http:/127.0.0.1/done.htm",
      L"http://",
      L"http:///C:/x.htm",
      L"http:\\\\127.0.0.1\\done.htm",
      L"https//127.0.0.1/done.htm",
      L"httpx://127.0.0.1/done.htm",
      L"%68ttp://127.0.0.1/done.htm",
      L"java%73cript:alert(1)",
      L"\tjavascript:alert(1)",
      L"java\tscript:alert(1)",
      L"\x01javascript:alert(1)",
      L"\thttp://127.0.0.1/done.htm",
      L"ht\ntp://127.0.0.1/done.htm",
      L"http://127.0.0.1/do\rne.htm",
      L"http://127.0.0.1/done.htm\x7F",
      L"",
  };
  return addresses;
}

}  // namespace

TEST_CASE("a success page that is none of the network's is logged and the window closes") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  online.show([&] {
    for (const std::wstring& success : refusedAddresses()) {
      CAPTURE(success);
      online.driver.answer(IDYES);  // to the staged file of the one before
      const auto before = timer.intervals().size();
      CHECK_FALSE(online.page.follow(pageWithSuccess(server, success)));
      REQUIRE(timer.intervals().size() == before + 1);
      CHECK(timer.intervals().back() == 500);
      CHECK(online.log.has(L"The page for a completed download is not shown : " + success));
    }
    timer.tick(online.dialog);
    CHECK(online.open());
    timer.tick(online.dialog);
    CHECK_FALSE(online.open());
  });
  CHECK(online.page.navigations() == Lines{startPage});
}

TEST_CASE("a frame's success page that is none of the network's is not shown either") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  const short reason = online.show([&] {
    CHECK_FALSE(online.page.followInFrame(pageWithSuccess(server, L"file:///C:/windows/win.ini")));
    CHECK(timer.intervals() == Intervals{500});
  });
  CHECK(reason == 1);
  CHECK(online.page.navigations() == Lines{startPage});
}

TEST_CASE("a success page of the network is shown as it is written") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  for (const wchar_t* success :
       {L"http://127.0.0.1/done.htm", L"HTTPS://127.0.0.1/done.htm?a=b", L"ftp://127.0.0.1/x",
        L"http://[::1]/done.htm", L"about:blank", L"About:Blank"}) {
    CAPTURE(std::wstring(success));
    OnlineWindow online;
    online.show([&] {
      online.page.isSlow = true;
      CHECK_FALSE(online.page.follow(pageWithSuccess(server, success)));
      CHECK(online.page.navigations() == Lines{startPage, success});
    });
  }
  for (const UINT interval : timer.intervals()) CHECK(interval != 500);
}

TEST_CASE("only the first success part of a query counts although it is not shown") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  const UnloadTimer timer;
  OnlineWindow online;
  online.show([&] {
    online.page.follow(pageWithSuccess(server, L"javascript:x&success=http://127.0.0.1/done.htm"));
  });
  CHECK(online.page.navigations() == Lines{startPage});
  CHECK(timer.intervals() == Intervals{500});
}
