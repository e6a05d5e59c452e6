#include "addin/host/environment.h"

#include <objbase.h>

#include <oleauto.h>

#include <cstring>
#include <string>
#include <vector>

#include "common/RegKey.h"
#include "common/com.h"
#include "common/errors.h"
#include "common/log.h"
#include "common/module.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/LaunchRecorder.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/machine.h"
#include "tests/support/text_output.h"

using namespace modCommon;

namespace {

using Lines = std::vector<std::wstring>;

constexpr wchar_t shellFolders[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr wchar_t officeGeneral[] = L"SOFTWARE\\Microsoft\\Office\\11.0\\Common\\General";
constexpr wchar_t currentVersion[] = L"Software\\Microsoft\\Windows\\CurrentVersion";
constexpr wchar_t sharedTools[] = L"SOFTWARE\\Microsoft\\Shared tools";
constexpr wchar_t korvel[] = L"Software\\Korvel Software";

struct LogOn {
  LogOn() {
    setLoggingFlag(1);
    SetLogIndent(0);
  }
  ~LogOn() { setLoggingFlag(0); }
};

std::wstring systemMessage(DWORD code) {
  wchar_t buffer[2048] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                 buffer, 2048, nullptr);
  return buffer;
}

OSVERSIONINFOA version(DWORD platform, DWORD major, DWORD minor, DWORD build,
                       std::string_view servicePack) {
  OSVERSIONINFOA result = {};
  result.dwOSVersionInfoSize = sizeof result;
  result.dwMajorVersion = major;
  result.dwMinorVersion = minor;
  result.dwBuildNumber = build;
  result.dwPlatformId = platform;
  std::memcpy(result.szCSDVersion, servicePack.data(), servicePack.size());
  return result;
}

DWORD askedSize = 0;

BOOL WINAPI windowsXp(LPOSVERSIONINFOA record) {
  askedSize = record->dwOSVersionInfoSize;
  *record = version(2, 5, 1, 2600, "Service Pack 2");
  return TRUE;
}

BOOL WINAPI noVersion(LPOSVERSIONINFOA) { return FALSE; }

LSTATUS WINAPI outOfMemory(HKEY, LPCSTR, PHKEY) { throw Error(errors::outOfMemory); }

}  // namespace

TEST_CASE("the line for Windows XP names label version build and service pack") {
  CHECK(describeVersion(version(2, 5, 1, 2600, "Service Pack 2")) ==
        L"Win2K ver. 5.1 Build: 2600 Service Pack 2");
}

TEST_CASE("with an empty service pack the trailing blank of the line is trimmed away") {
  CHECK(describeVersion(version(2, 5, 1, 2600, "")) == L"Win2K ver. 5.1 Build: 2600");
  CHECK(describeVersion(version(1, 4, 0, 950, "  ")) == L"Win95 ver. 4.0 950");
}

TEST_CASE("the label of the NT family depends on the major version") {
  CHECK(describeVersion(version(2, 4, 0, 1381, "Service Pack 6")) ==
        L"WinNT ver. 4.0 Build: 1381 Service Pack 6");
  CHECK(describeVersion(version(2, 5, 0, 2195, "")) == L"Win2K ver. 5.0 Build: 2195");
  CHECK(describeVersion(version(2, 10, 0, 19045, "")) == L"Win2K ver. 10.0 Build: 19045");
}

TEST_CASE("the line of the 95 family has no build label and the low half of the build number") {
  CHECK(describeVersion(version(1, 4, 10, 0x040A08AE, " A ")) == L"Win98 ver. 4.10 2222  A");
  CHECK(describeVersion(version(1, 4, 0, 0x040003B6, "B")) == L"Win95 ver. 4.0 950 B");
  CHECK(describeVersion(version(1, 4, 90, 0x045A0BB8, "")) == L"Win98 ver. 4.90 3000");
}

TEST_CASE("the line of an unknown platform is empty") {
  CHECK(describeVersion(version(0, 3, 11, 0, "")) == L"");
  CHECK(describeVersion(version(3, 4, 20, 0, "CE")) == L"");
}

TEST_CASE("a service pack text is cut at its first NUL and may fill its field") {
  CHECK(describeVersion(version(2, 5, 1, 2600, std::string_view("SP\0rest", 7))) ==
        L"Win2K ver. 5.1 Build: 2600 SP");
  CHECK(describeVersion(version(2, 5, 1, 2600, std::string(128, 'x'))) ==
        L"Win2K ver. 5.1 Build: 2600 " + std::wstring(128, L'x'));
}

