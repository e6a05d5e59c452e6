#include "host/model/Host.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

HRESULT get(IDispatch* object, const wchar_t* name, com::Variant& result) {
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  DISPID id = 0;
  const HRESULT found = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  DISPPARAMS none = {};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                        result.put(), nullptr, nullptr);
}

}  // namespace

TEST_CASE("the fixture gives a host with a web and a menu in one line") {
  const ScratchFolder web;
  standin::Host host({}, web.path());
  com::Variant value;
  CHECK(get(host.application(), L"activeweb", value) == S_OK);
  const auto opened = value.object();
  REQUIRE(opened);
  CHECK(get(opened.get(), L"Url", value) == S_OK);
  CHECK(value.text().substr(0, 11) == L"file:///C:/");
  CHECK(host.captions().front() == L"&Attach Dynamic Web Template...");
  CHECK(host.click(L"Update All Pages"));
  CHECK(host.faults().calls(L"Application.ActiveWeb") == 1);
}

TEST_CASE("an unknown member name is answered as automation servers do") {
  standin::Host host;
  com::Variant value;
  CHECK(get(host.application(), L"Quit", value) == DISP_E_UNKNOWNNAME);
}
