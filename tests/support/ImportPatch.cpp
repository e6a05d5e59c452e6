#include "tests/support/ImportPatch.h"

#include <stdexcept>
#include <string>

namespace {

template <class Type>
Type* at(HMODULE module, DWORD offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<BYTE*>(module) + offset);
}

void write(void** slot, void* value) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
  *slot = value;
  VirtualProtect(slot, sizeof *slot, protection, &protection);
}

void collect(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& library, const std::string& function,
             std::vector<void**>& slots) {
  if (!library.OriginalFirstThunk) return;
  auto name = at<IMAGE_THUNK_DATA>(module, library.OriginalFirstThunk);
  auto slot = at<void*>(module, library.FirstThunk);
  for (; name->u1.AddressOfData; ++name, ++slot) {
    if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
    const auto* entry = at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
    if (function == reinterpret_cast<const char*>(entry->Name)) slots.push_back(slot);
  }
}

}  // namespace

void ImportPatch::apply(HMODULE module, const char* library, const char* function,
                        void* replacement) {
  if (!module) module = GetModuleHandleW(nullptr);
  const auto* dos = at<IMAGE_DOS_HEADER>(module, 0);
  const auto* headers = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
  const DWORD imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto* entry = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports); imports && entry->Name; ++entry)
    if (lstrcmpiA(at<char>(module, entry->Name), library) == 0)
      collect(module, *entry, function, slots_);
  if (slots_.empty())
    throw std::runtime_error(std::string("no import of ") + function + " from " + library);
  original_ = *slots_.front();
  for (void** slot : slots_) write(slot, replacement);
}

ImportPatch::~ImportPatch() {
  for (void** slot : slots_) write(slot, original_);
}
