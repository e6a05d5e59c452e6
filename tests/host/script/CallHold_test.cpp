// What a script does to the calls of the host's model.
#include "host/script/CallHold.h"
#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

using standin::CallHold;
using standin::Host;

namespace {

// The script's side: waits for a held call, asks a window of the host's thread for its text and has
// it painted, and lets the call go on.
struct Script {
  explicit Script(CallHold& held) : hold(held) {
    window = CreateWindowW(L"Static", L"a window", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                           nullptr, nullptr, nullptr);
    UpdateWindow(window);
  }
  ~Script() {
    WaitForSingleObject(thread.get(), INFINITE);
    DestroyWindow(window);
  }

  void start() { thread.reset(CreateThread(nullptr, 0, run, this, 0, nullptr)); }

  static DWORD WINAPI run(void* self) {
    auto& script = *static_cast<Script*>(self);
    const DWORD began = GetTickCount();
    while (!script.hold.isCallWaiting() && GetTickCount() - began < 10000) Sleep(1);
    script.held = script.hold.isCallWaiting();
    PostMessageW(script.window, WM_CLOSE, 0, 0);
    InvalidateRect(script.window, nullptr, TRUE);
    while (GetUpdateRect(script.window, nullptr, FALSE) && GetTickCount() - began < 10000) Sleep(1);
    script.painted = !GetUpdateRect(script.window, nullptr, FALSE);
    script.text = windowText(script.window);
    script.hold.release();
    return 0;
  }

  CallHold& hold;
  HWND window = nullptr;
  handles::Kernel thread;
  bool held = false;
  bool painted = false;
  std::wstring text;
};

}  // namespace

TEST_CASE("a held call waits and lets windows paint and answer but no user in") {
  const Host host;
  CallHold hold(host.faults());
  hold.hold(L"Application.Name", 0);
  Script script(hold);
  script.start();
  CHECK(LateBound(host.application()).text(L"Name") == L"Microsoft FrontPage");
  WaitForSingleObject(script.thread.get(), INFINITE);
  CHECK(script.held);
  CHECK(script.painted);
  CHECK(script.text == L"a window");
  CHECK(IsWindow(script.window));
  CHECK_FALSE(hold.isCallWaiting());
}

TEST_CASE("calls before the held one and other members are let through") {
  const Host host;
  CallHold hold(host.faults());
  hold.hold(L"Application.Name", 2);
  const LateBound application(host.application());
  CHECK(application.text(L"Name") == L"Microsoft FrontPage");
  CHECK(application.text(L"Version") == L"11.0.5510");
  CHECK(application.text(L"Name") == L"Microsoft FrontPage");
  CHECK_FALSE(hold.isCallWaiting());
  Script script(hold);
  script.start();
  CHECK(application.text(L"Name") == L"Microsoft FrontPage");
  WaitForSingleObject(script.thread.get(), INFINITE);
  CHECK(script.held);
}

TEST_CASE("a released member is not held again") {
  const Host host;
  CallHold hold(host.faults());
  hold.hold(L"Application.Name", 0);
  hold.release();
  CHECK(LateBound(host.application()).text(L"Name") == L"Microsoft FrontPage");
}

TEST_CASE("only a member that there is can be held") {
  const Host host;
  CallHold hold(host.faults());
  CHECK_THROWS_AS(hold.hold(L"Application.Fly", 0), std::invalid_argument);
}
