#include "tests/torture/ClipboardLooks.h"

#include <psapi.h>

namespace torture {
namespace {

using Look = HANDLE WINAPI(UINT format);

long looks = 0;
Look* lookOfModule = nullptr;
Look* lookOfProgram = nullptr;

HANDLE WINAPI lookFromModule(UINT format) {
  ++looks;
  return lookOfModule(format);
}

HANDLE WINAPI lookFromProgram(UINT format) {
  ++looks;
  return lookOfProgram(format);
}

template <class Function>
auto* untyped(Function* function) {
  return reinterpret_cast<void (*)()>(function);
}

}  // namespace

SIZE_T memoryOfProcess() {
  PROCESS_MEMORY_COUNTERS counters = {};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

ClipboardLooks::ClipboardLooks(HMODULE module)
    : module_(module, "user32.dll", "GetClipboardData", untyped(lookFromModule)),
      program_(GetModuleHandleW(nullptr), "user32.dll", "GetClipboardData",
               untyped(lookFromProgram)) {
  looks = 0;
  lookOfModule = module_.original<Look>();
  lookOfProgram = program_.original<Look>();
}

ClipboardLooks::~ClipboardLooks() = default;

void ClipboardLooks::measure() {
  constexpr SIZE_T times = 512;
  if (!OpenClipboard(nullptr)) return;
  GetClipboardData(CF_UNICODETEXT);
  const SIZE_T before = memoryOfProcess();
  for (SIZE_T time = 0; time < times; ++time) GetClipboardData(CF_UNICODETEXT);
  const SIZE_T after = memoryOfProcess();
  CloseClipboard();
  lostByOne_ = after > before ? (after - before) / times : 0;
  looks = 0;
}

long ClipboardLooks::count() const noexcept { return looks; }

}  // namespace torture
