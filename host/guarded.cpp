#include "host/guarded.h"

#include <windows.h>

#include <csetjmp>

namespace standin {
namespace {

std::jmp_buf* wayOut = nullptr;
DWORD guardedThread = 0;

// Runs in place of the faulting instruction, on its stack.
void leave() { std::longjmp(*wayOut, 1); }

LONG CALLBACK onUnhandled(EXCEPTION_POINTERS* exception) {
  if (!wayOut || GetCurrentThreadId() != guardedThread) return EXCEPTION_CONTINUE_SEARCH;
  CONTEXT& context = *exception->ContextRecord;
  context.Eip = reinterpret_cast<DWORD>(&leave);
  context.Esp = (context.Esp - 256) & ~static_cast<DWORD>(15);
  context.EFlags &= ~0x400u;  // string instructions count upward, as compiled code expects
  return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

bool guarded(const std::function<void()>& call) {
  std::jmp_buf here;
  std::jmp_buf* const outer = wayOut;
  const auto previous = SetUnhandledExceptionFilter(onUnhandled);
  guardedThread = GetCurrentThreadId();
  volatile bool well = false;
  if (setjmp(here) == 0) {
    wayOut = &here;
    try {
      call();
      well = true;
    } catch (...) {
    }
  }
  wayOut = outer;
  SetUnhandledExceptionFilter(previous);
  return well;
}

}  // namespace standin