TEST_CASE("the system is asked for its record of 148 bytes") {
  ImportPatch patch(nullptr, "kernel32.dll", "GetVersionExA", windowsXp);
  CHECK(GetOSVersionText() == L"Win2K ver. 5.1 Build: 2600 Service Pack 2");
  CHECK(askedSize == 148);
}

TEST_CASE("a system that does not tell its version gives an empty line") {
  ImportPatch patch(nullptr, "kernel32.dll", "GetVersionExA", noVersion);
  CHECK(GetOSVersionText() == L"");
}

TEST_CASE("without the key of the shell folders there is no user folder") {
  ScratchRegistry registry;
  LogOn log;
  DebugOutput output;
  CHECK(GetUserFolderPath() == L"");
  CHECK(output.messages() == Lines{L"GetUserFolderPath: Failed to open the registry key"});
}

TEST_CASE("without the application data value there is no user folder and the log says why") {
  ScratchRegistry registry;
  LogOn log;
  DebugOutput output;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"Other", L"x");
  CHECK(GetUserFolderPath() == L"");
  registry.setNumber(HKEY_CURRENT_USER, shellFolders, L"AppData", 1);
  CHECK(GetUserFolderPath() == L"");
  CHECK(output.messages() == Lines{L"GetUserFolderPath: Failed to retrieve data - " +
                                       systemMessage(ERROR_FILE_NOT_FOUND),
                                   L"GetUserFolderPath: Failed to retrieve data - "
                                   L"Internal error: Data type supplied is invalid."});
}

TEST_CASE("an application data value that names a missing folder comes back unchanged") {
  ScratchRegistry registry;
  ScratchFolder scratch;
  LogOn log;
  DebugOutput output;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", scratch / L"missing");
  CHECK(GetUserFolderPath() == scratch / L"missing");
  CHECK(scratch.tree().empty());
  CHECK(output.messages() ==
        Lines{L"GetUserFolderPath: Empty path or path not found - " + scratch / L"missing"});
}

TEST_CASE("an empty application data value comes back empty") {
  ScratchRegistry registry;
  LogOn log;
  DebugOutput output;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", L"");
  CHECK(GetUserFolderPath() == L"");
  CHECK(output.messages() == Lines{L"GetUserFolderPath: Empty path or path not found - "});
}

TEST_CASE("the user folder is made level by level and ends in a backslash") {
  ScratchRegistry registry;
  ScratchFolder scratch;
  LogOn log;
  DebugOutput output;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", scratch.path());
  CHECK(GetUserFolderPath() == scratch / L"Korvel Software\\Orlique\\_orlique\\");
  CHECK(scratch.tree() == Lines{L"Korvel Software\\", L"Korvel Software\\Orlique\\",
                                L"Korvel Software\\Orlique\\_orlique\\"});
  CHECK(output.lines().empty());
}

TEST_CASE("an application data value that ends in a backslash gets no second one") {
  ScratchRegistry registry;
  ScratchFolder scratch;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", scratch.path() + L"\\");
  CHECK(GetUserFolderPath() == scratch / L"Korvel Software\\Orlique\\_orlique\\");
}

TEST_CASE("a second call for the user folder makes nothing and answers the same") {
  ScratchRegistry registry;
  ScratchFolder scratch;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", scratch.path());
  const std::wstring first = GetUserFolderPath();
  scratch.writeFile(L"Korvel Software\\Orlique\\_orlique\\kept.txt", "kept");
  const Lines before = scratch.tree();
  CHECK(GetUserFolderPath() == first);
  CHECK(scratch.tree() == before);
}

TEST_CASE("a hidden application data folder is found") {
  ScratchRegistry registry;
  ScratchFolder scratch;
  const std::wstring hidden = scratch.makeFolder(L"hidden");
  SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", hidden);
  CHECK(GetUserFolderPath() == hidden + L"\\Korvel Software\\Orlique\\_orlique\\");
}

TEST_CASE("a level of the user folder that cannot be made is logged with the path so far") {
  ScratchRegistry registry;
  ScratchFolder scratch;
  LogOn log;
  DebugOutput output;
  scratch.writeFile(L"Korvel Software\\Orlique", "a file in the way");
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", scratch.path());
  CHECK(GetUserFolderPath() == L"");
  CHECK(output.messages() ==
        Lines{L"GetUserFolderPath: Error occured - Path/File access error Path: " +
              scratch / L"Korvel Software\\Orlique"});
}

