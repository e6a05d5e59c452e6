#include "tests/support/DebugOutput.h"

#include <windows.h>

#include <algorithm>

#include "common/ansi.h"

namespace {

DebugOutput* listener = nullptr;

// The system's debug output raises this exception for a debugger before it turns to debug viewers.
constexpr DWORD printException = 0x40010006;

}  // namespace

struct DebugOutputHook {
  static LONG CALLBACK onException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode != printException || !listener) return EXCEPTION_CONTINUE_SEARCH;
    listener->lines_.push_back(
        text::fromAnsi(reinterpret_cast<const char*>(record.ExceptionInformation[1])));
    return EXCEPTION_CONTINUE_EXECUTION;
  }
};

DebugOutput::DebugOutput() {
  listener = this;
  hook_ = AddVectoredExceptionHandler(1, DebugOutputHook::onException);
}

DebugOutput::~DebugOutput() {
  RemoveVectoredExceptionHandler(hook_);
  listener = nullptr;
}

std::vector<std::wstring> DebugOutput::messages() const {
  std::vector<std::wstring> result;
  for (const auto& line : lines_) result.push_back(line.size() > 9 ? line.substr(9) : L"");
  return result;
}

bool DebugOutput::has(const std::wstring& message) const {
  return std::any_of(lines_.begin(), lines_.end(), [&](const std::wstring& line) {
    const auto start = line.find_first_not_of(L' ', 8);
    return start != line.npos && line.substr(start) == message;
  });
}

bool DebugOutput::hasLineWith(const std::wstring& part) const {
  return std::any_of(lines_.begin(), lines_.end(),
                     [&](const std::wstring& line) { return line.find(part) != line.npos; });
}
