// The commands of a script that work the controls of a window, on a window with one of each.
#include <windows.h>

#include "common/handles.h"
#include "host/model/Host.h"
#include "host/script/ScriptRunner.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

using standin::Host;

namespace {

constexpr int nameEdit = 101;
constexpr int colourCombo = 102;
constexpr int sizeList = 103;
constexpr int boldCheck = 104;
constexpr int stubbornCheck = 105;
constexpr int okButton = 106;

// Counts what its controls and the commands tell it.
class Controls {
 public:
  Controls() {
    WNDCLASSW type = {};
    type.lpfnWndProc = procedure;
    type.hInstance = GetModuleHandleW(nullptr);
    type.lpszClassName = L"Script controls";
    RegisterClassW(&type);
    window_ = CreateWindowW(type.lpszClassName, L"Controls", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                            400, 300, nullptr, nullptr, type.hInstance, this);
    add(L"Static", L"&Name:", 0, 0);
    add(L"Edit", L"before", 0, nameEdit);
    const HWND combo = add(L"ComboBox", L"", CBS_DROPDOWNLIST, colourCombo);
    for (const auto* colour : {L"Red", L"Green", L"Greenish"})
      SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(colour));
    const HWND list = add(L"ListBox", L"", LBS_NOTIFY, sizeList);
    for (const auto* size : {L"Small", L"Large"})
      SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(size));
    add(L"Button", L"&Bold", BS_AUTOCHECKBOX, boldCheck);
    add(L"Button", L"&Stubborn", BS_CHECKBOX, stubbornCheck);
    EnableWindow(add(L"Button", L"&OK", BS_PUSHBUTTON, okButton), FALSE);
  }
  ~Controls() {
    DestroyWindow(window_);
    UnregisterClassW(L"Script controls", GetModuleHandleW(nullptr));
  }
  Controls(const Controls&) = delete;
  Controls& operator=(const Controls&) = delete;

  HWND control(int id) const { return GetDlgItem(window_, id); }
  std::wstring text(int id) const { return windowText(window_, id); }
  bool checked(int id) const { return SendMessageW(control(id), BM_GETCHECK, 0, 0) != 0; }

  // The last command, with its notification; what it came from when it was a control.
  WPARAM command = 0;
  int clicks = 0;
  int closings = 0;

 private:
  HWND add(const wchar_t* type, const wchar_t* text, DWORD style, int id) const {
    return CreateWindowW(type, text, WS_CHILD | WS_VISIBLE | style, 0, id * 10 - 1000, 200, 100,
                         window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                         GetModuleHandleW(nullptr), nullptr);
  }

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE)
      SetWindowLongPtrW(
          window, GWLP_USERDATA,
          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    auto* self = reinterpret_cast<Controls*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_COMMAND) {
      self->command = wParam;
      if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) == boldCheck) ++self->clicks;
      return 0;
    }
    if (message == WM_CLOSE) {
      ++self->closings;
      return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  HWND window_ = nullptr;
};

// One line, run as the program runs it: on a thread of its own, while this one answers messages.
class ScriptThread {
 public:
  explicit ScriptThread(std::wstring line) : line_(std::move(line)) {
    thread_.reset(CreateThread(nullptr, 0, run, this, 0, nullptr));
  }
  ~ScriptThread() { finish(); }
  ScriptThread(const ScriptThread&) = delete;
  ScriptThread& operator=(const ScriptThread&) = delete;

  bool isRunning() const { return WaitForSingleObject(thread_.get(), 0) == WAIT_TIMEOUT; }
  // What went wrong; empty when nothing did.
  const std::wstring& finish() {
    pumpUntil([this] { return !isRunning(); }, 30000);
    return failure_;
  }

 private:
  static DWORD WINAPI run(void* task) {
    auto* self = static_cast<ScriptThread*>(task);
    try {
      standin::ScriptRunner runner(nullptr, {}, self->host_.sharedSession());
      runner.run(standin::parseScriptLine(L"timeout 3"));
      runner.run(standin::parseScriptLine(self->line_));
    } catch (const standin::ScriptError& error) {
      self->failure_ = error.text();
    }
    return 0;
  }

