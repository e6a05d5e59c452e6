// The connection object of the shipped module, called by name.
#include "common/Dispatch.h"
#include "host/model/Host.h"
#include "tests/addin/ShippedModule.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t copyToWeb[] = L"Browse/Copy Dynamic Web Template to Web...";
constexpr wchar_t dwtOnline[] = L"Dynamic Web Templates Online...";

}  // namespace

TEST_CASE("The host may call by name") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  ShippedModule module;
  const auto addIn = module.connection();
  const com::Dispatch byName(ComPtr<IDispatch>(addIn.get()));

  SAFEARRAY* custom = SafeArrayCreateVector(VT_VARIANT, 1, 0);
  com::Variant array;
  array.put()->vt = VT_ARRAY | VT_VARIANT | VT_BYREF;
  const_cast<VARIANT&>(array.get()).pparray = &custom;

  byName.call(L"OnConnection", {host.application(), 1L, static_cast<IDispatch*>(nullptr), array});
  byName.call(L"OnAddInsUpdate", {array});
  byName.call(L"onstartupcomplete", {array});
  CHECK(host.button(copyToWeb));
  CHECK(host.button(dwtOnline));
  byName.call(L"OnBeginShutdown", {array});
  byName.call(L"OnDisconnection", {1L, array});
  CHECK_FALSE(host.button(copyToWeb));
  SafeArrayDestroy(custom);
}

TEST_CASE("A call by name may hand over references") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::HostOptions options;
  options.version = L"6.0";
  standin::Host host(options);
  ShippedModule module;
  const auto addIn = module.connection();
  IDispatch* application = host.application();
  VARIANT four[4] = {};
  four[3].vt = VT_BYREF | VT_DISPATCH;
  four[3].ppdispVal = &application;
  DISPPARAMS connecting = {four, nullptr, 4, 0};
  CHECK(addIn->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &connecting, nullptr,
                      nullptr, nullptr) == S_OK);
  CHECK(host.button(copyToWeb));
  // The host shuts down: the entries are left to it, unlike in the other mode.
  for (long mode : {0L, 1L}) {
    addIn->OnConnection(host.application(), afterStartup, nullptr, nullptr);
    VARIANT two[2] = {};
    two[1].vt = VT_BYREF | VT_I4;
    two[1].plVal = &mode;
    DISPPARAMS disconnecting = {two, nullptr, 2, 0};
    CHECK(addIn->Invoke(2, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &disconnecting, nullptr,
                        nullptr, nullptr) == S_OK);
    CHECK((host.button(copyToWeb) != nullptr) == (mode == 0));
  }
  // A reference to a reference is none.
  VARIANT inner = {};
  inner.vt = VT_BYREF | VT_VARIANT;
  inner.pvarVal = &inner;
  four[3].vt = VT_BYREF | VT_VARIANT;
  four[3].pvarVal = &inner;
  CHECK(addIn->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &connecting, nullptr,
                      nullptr, nullptr) == DISP_E_TYPEMISMATCH);
}

TEST_CASE("Calls by name with wrong arguments are refused as automation servers do") {
  ScratchRegistry registry;
  ShippedModule module;
  const auto addIn = module.connection();
  LCID locale = LOCALE_USER_DEFAULT;
  VARIANT number = {};
  number.vt = VT_I4;
  DISPPARAMS one = {&number, nullptr, 1, 0};
  CHECK(addIn->Invoke(1, IID_NULL, locale, DISPATCH_METHOD, &one, nullptr, nullptr, nullptr) ==
        DISP_E_BADPARAMCOUNT);
  CHECK(addIn->Invoke(6, IID_NULL, locale, DISPATCH_METHOD, &one, nullptr, nullptr, nullptr) ==
        DISP_E_MEMBERNOTFOUND);
  CHECK(addIn->Invoke(0, IID_NULL, locale, DISPATCH_METHOD, &one, nullptr, nullptr, nullptr) ==
        DISP_E_MEMBERNOTFOUND);
  VARIANT four[4] = {};
  four[3].vt = VT_I4;
  DISPPARAMS wrongType = {four, nullptr, 4, 0};
  UINT badArgument = 99;
  VARIANT result = number;
  CHECK(addIn->Invoke(1, IID_NULL, locale, DISPATCH_METHOD, &wrongType, &result, nullptr,
                      &badArgument) == DISP_E_TYPEMISMATCH);
  CHECK(badArgument == 3);  // the first one stands last
  CHECK(result.vt == VT_EMPTY);
  DISPID first = 0;
  DISPPARAMS named = {&number, &first, 1, 1};
  CHECK(addIn->Invoke(3, IID_NULL, locale, DISPATCH_METHOD, &named, nullptr, nullptr, nullptr) ==
        DISP_E_NONAMEDARGS);
  CHECK(addIn->Invoke(3, IID_NULL, locale, DISPATCH_PROPERTYGET, &one, nullptr, nullptr, nullptr) ==
        DISP_E_MEMBERNOTFOUND);
  CHECK(addIn->Invoke(3, IID_NULL, locale, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr) ==
        E_POINTER);
  wchar_t unknown[] = L"OnLunch";
  LPOLESTR name = unknown;
  DISPID id = 0;
  CHECK(addIn->GetIDsOfNames(IID_NULL, &name, 1, locale, &id) == DISP_E_UNKNOWNNAME);
  CHECK(id == DISPID_UNKNOWN);
  CHECK(addIn->GetIDsOfNames(IID_NULL, nullptr, 1, locale, &id) == E_POINTER);
  CHECK(addIn->GetIDsOfNames(IID_NULL, &name, 1, locale, nullptr) == E_POINTER);
}

TEST_CASE("The names of arguments are unknown to calls by name") {
  ShippedModule module;
  const auto addIn = module.connection();
  wchar_t method[] = L"OnConnection";
  wchar_t argument[] = L"Application";
  LPOLESTR names[] = {method, argument};
  DISPID ids[2] = {};
  CHECK(addIn->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids) == DISP_E_UNKNOWNNAME);
  CHECK(ids[0] == 1);
  CHECK(ids[1] == DISPID_UNKNOWN);
}

TEST_CASE("The published identifiers belong to the published names") {
  ScratchRegistry registry;
  ShippedModule module;
  const auto addIn = module.connection();
  const wchar_t* names[] = {L"OnConnection", L"OnDisconnection", L"OnAddInsUpdate",
                            L"OnStartupComplete", L"OnBeginShutdown"};
  for (DISPID expected = 1; expected <= 5; ++expected) {
    auto* name = const_cast<LPOLESTR>(names[expected - 1]);
    DISPID id = 0;
    CHECK(addIn->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id) == S_OK);
    CHECK(id == expected);
  }
}

TEST_CASE("The connection object describes its interface from the embedded type library") {
  ShippedModule module;
  const auto addIn = module.connection();
  UINT count = 0;
  CHECK(addIn->GetTypeInfoCount(&count) == S_OK);
  CHECK(count == 1);
  ComPtr<ITypeInfo> info;
  REQUIRE(addIn->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put()) == S_OK);
  com::Bstr name;
  info->GetDocumentation(1, name.put(), nullptr, nullptr, nullptr);
  CHECK(name.text() == L"OnConnection");
  CHECK(addIn->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.put()) == DISP_E_BADINDEX);
}
