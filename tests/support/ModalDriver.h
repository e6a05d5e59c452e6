// Drives modal dialogs and message boxes of this thread from inside the test, without waiting for
// time to pass: each one is met when the system activates it.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

// A message box as the user saw it.
struct ShownBox {
  std::wstring title;
  std::wstring text;
  UINT icon = 0;  // MB_ICONHAND, MB_ICONQUESTION, MB_ICONEXCLAMATION, MB_ICONASTERISK or 0
  std::vector<std::wstring> buttons;  // captions without "&"
  HWND owner = nullptr;
};

class ModalDriver {
 public:
  ModalDriver();
  ~ModalDriver();
  ModalDriver(const ModalDriver&) = delete;
  ModalDriver& operator=(const ModalDriver&) = delete;

  // The next message box is answered with this button (IDOK, IDYES, IDNO, IDCANCEL). Boxes nobody
  // expected are recorded too and closed with their last button.
  void answer(int button) { answers_.push_back(button); }
  // Answers those boxes that nobody expected.
  void answerOthers(std::function<int(const ShownBox&)> choose) { choose_ = std::move(choose); }

  // `script` runs once, inside the dialog's own loop, when the next dialog with this caption is
  // there. Scripts with the same caption are used in the order in which they were given.
  void onDialog(std::wstring caption, std::function<void(HWND)> script);

  const std::vector<ShownBox>& boxes() const noexcept { return boxes_; }
  // Captions of the dialogs met so far, in order, whether scripted or not.
  const std::vector<std::wstring>& dialogs() const noexcept { return dialogs_; }

 private:
  static LRESULT CALLBACK hookProcedure(int code, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM);
  void meet(HWND dialog);
  void meetBox(HWND box);

  HHOOK hook_ = nullptr;
  HWND window_ = nullptr;
  std::deque<int> answers_;
  std::function<int(const ShownBox&)> choose_;
  std::deque<std::pair<std::wstring, std::function<void(HWND)>>> scripts_;
  std::set<HWND> met_;
  std::vector<ShownBox> boxes_;
  std::vector<std::wstring> dialogs_;
};

// Handles this thread's messages until `condition` holds; false after `milliseconds`.
bool pumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 10000);

// As the user does it: by the control's own messages.
void press(HWND dialog, int button);
std::wstring windowText(HWND window);
std::wstring windowText(HWND dialog, int control);
bool isEnabled(HWND dialog, int control);
// What the tool tip of the control says now; empty when it has none.
std::wstring toolTip(HWND dialog, int control);
