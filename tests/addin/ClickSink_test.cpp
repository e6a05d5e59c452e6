// The sink alone: what it takes for a click.
#include "addin/ClickSink.h"

#include "host/model/Host.h"
#include "tests/support/MemberlessDispatch.h"
#include "tests/support/text_output.h"

namespace {

// What the handler of a sink was given.
struct Heard {
  int clicks = 0;
  IDispatch* button = nullptr;
  VARIANT_BOOL* cancelDefault = nullptr;

  ComPtr<ClickSink> sink() {
    return ClickSink::make([this](IDispatch* clicked, VARIANT_BOOL* cancel) {
      ++clicks;
      button = clicked;
      cancelDefault = cancel;
    });
  }
};

// The event as the host raises it.
struct Event {
  explicit Event(IDispatch* button) {
    arguments[1].vt = VT_DISPATCH;
    arguments[1].pdispVal = button;
    arguments[0].vt = VT_BYREF | VT_BOOL;
    arguments[0].pboolVal = &cancel;
  }
  HRESULT raise(IDispatch* sink, DISPID id = 1) {
    return sink->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                        nullptr, nullptr);
  }

  VARIANT_BOOL cancel = VARIANT_TRUE;
  VARIANT arguments[2] = {};
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
};

ULONG referencesOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace

TEST_CASE("A click reaches the handler with the button and the flag as they came") {
  const standin::Host host;
  Heard heard;
  const auto sink = heard.sink();
  Event event(host.application());
  CHECK(event.raise(sink.get()) == S_OK);
  CHECK(heard.clicks == 1);
  CHECK(heard.button == host.application());
  CHECK(heard.cancelDefault == &event.cancel);
  CHECK(event.cancel == VARIANT_TRUE);
}

TEST_CASE("Other events than the click are unknown") {
  const standin::Host host;
  Heard heard;
  const auto sink = heard.sink();
  Event event(host.application());
  for (const DISPID id : {0L, 2L, -1L, 1000L})
    CHECK(event.raise(sink.get(), id) == DISP_E_MEMBERNOTFOUND);
  CHECK(heard.clicks == 0);
}

TEST_CASE("Arguments that are named or missing or of other types are not taken for others") {
  const standin::Host host;
  Heard heard;
  const auto sink = heard.sink();
  Event event(host.application());
  DISPID names[] = {0, 1};
  event.parameters.rgdispidNamedArgs = names;
  event.parameters.cNamedArgs = 2;
  CHECK(event.raise(sink.get()) == S_OK);
  CHECK(heard.clicks == 1);
  CHECK(heard.button == nullptr);
  CHECK(heard.cancelDefault == nullptr);

  event.parameters.cNamedArgs = 0;
  event.parameters.cArgs = 1;
  event.raise(sink.get());
  CHECK(heard.button == nullptr);
  CHECK(heard.cancelDefault == &event.cancel);
  event.parameters.cArgs = 0;
  event.raise(sink.get());
  CHECK(heard.cancelDefault == nullptr);

  event.parameters.cArgs = 2;
  event.arguments[0].vt = VT_BOOL;
  event.arguments[1].vt = VT_UNKNOWN;
  event.raise(sink.get());
  CHECK(heard.clicks == 4);
  CHECK(heard.button == nullptr);
  CHECK(heard.cancelDefault == nullptr);
}

TEST_CASE("A click without parameters is refused") {
  Heard heard;
  const auto sink = heard.sink();
  CHECK(sink->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, nullptr, nullptr, nullptr,
                     nullptr) == E_POINTER);
  CHECK(heard.clicks == 0);
}

TEST_CASE("What a handler throws stays inside the sink") {
  const auto sink = ClickSink::make([](IDispatch*, VARIANT_BOOL*) { throw 1; });
  Event event(nullptr);
  CHECK(event.raise(sink.get()) == S_OK);
}

TEST_CASE("A detached sink answers clicks and does nothing") {
  Heard heard;
  const auto sink = heard.sink();
  sink->detach();
  Event event(nullptr);
  CHECK(event.raise(sink.get()) == S_OK);
  CHECK(heard.clicks == 0);
}

