#include "host/AddIns.h"

#include <algorithm>
#include <functional>
#include <initializer_list>

#include "common/handles.h"
#include "host/guarded.h"

namespace standin {
namespace {

constexpr long connectedAtStart = 3;
constexpr long afterFailure = 2;

const MemberTable entryMembers(
    L"COMAddIn", {{L"ProgId", Kind::get, {}, call<&AddInEntry::getProgId>},
                  {L"Description", Kind::get, {}, call<&AddInEntry::getDescription>}});

class Key {
 public:
  Key(HKEY parent, const std::wstring& path, REGSAM access) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(parent, path.c_str(), 0, access, &key) == ERROR_SUCCESS) key_.reset(key);
  }

  HKEY get() const { return key_.get(); }

  std::vector<std::wstring> subKeys() const {
    std::vector<std::wstring> result;
    wchar_t name[256];
    for (DWORD i = 0; key_.get() && RegEnumKeyW(key_.get(), i, name, 256) == ERROR_SUCCESS; ++i)
      result.emplace_back(name);
    return result;
  }

  std::wstring text(const wchar_t* name) const {
    wchar_t value[512] = {};
    DWORD size = sizeof value - sizeof(wchar_t);
    DWORD type = 0;
    const LONG result =
        RegQueryValueExW(key_.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(value), &size);
    return result == ERROR_SUCCESS && type == REG_SZ ? value : L"";
  }

  long number(const wchar_t* name) const {
    DWORD value = 0;
    DWORD size = sizeof value;
    DWORD type = 0;
    const LONG result =
        RegQueryValueExW(key_.get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
    return result == ERROR_SUCCESS && type == REG_DWORD ? static_cast<long>(value) : 0;
  }

  void setNumber(const wchar_t* name, DWORD value) const {
    RegSetValueExW(key_.get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                   sizeof value);
  }

 private:
  handles::Registry key_;
};

// Calls into an add-in may run a message loop in which the user finds more of them or closes the
// host, so the list may grow under way.
template <class List, class Action>
void forEach(List& list, Action action) {
  std::size_t next = 0;
  while (next < list.size()) action(list[next++]);
}

// The host's own data for add-ins: an empty list of values.
class CustomData {
 public:
  CustomData() : array_(SafeArrayCreateVector(VT_VARIANT, 1, 0)) {}
  ~CustomData() {
    if (array_) SafeArrayDestroy(array_);
  }
  CustomData(const CustomData&) = delete;
  CustomData& operator=(const CustomData&) = delete;

  SAFEARRAY** get() { return &array_; }
  VARIANT asVariant() {
    VARIANT value = {};
    value.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
    value.pparray = &array_;
    return value;
  }

 private:
  SAFEARRAY* array_;
};

VARIANT numberVariant(long value) {
  VARIANT result = {};
  result.vt = VT_I4;
  result.lVal = value;
  return result;
}

VARIANT objectVariant(IDispatch* borrowed) {
  VARIANT result = {};
  result.vt = VT_DISPATCH;
  result.pdispVal = borrowed;
  return result;
}

// `arguments` in the order in which they are written; all of them stay the caller's.
HRESULT invoke(Extensibility* addIn, ExtensibilityMember member,
               std::initializer_list<VARIANT> arguments) {
  std::vector<VARIANT> reversed(arguments);
  std::reverse(reversed.begin(), reversed.end());
  DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  return addIn->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                       nullptr, nullptr);
}

ComPtr<Extensibility> createAddIn(const std::wstring& progId, HRESULT& result) {
  CLSID classId;
  ComPtr<Extensibility> addIn;
  result = CLSIDFromProgID(progId.c_str(), &classId);
  if (SUCCEEDED(result))
    result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, iidExtensibility,
                              reinterpret_cast<void**>(addIn.put()));
  return addIn;
}

// The outcome of a guarded call into an add-in.
struct Attempt {
  HRESULT result = E_UNEXPECTED;
  bool cameBack = false;
};

Attempt attempted(const std::function<HRESULT()>& call) {
  Attempt attempt;
  attempt.cameBack = guarded([&] { attempt.result = call(); });
  return attempt;
}

std::wstring failureText(HRESULT result) {
  wchar_t digits[16];
  wsprintfW(digits, L"0x%08lX", result);
  return std::wstring(L"Not loaded: it failed with ") + digits + L".";
}

}  // namespace

AddInEntry::AddInEntry(SharedSession session, std::wstring progId, std::wstring description)
    : AutomationObject(std::move(session)),
      progId_(std::move(progId)),
      description_(std::move(description)) {}

const MemberTable& AddInEntry::members() const { return entryMembers; }
com::Variant AddInEntry::getProgId(const Arguments&) { return progId_; }
com::Variant AddInEntry::getDescription(const Arguments&) { return description_; }

AddIns::AddIns(SharedSession session, IDispatch* application, bool byDispatch)
    : session_(std::move(session)), application_(application), byDispatch_(byDispatch) {}

