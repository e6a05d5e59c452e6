#include "common/log.h"

#include <windows.h>

#include <algorithm>
#include <limits>

#include "common/ansi.h"
#include "common/text.h"

namespace modCommon {
namespace {

// Both numbers are 16-bit ones.
struct LogState {
  short flag = 0;
  short indent = 0;
  std::wstring_view prefix = L"DWT-";  // names the log; on purpose no line carries it
};

LogState state;

constexpr int highest = std::numeric_limits<short>::max();

void appendTwoDigits(std::wstring& line, WORD number) {
  line += static_cast<wchar_t>(L'0' + number / 10);
  line += static_cast<wchar_t>(L'0' + number % 10);
}

std::wstring timeOfDay() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  std::wstring time;
  appendTwoDigits(time, now.wHour);
  time += L':';
  appendTwoDigits(time, now.wMinute);
  time += L':';
  appendTwoDigits(time, now.wSecond);
  return time;
}

}  // namespace

void SetLogIndent(int level) { state.indent = static_cast<short>(std::clamp(level, 0, highest)); }

void LogIndent(bool deeper) { SetLogIndent(state.indent + (deeper ? 2 : -2)); }

void WriteLog(std::wstring_view message) noexcept {
  if (state.flag != 1) return;
  try {
    std::wstring line = timeOfDay();
    line.append(static_cast<std::size_t>(state.indent) + 1, L' ').append(message);
    OutputDebugStringA(text::toAnsi(line).c_str());
  } catch (...) {
    // A line that cannot be made is left out.
  }
}

void WriteLog(std::initializer_list<std::wstring_view> parts) noexcept {
  if (state.flag != 1) return;
  try {
    WriteLog(text::join(parts));
  } catch (...) {  // Not run by tests: no memory.
    // A line that cannot be made is left out.
  }
}

int loggingFlag() noexcept { return state.flag; }

void setLoggingFlag(int flag) noexcept { state.flag = static_cast<short>(flag); }

}  // namespace modCommon
