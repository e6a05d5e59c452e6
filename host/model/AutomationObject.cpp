#include "host/model/AutomationObject.h"

#include <algorithm>
#include <new>
#include <optional>

#include "common/errors.h"

namespace standin {
namespace {

std::vector<const MemberTable*>& allTables() {
  static std::vector<const MemberTable*> tables;
  return tables;
}

bool isLeftOut(const VARIANT& value) {
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

std::optional<com::Variant> changed(const com::Variant& value, VARTYPE type) {
  com::Variant result;
  if (FAILED(VariantChangeType(result.put(), const_cast<VARIANT*>(&value.get()), 0, type)))
    return std::nullopt;
  return result;
}

// Late-bound callers may pass a reference to a variable.
com::Variant dereferenced(const VARIANT& value) {
  com::Variant result;
  VariantCopyInd(result.put(), const_cast<VARIANT*>(&value));
  return result;
}

bool isObject(const com::Variant& value) {
  return value.type() == VT_DISPATCH || value.type() == VT_UNKNOWN;
}

// The value as the parameter takes it; nothing when it cannot be.
std::optional<com::Variant> fitted(const com::Variant& value, Takes takes) {
  if (takes == Takes::textOrObject && isObject(value))
    return value.object() ? std::optional(value) : std::nullopt;
  // Automation would fetch an object's default value here; none of these members wants that.
  if (isObject(value) || value.type() == VT_EMPTY || value.type() == VT_NULL) return std::nullopt;
  switch (takes) {
    case Takes::number:
      return changed(value, VT_I4);
    case Takes::boolean:
      return changed(value, VT_BOOL);
    case Takes::numberOrText:
      return value.type() == VT_BSTR ? std::optional(value) : changed(value, VT_I4);
    case Takes::text:
    case Takes::textOrObject:
      break;
  }
  return changed(value, VT_BSTR);
}

// Where the argument at `index` of the call's own (reversed) array belongs; -1 for nowhere.
long positionOf(const DISPPARAMS& given, UINT index, const Member& member) {
  if (index >= given.cNamedArgs) return static_cast<long>(given.cArgs - 1 - index);
  const DISPID name = given.rgdispidNamedArgs[index];
  if (name == DISPID_PROPERTYPUT)
    return member.kind == Kind::put ? static_cast<long>(member.parameters.size()) - 1 : -1;
  return name;
}

HRESULT collect(const Member& member, const DISPPARAMS& given, Arguments& arguments,
                UINT* wrongArgument) {
  const std::size_t wanted = member.parameters.size();
  if (given.cArgs > wanted) return DISP_E_BADPARAMCOUNT;
  std::vector<bool> present(wanted);
  for (UINT index = 0; index < given.cArgs; ++index) {
    const long position = positionOf(given, index, member);
    if (position < 0 || position >= static_cast<long>(wanted)) return DISP_E_PARAMNOTFOUND;
    const Parameter& parameter = member.parameters[static_cast<std::size_t>(position)];
    const com::Variant value = dereferenced(given.rgvarg[index]);
    if (wrongArgument) *wrongArgument = index;
    if (isLeftOut(value.get())) {
      if (!parameter.optional) return DISP_E_PARAMNOTOPTIONAL;
      continue;
    }
    auto fit = fitted(value, parameter.takes);
    if (!fit) return DISP_E_TYPEMISMATCH;
    arguments.set(static_cast<std::size_t>(position), std::move(*fit));
    present[static_cast<std::size_t>(position)] = true;
  }
  for (std::size_t i = 0; i < wanted; ++i)
    if (!present[i] && !member.parameters[i].optional) return DISP_E_BADPARAMCOUNT;
  return S_OK;
}

HRESULT refused(const Refusal& refusal, EXCEPINFO* exception) {
  if (!exception) return DISP_E_EXCEPTION;
  *exception = {};
  exception->bstrSource = SysAllocString(L"Microsoft FrontPage");
  if (!refusal.description.empty())
    exception->bstrDescription = SysAllocString(refusal.description.c_str());
  if (refusal.code >= 0 && refusal.code <= 0xFFFF)
    exception->wCode = static_cast<WORD>(refusal.code);
  else
    exception->scode = refusal.code;
  return DISP_E_EXCEPTION;
}

}  // namespace

bool sameName(std::wstring_view one, std::wstring_view other) {
  return one.size() == other.size() &&
         CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, one.data(), static_cast<int>(one.size()),
                        other.data(), static_cast<int>(other.size())) == CSTR_EQUAL;
}

bool isMember(std::wstring_view name) {
  for (const MemberTable* table : allTables())
    for (const Member& member : table->members())
      if (name == member.name ||
          name == std::wstring(table->className()) + L"." + std::wstring(member.name))
        return true;
  return false;
}

long Arguments::number(std::size_t index, long otherwise) const {
  return has(index) ? values_[index].number() : otherwise;
}

std::wstring Arguments::text(std::size_t index) const {
  return has(index) ? values_[index].text() : std::wstring();
}

bool Arguments::boolean(std::size_t index, bool otherwise) const {
  return has(index) ? values_[index].boolean() : otherwise;
}

std::vector<std::wstring> Arguments::texts() const {
  std::vector<std::wstring> result;
  for (std::size_t index = 0; index < values_.size(); ++index)
    result.push_back(isObject(values_[index]) ? L"" : text(index));
  return result;
}

MemberTable::MemberTable(const wchar_t* className, std::vector<Member> members,
                         const MemberTable* base)
    : className_(className) {
  if (base) members_ = base->members_;
  for (Member& member : members) {
    member.definedBy = className;
    member.id = idOf(member.name);
    if (member.id == DISPID_UNKNOWN)
      member.id =
          sameName(member.name, L"Item") ? DISPID_VALUE : static_cast<DISPID>(members_.size() + 1);
    members_.push_back(std::move(member));
  }
  allTables().push_back(this);
}

DISPID MemberTable::idOf(std::wstring_view name) const {
  for (const Member& member : members_)
    if (sameName(member.name, name)) return member.id;
  return DISPID_UNKNOWN;
}

bool MemberTable::has(DISPID id) const {
  return std::any_of(members_.begin(), members_.end(),
                     [&](const Member& member) { return member.id == id; });
}

const Member* MemberTable::find(DISPID id, Kind kind) const {
  for (const Member& member : members_)
    if (member.id == id && member.kind == kind) return &member;
  return nullptr;
}

AutomationObject::AutomationObject(SharedSession session) : session_(std::move(session)) {
  ++session_->liveObjects;
}

AutomationObject::~AutomationObject() { --session_->liveObjects; }

STDMETHODIMP AutomationObject::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) AutomationObject::AddRef() { return static_cast<ULONG>(++references_); }

