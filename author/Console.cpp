#include "author/Console.h"

#include <algorithm>
#include <atomic>

namespace author {
namespace {

std::atomic<bool> interrupted = false;

// Closing the window leaves no time for an orderly end.
BOOL WINAPI onBreak(DWORD event) noexcept {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  interrupted = true;
  return TRUE;
}

// A console takes no more at once.
constexpr std::size_t piece = 8192;
constexpr std::size_t lineWidth = 78;
constexpr DWORD millisecondsBetweenSteps = 100;

}  // namespace

std::string toUtf8(std::wstring_view text) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  const int needed =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), needed, nullptr, nullptr);
  return bytes;
}

SystemConsole::SystemConsole() noexcept
    : out_(stream(STD_OUTPUT_HANDLE)), errors_(stream(STD_ERROR_HANDLE)) {
  SetConsoleCtrlHandler(onBreak, TRUE);
}

SystemConsole::~SystemConsole() {
  clearStep();
  SetConsoleCtrlHandler(onBreak, FALSE);
}

SystemConsole::Stream SystemConsole::stream(DWORD number) noexcept {
  const HANDLE handle = GetStdHandle(number);
  DWORD mode = 0;
  return {handle, GetConsoleMode(handle, &mode) != FALSE};
}

bool SystemConsole::write(const Stream& stream, std::wstring_view text) noexcept {
  if (!stream.isConsole) {
    const std::string bytes = toUtf8(text);
    for (std::size_t done = 0; done < bytes.size();) {
      DWORD written = 0;
      if (!WriteFile(stream.handle, bytes.data() + done, static_cast<DWORD>(bytes.size() - done),
                     &written, nullptr) ||
          written == 0)
        return false;
      done += written;
    }
    return true;
  }
  while (!text.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(text.size(), piece));
    if (!WriteConsoleW(stream.handle, text.data(), count, &written, nullptr)) return false;
    text.remove_prefix(count);
  }
  return true;
}

void SystemConsole::print(std::wstring_view text) {
  clearStep();
  if (!write(out_, text)) hasLost_ = true;
}

void SystemConsole::complain(std::wstring_view text) {
  clearStep();
  write(errors_, text);
}

// Written over by the next one; not so often that writing takes longer than the work.
void SystemConsole::show(const std::wstring& step) {
  if (!errors_.isConsole) return;
  const DWORD now = GetTickCount();
  if (stepLength_ > 0 && now - shownAt_ < millisecondsBetweenSteps) return;
  shownAt_ = now;
  std::wstring line = step.substr(0, lineWidth);
  const std::size_t length = line.size();
  if (length < stepLength_) line.append(stepLength_ - length, L' ');
  write(errors_, L"\r" + line);
  stepLength_ = length;
}

void SystemConsole::clearStep() {
  if (stepLength_ == 0) return;
  write(errors_, L"\r" + std::wstring(stepLength_, L' ') + L"\r");
  stepLength_ = 0;
}

bool SystemConsole::keepGoing() { return !interrupted; }

}  // namespace author
