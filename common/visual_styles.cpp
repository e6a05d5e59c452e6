#include "common/visual_styles.h"

#include <string>

#include "common/module.h"

namespace {

// The module's activation context, made at the first use and kept until the process ends: windows
// created under it refer to it for as long as they live.
HANDLE activationContext() noexcept {
  static const HANDLE context = []() -> HANDLE {
    std::wstring path;
    try {
      path = module::path();
    } catch (...) {  // Not run by tests: no memory.
      return INVALID_HANDLE_VALUE;
    }
    ACTCTXW request = {};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    request.lpSource = path.c_str();
    request.lpResourceName = MAKEINTRESOURCEW(2);
    request.hModule = module::instance();
    return CreateActCtxW(&request);
  }();
  return context;
}

}  // namespace

VisualStyles::VisualStyles() noexcept {
  const HANDLE context = activationContext();
  if (context == INVALID_HANDLE_VALUE || !ActivateActCtx(context, &cookie_)) cookie_ = 0;
}

VisualStyles::~VisualStyles() {
  if (cookie_) DeactivateActCtx(0, cookie_);
}

HostStyles::HostStyles() noexcept {
  if (!ActivateActCtx(nullptr, &cookie_)) cookie_ = 0;
}

HostStyles::~HostStyles() {
  if (cookie_) DeactivateActCtx(0, cookie_);
}
