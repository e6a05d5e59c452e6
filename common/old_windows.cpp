// What the compiler's run-time would take from Windows Vista. From GCC 13 on it waits with
// condition variables for a local static that another thread is making, and asks a thread's handle
// for its id; a program with either import does not even load on Windows XP. This is linked into
// every program and is used by each compiler in place of its own.
//
// Should a later run-time change, it is noticed: other names for the guards bring the imports back,
// which the test of the module's imports reports; another shape does not compile, since the guards
// are declared by <cxxabi.h>; a further function in the same place of the run-time is a symbol
// defined twice.
#include <windows.h>
#include <cxxabi.h>

namespace {

// The compiler looks at the first byte only: other than 0 when the variable has been made. The
// second half is the run-time's own.
struct Guard {
  volatile LONG made;
  volatile LONG beingMade;
};
static_assert(sizeof(Guard) == sizeof(__cxxabiv1::__guard));

// NOLINTNEXTLINE(readability-non-const-parameter): what comes back is written to.
Guard& guardOf(__cxxabiv1::__guard* guard) { return *reinterpret_cast<Guard*>(guard); }

}  // namespace

namespace __cxxabiv1 {

// Whether the caller is to make the variable. Somebody else who is at it is waited for, without
// holding up a thread of lesser priority.
int __cxa_guard_acquire(__guard* guard) {
  Guard& state = guardOf(guard);
  while (InterlockedCompareExchange(&state.beingMade, 1, 0) != 0) Sleep(1);
  if (!state.made) return 1;
  InterlockedExchange(&state.beingMade, 0);
  return 0;
}

void __cxa_guard_release(__guard* guard) noexcept {
  InterlockedExchange(&guardOf(guard).made, 1);
  InterlockedExchange(&guardOf(guard).beingMade, 0);
}

// Making it threw: the next one tries anew.
void __cxa_guard_abort(__guard* guard) noexcept {
  InterlockedExchange(&guardOf(guard).beingMade, 0);
}

}  // namespace __cxxabiv1

// Behind the comparison of two thread handles, which nothing calls. The linker takes this pointer
// for the one that the system would fill in.
namespace {

// Not run by tests: nothing calls it.
DWORD WINAPI noThreadId(HANDLE) {
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return 0;
}

}  // namespace

extern "C" {
using ThreadIdOf = DWORD(WINAPI*)(HANDLE);
extern const ThreadIdOf importOfGetThreadId __asm__("__imp__GetThreadId@4");
const ThreadIdOf importOfGetThreadId = noThreadId;
}