  Host host_;
  std::wstring line_;
  std::wstring failure_;
  handles::Kernel thread_;
};

std::wstring failureOf(const std::wstring& line) { return ScriptThread(line).finish(); }

}  // namespace

TEST_CASE("typing replaces the text of an edit box found by its label or its number") {
  const Controls controls;
  CHECK(failureOf(LR"(type "Controls" "Name:" "blue ""sky""")") == L"");
  CHECK(controls.text(nameEdit) == L"blue \"sky\"");
  CHECK(failureOf(L"type \"Controls\" 101 \"grey\"") == L"");
  CHECK(controls.text(nameEdit) == L"grey");
  CHECK(failureOf(LR"(type "Controls" "Address:" "x")") == L"there is no such control");
  CHECK(controls.text(nameEdit) == L"grey");
}

TEST_CASE("a disabled edit box is not typed over") {
  const Controls controls;
  EnableWindow(controls.control(nameEdit), FALSE);
  CHECK(failureOf(LR"(type "Controls" "Name:" "x")") == L"there is no such control");
  CHECK(controls.text(nameEdit) == L"before");
}

TEST_CASE("a check box is clicked only when it is not yet as it is wanted") {
  const Controls controls;
  CHECK(failureOf(LR"(check "Controls" "Bold" on)") == L"");
  CHECK(controls.checked(boldCheck));
  CHECK(failureOf(LR"(check "Controls" "Bold" on)") == L"");
  CHECK(controls.checked(boldCheck));
  CHECK(controls.clicks == 1);
  CHECK(failureOf(LR"(check "Controls" "Bold" off)") == L"");
  CHECK_FALSE(controls.checked(boldCheck));
  CHECK(controls.clicks == 2);
}

TEST_CASE("a check box that is missing or stays as it is and a wrong state are failures") {
  const Controls controls;
  CHECK(failureOf(LR"(check "Controls" "Italic" on)") == L"there is no such check box");
  CHECK(failureOf(LR"(check "Controls" "Stubborn" on)") == L"the check box does not change");
  CHECK(failureOf(LR"(check "Controls" "Bold" perhaps)") == L"the state is \"on\" or \"off\"");
  CHECK(controls.clicks == 0);
}

TEST_CASE("selecting a row of a combo box or a list box tells the window") {
  const Controls controls;
  CHECK(failureOf(LR"(select "Controls" "Green")") == L"");
  CHECK(controls.text(colourCombo) == L"Green");
  CHECK(pumpUntil([&] { return controls.command == MAKEWPARAM(colourCombo, CBN_SELCHANGE); }));
  CHECK(failureOf(LR"(select "Controls" "Large")") == L"");
  CHECK(SendMessageW(controls.control(sizeList), LB_GETCURSEL, 0, 0) == 1);
  CHECK(pumpUntil([&] { return controls.command == MAKEWPARAM(sizeList, LBN_SELCHANGE); }));
  CHECK(failureOf(LR"(select "Controls" "Blue")") == L"there is no such row");
}

TEST_CASE("a posted number reaches the window as a command of its menu") {
  const Controls controls;
  CHECK(failureOf(L"post \"Controls\" 2020") == L"");
  CHECK(pumpUntil([&] { return controls.command == 2020; }));
}

TEST_CASE("closing a window sends it what its title bar sends") {
  const Controls controls;
  CHECK(failureOf(L"close \"Controls\"") == L"");
  CHECK(pumpUntil([&] { return controls.closings == 1; }));
}

TEST_CASE("waiting for a button ends as soon as it can be pressed") {
  const Controls controls;
  ScriptThread waiting(LR"(wait enabled "Controls" "OK")");
  EnableWindow(controls.control(okButton), TRUE);
  CHECK(waiting.finish() == L"");
  EnableWindow(controls.control(okButton), FALSE);
  CHECK(failureOf(LR"(wait enabled "Controls" "OK")") == L"the button is not there or disabled");
}
