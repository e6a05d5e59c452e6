// A late-bound object. Nobody else says GetIDsOfNames.
#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "common/com.h"

namespace com {

// Calls by name. A failing call raises an Error: the callee's own number and text when it gave them
// (EXCEPINFO), otherwise the run-time's number for the HRESULT. A call on "nothing" raises 91.
//
// An object's numbers for its members stay the same while it lives, so each is asked for once; one
// that the object no longer knows is asked for again.
class Dispatch {
 public:
  Dispatch() noexcept = default;
  explicit Dispatch(const ComPtr<IDispatch>& object);
  // Room for an object that is still to come: taking it needs no memory any more.
  static Dispatch room();
  void take(const ComPtr<IDispatch>& object) noexcept;

  explicit operator bool() const noexcept { return static_cast<bool>(callee_); }
  IDispatch* get() const noexcept { return callee_ ? callee_->object.get() : nullptr; }

  Variant value(std::wstring_view property, std::initializer_list<Variant> arguments = {}) const;
  void put(std::wstring_view property, const Variant& value) const;
  Variant call(std::wstring_view method, std::initializer_list<Variant> arguments = {}) const;

  // The object behind a property or method; "nothing" raises 91.
  Dispatch object(std::wstring_view member, std::initializer_list<Variant> arguments = {}) const;
  // The object behind a look-up; "nothing", no value and a failing call all give a null object;
  // no memory for the call itself raises std::bad_alloc.
  Dispatch lookUp(std::wstring_view member, std::initializer_list<Variant> arguments = {}) const;

 private:
  Variant invoke(std::wstring_view member, WORD flags,
                 std::initializer_list<Variant> arguments) const;

  // The object and what it calls its members by, shared by the values that stand for it.
  struct Callee {
    struct Member {
      std::wstring_view name;  // a literal
      DISPID id;
    };

    void AddRef() noexcept { ++references; }
    void Release() noexcept;
    DISPID idOf(std::wstring_view member);

    long references = 0;
    ComPtr<IDispatch> object;
    std::vector<Member> members;
  };

  ComPtr<Callee> callee_;
};

}  // namespace com
