#include <functional>
#include <new>
#include <string>
#include <utility>

#include "host/AddIns.h"
#include "host/guarded.h"
#include "tests/host/LateBound.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/machine.h"
#include "tests/support/text_output.h"

using standin::AddIns;
using standin::Host;

namespace {

constexpr CLSID classId = {
    0x5E3C7B10, 0x4D1E, 0x4D0B, {0x9B, 0x51, 0x0C, 0x2E, 0x7A, 0x66, 0x31, 0x07}};
constexpr wchar_t progId[] = L"QuilletTest.AddIn";
constexpr wchar_t addInKey[] = L"Software\\Microsoft\\Office\\FrontPage\\Addins\\QuilletTest.AddIn";

using Calls = std::vector<std::wstring>;

void writeToNowhere() {
  volatile int* nowhere = nullptr;
  *nowhere = 1;  // cppcheck-suppress nullPointer
}

[[noreturn]] void throwSomething() { throw 1; }

enum class Manner { good, fails, isUnexpected, throws, faults };

// Writes down how the host calls it.
class RecordingAddIn final : public standin::Extensibility {
 public:
  RecordingAddIn(Calls& calls, Manner manner, std::function<void()> onConnection)
      : calls_(calls), manner_(manner), onConnection_(std::move(onConnection)) {}

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != standin::iidExtensibility)
      return E_NOINTERFACE;
    *object = static_cast<standin::Extensibility*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return ++references_; }
  STDMETHOD_(ULONG, Release)() override {
    if (--references_ != 0) return references_;
    calls_.push_back(L"released");
    delete this;
    return 0;
  }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHOD(Invoke)
  (DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*, UINT*) override {
    std::wstring call = L"Invoke " + std::to_wstring(id);
    if (parameters->cArgs > 1) {
      const VARIANT& mode = parameters->rgvarg[parameters->cArgs == 4 ? 2 : 1];
      call += L" mode " + std::to_wstring(mode.lVal);
    }
    calls_.push_back(call);
    return parameters->rgvarg[0].vt == (VT_BYREF | VT_ARRAY | VT_VARIANT) ? S_OK : E_FAIL;
  }
  STDMETHOD(OnConnection)
  (IDispatch* application, long mode, IDispatch* addIn, SAFEARRAY** custom) override {
    calls_.push_back(L"OnConnection " + std::to_wstring(mode));
    if (!application || !custom) return E_POINTER;
    calls_.push_back(LateBound(addIn).text(L"ProgId"));
    onConnection_();
    if (manner_ == Manner::fails) return E_FAIL;
    if (manner_ == Manner::isUnexpected) return E_UNEXPECTED;
    if (manner_ == Manner::throws) throwSomething();
    if (manner_ == Manner::faults) writeToNowhere();
    return S_OK;
  }
  STDMETHOD(OnDisconnection)(long mode, SAFEARRAY**) override {
    calls_.push_back(L"OnDisconnection " + std::to_wstring(mode));
    return S_OK;
  }
  STDMETHOD(OnAddInsUpdate)(SAFEARRAY**) override {
    calls_.push_back(L"OnAddInsUpdate");
    return S_OK;
  }
  STDMETHOD(OnStartupComplete)(SAFEARRAY**) override {
    calls_.push_back(L"OnStartupComplete");
    return S_OK;
  }
  STDMETHOD(OnBeginShutdown)(SAFEARRAY**) override {
    calls_.push_back(L"OnBeginShutdown");
    return S_OK;
  }

 private:
  Calls& calls_;
  Manner manner_;
  std::function<void()> onConnection_;
  ULONG references_ = 0;
};

class Factory : public IClassFactory {
 public:
  Calls calls;
  Manner manner = Manner::good;
  std::function<void()> onConnection = [] {};  // what else happens during each connection

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 1; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD(CreateInstance)(IUnknown*, REFIID iid, void** object) override {
    auto* made = new (std::nothrow) RecordingAddIn(calls, manner, onConnection);
    return made ? ComPtr<RecordingAddIn>(made)->QueryInterface(iid, object) : E_OUTOFMEMORY;
  }
  STDMETHOD(LockServer)(BOOL) override { return S_OK; }
};

// An add-in that this process offers, and its entry in the host's list.
struct OfferedAddIn {
  ScratchRegistry registry;
  Factory factory;
  Host host;
  DWORD cookie = 0;

