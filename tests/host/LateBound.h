// A late-bound caller, as plain as can be: what a script engine sends and what it gets back.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/com.h"

struct Answer {
  HRESULT result = S_OK;
  com::Variant value;
  std::wstring source, description;  // of a refusal
  long code = 0;                     // wCode, or scode when that is 0
};

class LateBound {
 public:
  explicit LateBound(IDispatch* object) : object_(object) {}
  explicit LateBound(const Answer& answer) : object_(answer.value.object()) {}

  explicit operator bool() const { return static_cast<bool>(object_); }
  IDispatch* object() const { return object_.get(); }

  Answer get(const wchar_t* name, std::vector<com::Variant> arguments = {}) const {
    return invoke(name, DISPATCH_PROPERTYGET, std::move(arguments));
  }
  Answer call(const wchar_t* name, std::vector<com::Variant> arguments = {}) const {
    return invoke(name, DISPATCH_METHOD, std::move(arguments));
  }
  Answer put(const wchar_t* name, com::Variant value) const {
    return invoke(name, DISPATCH_PROPERTYPUT, {std::move(value)});
  }
  // The last arguments are named.
  Answer callNamed(const wchar_t* name, std::vector<com::Variant> arguments,
                   const std::vector<std::pair<std::wstring, com::Variant>>& named) const;

  std::wstring text(const wchar_t* name) const { return get(name).value.text(); }
  long number(const wchar_t* name) const { return get(name).value.number(); }
  bool flag(const wchar_t* name) const { return get(name).value.boolean(); }
  LateBound child(const wchar_t* name) const { return LateBound(get(name)); }
  LateBound item(com::Variant index) const { return LateBound(get(L"Item", {std::move(index)})); }

 private:
  Answer invoke(const wchar_t* name, WORD flags, std::vector<com::Variant> arguments) const;
  Answer send(DISPID id, WORD flags, std::vector<com::Variant>& inOrder,
              std::vector<DISPID>& names) const;

  ComPtr<IDispatch> object_;
};