TEST_CASE("all four system folders are found") {
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", L"C:\\data");
  registry.setString(HKEY_CURRENT_USER, officeGeneral, L"Themes", L"Designs");
  registry.setString(HKEY_LOCAL_MACHINE, currentVersion, L"CommonFilesDir", L"C:\\common");
  registry.setString(HKEY_LOCAL_MACHINE, sharedTools, L"SharedFilesDir", L"C:\\shared\\");
  std::wstring data;
  std::wstring themes;
  std::wstring common;
  std::wstring shared;
  GetSystemFolders(L"6.0", {&data, &themes, &common, &shared});
  CHECK(data == L"C:\\data");
  CHECK(themes == L"C:\\data\\Microsoft\\Designs");
  CHECK(common == L"C:\\common");
  CHECK(shared == L"C:\\shared\\Themes11");
}

TEST_CASE("with a host version of four parts the user themes folder stays unset") {
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", L"C:\\data");
  registry.setString(HKEY_CURRENT_USER, officeGeneral, L"Themes", L"Designs");
  for (const auto* hostVersion : {L"6.0.2.1234", L"11.0", L"6", L"6.0 ", L""}) {
    std::wstring themes = L"untouched";
    GetSystemFolders(hostVersion, {.userThemes = &themes});
    CHECK(themes == L"untouched");
  }
}

TEST_CASE("missing system folders come back empty") {
  ScratchRegistry registry;
  std::wstring data = L"x";
  std::wstring themes = L"x";
  std::wstring common = L"x";
  std::wstring shared = L"x";
  GetSystemFolders(L"6.0", {&data, &themes, &common, &shared});
  CHECK(data == L"");
  CHECK(themes == L"");
  CHECK(common == L"");
  CHECK(shared == L"");
}

TEST_CASE("a user themes folder needs both its values") {
  ScratchRegistry registry;
  std::wstring themes = L"x";
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", L"C:\\data");
  GetSystemFolders(L"6.0", {.userThemes = &themes});
  CHECK(themes == L"");
  registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData", L"");
  registry.setString(HKEY_CURRENT_USER, officeGeneral, L"Themes", L"Designs");
  themes = L"x";
  GetSystemFolders(L"6.0", {.userThemes = &themes});
  CHECK(themes == L"");
}

TEST_CASE("each system folder is looked up although another is missing") {
  ScratchRegistry registry;
  registry.setNumber(HKEY_CURRENT_USER, shellFolders, L"AppData", 1);
  registry.setString(HKEY_LOCAL_MACHINE, sharedTools, L"SharedFilesDir", L"C:\\shared\\");
  std::wstring data = L"x";
  std::wstring shared;
  GetSystemFolders(L"6.0", {.applicationData = &data, .sharedThemes = &shared});
  CHECK(data == L"");
  CHECK(shared == L"C:\\shared\\Themes11");
}

TEST_CASE("asking for no system folder at all does no harm") {
  ScratchRegistry registry;
  CHECK_NOTHROW(GetSystemFolders(L"6.0", {}));
}

TEST_CASE("an error while the system folders are looked up is reported by the log") {
  ScratchRegistry registry;
  LogOn log;
  DebugOutput output;
  ImportPatch patch(nullptr, "advapi32.dll", "RegOpenKeyA", outOfMemory);
  std::wstring data = L"untouched";
  CHECK_NOTHROW(GetSystemFolders(L"6.0", {.applicationData = &data}));
  CHECK(data == L"untouched");
  CHECK(output.messages() ==
        Lines{L"Error 7 (Error while retrieving the shell folders.) in procedure GetSystemFolders "
              L"of Module modCommon"});
}

TEST_CASE("a machine setting is a string of the program's own machine key") {
  ScratchRegistry registry;
  const std::wstring own = L"SOFTWARE\\Korvel Software\\Quillet Viewer";
  CHECK(GetMachineSetting(L"DWTOnline") == L"");
  registry.setString(HKEY_LOCAL_MACHINE, own, L"DWTOnline", L"http://localhost/dwt/");
  registry.setNumber(HKEY_LOCAL_MACHINE, own, L"number", 1);
  CHECK(GetMachineSetting(L"DWTOnline") == L"http://localhost/dwt/");
  CHECK(GetMachineSetting(L"number") == L"");
  CHECK(GetMachineSetting(L"missing") == L"");
}