std::wstring AddIns::key() const {
  return std::wstring(L"Software\\Microsoft\\Office\\") +
         (session_->options.addInsOfVersion ? L"11.0\\" : L"") + L"FrontPage\\Addins";
}

void AddIns::find() {
  const Key all(HKEY_CURRENT_USER, key(), KEY_READ);
  for (const auto& progId : all.subKeys()) {
    if (named(progId)) continue;
    const Key key(all.get(), progId, KEY_READ);
    AddIn addIn;
    addIn.progId = progId;
    addIn.friendlyName = key.text(L"FriendlyName");
    addIn.description = key.text(L"Description");
    addIn.loadBehavior = key.number(L"LoadBehavior");
    list_.push_back(std::move(addIn));
  }
}

void AddIns::connectAtStart() {
  forEach(list_, [&](AddIn& addIn) {
    if (!shutDown_ && (addIn.loadBehavior & connectedAtStart) == connectedAtStart)
      connect(addIn, ConnectMode::connectAtStartup);
  });
  forEach(list_, [&](const AddIn& addIn) { notify(addIn, memberOnStartupComplete); });
}

void AddIns::shutDown() {
  shutDown_ = true;
  forEach(list_, [&](const AddIn& addIn) { notify(addIn, memberOnBeginShutdown); });
  forEach(list_, [&](AddIn& addIn) { disconnect(addIn, disconnectHostShutdown); });
}

bool AddIns::load(std::wstring_view progId) {
  find();
  AddIn* addIn = named(progId);
  if (!addIn || addIn->connected || !connect(*addIn, connectAfterStartup)) return false;
  notifyOthers(*addIn);
  return true;
}

bool AddIns::unload(std::wstring_view progId) {
  AddIn* addIn = named(progId);
  if (!addIn || !disconnect(*addIn, disconnectUserClosed)) return false;
  notifyOthers(*addIn);
  return true;
}

AddIn* AddIns::named(std::wstring_view progId) {
  const auto found = std::find_if(list_.begin(), list_.end(), [&](const AddIn& addIn) {
    return sameName(addIn.progId, progId);
  });
  return found == list_.end() ? nullptr : &*found;
}

bool AddIns::connect(AddIn& addIn, ConnectMode mode) {
  ComPtr<Extensibility> created;
  const auto entry = make<AddInEntry>(session_, addIn.progId, addIn.description);
  const Attempt attempt = attempted([&] {
    HRESULT creation = S_OK;
    created = createAddIn(addIn.progId, creation);
    if (!created) return creation;
    CustomData custom;
    if (byDispatch_)
      return invoke(created.get(), memberOnConnection,
                    {objectVariant(application_), numberVariant(mode), objectVariant(entry.get()),
                     custom.asVariant()});
    return created->OnConnection(application_, mode, entry.get(), custom.get());
  });
  if (FAILED(attempt.result)) {
    addIn.failure = failureText(attempt.result);
    addIn.loadBehavior = afterFailure;
    const Key key(HKEY_CURRENT_USER, this->key() + L"\\" + addIn.progId, KEY_WRITE);
    key.setNumber(L"LoadBehavior", afterFailure);
    // A component that did not come back from a call is not to be trusted with its release either.
    if (!attempt.cameBack) (void)created.release();
    return false;
  }
  addIn.failure.clear();
  addIn.connected = std::move(created);
  if (!shutDown_) return true;
  notify(addIn, memberOnBeginShutdown);
  disconnect(addIn, disconnectHostShutdown);
  return false;
}

bool AddIns::disconnect(AddIn& addIn, DisconnectMode mode) const {
  if (!addIn.connected) return false;
  const Attempt attempt = attempted([&] {
    CustomData custom;
    if (byDispatch_)
      return invoke(addIn.connected.get(), memberOnDisconnection,
                    {numberVariant(mode), custom.asVariant()});
    return addIn.connected->OnDisconnection(mode, custom.get());
  });
  ComPtr<Extensibility> last = std::move(addIn.connected);
  if (!attempt.cameBack)
    (void)last.release();
  else
    guarded([&] { last.reset(); });
  CoFreeUnusedLibraries();
  return true;
}

void AddIns::notify(const AddIn& addIn, ExtensibilityMember member) const {
  if (!addIn.connected) return;
  attempted([&] {
    CustomData custom;
    if (byDispatch_) return invoke(addIn.connected.get(), member, {custom.asVariant()});
    switch (member) {
      case memberOnAddInsUpdate:
        return addIn.connected->OnAddInsUpdate(custom.get());
      case memberOnStartupComplete:
        return addIn.connected->OnStartupComplete(custom.get());
      default:
        return addIn.connected->OnBeginShutdown(custom.get());
    }
  });
}

void AddIns::notifyOthers(const AddIn& changed) const {
  forEach(list_, [&](const AddIn& addIn) {
    if (&addIn != &changed) notify(addIn, memberOnAddInsUpdate);
  });
}

}  // namespace standin
