#include "common/com.h"

#include "common/errors.h"
#include "tests/support/MemberlessDispatch.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

namespace {

// Counts its references; never gone.
class Counted : public MemberlessDispatch {
 public:
  long references = 0;
  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_IDispatch) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }
};

}  // namespace

TEST_CASE("an interface pointer holds one reference and gives it back") {
  Counted object;
  {
    ComPtr<IDispatch> first(&object);
    CHECK(object.references == 1);
    ComPtr<IDispatch> second = first;
    CHECK(object.references == 2);
    ComPtr<IDispatch> third = std::move(first);
    CHECK(object.references == 2);
    CHECK_FALSE(static_cast<bool>(first));
    third = second;
    CHECK(object.references == 2);
    third.reset();
    CHECK(object.references == 1);
  }
  CHECK(object.references == 0);
}

TEST_CASE("an owned reference is taken over and handed on without counting") {
  Counted object;
  object.AddRef();
  ComPtr<IDispatch> held = ComPtr<IDispatch>::adopt(&object);
  CHECK(object.references == 1);
  CHECK(held.release() == &object);
  CHECK(object.references == 1);
}

TEST_CASE("an out parameter releases what was held") {
  Counted object;
  ComPtr<IDispatch> held(&object);
  CHECK(*held.put() == nullptr);
  CHECK(object.references == 0);
}

TEST_CASE("another interface of an object is found or null") {
  Counted object;
  {
    const ComPtr<IDispatch> held(&object);
    CHECK(held.as<IUnknown>().get() == &object);
    CHECK_FALSE(static_cast<bool>(held.as<IStream>()));
    CHECK_FALSE(static_cast<bool>(ComPtr<IDispatch>().as<IUnknown>()));
  }
  CHECK(object.references == 0);
}

TEST_CASE("a string of COM keeps its NULs and an absent one is empty") {
  CHECK(com::Bstr(std::wstring_view(L"a\0b", 3)).text() == std::wstring(L"a\0b", 3));
  CHECK(com::Bstr().text() == L"");
}

TEST_CASE("a value converts to text and number and truth by the rules of automation") {
  CHECK(com::Variant(L"12").number() == 12);
  CHECK(com::Variant(L"2.5").number() == 2);
  CHECK(com::Variant(L"3.5").number() == 4);
  CHECK(com::Variant(7).text() == L"7");
  CHECK(com::Variant(true).number() == -1);
  CHECK(com::Variant(2).boolean());
  CHECK_FALSE(com::Variant(0L).boolean());
  CHECK(com::Variant().text() == L"");
  CHECK(com::Variant().number() == 0);
}

TEST_CASE("a value that does not convert is a type mismatch") {
  CHECK(numberOf([] { com::Variant(L"rubbish").number(); }) == 13);
  CHECK(numberOf([] { com::Variant::missing().text(); }) == 13);
  CHECK(numberOf([] { com::Variant(7).object(); }) == 13);
}

TEST_CASE("an object in a value is found and nothing is null however it is said") {
  Counted object;
  {
    const com::Variant held(&object);
    CHECK(held.object().get() == &object);
    const com::Variant copy = held;
    CHECK(object.references == 2);
    com::Variant unknown;
    unknown.put()->vt = VT_UNKNOWN;
    const_cast<VARIANT&>(unknown.get()).punkVal = &object;
    object.AddRef();
    CHECK(unknown.object().get() == &object);
  }
  CHECK(object.references == 0);
  CHECK_FALSE(static_cast<bool>(com::Variant().object()));
  CHECK_FALSE(static_cast<bool>(com::Variant(static_cast<IDispatch*>(nullptr)).object()));
}

TEST_CASE("a left-out argument is the automation's own sign for one") {
  const com::Variant missing = com::Variant::missing();
  CHECK(missing.type() == VT_ERROR);
  CHECK(missing.get().scode == DISP_E_PARAMNOTFOUND);
}

TEST_CASE("a value is copied deeply and moved without a copy") {
  com::Variant first(L"text");
  const BSTR string = first.get().bstrVal;
  const com::Variant copy = first;
  CHECK(copy.get().bstrVal != string);
  CHECK(copy.text() == L"text");
  const com::Variant moved = std::move(first);
  CHECK(moved.get().bstrVal == string);
  CHECK(first.type() == VT_EMPTY);
}
