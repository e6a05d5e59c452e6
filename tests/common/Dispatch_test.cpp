// Calls by name, of an object that answers as it is told.
#include <functional>
#include <memory>

#include "common/Dispatch.h"
#include "common/errors.h"
#include "tests/support/text_output.h"

namespace {

Error errorOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const Error& error) {
    return error;
  }
  return Error(0, L"no error");
}

// An object that fails one way only.
class Failing final : public IDispatch {
 public:
  HRESULT names = S_OK;
  DISPID id = 1;
  int asked = 0;  // for the number of a name
  int calls = 0;
  DISPID invoked = 0;  // at the last call
  std::function<HRESULT(VARIANT*, EXCEPINFO*)> invoke;

  STDMETHOD(QueryInterface)(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
    ++asked;
    *ids = id;
    return names;
  }
  STDMETHOD(Invoke)
  (DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO* exception,
   UINT*) override {
    ++calls;
    invoked = member;
    return invoke(result, exception);
  }

  com::Dispatch dispatch() { return com::Dispatch(ComPtr<IDispatch>(this)); }
};

HRESULT WINAPI fillIn(EXCEPINFO* exception) {
  exception->wCode = 77;
  exception->bstrDescription = SysAllocString(L"filled in late");
  return S_OK;
}

}  // namespace

TEST_CASE("An exception brings its own number and text") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO* exception) {
    exception->wCode = 1004;
    exception->bstrDescription = SysAllocString(L"The web is locked.");
    exception->bstrSource = SysAllocString(L"Host");
    return DISP_E_EXCEPTION;
  };
  const Error error = errorOf([&] { object.dispatch().call(L"Refresh"); });
  CHECK(error.number() == 1004);
  CHECK(error.description() == L"The web is locked.");
  CHECK(error.source() == L"Host");
}

TEST_CASE("An exception with a result code is numbered by it") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO* exception) {
    exception->scode = E_ACCESSDENIED;
    exception->bstrDescription = SysAllocString(L"No.");
    return DISP_E_EXCEPTION;
  };
  CHECK(errorOf([&] { object.dispatch().call(L"x"); }).number() == E_ACCESSDENIED);
}

TEST_CASE("An exception that is filled in late is asked for its text") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO* exception) {
    exception->pfnDeferredFillIn = fillIn;
    return DISP_E_EXCEPTION;
  };
  const Error error = errorOf([&] { object.dispatch().call(L"x"); });
  CHECK(error.number() == 77);
  CHECK(error.description() == L"filled in late");
}

TEST_CASE("An exception without a text gets the text of its number") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO* exception) {
    exception->wCode = 76;
    return DISP_E_EXCEPTION;
  };
  CHECK(errorOf([&] { object.dispatch().call(L"x"); }).description() == L"Path not found");
  object.invoke = [](VARIANT*, EXCEPINFO*) { return DISP_E_EXCEPTION; };
  const Error bare = errorOf([&] { object.dispatch().call(L"x"); });
  CHECK(bare.number() == DISP_E_EXCEPTION);
  CHECK(bare.description() == L"Automation error");
}

TEST_CASE("Failures of the call itself have the run-time's numbers") {
  Failing object;
  const auto number = [&](HRESULT result) {
    object.invoke = [=](VARIANT*, EXCEPINFO*) { return result; };
    return errorOf([&] { object.dispatch().value(L"x"); }).number();
  };
  CHECK(number(DISP_E_TYPEMISMATCH) == 13);
  CHECK(number(DISP_E_BADPARAMCOUNT) == 450);
  CHECK(number(DISP_E_MEMBERNOTFOUND) == 438);
  CHECK(number(E_OUTOFMEMORY) == 7);
  CHECK(number(E_FAIL) == 440);
  object.names = DISP_E_UNKNOWNNAME;
  CHECK(number(S_OK) == 438);
}

