// A late-bound object: a table says which members it has and what arguments they take, and one
// place checks every call against it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/com.h"
#include "host/model/Session.h"

namespace standin {

enum class Takes {
  number,
  text,
  boolean,
  numberOrText,  // an index or a name
  textOrObject,
};

struct Parameter {
  const wchar_t* name;
  Takes takes;
  bool optional = false;
};

// The arguments of one call, checked and in the order of the member's parameters.
class Arguments {
 public:
  explicit Arguments(std::size_t count) : values_(count) {}

  bool has(std::size_t index) const { return values_[index].type() != VT_EMPTY; }
  bool isText(std::size_t index) const { return values_[index].type() == VT_BSTR; }
  long number(std::size_t index, long otherwise = 0) const;
  std::wstring text(std::size_t index) const;
  // All of them, an object as nothing.
  std::vector<std::wstring> texts() const;
  bool boolean(std::size_t index, bool otherwise = false) const;
  ComPtr<IDispatch> object(std::size_t index) const { return values_[index].object(); }

  void set(std::size_t index, com::Variant value) { values_[index] = std::move(value); }

 private:
  std::vector<com::Variant> values_;
};

class AutomationObject;

enum class Kind { get, put, method };

struct Member {
  const wchar_t* name;
  Kind kind;
  std::vector<Parameter> parameters;  // a put's last one is its value
  com::Variant (*run)(AutomationObject&, const Arguments&);
  const wchar_t* definedBy = nullptr;  // filled by the table
  DISPID id = DISPID_UNKNOWN;          // filled by the table; 0 for the default member "Item"
};

class MemberTable {
 public:
  MemberTable(const wchar_t* className, std::vector<Member> members,
              const MemberTable* base = nullptr);

  const wchar_t* className() const { return className_; }
  DISPID idOf(std::wstring_view name) const;  // DISPID_UNKNOWN when there is none
  bool has(DISPID id) const;
  const Member* find(DISPID id, Kind kind) const;
  const std::vector<Member>& members() const { return members_; }

 private:
  const wchar_t* className_;
  std::vector<Member> members_;
};

// True for "Class.Member" and "Member" of any table.
bool isMember(std::wstring_view name);

// Names compare as automation servers compare them: without letter case.
bool sameName(std::wstring_view one, std::wstring_view other);

using SharedSession = std::shared_ptr<Session>;

class AutomationObject : public IDispatch {
 public:
  explicit AutomationObject(SharedSession session);
  virtual ~AutomationObject();
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override;
  STDMETHOD_(ULONG, AddRef)() override;
  STDMETHOD_(ULONG, Release)() override;
  STDMETHOD(GetTypeInfoCount)(UINT* count) override;
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override;
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHOD(Invoke)
  (DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
   EXCEPINFO* exception, UINT* wrongArgument) override;

  const SharedSession& session() const { return session_; }

 protected:
  virtual const MemberTable& members() const = 0;

 private:
  com::Variant run(const Member& member, const Arguments& arguments);

  SharedSession session_;
  long references_ = 0;
};

// The table's entry for a member function.
template <auto function>
struct CallOf;
template <class T, com::Variant (T::*function)(const Arguments&)>
struct CallOf<function> {
  static com::Variant run(AutomationObject& object, const Arguments& arguments) {
    return (static_cast<T&>(object).*function)(arguments);
  }
};
template <class T, com::Variant (T::*function)(const Arguments&) const>
struct CallOf<function> {
  static com::Variant run(AutomationObject& object, const Arguments& arguments) {
    return (static_cast<const T&>(object).*function)(arguments);
  }
};
template <auto function>
inline constexpr auto call = &CallOf<function>::run;

template <class T, class... Rest>
ComPtr<T> make(Rest&&... rest) {
  return ComPtr<T>(new T(std::forward<Rest>(rest)...));
}

template <class T>
com::Variant objectValue(const ComPtr<T>& object) {
  return com::Variant(static_cast<IDispatch*>(object.get()));
}

}  // namespace standin
