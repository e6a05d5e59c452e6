#include "common/module.h"

#include "common/text.h"

namespace module {
namespace {

HINSTANCE ownInstance = nullptr;

}  // namespace

void setInstance(HINSTANCE instance) noexcept { ownInstance = instance; }

HINSTANCE instance() noexcept { return ownInstance ? ownInstance : GetModuleHandleW(nullptr); }

std::wstring folder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(instance(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path.substr(0, path.rfind(L'\\') + 1);
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace module
