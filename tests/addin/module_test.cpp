// The module's file, and its life in the host's process.
#include <windows.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cfloat>
#include <clocale>
#include <iterator>
#include <set>
#include <vector>

#include "addin/ClickSink.h"
#include "addin/identity.h"
#include "addin/resource.h"
#include "common/handles.h"
#include "common/letter_case.h"
#include "common/lifetime.h"
#include "common/text.h"
#include "host/model/Host.h"
#include "tests/addin/PortableExecutable.h"
#include "tests/addin/ShippedModule.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/Skipped.h"
#include "tests/support/text_output.h"

namespace {

// A line of the list that holds for some compilers only bears their range in front; see there.
std::string forThisCompiler(const std::string& line) {
  const std::string older = "gcc<13 ", newer = "gcc>=13 ";
  const std::string& other = __GNUC__ < 13 ? newer : older;
  const std::string& own = __GNUC__ < 13 ? older : newer;
  if (line.starts_with(other)) return {};
  return line.starts_with(own) ? line.substr(own.size()) : line;
}

// Of a file beside the test program; empty when there is none.
std::string contentOf(const wchar_t* name) {
  const std::wstring program = ShippedModule::builtPath();
  const std::wstring path = program.substr(0, program.rfind(L'\\') + 1) + name;
  const handles::File file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return {};
  std::string content(GetFileSize(file.get(), nullptr), '\0');
  DWORD read = 0;
  ReadFile(file.get(), content.data(), static_cast<DWORD>(content.size()), &read, nullptr);
  return content;
}

// The lines of the list of functions that the module may import; "#" begins a remark.
std::set<std::string> allowedImports() {
  const std::string content = contentOf(L"imports.txt");
  REQUIRE(!content.empty());
  std::set<std::string> result;
  std::size_t start = 0;
  while (start < content.size()) {
    const std::size_t end = std::min(content.find('\n', start), content.size());
    const std::string line = forThisCompiler(content.substr(start, end - start));
    if (!line.empty() && line.front() != '#') result.insert(line);
    start = end + 1;
  }
  return result;
}

std::wstring versionText(const std::wstring& name) {
  const std::wstring path = ShippedModule::builtPath();
  DWORD ignored = 0;
  std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  REQUIRE(!block.empty());
  REQUIRE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
  void* value = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(block.data(), (L"\\StringFileInfo\\040904B0\\" + name).c_str(), &value,
                      &length))
    return {};
  return static_cast<const wchar_t*>(value);
}

// The names, in lower case.
std::set<std::wstring> loadedModules() {
  const handles::File all(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0));
  REQUIRE(all);
  std::set<std::wstring> names;
  MODULEENTRY32W entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL more = Module32FirstW(all.get(), &entry); more; more = Module32NextW(all.get(), &entry))
    names.insert(text::toLower(entry.szModule));
  return names;
}

// What the host's process must find as it was.
struct Manners {
  std::wstring folder, locale;
  UINT errorMode = 0;
  unsigned floatingPoint = 0;
  HWND focus = nullptr;
  LCID threadLocale = 0;

  static Manners now() {
    Manners manners;
    wchar_t folder[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder);
    manners.folder = folder;
    manners.locale = text::split(std::wstring(_wsetlocale(LC_ALL, nullptr)), L';').front();
    manners.errorMode = SetErrorMode(0);
    SetErrorMode(manners.errorMode);
    manners.floatingPoint = _controlfp(0, 0);
    manners.focus = GetFocus();
    manners.threadLocale = GetThreadLocale();
    return manners;
  }
  bool operator==(const Manners&) const = default;
};

// A window as the host's main one, with the focus on what is edited in it.
class HostFrame {
 public:
  HostFrame()
      : window_(CreateWindowW(L"Static", L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                              nullptr, nullptr, nullptr, nullptr)),
        document_(CreateWindowW(L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 100, window_,
                                nullptr, nullptr, nullptr)) {
    SetActiveWindow(window_);
    SetFocus(document_);
  }
  ~HostFrame() { DestroyWindow(window_); }
  HostFrame(const HostFrame&) = delete;
  HostFrame& operator=(const HostFrame&) = delete;

  HWND window() const { return window_; }
  HWND document() const { return document_; }

 private:
  HWND window_;
  HWND document_;
};

}  // namespace

TEST_CASE("The module imports only functions of the written list") {
  const auto allowed = allowedImports();
  const auto imports = PortableExecutable(ShippedModule::builtPath()).imports();
  REQUIRE(!imports.empty());
  for (const auto& import : imports) {
    CAPTURE(import);
    // Look up that Windows XP SP2 has the function before adding it to the list.
    CHECK(allowed.count(import) == 1);
  }
}

TEST_CASE("The written list of imports names only functions that the module imports") {
  const auto imports = PortableExecutable(ShippedModule::builtPath()).imports();
  const auto allowed = allowedImports();
  REQUIRE(!allowed.empty());
  for (const auto& import : allowed) {
    CAPTURE(import);
    CHECK(imports.count(import) == 1);
  }
}