TEST_CASE("an error while a machine setting is read leaves it empty and is reported by the log") {
  ScratchRegistry registry;
  LogOn log;
  DebugOutput output;
  ImportPatch patch(nullptr, "advapi32.dll", "RegOpenKeyA", outOfMemory);
  CHECK(GetMachineSetting(L"DWTOnline") == L"");
  CHECK(output.messages() ==
        Lines{L"Error 7 (Out of memory) in procedure GetMachineSetting of Module modCommon"});
}

TEST_CASE("the shared folder is the registered one and ends in a backslash") {
  ScratchRegistry registry;
  registry.setString(HKEY_LOCAL_MACHINE, korvel, L"CommonPath", L"C:\\Korvel");
  CHECK(commonPath() == L"C:\\Korvel\\");
  registry.setString(HKEY_LOCAL_MACHINE, korvel, L"CommonPath", L"C:\\Korvel\\");
  CHECK(commonPath() == L"C:\\Korvel\\");
}

TEST_CASE("the shared folder is the module's own when none is registered") {
  ScratchRegistry registry;
  CHECK(commonPath() == module::folder());
  registry.setString(HKEY_LOCAL_MACHINE, korvel, L"Other", L"x");
  CHECK(commonPath() == module::folder());
  registry.setString(HKEY_LOCAL_MACHINE, korvel, L"CommonPath", L"");
  CHECK(commonPath() == module::folder());
}

namespace {

LRESULT CALLBACK framePrototype(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return DefWindowProcW(window, message, wParam, lParam);
}

// A window that goes with the test.
class TestWindow {
 public:
  TestWindow(const wchar_t* className, DWORD style, HWND parent = nullptr) {
    WNDCLASSW frame = {};
    frame.lpfnWndProc = framePrototype;
    frame.hInstance = GetModuleHandleW(nullptr);
    frame.lpszClassName = L"FrontPageExplorerWindow40";
    RegisterClassW(&frame);
    window_ = CreateWindowW(className, L"test", style, 10, 10, 300, 200, parent, nullptr,
                            frame.hInstance, nullptr);
  }
  ~TestWindow() { DestroyWindow(window_); }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;
  HWND get() const { return window_; }

 private:
  HWND window_ = nullptr;
};

constexpr wchar_t frameClass[] = L"FrontPageExplorerWindow40";
constexpr DWORD visibleFrame = WS_OVERLAPPEDWINDOW | WS_VISIBLE;

}  // namespace

TEST_CASE("the host's main window is found from itself") {
  TestWindow frame(frameClass, visibleFrame);
  SetActiveWindow(frame.get());
  CHECK(GetHostMainWindow() == frame.get());
}

TEST_CASE("the host's main window is found from a dialog it owns and from one above that") {
  TestWindow frame(frameClass, visibleFrame);
  TestWindow dialog(L"STATIC", WS_POPUP | WS_CAPTION | WS_VISIBLE, frame.get());
  TestWindow nested(L"STATIC", WS_POPUP | WS_CAPTION | WS_VISIBLE, dialog.get());
  SetActiveWindow(nested.get());
  CHECK(GetHostMainWindow() == frame.get());
}

TEST_CASE("of two frames the one above the active window is the host's main window") {
  TestWindow first(frameClass, visibleFrame);
  TestWindow second(frameClass, visibleFrame);
  for (const auto* frame : {&first, &second}) {
    TestWindow dialog(L"STATIC", WS_POPUP | WS_CAPTION | WS_VISIBLE, frame->get());
    SetActiveWindow(dialog.get());
    CHECK(GetHostMainWindow() == frame->get());
    TestWindow overlapped(L"STATIC", visibleFrame, frame->get());
    SetActiveWindow(overlapped.get());
    CHECK(GetHostMainWindow() == frame->get());
  }
}

TEST_CASE("the host's main window is found when no window or a foreign one is active") {
  TestWindow frame(frameClass, WS_OVERLAPPEDWINDOW);
  CHECK(GetHostMainWindow() == frame.get());
  TestWindow other(L"STATIC", visibleFrame);
  SetActiveWindow(other.get());
  CHECK(GetHostMainWindow() == frame.get());
}

TEST_CASE("without a window of the host's class there is no main window") {
  TestWindow other(L"STATIC", visibleFrame);
  SetActiveWindow(other.get());
  CHECK(GetHostMainWindow() == nullptr);
}

