// What unpacking an archive leaves as it was, and what it withstands.
#include <clocale>
#include <cstdlib>
#include <ctime>

#include "online/archive/modZipUnzip.h"
#include "tests/online/OwnModule.h"
#include "tests/online/archive/Unpacking.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"

namespace {

// The state of the C run-time that the library shares with the host.
struct RuntimeState {
  std::string locale = setlocale(LC_ALL, nullptr);
  std::string zone = std::getenv("TZ") ? std::getenv("TZ") : "(none)";
  long bias = _timezone;
  std::string systemZone = [] {
    char value[64] = "(none)";
    GetEnvironmentVariableA("TZ", value, sizeof value);
    return std::string(value);
  }();

  bool operator==(const RuntimeState&) const = default;
};

// A host with a locale and a time zone of its own.
class HostRuntime {
 public:
  HostRuntime() {
    setlocale(LC_ALL, "C");
    _putenv("TZ=XYZ-3");
    _tzset();
  }
  ~HostRuntime() {
    _putenv("TZ=");
    _tzset();
  }
  HostRuntime(const HostRuntime&) = delete;
  HostRuntime& operator=(const HostRuntime&) = delete;
};

}  // namespace

TEST_CASE("unpacking leaves the locale and the time zone of the process as they were") {
  const HostRuntime host;
  const RuntimeState before;
  CHECK(before.zone == "XYZ-3");
  CHECK(before.bias == -3 * 3600);
  const Unpacking unpacking(onePage());
  CHECK(unpacking.run());
  const RuntimeState after;
  CHECK(after.locale == before.locale);
  CHECK(after.zone == before.zone);
  CHECK(after.systemZone == before.systemZone);
  CHECK(after.bias == before.bias);
}

TEST_CASE("a file that is no archive is not mistaken for the archive beside it") {
  for (const wchar_t* name : {L"staging\\pack", L"staging\\pack.x"}) {
    ModalDriver driver;
    const Unpacking unpacking(onePage());
    const std::wstring archive = unpacking.scratch.writeFile(name, "no archive");
    CopyFileW(unpacking.archive.c_str(), (archive + L".zip").c_str(), FALSE);
    CHECK_FALSE(unzipFiles(archive, unpacking.folder));
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == notAnArchive(archive));
    CHECK(unpacking.scratch.tree() ==
          Tree{L"inside\\", L"staging\\", std::wstring(name) + L".zip", L"staging\\theme.zip"});
  }
}

TEST_CASE("an archive without an ending is unpacked and not the one beside it") {
  const Unpacking unpacking(onePage());
  const std::wstring archive =
      unpacking.scratch.writeFile(L"staging\\theme", ZipMaker().add("right.htm", "x").bytes());
  CHECK(unzipFiles(archive, unpacking.folder));
  CHECK(unpacking.read(L"right.htm") == "x");
  CHECK_FALSE(unpacking.scratch.exists(L"inside\\page.htm"));
}

TEST_CASE("a file with a bracket in its name that is no archive is named in a message") {
  for (const bool exists : {true, false}) {
    ModalDriver driver;
    const Unpacking unpacking(onePage());
    const std::wstring archive = unpacking.scratch / L"staging\\pack[1].zip";
    if (exists) unpacking.scratch.writeFile(L"staging\\pack[1].zip", "no archive");
    CHECK_FALSE(unzipFiles(archive, unpacking.folder));
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == notAnArchive(archive));
    CHECK(unpacking.untouched());
  }
}

TEST_CASE("an archive with a long comment is found by the end of its directory") {
  std::string bytes = onePage().bytes();
  const std::string comment(60000, '-');
  bytes[bytes.size() - 2] = static_cast<char>(comment.size() & 0xFF);
  bytes[bytes.size() - 1] = static_cast<char>(comment.size() >> 8);
  const Unpacking unpacking(onePage());
  const std::wstring archive =
      unpacking.scratch.writeFile(L"staging\\pack[1].zip", bytes + comment);
  CHECK(unzipFiles(archive, unpacking.folder));
  CHECK(unpacking.read(L"page.htm") == "new page");
}

