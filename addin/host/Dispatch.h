// A late-bound object of the host. Nobody outside this folder says GetIDsOfNames.
#pragma once

#include <initializer_list>
#include <string_view>

#include "common/com.h"

namespace host {

// Calls by name. A failing call raises an Error: the callee's own number and text when it gave them
// (EXCEPINFO), otherwise the run-time's number for the HRESULT. A call on "nothing" raises 91.
class Dispatch {
 public:
  Dispatch() noexcept = default;
  explicit Dispatch(ComPtr<IDispatch> object) noexcept : object_(std::move(object)) {}

  explicit operator bool() const noexcept { return static_cast<bool>(object_); }
  IDispatch* get() const noexcept { return object_.get(); }

  com::Variant value(std::wstring_view property,
                     std::initializer_list<com::Variant> arguments = {}) const;
  void put(std::wstring_view property, const com::Variant& value) const;
  com::Variant call(std::wstring_view method,
                    std::initializer_list<com::Variant> arguments = {}) const;

  // The object behind a property or method; "nothing" raises 91.
  Dispatch object(std::wstring_view member,
                  std::initializer_list<com::Variant> arguments = {}) const;
  // The object behind a look-up; "nothing", no value and a failing call all give a null object.
  Dispatch lookUp(std::wstring_view member,
                  std::initializer_list<com::Variant> arguments = {}) const noexcept;

 private:
  com::Variant invoke(std::wstring_view member, WORD flags,
                      std::initializer_list<com::Variant> arguments) const;

  ComPtr<IDispatch> object_;
};

}  // namespace host