TEST_CASE("The module stays below 512 KB and is stripped") {
  const PortableExecutable file(ShippedModule::builtPath());
  CHECK(file.size() < 512 * 1024);
  for (const auto& section : file.sections()) CHECK(section.substr(0, 1) == ".");
  for (const auto& section : file.sections()) CHECK(section.find("debug") == section.npos);
}

TEST_CASE("The module is for 32-bit hosts and takes the system's protections") {
  const PortableExecutable file(ShippedModule::builtPath());
  CHECK(file.machine() == IMAGE_FILE_MACHINE_I386);
  CHECK((file.dllCharacteristics() & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE) != 0);
  CHECK((file.dllCharacteristics() & IMAGE_DLLCHARACTERISTICS_NX_COMPAT) != 0);
  CHECK(file.hasRelocations());
}

// So that whoever builds the same sources can tell that a module is made of them.
TEST_CASE("The module tells neither when nor where it was built") {
  const PortableExecutable file(ShippedModule::builtPath());
  CHECK(file.time() == 0);
  const std::string sources = contentOf(L"built-from.txt");
  if (sources.empty()) throw Skipped("only the machine of the build knows where that was");
  CHECK_FALSE(file.contains(sources));
  CHECK(file.contains("Created by WIDL") == file.contains("Thu Jan  1 00:00:00 1970"));
}

TEST_CASE("The module exports the five entry points of a COM server undecorated") {
  CHECK(PortableExecutable(ShippedModule::builtPath()).exports() ==
        std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllInstall",
                              "DllRegisterServer", "DllUnregisterServer"});
}

TEST_CASE("The embedded type library bears its description and describes the class") {
  ComPtr<ITypeLib> library;
  REQUIRE(LoadTypeLibEx(ShippedModule::builtPath().c_str(), REGKIND_NONE, library.put()) == S_OK);
  com::Bstr name;
  com::Bstr description;
  REQUIRE(library->GetDocumentation(-1, name.put(), description.put(), nullptr, nullptr) == S_OK);
  CHECK(name.text() == L"DWT");
  CHECK(description.text() == L"Orlique Dynamic Web Template");

  TLIBATTR* attributes = nullptr;
  REQUIRE(library->GetLibAttr(&attributes) == S_OK);
  CHECK((attributes->guid == identity::typeLibraryId));
  CHECK(attributes->wMajorVerNum == 1);
  CHECK(attributes->wMinorVerNum == 0);
  library->ReleaseTLibAttr(attributes);

  ComPtr<ITypeInfo> type;
  REQUIRE(library->GetTypeInfoOfGuid(identity::classId, type.put()) == S_OK);
  com::Bstr className;
  type->GetDocumentation(-1, className.put(), nullptr, nullptr, nullptr);
  CHECK(className.text() == L"DWTemplate");
}

TEST_CASE("The version resource bears the component's title") {
  CHECK(versionText(L"FileDescription") == L"Quillet Viewer");
  CHECK(versionText(L"ProductName") == L"Quillet Viewer");
  CHECK(versionText(L"Comments") == L"Orlique Dynamic Web Template");
  CHECK(versionText(L"OriginalFilename") == L"Quillet.dll");
  CHECK(versionText(L"FileVersion") == versionText(L"ProductVersion"));
}

TEST_CASE("The module carries both faces and its manifest") {
  const ShippedModule module;
  for (const int id : {101, 104}) {
    const handles::Gdi face(
        LoadImageW(module.handle(), MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, 0));
    REQUIRE(face);
    BITMAP bitmap = {};
    GetObjectW(face.get(), sizeof bitmap, &bitmap);
    CHECK(bitmap.bmWidth == 16);
    CHECK(bitmap.bmHeight == 16);
  }
  CHECK(
      FindResourceW(module.handle(), MAKEINTRESOURCEW(2), reinterpret_cast<LPCWSTR>(RT_MANIFEST)));
}

TEST_CASE("A module that was only loaded can be unloaded") {
  const ShippedModule module;
  CHECK(module.canUnload());
}

TEST_CASE("The class factory keeps the module loaded") {
  const ShippedModule module;
  auto factory = module.factory();
  REQUIRE(factory);
  CHECK_FALSE(module.canUnload());
  factory.reset();
  CHECK(module.canUnload());
}

TEST_CASE("A lock keeps the module loaded until it is taken back") {
  const ShippedModule module;
  auto factory = module.factory();
  CHECK(factory->LockServer(TRUE) == S_OK);
  CHECK(factory->LockServer(TRUE) == S_OK);
  factory.reset();
  CHECK_FALSE(module.canUnload());
  factory = module.factory();
  factory->LockServer(FALSE);
  factory->LockServer(FALSE);
  factory.reset();
  CHECK(module.canUnload());
}

TEST_CASE("A connection object keeps the module loaded") {
  const ShippedModule module;
  auto connection = module.connection();
  REQUIRE(connection);
  CHECK_FALSE(module.canUnload());
  connection.reset();
  CHECK(module.canUnload());
}