TEST_CASE("A sink that is let go during its click lives to the click's end") {
  const long before = lifetime::references();
  ComPtr<ClickSink> sink;
  long during = 0;
  sink = ClickSink::make([&](IDispatch*, VARIANT_BOOL*) {
    sink.reset();
    during = lifetime::references();
  });
  Event event(nullptr);
  event.raise(sink.get());
  CHECK(during == before + 1);
  CHECK(lifetime::references() == before);
}

TEST_CASE("A sink has the events' interface and the two it is made of and no other") {
  Heard heard;
  const auto sink = heard.sink();
  constexpr GUID events = {0x000C0351, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  for (const GUID& iid : {IID_IUnknown, IID_IDispatch, events}) {
    ComPtr<IUnknown> found;
    CHECK(sink->QueryInterface(iid, reinterpret_cast<void**>(found.put())) == S_OK);
    CHECK(found.get() == static_cast<IUnknown*>(sink.get()));
    CHECK(referencesOf(found.get()) == 2);
  }
  void* none = &heard;
  CHECK(sink->QueryInterface(IID_IConnectionPoint, &none) == E_NOINTERFACE);
  CHECK(none == nullptr);
  CHECK(sink->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
  CHECK(referencesOf(sink.get()) == 1);
}

TEST_CASE("A sink describes nothing and knows no names") {
  Heard heard;
  const auto sink = heard.sink();
  UINT count = 7;
  CHECK(sink->GetTypeInfoCount(&count) == S_OK);
  CHECK(count == 0);
  CHECK(sink->GetTypeInfoCount(nullptr) == E_POINTER);
  auto* info = reinterpret_cast<ITypeInfo*>(&heard);
  CHECK(sink->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info) == DISP_E_BADINDEX);
  CHECK(info == nullptr);
  wchar_t text[] = L"Click";
  LPOLESTR name = text;
  DISPID id = 1;
  CHECK(sink->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id) == DISP_E_UNKNOWNNAME);
  CHECK(id == DISPID_UNKNOWN);
}

TEST_CASE("A connection to a button ends when it is let go or replaced") {
  standin::Host host;
  auto& first = host.addEntry(30003, 1, L"First");
  auto& second = host.addEntry(30003, 1, L"Second");
  Heard heard;
  const auto handler = [&heard](IDispatch*, VARIANT_BOOL*) { ++heard.clicks; };
  {
    ButtonEvents events(&first, handler);
    CHECK(events);
    CHECK(first.listeners() == 1);
    events = ButtonEvents(&second, handler);
    CHECK(first.listeners() == 0);
    CHECK(second.listeners() == 1);
    host.click(L"Second");
    CHECK(heard.clicks == 1);
  }
  CHECK(second.listeners() == 0);
  CHECK(lifetime::references() == 0);
  ButtonEvents events(&first, handler);
  events.disconnect();
  CHECK_FALSE(events);
  CHECK(first.listeners() == 0);
  CHECK(lifetime::references() == 0);
}

TEST_CASE("A connection that ends during a click hears nothing of it any more") {
  standin::Host host;
  auto& button = host.addEntry(30003, 1, L"First");
  Heard heard;
  ButtonEvents later;
  // The host tells its listeners one after the other, those that have gone meanwhile too.
  const ButtonEvents earlier(&button, [&later](IDispatch*, VARIANT_BOOL*) { later.disconnect(); });
  later = ButtonEvents(&button, [&heard](IDispatch*, VARIANT_BOOL*) { ++heard.clicks; });
  host.click(L"First");
  CHECK(heard.clicks == 0);
}

namespace {

// Says that it has events, and has none when it is asked for them.
class EventsInName final : public MemberlessDispatch, public IConnectionPointContainer {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == IID_IConnectionPointContainer)
      *object = static_cast<IConnectionPointContainer*>(this);
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
  STDMETHODIMP FindConnectionPoint(REFIID, IConnectionPoint** point) override {
    *point = nullptr;
    return S_OK;
  }
};

}  // namespace

TEST_CASE("A success without a connection point gives no connection") {
  EventsInName button;
  CHECK_FALSE(ButtonEvents(&button, [](IDispatch*, VARIANT_BOOL*) {}));
}

TEST_CASE("An object without events gives no connection") {
  const standin::Host host;
  CHECK_FALSE(ButtonEvents(host.application(), [](IDispatch*, VARIANT_BOOL*) {}));
  CHECK_FALSE(ButtonEvents(nullptr, [](IDispatch*, VARIANT_BOOL*) {}));
}
