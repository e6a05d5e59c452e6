#include "addin/host/HostApplication.h"

std::wstring HostApplication::name() const { return object_.value(L"Name").text(); }

std::wstring HostApplication::version() const { return object_.value(L"Version").text(); }

std::optional<HostWeb> HostApplication::activeWeb() const {
  const com::Dispatch web = object_.lookUp(L"ActiveWeb");
  if (!web) return std::nullopt;
  return HostWeb(web);
}

std::vector<std::wstring> HostApplication::themeNames() const {
  const com::Dispatch themes = object_.object(L"Themes");
  const long count = themes.value(L"Count").number();
  std::vector<std::wstring> names;
  for (long index = 0; index < count; ++index)
    names.push_back(themes.object(L"Item", {index}).value(L"Name").text());
  return names;
}

std::wstring HostApplication::makeAbsolute(const std::wstring& base,
                                           const std::wstring& url) const {
  return object_.call(L"MakeAbs", {base, url}).text();
}

HostCommandBars HostApplication::commandBars() const {
  return HostCommandBars(object_.object(L"CommandBars"));
}

HostApplication& hostApplication() noexcept {
  // Never destroyed: at the process's end the host's objects are gone before this module is.
  static HostApplication& application = *new HostApplication;
  return application;
}