  explicit OfferedAddIn(DWORD loadBehavior = 3) {
    machine::mayChange();
    const std::wstring id = L"{5E3C7B10-4D1E-4D0B-9B51-0C2E7A663107}";
    RegSetValueW(HKEY_CLASSES_ROOT, L"QuilletTest.AddIn\\CLSID", REG_SZ, id.c_str(),
                 static_cast<DWORD>(id.size()) * sizeof(wchar_t));
    CoRegisterClassObject(classId, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    registry.setNumber(HKEY_CURRENT_USER, addInKey, L"LoadBehavior", loadBehavior);
    registry.setString(HKEY_CURRENT_USER, addInKey, L"FriendlyName", L"Test");
  }
  ~OfferedAddIn() {
    CoRevokeClassObject(cookie);
    RegDeleteKeyW(HKEY_CLASSES_ROOT, L"QuilletTest.AddIn\\CLSID");
    RegDeleteKeyW(HKEY_CLASSES_ROOT, L"QuilletTest.AddIn");
  }
  OfferedAddIn(const OfferedAddIn&) = delete;
  OfferedAddIn& operator=(const OfferedAddIn&) = delete;

  AddIns started(bool byDispatch = false) const {
    AddIns addIns(host.sharedSession(), host.application(), byDispatch);
    addIns.find();
    addIns.connectAtStart();
    return addIns;
  }
  BYTE loadBehavior() const {
    return registry.binary(HKEY_CURRENT_USER, addInKey, L"LoadBehavior")->front();
  }
};

}  // namespace

TEST_CASE("an add-in is connected at start and disconnected at exit in the published order") {
  OfferedAddIn offered;
  AddIns addIns = offered.started();
  CHECK(addIns.list().front().friendlyName == L"Test");
  CHECK(addIns.list().front().connected);
  addIns.shutDown();
  CHECK(offered.factory.calls == Calls{L"OnConnection 1", progId, L"OnStartupComplete",
                                       L"OnBeginShutdown", L"OnDisconnection 0", L"released"});
}

TEST_CASE("the same calls can go through Invoke") {
  OfferedAddIn offered;
  AddIns addIns = offered.started(true);
  addIns.shutDown();
  CHECK(offered.factory.calls ==
        Calls{L"Invoke 1 mode 1", L"Invoke 4", L"Invoke 5", L"Invoke 2 mode 0", L"released"});
}

TEST_CASE("an add-in that the user unloads and loads again is told so") {
  OfferedAddIn offered;
  AddIns addIns = offered.started();
  CHECK(addIns.unload(progId));
  CHECK_FALSE(addIns.unload(progId));
  offered.factory.calls.clear();
  CHECK(addIns.load(progId));
  CHECK_FALSE(addIns.load(progId));
  CHECK(addIns.unload(progId));
  CHECK(offered.factory.calls ==
        Calls{L"OnConnection 0", progId, L"OnDisconnection 1", L"released"});
}

TEST_CASE("an add-in learns when another one is unloaded") {
  OfferedAddIn offered;
  RegSetValueW(HKEY_CLASSES_ROOT, L"QuilletTest.Other\\CLSID", REG_SZ,
               L"{5E3C7B10-4D1E-4D0B-9B51-0C2E7A663107}", 38 * sizeof(wchar_t));
  offered.registry.setNumber(HKEY_CURRENT_USER,
                             L"Software\\Microsoft\\Office\\FrontPage\\Addins\\QuilletTest.Other",
                             L"LoadBehavior", 3);
  AddIns addIns = offered.started();
  offered.factory.calls.clear();
  CHECK(addIns.unload(L"QuilletTest.Other"));
  CHECK(offered.factory.calls == Calls{L"OnDisconnection 1", L"released", L"OnAddInsUpdate"});
  addIns.shutDown();
  RegDeleteKeyW(HKEY_CLASSES_ROOT, L"QuilletTest.Other\\CLSID");
  RegDeleteKeyW(HKEY_CLASSES_ROOT, L"QuilletTest.Other");
}

TEST_CASE("only load behaviour with both bits connects at start") {
  for (const DWORD behavior : {0, 1, 2, 8}) {
    OfferedAddIn offered(behavior);
    AddIns addIns = offered.started();
    CHECK(offered.factory.calls.empty());
    CHECK(offered.loadBehavior() == behavior);
  }
}

