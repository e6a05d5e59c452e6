#include "common/Dispatch.h"

#include <algorithm>
#include <string>
#include <vector>

#include "common/errors.h"
#include "common/visual_styles.h"

namespace com {
namespace {

// Names of members are English, whatever its user speaks.
constexpr LCID memberLocale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

// What the callee says about its own failure. Owns the record's texts.
class Exception {
 public:
  Exception() noexcept = default;
  ~Exception() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
  }
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;

  EXCEPINFO* put() noexcept { return &info_; }

  Error error() {
    if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
    return {number(), description(), textOf(info_.bstrSource)};
  }

 private:
  static std::wstring textOf(BSTR value) { return {value ? value : L"", SysStringLen(value)}; }

  long number() const {
    if (info_.wCode != 0) return info_.wCode;
    return info_.scode != 0 ? info_.scode : DISP_E_EXCEPTION;
  }

  std::wstring description() const {
    std::wstring text = textOf(info_.bstrDescription);
    if (text.empty()) text = errors::descriptionOf(number());
    if (text.empty()) text = errors::descriptionOf(errors::automationError);
    return text;
  }

  EXCEPINFO info_ = {};
};

// A callee may hand back a reference to its own variable: what it holds now is what counts.
Variant withoutReference(Variant value) {
  if ((value.type() & VT_BYREF) == 0) return value;
  Variant result;
  const HRESULT copied = VariantCopyInd(result.put(), const_cast<VARIANT*>(&value.get()));
  if (FAILED(copied)) throw errors::fromHResult(copied);
  return result;
}

}  // namespace

Dispatch::Dispatch(const ComPtr<IDispatch>& object) {
  if (!object) return;
  callee_ = ComPtr<Callee>(new Callee);
  callee_->object = object;
}

Dispatch Dispatch::room() {
  Dispatch result;
  result.callee_ = ComPtr<Callee>(new Callee);
  return result;
}

void Dispatch::take(const ComPtr<IDispatch>& object) noexcept {
  if (object)
    callee_->object = object;
  else
    callee_.reset();
}

void Dispatch::Callee::Release() noexcept {
  if (--references == 0) delete this;
}

DISPID Dispatch::Callee::idOf(std::wstring_view member) {
  for (const Member& known : members)
    if (known.name == member) return known.id;
  std::wstring name(member);
  OLECHAR* names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object->GetIDsOfNames(IID_NULL, names, 1, memberLocale, &id);
  if (FAILED(result)) throw errors::fromHResult(result);
  members.push_back({member, id});
  return id;
}

Variant Dispatch::invoke(std::wstring_view member, WORD flags,
                         std::initializer_list<Variant> arguments) const {
  // A callee may run a message loop in which the last other reference goes, and this value with it.
  const ComPtr<Callee> callee = callee_;
  if (!callee) throw Error(errors::objectNotSet);
  const HostStyles hostStyles;

  // The last argument comes first. The copies are shallow: `arguments` stays the owner.
  std::vector<VARIANT> reversed;
  reversed.reserve(arguments.size());
  for (const auto& argument : arguments) reversed.push_back(argument.get());
  std::reverse(reversed.begin(), reversed.end());

  DISPID valueOfPut = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  const bool puts = (flags & DISPATCH_PROPERTYPUT) != 0;
  if (puts) {
    parameters.rgdispidNamedArgs = &valueOfPut;
    parameters.cNamedArgs = 1;
  }

  Variant result;
  Exception exception;
  UINT badArgument = 0;
  HRESULT outcome = S_OK;
  for (bool again = false;; again = true) {
    const DISPID id = callee->idOf(member);
    outcome = callee->object->Invoke(id, IID_NULL, memberLocale, flags, &parameters,
                                     puts ? nullptr : result.put(), exception.put(), &badArgument);
    if (outcome != DISP_E_MEMBERNOTFOUND || again) break;
    callee->members.clear();
  }
  if (outcome == DISP_E_EXCEPTION) throw exception.error();
  if (FAILED(outcome)) throw errors::fromHResult(outcome);
  return withoutReference(std::move(result));
}

// Property and method at once, as scripts call: some members are published as the one and answer as
// the other.
Variant Dispatch::value(std::wstring_view property,
                        std::initializer_list<Variant> arguments) const {
  return invoke(property, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
}

void Dispatch::put(std::wstring_view property, const Variant& value) const {
  invoke(property, DISPATCH_PROPERTYPUT, {value});
}

Variant Dispatch::call(std::wstring_view method, std::initializer_list<Variant> arguments) const {
  return invoke(method, DISPATCH_METHOD, arguments);
}

Dispatch Dispatch::object(std::wstring_view member,
                          std::initializer_list<Variant> arguments) const {
  Dispatch result(value(member, arguments).object());
  if (!result) throw Error(errors::objectNotSet);
  return result;
}

Dispatch Dispatch::lookUp(std::wstring_view member,
                          std::initializer_list<Variant> arguments) const {
  try {
    return Dispatch(value(member, arguments).object());
  } catch (const Error&) {
    return {};
  }
}

}  // namespace com
