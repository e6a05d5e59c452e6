#include "common/module.h"

namespace module {
namespace {

HINSTANCE ownInstance = nullptr;

}  // namespace

void setInstance(HINSTANCE instance) noexcept { ownInstance = instance; }

HINSTANCE instance() noexcept { return ownInstance ? ownInstance : GetModuleHandleW(nullptr); }

std::wstring path() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(instance(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::wstring folder() {
  const std::wstring file = path();
  return file.substr(0, file.rfind(L'\\') + 1);
}

}  // namespace module
