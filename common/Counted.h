// Reference counting for the module's COM objects.
#pragma once

#include <windows.h>

#include "common/lifetime.h"

namespace com {

// An object of these interfaces: born with one reference, gone with the last one, and as long as it
// lives the module stays loaded. Interlocked, for whoever hands it to another thread.
template <class... Interfaces>
class Counted : public Interfaces... {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() noexcept final {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
  }
  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 protected:
  Counted() noexcept = default;
  virtual ~Counted() = default;

 private:
  lifetime::ModuleReference moduleReference_;
  LONG references_ = 1;
};

}  // namespace com