TEST_CASE("An event sink that the host still holds keeps the module loaded") {
  const long before = lifetime::references();
  int clicks = 0;
  auto sink = ClickSink::make([&](IDispatch*, VARIANT_BOOL*) { ++clicks; });
  CHECK(lifetime::references() == before + 1);
  sink->detach();
  CHECK(lifetime::references() == before + 1);
  sink.reset();
  CHECK(lifetime::references() == before);
  CHECK(clicks == 0);
}

TEST_CASE("After a connection and a disconnection the module can be unloaded") {
  ScratchRegistry registry;
  ModalDriver modal;
  const ShippedModule module;
  standin::Host host;
  auto connection = module.connection();
  connection->OnConnection(host.application(), atStartup, nullptr, nullptr);
  connection->OnDisconnection(userClosed, nullptr);
  connection.reset();
  CHECK(module.canUnload());
}

TEST_CASE("A class of another identifier is not available") {
  const ShippedModule module;
  const auto get = module.entry<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject");
  void* object = &object;
  CHECK(get(IID_IUnknown, IID_IClassFactory, &object) == CLASS_E_CLASSNOTAVAILABLE);
  CHECK(object == nullptr);
  CHECK(get(identity::classId, IID_IDispatch, &object) == E_NOINTERFACE);
  CHECK(get(identity::classId, IID_IClassFactory, nullptr) == E_POINTER);
  CHECK(module.canUnload());
}

TEST_CASE("The class cannot be aggregated") {
  const ShippedModule module;
  const auto factory = module.factory();
  void* object = &object;
  CHECK(factory->CreateInstance(factory.get(), IID_IUnknown, &object) == CLASS_E_NOAGGREGATION);
  CHECK(object == nullptr);
  CHECK(factory->CreateInstance(nullptr, IID_IClassFactory, &object) == E_NOINTERFACE);
}

TEST_CASE("The connection object is one object behind all its interfaces") {
  const ShippedModule module;
  const auto connection = module.connection();
  const auto dispatch = connection.as<IDispatch>();
  const auto unknown = connection.as<IUnknown>();
  REQUIRE(dispatch);
  ComPtr<IDTExtensibility2> again;
  CHECK(dispatch->QueryInterface(IID_IDTExtensibility2, reinterpret_cast<void**>(again.put())) ==
        S_OK);
  CHECK(again.get() == connection.get());
  CHECK(dispatch.as<IUnknown>().get() == unknown.get());
  CHECK_FALSE(connection.as<IClassFactory>());
}

TEST_CASE("Loading connecting and disconnecting leave the host's process as it was") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  _controlfp(_PC_53, _MCW_PC);
  SetErrorMode(SEM_NOOPENFILEERRORBOX);
  const Manners before = Manners::now();
  {
    const ShippedModule module;
    CHECK((Manners::now() == before));
    const auto connection = module.connection();
    connection->OnConnection(host.application(), atStartup, nullptr, nullptr);
    CHECK((Manners::now() == before));
    host.click(L"Browse/Copy Dynamic Web Template to Web...");
    CHECK((Manners::now() == before));
    connection->OnDisconnection(userClosed, nullptr);
  }
  CHECK((Manners::now() == before));
  SetErrorMode(0);
}

TEST_CASE("A command that shows a window leaves the host's process as it was") {
  ScratchRegistry registry;
  ModalDriver modal;
  const ScratchFolder web;
  standin::Host host({}, web.path());
  const HostFrame frame;
  const ShippedModule module;
  const auto connection = module.connection();
  connection->OnConnection(host.application(), atStartup, nullptr, nullptr);
  const Manners before = Manners::now();
  REQUIRE(before.focus == frame.document());
  const DWORD clipboard = GetClipboardSequenceNumber();

  HWND owner = nullptr;
  modal.onDialog(L"Dynamic Web Template Browser", [&](HWND browser) {
    owner = GetWindow(browser, GW_OWNER);
    CHECK_FALSE(IsWindowEnabled(frame.window()));
    PostMessageW(browser, WM_COMMAND, IDCANCEL, 0);
  });
  host.click(L"Browse/Copy Dynamic Web Template to Web...");
  CHECK(owner == frame.window());
  CHECK((Manners::now() == before));

  host.closeWeb();
  host.click(L"Dynamic Web Templates Online...");
  REQUIRE(modal.boxes().size() == 1);
  CHECK(modal.boxes().front().owner == frame.window());
  CHECK(IsWindowEnabled(frame.window()));
  CHECK(GetActiveWindow() == frame.window());
  CHECK(GetClipboardSequenceNumber() == clipboard);
  connection->OnDisconnection(userClosed, nullptr);
}

// The host starts with every add-in there is: what each of them brings along, all wait for.
TEST_CASE("Loading and connecting bring no module but this one") {
  ScratchRegistry registry;
  ModalDriver modal;
  standin::Host host;
  const auto before = loadedModules();
  const ShippedModule module;
  const auto connection = module.connection();
  connection->OnConnection(host.application(), atStartup, nullptr, nullptr);
  std::vector<std::wstring> brought;
  std::ranges::set_difference(loadedModules(), before, std::back_inserter(brought));
  CHECK(brought == std::vector<std::wstring>{L"quillet.dll"});
  connection->OnDisconnection(userClosed, nullptr);
}
