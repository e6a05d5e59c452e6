#include "tests/torture/TaskMemory.h"

#include <windows.h>

#include <objidl.h>

#include <stdexcept>

namespace {

LONG held = 0;

// Lives as long as the process.
class Spy : public IMallocSpy {
 public:
  HRESULT __stdcall QueryInterface(REFIID asked, void** object) override {
    const bool isKnown = asked == IID_IUnknown || asked == IID_IMallocSpy;
    *object = isKnown ? this : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  ULONG __stdcall AddRef() override { return 2; }
  ULONG __stdcall Release() override { return 1; }

  SIZE_T __stdcall PreAlloc(SIZE_T size) override { return size; }
  void* __stdcall PostAlloc(void* block) override {
    if (block) InterlockedIncrement(&held);
    return block;
  }
  void* __stdcall PreFree(void* block, BOOL isCounted) override {
    if (block && isCounted) InterlockedDecrement(&held);
    return block;
  }
  void __stdcall PostFree(BOOL) override {}
  SIZE_T __stdcall PreRealloc(void* block, SIZE_T size, void** passed, BOOL isCounted) override {
    if (!block) InterlockedIncrement(&held);
    if (block && size == 0 && isCounted) InterlockedDecrement(&held);
    *passed = block;
    return size;
  }
  void* __stdcall PostRealloc(void* block, BOOL) override { return block; }
  void* __stdcall PreGetSize(void* block, BOOL) override { return block; }
  SIZE_T __stdcall PostGetSize(SIZE_T size, BOOL) override { return size; }
  void* __stdcall PreDidAlloc(void* block, BOOL) override { return block; }
  int __stdcall PostDidAlloc(void*, BOOL, int isOurs) override { return isOurs; }
  void __stdcall PreHeapMinimize() override {}
  void __stdcall PostHeapMinimize() override {}
};

// Else strings that are given back are kept for the next ones.
void withoutCacheOfStrings() {
  const HMODULE library = GetModuleHandleW(L"oleaut32.dll");
  const auto switchOff = reinterpret_cast<void(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(library, "SetOaNoCache")));
  if (!switchOff) throw std::runtime_error("the cache of strings cannot be switched off");
  switchOff();
}

}  // namespace

void TaskMemory::count() {
  static Spy spy;
  static const HRESULT registered = [] {
    withoutCacheOfStrings();
    return CoRegisterMallocSpy(&spy);
  }();
  if (FAILED(registered)) throw std::runtime_error("the memory of COM cannot be counted");
}

long TaskMemory::blocks() noexcept { return held; }