namespace {

// The last lines of the log, as the unpacking writes them.
bool lastLogged(const DebugOutput& output, const std::wstring& part) {
  return !output.messages().empty() && output.messages().back().find(part) != std::wstring::npos;
}

UINT overwriteStyle = 0;
int WINAPI noteStyle(HWND, LPCWSTR, LPCWSTR, UINT style) {
  overwriteStyle = style;
  return IDNO;
}

HWND WINAPI noDialog(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM) {
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

// The disk is full for the unzip library, which is loaded for one call.
class FullDisk {
 public:
  FullDisk() : load_(nullptr, "KERNEL32.dll", "LoadLibraryExW", load) {
    original_ = load_.original<HMODULE WINAPI(LPCWSTR, HANDLE, DWORD)>();
  }

 private:
  static HMODULE WINAPI load(LPCWSTR path, HANDLE file, DWORD flags) {
    const HMODULE module = original_(path, file, flags);
    // Never undone: both are gone with the module.
    new ImportPatch(module, "msvcrt.dll", "_write", write);
    new ImportPatch(module, "msvcrt.dll", "fwrite", fileWrite);
    return module;
  }
  static int CDECL write(int, const void*, unsigned) { return -1; }
  static std::size_t CDECL fileWrite(const void*, std::size_t, std::size_t, void*) { return 0; }

  static inline HMODULE(WINAPI* original_)(LPCWSTR, HANDLE, DWORD) = nullptr;
  ImportPatch load_;
};

}  // namespace

TEST_CASE("an archive that is refused is logged with the first reason") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(
      ZipMaker().add("page.htm", "x").add("../evil.htm", "evil").add("last.htm", "x"));
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(output.has(L"Error 75 (" + driver.boxes()[0].text +
                   L") in procedure UnzipFiles of Module modCommon"));
  CHECK(lastLogged(output, L"CHOSEN FOLDER : ../EVIL.HTM"));
}

TEST_CASE("the overwrite question has the style of its two texts joined") {
  const Unpacking unpacking(onePage());
  unpacking.scratch.writeFile(L"inside\\page.htm", "old page");
  modZipUnzip::Options options;
  options.ZipFileName = unpacking.archive;
  options.ExtractDir = unpacking.folder;
  options.PromptOverwrite = true;
  std::wstring lastMessage;
  const ImportPatch patch(nullptr, "USER32.dll", "MessageBoxW", noteStyle);
  UnpackingBoxes boxes;
  modZipUnzip::Unzip(options, lastMessage, boxes);
  CHECK(overwriteStyle == 483);
  CHECK(unpacking.read(L"page.htm") == "old page");
}

TEST_CASE("a library of an unknown version is a clear message and no harm") {
  for (const char* version : {"5", "7"}) {
    const OwnModule own;
    own.useStandIn();
    SetEnvironmentVariableA("STANDIN_UNZIP_VERSION", version);
    ModalDriver driver;
    const Unpacking unpacking(onePage());
    CHECK_FALSE(unpacking.run());
    SetEnvironmentVariableA("STANDIN_UNZIP_VERSION", nullptr);
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == L"The unzip library \" " + (own.folder() / L"unzip32.dll") +
                                        L" \" has an unknown version. The product may have to be "
                                        L"reinstalled.");
    CHECK(unpacking.untouched());
    CHECK(GetModuleHandleW(L"unzip32.dll") == nullptr);
  }
}

TEST_CASE("a question for a password that cannot be asked leaves the archive packed") {
  ModalDriver driver;
  ZipMaker::Extras extras;
  extras.password = "sesame";
  const Unpacking unpacking(ZipMaker().add("page.htm", "secret", extras));
  {
    const ImportPatch patch(nullptr, "USER32.dll", "CreateDialogIndirectParamW", noDialog);
    CHECK_FALSE(unpacking.run());
  }
  CHECK(driver.boxes().empty());
  CHECK(unpacking.read(L"page.htm").empty());
  CHECK(GetModuleHandleW(L"unzip32.dll") == nullptr);
  // And the next question is asked again.
  typePassword(driver, L"sesame");
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == "secret");
}