TEST_CASE("A call on nothing is error 91") {
  CHECK(errorOf([] { com::Dispatch().value(L"Name"); }).number() == 91);
  CHECK(errorOf([] { com::Dispatch().put(L"Name", 1L); }).number() == 91);
  CHECK_FALSE(com::Dispatch().lookUp(L"Name"));
}

TEST_CASE("Nothing where an object is due is error 91 and in a look-up no object") {
  for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_DISPATCH, VT_UNKNOWN}) {
    Failing object;
    object.invoke = [=](VARIANT* result, EXCEPINFO*) {
      result->vt = type;
      result->pdispVal = nullptr;
      return S_OK;
    };
    CHECK(errorOf([&] { object.dispatch().object(L"x"); }).number() == 91);
    CHECK_FALSE(object.dispatch().lookUp(L"x"));
  }
}

TEST_CASE("A value that is no object is a type mismatch and in a look-up no object") {
  Failing object;
  object.invoke = [](VARIANT* result, EXCEPINFO*) {
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(L"text");
    return S_OK;
  };
  CHECK(errorOf([&] { object.dispatch().object(L"x"); }).number() == 13);
  CHECK_FALSE(object.dispatch().lookUp(L"x"));
}

TEST_CASE("The name of a member is asked for once") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO*) { return S_OK; };
  const com::Dispatch dispatch = object.dispatch();
  dispatch.call(L"Refresh");
  const com::Dispatch copy = dispatch;
  copy.call(L"Refresh");
  CHECK(object.asked == 1);
  dispatch.call(L"Delete");
  dispatch.call(L"Refresh");
  CHECK(object.asked == 2);
  // Another object may have other numbers.
  object.dispatch().call(L"Refresh");
  CHECK(object.asked == 3);
}

TEST_CASE("A member that is no longer known by its number is asked for again") {
  Failing object;
  object.invoke = [&](VARIANT*, EXCEPINFO*) {
    return object.invoked == object.id ? S_OK : DISP_E_MEMBERNOTFOUND;
  };
  const com::Dispatch dispatch = object.dispatch();
  dispatch.call(L"Refresh");
  object.id = 7;
  dispatch.call(L"Refresh");
  CHECK(object.invoked == 7);
  CHECK(object.asked == 2);
  CHECK(object.calls == 3);
}

TEST_CASE("A member that is not there under any number is asked for no more than twice") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO*) { return DISP_E_MEMBERNOTFOUND; };
  CHECK(errorOf([&] { object.dispatch().call(L"Refresh"); }).number() == 438);
  CHECK(object.asked == 2);
  CHECK(object.calls == 2);
}

TEST_CASE("A name that was refused is asked for again at the next call") {
  Failing object;
  object.invoke = [](VARIANT*, EXCEPINFO*) { return S_OK; };
  object.names = DISP_E_UNKNOWNNAME;
  const com::Dispatch dispatch = object.dispatch();
  CHECK(errorOf([&] { dispatch.call(L"Refresh"); }).number() == 438);
  object.names = S_OK;
  dispatch.call(L"Refresh");
  CHECK(object.calls == 1);
}

TEST_CASE("A value that goes during its own call is called to the end") {
  Failing object;
  auto dispatch = std::make_unique<com::Dispatch>(object.dispatch());
  object.invoke = [&](VARIANT* result, EXCEPINFO*) {
    dispatch.reset();
    result->vt = VT_I4;
    result->lVal = 5;
    return S_OK;
  };
  CHECK(dispatch->value(L"Count").number() == 5);
}

TEST_CASE("A count that comes as a reference to a variant is read") {
  static VARIANT inner;
  inner.vt = VT_I2;
  inner.iVal = 12;
  Failing object;
  object.invoke = [](VARIANT* result, EXCEPINFO*) {
    result->vt = VT_VARIANT | VT_BYREF;
    result->pvarVal = &inner;
    return S_OK;
  };
  CHECK(object.dispatch().value(L"Count").number() == 12);
}
