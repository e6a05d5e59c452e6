// What scripts find in windows of other programs' making.
#include <windows.h>
#include <commctrl.h>

#include "host/script/desktop.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

using namespace standin;

namespace {

// A window with a tool bar behind a label, and a progress bar.
struct Tools {
  Tools() {
    const INITCOMMONCONTROLSEX wanted = {sizeof wanted, ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&wanted);
    window = CreateWindowW(L"#32770", L"Tools", WS_POPUP | WS_VISIBLE, 0, 0, 400, 200, nullptr,
                           nullptr, nullptr, nullptr);
    child(L"Static", L"&Save in:", 0);
    bar = child(TOOLBARCLASSNAMEW, L"", CCS_NORESIZE | CCS_NODIVIDER);
    SendMessageW(bar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    progress = child(PROGRESS_CLASSW, L"", 0);
    SetWindowLongPtrW(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
    pressed = 0;
  }
  ~Tools() { DestroyWindow(window); }

  HWND child(const wchar_t* className, const wchar_t* text, DWORD style) const {
    return CreateWindowW(className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 300, 40, window,
                         nullptr, nullptr, nullptr);
  }
  void add(int command, const wchar_t* text, BYTE state) const {
    TBBUTTON button = {};
    button.iBitmap = I_IMAGENONE;
    button.idCommand = command;
    button.fsState = state;
    button.iString = reinterpret_cast<INT_PTR>(text);
    SendMessageW(bar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
  }

  static INT_PTR CALLBACK procedure(HWND, UINT message, WPARAM wParam, LPARAM) noexcept {
    if (message == WM_COMMAND) pressed = LOWORD(wParam);
    return FALSE;
  }

  static inline int pressed = 0;
  HWND window = nullptr;
  HWND bar = nullptr;
  HWND progress = nullptr;
};

}  // namespace

TEST_CASE("a tool bar's button is found by its text and pressed") {
  const Tools tools;
  tools.add(100, L"Back", TBSTATE_ENABLED);
  tools.add(101, L"Next", TBSTATE_ENABLED);
  const desktop::Spot spot = desktop::toolButton(tools.window, L"Next");
  REQUIRE(spot.child == tools.bar);
  desktop::click(spot);
  CHECK(pumpUntil([] { return Tools::pressed == 101; }));
}

TEST_CASE("a tool bar's disabled button is not found") {
  const Tools tools;
  tools.add(100, L"Back", 0);
  CHECK_FALSE(desktop::toolButton(tools.window, L"Back").child);
  CHECK_FALSE(desktop::toolButton(tools.window, L"Next").child);
}

TEST_CASE("a tool bar is found by the label in front of it") {
  const Tools tools;
  tools.add(100, L"C:\\", TBSTATE_ENABLED);
  CHECK(desktop::firstToolButton(tools.window, L"Save in:").child == tools.bar);
  CHECK_FALSE(desktop::firstToolButton(tools.window, L"Load from:").child);
}

TEST_CASE("a progress bar is measured in per cent of its range") {
  const Tools tools;
  SendMessageW(tools.progress, PBM_SETRANGE32, 20, 60);
  SendMessageW(tools.progress, PBM_SETPOS, 30, 0);
  CHECK(desktop::progress(tools.window) == 25);
  DestroyWindow(tools.progress);
  CHECK(desktop::progress(tools.window) == -1);
}

TEST_CASE("a page's link is found in the window around it and nowhere else") {
  const Tools tools;
  CHECK_FALSE(desktop::link(tools.window, L"go on").child);
}
