#include "help/SingleInstance.h"

#include "common/errors.h"
#include "common/module.h"

namespace help {
namespace {

constexpr wchar_t className[] = L"KorvelHelpReceiver";
constexpr ULONG_PTR commandLineMark = 0x51484C50;
constexpr DWORD longestCommandLine = 32768;  // characters, as the system's own
constexpr UINT patience = 5000;              // milliseconds

}  // namespace

SingleInstance::SingleInstance(std::function<void(const std::wstring&)> onCommandLine)
    : class_(className, windowProcedure), onCommandLine_(std::move(onCommandLine)) {
  window_ = CreateWindowExW(0, className, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            module::instance(), nullptr);
  if (!window_) throw errors::fromLastError();
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

SingleInstance::~SingleInstance() { DestroyWindow(window_); }

bool SingleInstance::handOver(const std::wstring& commandLine) noexcept {
  const HWND window = FindWindowExW(HWND_MESSAGE, nullptr, className, nullptr);
  if (!window) return false;
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  AllowSetForegroundWindow(process);
  COPYDATASTRUCT data = {};
  data.dwData = commandLineMark;
  data.cbData = static_cast<DWORD>(commandLine.size() * sizeof(wchar_t));
  data.lpData = const_cast<wchar_t*>(commandLine.data());
  DWORD_PTR taken = FALSE;
  return SendMessageTimeoutW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data),
                             SMTO_ABORTIFHUNG, patience, &taken) &&
         taken == TRUE;
}

LRESULT CALLBACK SingleInstance::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam) noexcept {
  auto* self = reinterpret_cast<SingleInstance*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self || message != WM_COPYDATA) return DefWindowProcW(window, message, wParam, lParam);
  const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  if (data->dwData != commandLineMark || data->cbData > longestCommandLine * sizeof(wchar_t))
    return FALSE;
  try {
    self->onCommandLine_(
        {static_cast<const wchar_t*>(data->lpData), data->cbData / sizeof(wchar_t)});
    return TRUE;
  } catch (...) {
    return FALSE;
  }
}

}  // namespace help
