#include "tests/host/LateBound.h"

#include <algorithm>

namespace {

std::wstring taken(BSTR text) {
  com::Bstr owned;
  *owned.put() = text;
  return owned.text();
}

}  // namespace

Answer LateBound::send(DISPID id, WORD flags, std::vector<com::Variant>& inOrder,
                       std::vector<DISPID>& names) const {
  std::vector<VARIANT> reversed;
  for (const auto& argument : inOrder) reversed.push_back(argument.get());
  std::ranges::reverse(reversed);
  std::reverse(names.begin(), names.end());
  DISPPARAMS parameters = {reversed.data(), names.data(), static_cast<UINT>(reversed.size()),
                           static_cast<UINT>(names.size())};
  EXCEPINFO exception = {};
  Answer answer;
  answer.result = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                  answer.value.put(), &exception, nullptr);
  answer.source = taken(exception.bstrSource);
  answer.description = taken(exception.bstrDescription);
  answer.code = exception.wCode ? exception.wCode : exception.scode;
  return answer;
}

Answer LateBound::invoke(const wchar_t* name, WORD flags,
                         std::vector<com::Variant> arguments) const {
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  DISPID id = DISPID_UNKNOWN;
  Answer answer;
  answer.result = object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(answer.result)) return answer;
  std::vector<DISPID> named;
  if (flags == DISPATCH_PROPERTYPUT) named.push_back(DISPID_PROPERTYPUT);
  return send(id, flags, arguments, named);
}

Answer LateBound::callNamed(const wchar_t* name, std::vector<com::Variant> arguments,
                            const std::vector<std::pair<std::wstring, com::Variant>>& named) const {
  std::vector<LPOLESTR> names = {const_cast<LPOLESTR>(name)};
  for (const auto& [parameter, value] : named) {
    names.push_back(const_cast<LPOLESTR>(parameter.c_str()));
    arguments.push_back(value);
  }
  std::vector<DISPID> ids(names.size());
  Answer answer;
  answer.result = object_->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                         LOCALE_USER_DEFAULT, ids.data());
  if (FAILED(answer.result)) return answer;
  std::vector<DISPID> parameters(ids.begin() + 1, ids.end());
  return send(ids[0], DISPATCH_METHOD, arguments, parameters);
}