namespace {

constexpr CLSID explorerClass = {
    0x5d2a1f30, 0x61c7, 0x4b7e, {0x9c, 0x1d, 0x0a, 0x7f, 0x3e, 0x55, 0x20, 0x19}};
constexpr wchar_t explorerClassText[] = L"{5D2A1F30-61C7-4B7E-9C1D-0A7F3E552019}";

// The host's legacy automation object: takes one method by name.
class Explorer : public IDispatch {
 public:
  int calls = 0;
  HRESULT answer = S_OK;
  bool knowsMethod = true;
  ULONG references = 1;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    if (id != IID_IUnknown && id != IID_IDispatch) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    if (!knowsMethod || std::wstring(names[0]) != L"vtiBringToTop") return DISP_E_UNKNOWNNAME;
    *id = 7;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    if (id != 7) return DISP_E_MEMBERNOTFOUND;
    if (arguments->cArgs != 0) return DISP_E_BADPARAMCOUNT;
    ++calls;
    return answer;
  }
};

class ExplorerFactory : public IClassFactory {
 public:
  explicit ExplorerFactory(Explorer& explorer) : explorer_(explorer) {}
  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
    return explorer_.QueryInterface(id, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  Explorer& explorer_;
};

// The object's registration, machine-wide because only there the system looks; with a server
// program when one is named.
class Registered {
 public:
  explicit Registered(const std::wstring& server = {}) {
    machine::mayChange();
    set(progId() + L"\\CLSID", explorerClassText);
    if (!server.empty()) set(classKey() + L"\\LocalServer32", server);
  }
  ~Registered() {
    for (const auto& key :
         {progId() + L"\\CLSID", progId(), classKey() + L"\\LocalServer32", classKey()})
      RegDeleteKeyW(HKEY_LOCAL_MACHINE, key.c_str());
  }
  Registered(const Registered&) = delete;
  Registered& operator=(const Registered&) = delete;

 private:
  static std::wstring progId() { return L"Software\\Classes\\FrontPage.Explorer.6.0-test"; }
  static std::wstring classKey() {
    return std::wstring(L"Software\\Classes\\CLSID\\") + explorerClassText;
  }
  static void set(const std::wstring& key, const std::wstring& value) {
    RegSetValueW(HKEY_LOCAL_MACHINE, key.c_str(), REG_SZ, value.c_str(), 0);
  }
};

class RunningFactory {
 public:
  explicit RunningFactory(Explorer& explorer) : factory_(explorer) {
    CoRegisterClassObject(explorerClass, &factory_, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE,
                          &cookie_);
  }
  ~RunningFactory() { CoRevokeClassObject(cookie_); }
  RunningFactory(const RunningFactory&) = delete;
  RunningFactory& operator=(const RunningFactory&) = delete;

 private:
  ExplorerFactory factory_;
  DWORD cookie_ = 0;
};

}  // namespace

TEST_CASE("the host is brought to the front by the object that its version names") {
  Registered registered;
  Explorer explorer;
  {
    RunningFactory factory(explorer);
    SetHostProgID(L"6.0-test");
    BringHostToTop();
  }
  CHECK(explorer.calls == 1);
  CHECK(explorer.references == 1);
}

TEST_CASE("a host that is only in the table of running objects is brought to the front") {
  Registered registered;
  Explorer explorer;
  DWORD cookie = 0;
  REQUIRE(RegisterActiveObject(&explorer, explorerClass, ACTIVEOBJECT_STRONG, &cookie) == S_OK);
  SetHostProgID(L"6.0-test");
  BringHostToTop();
  RevokeActiveObject(cookie, nullptr);
  CHECK(explorer.calls == 1);
  CHECK(explorer.references == 1);
}

TEST_CASE("a host whose object is not registered is left alone in silence") {
  LogOn log;
  DebugOutput output;
  SetHostProgID(L"no such version");
  CHECK_NOTHROW(BringHostToTop());
  SetHostProgID(L"");
  CHECK_NOTHROW(BringHostToTop());
  CHECK(output.lines().empty());
}

TEST_CASE("a registered host that does not run is not started") {
  ScratchFolder scratch;
  LaunchRecorder recorder(scratch / L"host.exe");
  Registered registered(scratch / L"host.exe");
  SetHostProgID(L"6.0-test");
  BringHostToTop();
  CHECK_FALSE(recorder.commandLine(300).has_value());
}

