// Owning types for the system's handles: move-only, closed by their destructor. A raw handle is
// only ever a borrowed argument.
#pragma once

#include <windows.h>

#include <utility>

namespace handles {

// How many owned handles are open in this process. Tests hold it against leaks.
long& liveCount() noexcept;

// `Traits` names the raw `type`, its `none` value and how to `close` it.
template <class Traits>
class Unique {
 public:
  using type = typename Traits::type;

  Unique() noexcept = default;
  explicit Unique(type handle) noexcept { reset(handle); }
  Unique(Unique&& other) noexcept : handle_(std::exchange(other.handle_, Traits::none())) {}
  Unique& operator=(Unique&& other) noexcept {
    if (this != &other) {
      reset();
      handle_ = std::exchange(other.handle_, Traits::none());
    }
    return *this;
  }
  Unique(const Unique&) = delete;
  Unique& operator=(const Unique&) = delete;
  ~Unique() { reset(); }

  type get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != Traits::none(); }

  // Takes ownership of `handle` after closing what was held.
  void reset(type handle = Traits::none()) noexcept {
    if (handle_ != Traits::none()) {
      Traits::close(handle_);
      --liveCount();
    }
    handle_ = handle;
    if (handle_ != Traits::none()) ++liveCount();
  }

  // Hands ownership to the caller.
  [[nodiscard]] type release() noexcept {
    if (handle_ != Traits::none()) --liveCount();
    return std::exchange(handle_, Traits::none());
  }

 private:
  type handle_ = Traits::none();
};

struct KernelTraits {
  using type = HANDLE;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { CloseHandle(handle); }
};
struct FileTraits {
  using type = HANDLE;
  static type none() noexcept { return INVALID_HANDLE_VALUE; }
  static void close(type handle) noexcept { CloseHandle(handle); }
};
struct FindTraits {
  using type = HANDLE;
  static type none() noexcept { return INVALID_HANDLE_VALUE; }
  static void close(type handle) noexcept { FindClose(handle); }
};
struct RegistryTraits {
  using type = HKEY;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { RegCloseKey(handle); }
};
struct GdiTraits {
  using type = HGDIOBJ;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { DeleteObject(handle); }
};
struct DeviceContextTraits {
  using type = HDC;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { DeleteDC(handle); }
};
struct IconTraits {
  using type = HICON;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { DestroyIcon(handle); }
};
struct GlobalTraits {
  using type = HGLOBAL;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { GlobalFree(handle); }
};

using Kernel = Unique<KernelTraits>;
using File = Unique<FileTraits>;
using Find = Unique<FindTraits>;
using Registry = Unique<RegistryTraits>;
using Gdi = Unique<GdiTraits>;  // bitmaps, fonts, brushes, palettes
using DeviceContext = Unique<DeviceContextTraits>;
using Icon = Unique<IconTraits>;
using Global = Unique<GlobalTraits>;

// The device context of a window, borrowed for a moment; without a window that of the screen.
class WindowContext {
 public:
  explicit WindowContext(HWND window) noexcept : window_(window), context_(GetDC(window)) {}
  ~WindowContext() { ReleaseDC(window_, context_); }
  WindowContext(const WindowContext&) = delete;
  WindowContext& operator=(const WindowContext&) = delete;
  HDC get() const noexcept { return context_; }

 private:
  HWND window_;
  HDC context_;
};

class ScreenContext : public WindowContext {
 public:
  ScreenContext() noexcept : WindowContext(nullptr) {}
};

}  // namespace handles