STDMETHODIMP_(ULONG) AutomationObject::Release() {
  const long left = --references_;
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

STDMETHODIMP AutomationObject::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP AutomationObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  return DISP_E_BADINDEX;
}

STDMETHODIMP AutomationObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                             DISPID* ids) {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  session_->faults.noteName();
  std::fill(ids, ids + count, DISPID_UNKNOWN);
  const HRESULT watched = session_->faults.watchedBare(std::wstring(L"the name ") +
                                                       members().className() + L"." + names[0]);
  if (FAILED(watched)) return watched;
  ids[0] = members().idOf(names[0]);
  if (ids[0] == DISPID_UNKNOWN) return DISP_E_UNKNOWNNAME;
  HRESULT result = S_OK;
  for (UINT i = 1; i < count; ++i) {
    for (const Member& member : members().members()) {
      if (member.id != ids[0]) continue;
      for (std::size_t p = 0; p < member.parameters.size(); ++p)
        if (sameName(member.parameters[p].name, names[i])) ids[i] = static_cast<DISPID>(p);
    }
    if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

STDMETHODIMP AutomationObject::Invoke(DISPID id, REFIID iid, LCID, WORD flags,
                                      DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                      UINT* wrongArgument) {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_INVALIDARG;
  if (result) VariantInit(result);
  const Member* member = nullptr;
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF))
    member = members().find(id, Kind::put);
  if (!member && (flags & DISPATCH_PROPERTYGET)) member = members().find(id, Kind::get);
  if (!member && (flags & DISPATCH_METHOD)) member = members().find(id, Kind::method);
  if (!member) return DISP_E_MEMBERNOTFOUND;
  // The value of a put bears its own name, by which it is told from the arguments.
  if (member->kind == Kind::put && parameters->cArgs > 0 &&
      (parameters->cNamedArgs == 0 || parameters->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
    return DISP_E_PARAMNOTFOUND;

  // The call itself may release the last reference that its caller holds.
  const ComPtr<AutomationObject> alive(this);
  try {
    Arguments arguments(member->parameters.size());
    const HRESULT collected = collect(*member, *parameters, arguments, wrongArgument);
    if (FAILED(collected)) return collected;
    com::Variant value = run(*member, arguments);
    if (result) {
      *result = value.get();
      VariantInit(const_cast<VARIANT*>(&value.get()));
    }
    return S_OK;
  } catch (const Refusal& refusal) {
    return refused(refusal, exception);
  } catch (const Failure& failure) {
    return failure.outcome;
  } catch (const Error& error) {
    return refused({error.number(), std::wstring(error.description())}, exception);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

com::Variant AutomationObject::run(const Member& member, const Arguments& arguments) {
  std::vector<std::wstring> names = {member.name,
                                     std::wstring(member.definedBy) + L"." + member.name};
  if (member.definedBy != members().className())
    names.push_back(std::wstring(members().className()) + L"." + member.name);
  if (auto answer = session_->faults.watched(names.back())) return *std::move(answer);
  if (session_->faults.meet(names, arguments.texts())) return session_->nothing();
  return member.run(*this, arguments);
}

}  // namespace standin
