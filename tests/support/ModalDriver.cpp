#include "tests/support/ModalDriver.h"

#include <commctrl.h>

#include <algorithm>

namespace {

ModalDriver* driver = nullptr;
constexpr UINT meetMessage = WM_APP + 7;

std::wstring className(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

template <class Visit>
void forEachChild(HWND parent, Visit visit) {
  for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
    visit(child);
}

UINT iconOf(HICON icon) {
  const std::pair<const wchar_t*, UINT> known[] = {{IDI_HAND, MB_ICONHAND},
                                                   {IDI_QUESTION, MB_ICONQUESTION},
                                                   {IDI_EXCLAMATION, MB_ICONEXCLAMATION},
                                                   {IDI_ASTERISK, MB_ICONASTERISK}};
  for (const auto& [name, flag] : known)
    if (icon == LoadIconW(nullptr, name)) return flag;
  return 0;
}

// The system's message box holds nothing but push buttons, one text and at most one icon.
bool isMessageBox(HWND dialog) {
  bool button = false;
  bool other = false;
  forEachChild(dialog, [&](HWND child) {
    const std::wstring name = className(child);
    const LONG style = GetWindowLongW(child, GWL_STYLE);
    if (!(style & WS_VISIBLE)) return;
    if (name == L"Button") {
      const int id = GetDlgCtrlID(child);
      button = true;
      if (id < IDOK || id > IDCONTINUE) other = true;
    } else if (name != L"Static") {
      other = true;
    }
  });
  return button && !other && !GetWindow(GetDlgItem(dialog, -1), GW_CHILD) &&
         GetWindowLongPtrW(dialog, DWLP_USER) == 0;
}

}  // namespace

ModalDriver::ModalDriver() {
  driver = this;
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = windowProcedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = L"QuilletModalDriver";
  RegisterClassW(&windowClass);
  window_ = CreateWindowW(windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                          windowClass.hInstance, nullptr);
  hook_ = SetWindowsHookExW(WH_CBT, hookProcedure, nullptr, GetCurrentThreadId());
}

ModalDriver::~ModalDriver() {
  UnhookWindowsHookEx(hook_);
  DestroyWindow(window_);
  driver = nullptr;
}

void ModalDriver::onDialog(std::wstring caption, std::function<void(HWND)> script) {
  scripts_.emplace_back(std::move(caption), std::move(script));
}

LRESULT CALLBACK ModalDriver::hookProcedure(int code, WPARAM wParam, LPARAM lParam) {
  const HWND window = reinterpret_cast<HWND>(wParam);
  if (driver && code == HCBT_ACTIVATE && className(window) == L"#32770" &&
      driver->met_.insert(window).second)
    PostMessageW(driver->window_, meetMessage, wParam, 0);
  if (driver && code == HCBT_DESTROYWND) driver->met_.erase(window);
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK ModalDriver::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                              LPARAM lParam) {
  if (message != meetMessage) return DefWindowProcW(window, message, wParam, lParam);
  const HWND dialog = reinterpret_cast<HWND>(wParam);
  if (driver && IsWindow(dialog)) {
    if (isMessageBox(dialog))
      driver->meetBox(dialog);
    else
      driver->meet(dialog);
  }
  return 0;
}

void ModalDriver::meetBox(HWND box) {
  ShownBox shown;
  shown.title = windowText(box);
  shown.owner = GetWindow(box, GW_OWNER);
  int last = IDCANCEL;
  forEachChild(box, [&](HWND child) {
    const LONG style = GetWindowLongW(child, GWL_STYLE);
    if (className(child) == L"Button") {
      if (!(style & WS_VISIBLE)) return;
      std::wstring caption = windowText(child);
      std::erase(caption, L'&');
      shown.buttons.push_back(caption);
      last = GetDlgCtrlID(child);
    } else if ((style & SS_TYPEMASK) == SS_ICON) {
      shown.icon = iconOf(reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0)));
    } else if (!windowText(child).empty()) {
      shown.text = windowText(child);
    }
  });
  boxes_.push_back(shown);
  int button = last;
  if (!answers_.empty()) {
    button = answers_.front();
    answers_.pop_front();
  } else if (choose_) {
    button = choose_(shown);
  }
  PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button),
               reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

void ModalDriver::meet(HWND dialog) {
  const std::wstring caption = windowText(dialog);
  dialogs_.push_back(caption);
  const auto script = std::find_if(scripts_.begin(), scripts_.end(),
                                   [&](const auto& entry) { return entry.first == caption; });
  if (script == scripts_.end()) return;
  const auto run = std::move(script->second);
  scripts_.erase(script);
  run(dialog);
}

bool pumpUntil(const std::function<bool()>& condition, DWORD milliseconds) {
  const DWORD start = GetTickCount();
  while (!condition()) {
    const DWORD passed = GetTickCount() - start;
    if (passed >= milliseconds) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, std::min<DWORD>(20, milliseconds - passed),
                              QS_ALLINPUT);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  return true;
}

void press(HWND dialog, int button) { SendMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0); }

std::wstring windowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1,
                    L'\0');
  text.resize(static_cast<std::size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

std::wstring windowText(HWND dialog, int control) {
  return windowText(GetDlgItem(dialog, control));
}

bool isEnabled(HWND dialog, int control) {
  return IsWindowEnabled(GetDlgItem(dialog, control)) != FALSE;
}

std::wstring toolTip(HWND dialog, int control) {
  HWND tips = nullptr;
  while ((tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
    if (GetWindow(tips, GW_OWNER) != dialog) continue;
    wchar_t buffer[1024] = {};
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.hwnd = dialog;
    tool.uId = reinterpret_cast<UINT_PTR>(GetDlgItem(dialog, control));
    tool.lpszText = buffer;
    SendMessageW(tips, TTM_GETTEXTW, 1024, reinterpret_cast<LPARAM>(&tool));
    if (buffer[0]) return buffer;
  }
  return {};
}