TEST_CASE("a disk that is full while an archive is unpacked is logged without a message") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker().add("page.htm", std::string(100000, 'x')));
  {
    const FullDisk disk;
    CHECK_FALSE(unpacking.run());
  }
  CHECK(driver.boxes().empty());
  CHECK(lastLogged(output, L"PAGE.HTM IS PROBABLY TRUNCATED"));
  CHECK(unpacking.scratch.exists(L"staging\\theme.zip"));
}

namespace {

// How the unzip library was loaded last.
class LoadWatch {
 public:
  LoadWatch() : load_(nullptr, "KERNEL32.dll", "LoadLibraryExW", load) {
    original_ = load_.original<HMODULE WINAPI(LPCWSTR, HANDLE, DWORD)>();
  }

  static inline std::wstring path;
  static inline std::wstring loaded;  // what came of it; empty for nothing
  static inline DWORD flags = 0;

 private:
  static HMODULE WINAPI load(LPCWSTR name, HANDLE file, DWORD how) {
    path = name;
    flags = how;
    const HMODULE module = original_(name, file, how);
    wchar_t found[MAX_PATH] = {};
    if (module) GetModuleFileNameW(module, found, MAX_PATH);
    loaded = found;
    return module;
  }

  static inline HMODULE(WINAPI* original_)(LPCWSTR, HANDLE, DWORD) = nullptr;
  ImportPatch load_;
};

// Libraries of its name, that would do, in the current folder and first in the path.
class RivalLibraries {
 public:
  RivalLibraries() {
    GetCurrentDirectoryW(MAX_PATH, current_);
    path_.resize(GetEnvironmentVariableW(L"PATH", path_.data(), static_cast<DWORD>(path_.size())));
    for (const wchar_t* folder : {L"current\\unzip32.dll", L"path\\unzip32.dll"})
      REQUIRE(CopyFileW(OwnModule::besideProgram(L"unzip32.dll").c_str(),
                        disk_.writeFile(folder).c_str(), FALSE));
    SetCurrentDirectoryW((disk_ / L"current").c_str());
    SetEnvironmentVariableW(L"PATH", ((disk_ / L"path") + L";" + path_).c_str());
  }
  ~RivalLibraries() {
    SetEnvironmentVariableW(L"PATH", path_.c_str());
    SetCurrentDirectoryW(current_);
  }
  RivalLibraries(const RivalLibraries&) = delete;
  RivalLibraries& operator=(const RivalLibraries&) = delete;

 private:
  ScratchFolder disk_;
  wchar_t current_[MAX_PATH] = {};
  std::wstring path_ = std::wstring(32'767, L'\0');
};

}  // namespace

TEST_CASE(
    "another unzip library in the current folder or in the path is not the one that unpacks") {
  const OwnModule own;
  own.useStandIn();
  const RivalLibraries rivals;
  const LoadWatch watch;
  const Unpacking unpacking(onePage());
  CHECK(unpacking.run());
  CHECK(LoadWatch::loaded == own.folder() / L"unzip32.dll");
}

TEST_CASE("another unzip library in the current folder or in the path replaces no missing one") {
  const OwnModule own;
  const RivalLibraries rivals;
  const LoadWatch watch;
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == own.complaint());
  CHECK(LoadWatch::loaded.empty());
  CHECK(unpacking.untouched());
}

// With this flag the system looks beside the library first, and not beside the host's program.
TEST_CASE("what the unzip library imports itself is looked for beside it") {
  const OwnModule own;
  own.useStandIn();
  const LoadWatch watch;
  const Unpacking unpacking(onePage());
  CHECK(unpacking.run());
  CHECK(LoadWatch::path == own.folder() / L"unzip32.dll");
  CHECK(LoadWatch::flags == LOAD_WITH_ALTERED_SEARCH_PATH);
}