TEST_CASE("a failed connection is remembered and leaves load behaviour 2") {
  OfferedAddIn offered;
  offered.factory.manner = Manner::fails;
  AddIns addIns = offered.started();
  CHECK_FALSE(addIns.list().front().connected);
  CHECK(addIns.list().front().failure == L"Not loaded: it failed with 0x80004005.");
  CHECK(offered.loadBehavior() == 2);
  CHECK(offered.factory.calls == Calls{L"OnConnection 1", progId, L"released"});
}

TEST_CASE("an add-in that fails with the result of a lost call is released all the same") {
  OfferedAddIn offered;
  offered.factory.manner = Manner::isUnexpected;
  AddIns addIns = offered.started();
  CHECK(addIns.list().front().failure == L"Not loaded: it failed with 0x8000FFFF.");
  CHECK(offered.factory.calls == Calls{L"OnConnection 1", progId, L"released"});
}

TEST_CASE("an add-in keeps its place while others are found during its connection") {
  OfferedAddIn offered;
  AddIns addIns(offered.host.sharedSession(), offered.host.application(), false);
  addIns.find();
  offered.factory.onConnection = [&] {
    for (int number = 0; number < 40; ++number)
      offered.registry.setNumber(
          HKEY_CURRENT_USER,
          L"Software\\Microsoft\\Office\\FrontPage\\Addins\\Late." + std::to_wstring(number),
          L"LoadBehavior", 0);
    addIns.find();
  };
  addIns.connectAtStart();
  CHECK(addIns.list().size() == 41);
  CHECK(addIns.list().front().progId == progId);
  CHECK(addIns.list().front().connected);
  addIns.shutDown();
}

TEST_CASE("an add-in during whose connection the host is closed is disconnected") {
  OfferedAddIn offered;
  AddIns addIns(offered.host.sharedSession(), offered.host.application(), false);
  addIns.find();
  offered.factory.onConnection = [&] { addIns.shutDown(); };
  addIns.connectAtStart();
  CHECK_FALSE(addIns.list().front().connected);
  CHECK(offered.loadBehavior() == 3);
  CHECK(offered.factory.calls ==
        Calls{L"OnConnection 1", progId, L"OnBeginShutdown", L"OnDisconnection 0", L"released"});
}

TEST_CASE("a host with the add-ins of its version finds none among those of all versions") {
  standin::HostOptions options;
  options.addInsOfVersion = true;
  const Host host(options);
  OfferedAddIn offered;
  AddIns addIns(host.sharedSession(), host.application(), false);
  addIns.find();
  CHECK(addIns.list().empty());
  offered.registry.setNumber(
      HKEY_CURRENT_USER,
      std::wstring(L"Software\\Microsoft\\Office\\11.0\\FrontPage\\Addins\\") + progId,
      L"LoadBehavior", 3);
  addIns.find();
  addIns.connectAtStart();
  REQUIRE(addIns.list().size() == 1);
  CHECK(addIns.list().front().connected);
  addIns.shutDown();
}

TEST_CASE("an add-in whose class is not registered fails to load") {
  OfferedAddIn offered;
  offered.registry.setNumber(HKEY_CURRENT_USER,
                             L"Software\\Microsoft\\Office\\FrontPage\\Addins\\None.AddIn",
                             L"LoadBehavior", 3);
  AddIns addIns = offered.started();
  CHECK(addIns.list().size() == 2);
  CHECK_FALSE(addIns.load(L"None.AddIn"));
  CHECK_FALSE(addIns.load(L"Unlisted.AddIn"));
}

TEST_CASE("the host survives an add-in that throws") {
  OfferedAddIn offered;
  offered.factory.manner = Manner::throws;
  AddIns addIns = offered.started();
  CHECK_FALSE(addIns.list().front().connected);
  CHECK(offered.loadBehavior() == 2);
}

TEST_CASE("the host survives an add-in that accesses memory it must not") {
  OfferedAddIn offered;
  offered.factory.manner = Manner::faults;
  AddIns addIns = offered.started();
  CHECK_FALSE(addIns.list().front().connected);
  CHECK(addIns.list().front().failure == L"Not loaded: it failed with 0x8000FFFF.");
}

TEST_CASE("guarded calls can be nested and tell how they ended") {
  bool inner = true;
  CHECK(standin::guarded([&] { inner = standin::guarded(writeToNowhere); }));
  CHECK_FALSE(inner);
  CHECK_FALSE(standin::guarded([] { throw 1; }));
}
