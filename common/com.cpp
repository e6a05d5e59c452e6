#include "common/com.h"

#include "common/errors.h"

namespace com {
namespace {

Variant converted(const VARIANT& value, VARTYPE type) {
  Variant result;
  if (FAILED(VariantChangeType(result.put(), const_cast<VARIANT*>(&value), 0, type)))
    throw Error(errors::typeMismatch);
  return result;
}

}  // namespace

Bstr::Bstr(std::wstring_view value)
    : value_(SysAllocStringLen(value.data(), static_cast<UINT>(value.size()))) {
  if (!value_) throw Error(errors::outOfMemory);
}

Variant::Variant(std::wstring_view value) : Variant() {
  value_.bstrVal = Bstr(value).release();
  value_.vt = VT_BSTR;
}

Variant::Variant(long value) noexcept : Variant() {
  value_.vt = VT_I4;
  value_.lVal = value;
}

Variant::Variant(bool value) noexcept : Variant() {
  value_.vt = VT_BOOL;
  value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(IDispatch* borrowed) noexcept : Variant() {
  value_.vt = VT_DISPATCH;
  value_.pdispVal = borrowed;
  if (borrowed) borrowed->AddRef();
}

Variant Variant::missing() noexcept {
  Variant result;
  result.value_.vt = VT_ERROR;
  result.value_.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

Variant::Variant(const Variant& other) : Variant() {
  if (FAILED(VariantCopy(&value_, const_cast<VARIANT*>(&other.value_))))
    throw Error(errors::outOfMemory);  // Not run by tests: no memory.
}

std::wstring Variant::text() const {
  const Variant result = converted(value_, VT_BSTR);
  return {result.value_.bstrVal ? result.value_.bstrVal : L"", SysStringLen(result.value_.bstrVal)};
}

long Variant::number() const { return converted(value_, VT_I4).value_.lVal; }

bool Variant::boolean() const { return converted(value_, VT_BOOL).value_.boolVal != VARIANT_FALSE; }

ComPtr<IDispatch> Variant::object() const {
  if (value_.vt == VT_EMPTY || value_.vt == VT_NULL) return nullptr;
  if (value_.vt == VT_DISPATCH) return ComPtr<IDispatch>(value_.pdispVal);
  if (value_.vt == VT_UNKNOWN) return ComPtr<IUnknown>(value_.punkVal).as<IDispatch>();
  const Variant result = converted(value_, VT_DISPATCH);
  return ComPtr<IDispatch>(result.value_.pdispVal);  // Not run by tests: no such value converts.
}

}  // namespace com