TEST_CASE("a host object that refuses or lacks the method is logged and does no harm") {
  Registered registered;
  Explorer explorer;
  RunningFactory factory(explorer);
  LogOn log;
  DebugOutput output;
  SetHostProgID(L"6.0-test");
  explorer.answer = E_FAIL;
  CHECK_NOTHROW(BringHostToTop());
  explorer.knowsMethod = false;
  CHECK_NOTHROW(BringHostToTop());
  CHECK(explorer.references == 1);
  CHECK(output.messages() ==
        Lines{L"Error 440 (Automation error) in procedure BringHostToTop of Module modCommon",
              L"Error 438 (Object doesn't support this property or method) in procedure "
              L"BringHostToTop of Module modCommon"});
}

namespace {

// The launchers look their folder up once in a process, so all tests of one share it.
const ScratchFolder& viewers() {
  static ScratchFolder folder;
  return folder;
}

// Makes that folder the registered one.
struct ViewersRegistered {
  ViewersRegistered() {
    registry.setString(HKEY_LOCAL_MACHINE, korvel, L"CommonPath", viewers().path());
  }
  ScratchRegistry registry;
};

// How a program sees itself called.
std::wstring called(const wchar_t* program, const std::wstring& parameters) {
  return L"\"" + viewers() / program + L"\" " + parameters;
}

std::wstring quotedHelpFolder() { return L"\"" + module::folder() + L"QuilletHelp\\\""; }

}  // namespace

TEST_CASE("help is launched with the help folder alone") {
  ViewersRegistered registered;
  LaunchRecorder viewer(viewers() / L"KorvelHelp.exe");
  ModalDriver driver;
  ShowHelp();
  CHECK(viewer.commandLine() == called(L"KorvelHelp.exe", quotedHelpFolder()));
  CHECK(driver.boxes().empty());
}

TEST_CASE("help is launched with a topic which goes before the rest of a command line") {
  ViewersRegistered registered;
  LaunchRecorder viewer(viewers() / L"KorvelHelp.exe");
  ShowHelp(L"browse.htm");
  CHECK(viewer.commandLine() == called(L"KorvelHelp.exe", quotedHelpFolder() + L" /cbrowse.htm"));
  ShowHelp(L"browse.htm", L"/x");
  CHECK(viewer.commandLine() == called(L"KorvelHelp.exe", quotedHelpFolder() + L" /cbrowse.htm"));
}

TEST_CASE("help is launched with the rest of a command line when there is no topic") {
  ViewersRegistered registered;
  LaunchRecorder viewer(viewers() / L"KorvelHelp.exe");
  ShowHelp(L"", L"/x \u00e4");
  CHECK(viewer.commandLine() == called(L"KorvelHelp.exe", quotedHelpFolder() + L" /x \u00e4"));
}

TEST_CASE("quick help is launched with both arguments in quotes") {
  ViewersRegistered registered;
  LaunchRecorder viewer(viewers() / L"KorvelQuickHelp.exe");
  ModalDriver driver;
  ShowQuickHelp(L"C:\\a b\\readme.htm", L"A title");
  CHECK(viewer.commandLine() ==
        called(L"KorvelQuickHelp.exe", L"\"C:\\a b\\readme.htm\" \"A title\""));
  ShowQuickHelp(L"", L"");
  CHECK(viewer.commandLine() == called(L"KorvelQuickHelp.exe", L"\"\" \"\""));
  CHECK(driver.boxes().empty());
}

TEST_CASE("the folder of the viewers is looked up once") {
  ViewersRegistered registered;
  LaunchRecorder viewer(viewers() / L"KorvelHelp.exe");
  ModalDriver driver;
  ShowHelp();
  REQUIRE(viewer.commandLine().has_value());
  registered.registry.setString(HKEY_LOCAL_MACHINE, korvel, L"CommonPath", L"C:\\elsewhere");
  ShowHelp();
  CHECK(viewer.commandLine().has_value());
}

TEST_CASE("help without its viewer is told in a box with the critical icon") {
  ViewersRegistered registered;
  const TestWindow owner(L"STATIC", visibleFrame);
  ModalDriver driver;
  ShowHelp(L"", L"", owner.get());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == L"Unable to display help");
  CHECK(driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(driver.boxes()[0].buttons == Lines{L"OK"});
  CHECK(driver.boxes()[0].owner == owner.get());
}

TEST_CASE("quick help without its viewer is told in a box with the critical icon") {
  ViewersRegistered registered;
  const TestWindow owner(L"STATIC", visibleFrame);
  ModalDriver driver;
  ShowQuickHelp(L"a", L"b", owner.get());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == L"Unable to display quick help");
  CHECK(driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(driver.boxes()[0].owner == owner.get());
}
