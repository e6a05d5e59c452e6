#include "addin/host/HostApplication.h"

#include "common/letter_case.h"

std::wstring HostApplication::name() const { return object_.value(L"Name").text(); }

std::wstring HostApplication::version() const { return object_.value(L"Version").text(); }

std::optional<HostWeb> HostApplication::activeWeb() const {
  const com::Dispatch web = object_.lookUp(L"ActiveWeb");
  if (!web) return std::nullopt;
  return HostWeb(web);
}

bool HostApplication::hasTheme(std::wstring_view name) const {
  const com::Dispatch themes = object_.object(L"Themes");
  const long count = themes.value(L"Count").number();
  for (long index = 0; index < count; ++index) {
    const com::Dispatch theme = themes.object(L"Item", {index});
    if (text::equalIgnoringCase(theme.value(L"Name").text(), name)) return true;
  }
  return false;
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
