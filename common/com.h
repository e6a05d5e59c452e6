// Owning types for COM: interface pointers, strings and variants.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

namespace com {

// One reference to an interface.
template <class Interface>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  ComPtr(std::nullptr_t) noexcept {}
  explicit ComPtr(Interface* borrowed) noexcept : pointer_(borrowed) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) noexcept : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() { reset(); }

  // Takes over a reference that the caller owns.
  static ComPtr adopt(Interface* owned) noexcept {
    ComPtr result;
    result.pointer_ = owned;
    return result;
  }

  Interface* get() const noexcept { return pointer_; }
  Interface* operator->() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }

  // The pointer is cleared before the release, so that a call back during it finds nothing.
  void reset() noexcept {
    if (Interface* old = std::exchange(pointer_, nullptr)) old->Release();
  }

  // For out parameters; what was held is released first.
  Interface** put() noexcept {
    reset();
    return &pointer_;
  }

  [[nodiscard]] Interface* release() noexcept { return std::exchange(pointer_, nullptr); }

  // The same object's other interface; null when it has none. Nobody else asks the compiler for
  // an interface's identifier: not every compiler knows how.
  template <class Other>
  ComPtr<Other> as() const noexcept {
    ComPtr<Other> result;
    if (pointer_) pointer_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(result.put()));
    return result;
  }

 private:
  Interface* pointer_ = nullptr;
};

// One BSTR.
class Bstr {
 public:
  Bstr() noexcept = default;
  explicit Bstr(std::wstring_view value);
  Bstr(Bstr&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
  Bstr& operator=(Bstr other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  Bstr(const Bstr&) = delete;
  ~Bstr() { SysFreeString(value_); }

  BSTR get() const noexcept { return value_; }
  std::wstring text() const { return {value_ ? value_ : L"", SysStringLen(value_)}; }
  BSTR* put() noexcept {
    SysFreeString(std::exchange(value_, nullptr));
    return &value_;
  }
  [[nodiscard]] BSTR release() noexcept { return std::exchange(value_, nullptr); }

 private:
  BSTR value_ = nullptr;
};

// One VARIANT.
class Variant {
 public:
  Variant() noexcept { VariantInit(&value_); }
  Variant(std::wstring_view value);
  Variant(const wchar_t* value) : Variant(std::wstring_view(value)) {}
  Variant(const std::wstring& value) : Variant(std::wstring_view(value)) {}
  Variant(long value) noexcept;
  Variant(int value) noexcept : Variant(static_cast<long>(value)) {}
  Variant(bool value) noexcept;
  Variant(IDispatch* borrowed) noexcept;
  // An optional argument that is left out.
  static Variant missing() noexcept;

  Variant(const Variant& other);
  Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  const VARIANT& get() const noexcept { return value_; }
  VARIANT* put() noexcept {
    VariantClear(&value_);
    return &value_;
  }
  VARTYPE type() const noexcept { return value_.vt; }

  // Converted by OLE Automation's own rules; errors::typeMismatch (13) when that fails.
  std::wstring text() const;
  long number() const;
  bool boolean() const;
  // The object it holds, null when it holds "nothing" (a null object or no value at all).
  ComPtr<IDispatch> object() const;

 private:
  VARIANT value_;
};

}  // namespace com

using com::ComPtr;
