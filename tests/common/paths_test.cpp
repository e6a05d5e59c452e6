#include "common/paths.h"

#include <string>
#include <vector>

#include "common/errors.h"
#include "common/handles.h"
#include "common/text.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using namespace modCommon;

namespace {

const wchar_t* const refused =
    L"\r\nInvalid file path or you do not have write permission to this location.";

DWORD refusal = 0;

BOOL WINAPI refuseToMake(LPCWSTR, LPSECURITY_ATTRIBUTES) {
  SetLastError(refusal);
  return FALSE;
}

// As systems do that count "C:" as a root.
BOOL WINAPI stripToDrive(LPSTR path) {
  path[2] = '\0';
  return TRUE;
}

std::vector<std::wstring> madeFolders;
decltype(&CreateDirectoryW) realCreateDirectory = nullptr;

BOOL WINAPI recordFolder(LPCWSTR name, LPSECURITY_ATTRIBUTES security) {
  madeFolders.emplace_back(name);
  return realCreateDirectory(name, security);
}

// A server on which nothing but a share is there.
DWORD WINAPI shareAlone(LPCWSTR name) {
  return std::wstring(name) == L"\\\\server\\share\\" ? FILE_ATTRIBUTE_DIRECTORY
                                                      : INVALID_FILE_ATTRIBUTES;
}
BOOL WINAPI recordShareFolder(LPCWSTR name, LPSECURITY_ATTRIBUTES) {
  madeFolders.emplace_back(name);
  return TRUE;
}

BOOL WINAPI largeFile(LPCWSTR, GET_FILEEX_INFO_LEVELS, LPVOID record) {
  auto* data = static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(record);
  data->nFileSizeHigh = 1;
  data->nFileSizeLow = 2;
  return TRUE;
}

// What the shell was asked for.
struct Launch {
  HWND owner;
  std::wstring verb;
  std::wstring file;
  std::wstring parameters;
  std::wstring folder;
  int show;
};
std::vector<Launch> launches;

HINSTANCE WINAPI recordLaunch(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters,
                              LPCWSTR folder, INT show) {
  launches.push_back({owner, verb, file, parameters, folder, show});
  return reinterpret_cast<HINSTANCE>(INT_PTR{33});
}

HANDLE WINAPI refuseToOpen(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) {
  SetLastError(refusal);
  return INVALID_HANDLE_VALUE;
}

BOOL WINAPI refuseToWrite(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) {
  SetLastError(refusal);
  return FALSE;
}

BOOL WINAPI writeHalf(HANDLE, LPCVOID, DWORD length, LPDWORD written, LPOVERLAPPED) {
  *written = length / 2;
  return TRUE;
}

BOOL WINAPI refuseToDelete(LPCWSTR) {
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

std::wstring written;  // what the probe wrote, and under which name
std::wstring deleted;

BOOL WINAPI recordDeletion(LPCWSTR name) {
  deleted = name;
  const handles::File file(
      CreateFileW(name, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  char bytes[64] = {};
  DWORD length = 0;
  ReadFile(file.get(), bytes, sizeof bytes, &length, nullptr);
  written.assign(bytes, bytes + length);
  return TRUE;
}

std::vector<std::wstring> opened;
DWORD lastDisposition = 0;
decltype(&CreateFileW) realCreateFile = nullptr;

HANDLE WINAPI firstNameIsTaken(LPCWSTR name, DWORD access, DWORD share,
                               LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                               HANDLE pattern) {
  opened.emplace_back(name);
  lastDisposition = disposition;
  if (opened.size() == 1) {
    SetLastError(ERROR_FILE_EXISTS);
    return INVALID_HANDLE_VALUE;
  }
  return realCreateFile(name, access, share, security, disposition, flags, pattern);
}

UINT modeWhileMaking = 0;

BOOL WINAPI recordErrorMode(LPCWSTR, LPSECURITY_ATTRIBUTES) {
  modeWhileMaking = SetErrorMode(0);
  SetErrorMode(modeWhileMaking);
  return TRUE;
}

// The box that the making of a folder shows when the system refuses with this code.
ShownBox boxFor(DWORD code, const std::wstring& path) {
  ModalDriver driver;
  refusal = code;
  ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", refuseToMake);
  CHECK_FALSE(CreateFolderPath(path));
  REQUIRE(driver.boxes().size() == 1);
  return driver.boxes().front();
}

// The same for the test of a folder.
ShownBox probeBoxFor(DWORD code, const std::wstring& folder) {
  ModalDriver driver;
  refusal = code;
  ImportPatch patch(nullptr, "kernel32.dll", "CreateFileW", refuseToOpen);
  CHECK_FALSE(CanWriteToFolder(folder));
  REQUIRE(driver.boxes().size() == 1);
  return driver.boxes().front();
}

}  // namespace

TEST_CASE("a folder path with several missing levels is made whole") {
  ScratchFolder scratch;
  CHECK(CreateFolderPath(scratch / L"one\\two words\\dr\u00e4\u0416"));
  CHECK(scratch.tree() == std::vector<std::wstring>{L"one\\", L"one\\two words\\",
                                                    L"one\\two words\\dr\u00e4\u0416\\"});
}

TEST_CASE("the missing levels of a folder path are made outermost first") {
  ScratchFolder scratch;
  scratch.makeFolder(L"one");
  madeFolders.clear();
  const ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", recordFolder);
  realCreateDirectory = patch.original<BOOL WINAPI(LPCWSTR, LPSECURITY_ATTRIBUTES)>();
  CHECK(CreateFolderPath(scratch / L"one\\two\\three\\four"));
  CHECK(madeFolders == std::vector<std::wstring>{scratch / L"one\\two\\",
                                                 scratch / L"one\\two\\three\\",
                                                 scratch / L"one\\two\\three\\four"});
}

TEST_CASE("of a path on a share what is above the share is not made") {
  madeFolders.clear();
  const ImportPatch asking(nullptr, "kernel32.dll", "GetFileAttributesW", shareAlone);
  const ImportPatch making(nullptr, "kernel32.dll", "CreateDirectoryW", recordShareFolder);
  CHECK(CreateFolderPath(L"\\\\server\\share\\one\\two"));
  CHECK(madeFolders ==
        std::vector<std::wstring>{L"\\\\server\\share\\one\\", L"\\\\server\\share\\one\\two"});
}

TEST_CASE("a folder that is written to is named up to its first NUL") {
  const ScratchFolder scratch;
  ModalDriver driver;
  CHECK(CanWriteToFolder(scratch.path() + std::wstring(L"\0behind", 7)));
  CHECK(driver.boxes().empty());
}

TEST_CASE("a file's size may take more than 32 bits") {
  const ImportPatch patch(nullptr, "kernel32.dll", "GetFileAttributesExW", largeFile);
  CHECK(fileSize(L"C:\\large") == 0x100000002);
}

TEST_CASE("a file that has gone has no size") {
  const ScratchFolder scratch;
  try {
    fileSize(scratch / L"gone.htm");
    FAIL("no error");
  } catch (const Error& error) {
    CHECK(error.number() == errors::fileNotFound);
  }
}

TEST_CASE("a folder path with a trailing backslash is made whole") {
  ScratchFolder scratch;
  CHECK(CreateFolderPath(scratch / L"one\\two\\"));
  CHECK(scratch.exists(L"one\\two"));
}

TEST_CASE("an existing folder path is answered with true and nothing is made") {
  ScratchFolder scratch;
  scratch.makeFolder(L"one\\two");
  ModalDriver driver;
  refusal = ERROR_ACCESS_DENIED;
  ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", refuseToMake);
  CHECK(CreateFolderPath(scratch / L"one\\two"));
  CHECK(CreateFolderPath(scratch / L"one\\two\\"));
  CHECK(CreateFolderPath(L"C:\\"));
  CHECK(driver.boxes().empty());
}

TEST_CASE("hidden and system folders on the way count as existing") {
  ScratchFolder scratch;
  const std::wstring hidden = scratch.makeFolder(L"hidden");
  SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  ModalDriver driver;
  CHECK(CreateFolderPath(hidden + L"\\new"));
  CHECK(scratch.exists(L"hidden\\new"));
  CHECK(driver.boxes().empty());
}

TEST_CASE("a path without a root is answered with true and nothing is made") {
  ScratchFolder scratch;
  ModalDriver driver;
  refusal = ERROR_ACCESS_DENIED;
  ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", refuseToMake);
  for (const auto* path : {L"", L"one\\two", L"C:one\\two", L"one", L".\\one", L"C:"}) {
    CAPTURE(std::wstring(path));
    CHECK(CreateFolderPath(path));
  }
  CHECK(driver.boxes().empty());
}

TEST_CASE("a path from a drive's current folder has no root where the system finds the drive") {
  ScratchFolder scratch;
  ModalDriver driver;
  refusal = ERROR_ACCESS_DENIED;
  ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", refuseToMake);
  ImportPatch strip(nullptr, "shlwapi.dll", "PathStripToRootA", stripToDrive);
  for (const auto* path : {L"C:one\\two", L"C:one", L"C:"}) {
    CAPTURE(std::wstring(path));
    CHECK(CreateFolderPath(path));
  }
  CHECK(driver.boxes().empty());
}

TEST_CASE("a file in the place of a folder is a path access error") {
  ScratchFolder scratch;
  scratch.writeFile(L"file.txt", "x");
  ModalDriver driver;
  CHECK_FALSE(CreateFolderPath(scratch / L"file.txt"));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == scratch / L"file.txt" + refused);
  CHECK(scratch.readFile(L"file.txt") == "x");
}

TEST_CASE("a failing folder path is shown in one box with the critical icon and the title") {
  ScratchFolder scratch;
  const ShownBox box = boxFor(ERROR_ACCESS_DENIED, scratch / L"a\\b\\c");
  CHECK(box.title == L"Quillet Viewer");
  CHECK(box.icon == MB_ICONHAND);
  CHECK(box.buttons == std::vector<std::wstring>{L"OK"});
  CHECK(box.text == scratch / L"a\\b\\c" + refused);
}

TEST_CASE("on a drive without a medium a folder path gives the text of error 71") {
  ScratchFolder scratch;
  CHECK(boxFor(ERROR_NOT_READY, scratch / L"a").text ==
        L"The disk not ready or the path does not exist.");
}

TEST_CASE("on a drive without a medium the test of a folder gives the text of error 71") {
  CHECK(probeBoxFor(ERROR_NOT_READY, L"A:").text ==
        L"The disk not ready or the path does not exist.");
}

TEST_CASE("a bad name gives the text of error 52") {
  ScratchFolder scratch;
  const std::wstring text = L"The disk is not in the drive or the specified path does not exist.";
  CHECK(boxFor(ERROR_INVALID_NAME, scratch / L"a").text == text);
  CHECK(boxFor(ERROR_BAD_NETPATH, L"\\\\nowhere\\share\\a").text == text);
  CHECK(probeBoxFor(ERROR_INVALID_NAME, scratch.path()).text == text);
}

TEST_CASE("a folder path with wild cards gives the text of error 52") {
  ScratchFolder scratch;
  ModalDriver driver;
  CHECK_FALSE(CreateFolderPath(scratch / L"what*?"));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        L"The disk is not in the drive or the specified path does not exist.");
  CHECK(scratch.tree().empty());
}

TEST_CASE("a missing path gives the text of error 76") {
  ScratchFolder scratch;
  ModalDriver driver;
  CHECK_FALSE(CanWriteToFolder(scratch / L"missing"));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == L"The path could not be found.");
  CHECK(boxFor(ERROR_PATH_NOT_FOUND, scratch / L"a").text == L"The path could not be found.");
}

TEST_CASE("any other error shows its own description") {
  ScratchFolder scratch;
  CHECK(boxFor(ERROR_DISK_FULL, scratch / L"a").text == L"Disk full");
  CHECK(probeBoxFor(ERROR_TOO_MANY_OPEN_FILES, scratch.path()).text == L"Too many files");
  CHECK(probeBoxFor(ERROR_SHARING_VIOLATION, scratch.path()).text == L"Permission denied");
}

TEST_CASE("a read-only medium gives the text of error 75 and no file stays behind") {
  ScratchFolder scratch;
  CHECK(probeBoxFor(ERROR_WRITE_PROTECT, scratch.path()).text == scratch.path() + refused);
  CHECK(boxFor(ERROR_WRITE_PROTECT, scratch / L"a").text == scratch / L"a" + refused);
  CHECK(scratch.tree().empty());
}

TEST_CASE("a folder that may be written to is answered with true and left empty") {
  ScratchFolder scratch;
  ModalDriver driver;
  const long before = handles::liveCount();
  CHECK(CanWriteToFolder(scratch.path()));
  CHECK(scratch.tree().empty());
  CHECK(driver.boxes().empty());
  CHECK(handles::liveCount() == before);
}

TEST_CASE("the test file bears RND and five digits and holds eleven letters") {
  ScratchFolder scratch;
  {
    ImportPatch patch(nullptr, "kernel32.dll", "DeleteFileW", recordDeletion);
    CHECK(CanWriteToFolder(scratch.path()));
  }
  CHECK(written == L"XXXXXXXXXXX");
  REQUIRE(deleted.size() == scratch.path().size() + 9);
  CHECK(deleted.substr(0, scratch.path().size() + 4) == scratch.path() + L"\\RND");
  CHECK(deleted.find_first_not_of(L"0123456789", scratch.path().size() + 4) == deleted.npos);
}

TEST_CASE("a file that bears the name of the test file is left alone") {
  ScratchFolder scratch;
  opened.clear();
  ImportPatch patch(nullptr, "kernel32.dll", "CreateFileW", firstNameIsTaken);
  realCreateFile = patch.original<std::remove_pointer_t<decltype(&CreateFileW)>>();
  CHECK(CanWriteToFolder(scratch.path()));
  REQUIRE(opened.size() == 2);
  CHECK(opened[0] != opened[1]);
  CHECK(lastDisposition == CREATE_NEW);
}

TEST_CASE("a folder in which every name is taken fails instead of trying for ever") {
  ScratchFolder scratch;
  CHECK(probeBoxFor(ERROR_FILE_EXISTS, scratch.path()).text == L"File already exists");
}

TEST_CASE("a write that fails is shown and leaves no file behind") {
  ScratchFolder scratch;
  ModalDriver driver;
  {
    refusal = ERROR_DISK_FULL;
    ImportPatch patch(nullptr, "kernel32.dll", "WriteFile", refuseToWrite);
    CHECK_FALSE(CanWriteToFolder(scratch.path()));
  }
  {
    ImportPatch patch(nullptr, "kernel32.dll", "WriteFile", writeHalf);
    CHECK_FALSE(CanWriteToFolder(scratch.path()));
  }
  REQUIRE(driver.boxes().size() == 2);
  CHECK(driver.boxes()[0].text == L"Disk full");
  CHECK(driver.boxes()[1].text == L"Disk full");
  CHECK(scratch.tree().empty());
}

TEST_CASE("a test file that cannot be deleted again is a failure") {
  ScratchFolder scratch;
  ModalDriver driver;
  ImportPatch patch(nullptr, "kernel32.dll", "DeleteFileW", refuseToDelete);
  CHECK_FALSE(CanWriteToFolder(scratch.path()));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == scratch.path() + refused);
}

TEST_CASE("a failure is shown over the window that asked") {
  ScratchFolder scratch;
  const HWND owner = CreateWindowW(L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                   100, nullptr, nullptr, nullptr, nullptr);
  ModalDriver driver;
  CHECK_FALSE(CanWriteToFolder(scratch / L"missing", owner));
  CHECK_FALSE(CreateFolderPath(scratch / L"what?", owner));
  REQUIRE(driver.boxes().size() == 2);
  CHECK(driver.boxes()[0].owner == owner);
  CHECK(driver.boxes()[1].owner == owner);
  DestroyWindow(owner);
}

TEST_CASE("file operations keep the system's own boxes away and give the error mode back") {
  ScratchFolder scratch;
  const UINT previous = SetErrorMode(SEM_NOGPFAULTERRORBOX);
  {
    ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", recordErrorMode);
    CHECK(CreateFolderPath(scratch / L"new"));
  }
  CHECK(modeWhileMaking == (SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX));
  CanWriteToFolder(scratch.path());
  fileExists(L"A:\\x");
  CHECK(SetErrorMode(previous) == SEM_NOGPFAULTERRORBOX);
}

TEST_CASE("making a folder that cannot be made raises an error with its number") {
  ScratchFolder scratch;
  const std::pair<DWORD, long> expected[] = {{ERROR_ALREADY_EXISTS, 75}, {ERROR_ACCESS_DENIED, 75},
                                             {ERROR_WRITE_PROTECT, 75},  {ERROR_CANNOT_MAKE, 75},
                                             {ERROR_PATH_NOT_FOUND, 76}, {ERROR_NOT_READY, 71},
                                             {ERROR_INVALID_NAME, 52},   {ERROR_DISK_FULL, 61}};
  ImportPatch patch(nullptr, "kernel32.dll", "CreateDirectoryW", refuseToMake);
  for (const auto& [code, number] : expected) {
    const DWORD row = code;
    CAPTURE(row);
    refusal = code;
    long raised = 0;
    try {
      makeFolder(scratch / L"a");
    } catch (const Error& error) {
      raised = error.number();
    }
    CHECK(raised == number);
  }
}

TEST_CASE("a path gets a backslash only when it ends in none") {
  CHECK(withBackslash(L"C:\\a") == L"C:\\a\\");
  CHECK(withBackslash(L"C:\\a\\") == L"C:\\a\\");
  CHECK(withBackslash(L"") == L"\\");
}

TEST_CASE("files and folders are told apart and hidden ones are seen") {
  ScratchFolder scratch;
  const std::wstring file = scratch.writeFile(L"file.txt");
  const std::wstring folder = scratch.makeFolder(L"folder");
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  SetFileAttributesW(folder.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  CHECK(fileExists(file));
  CHECK_FALSE(folderExists(file));
  CHECK(folderExists(folder));
  CHECK(folderExists(folder + L"\\"));
  CHECK_FALSE(fileExists(folder));
  CHECK_FALSE(fileExists(scratch / L"missing"));
  CHECK_FALSE(folderExists(scratch / L"missing"));
  CHECK_FALSE(fileExists(L""));
  CHECK_FALSE(folderExists(L""));
}

TEST_CASE("a wild card is no name of a file or folder") {
  ScratchFolder scratch;
  scratch.writeFile(L"file.txt");
  scratch.makeFolder(L"folder");
  CHECK_FALSE(fileExists(scratch / L"*.txt"));
  CHECK_FALSE(fileExists(scratch / L"file.???"));
  CHECK_FALSE(folderExists(scratch / L"f*"));
}

TEST_CASE("the shell opens a file with its parameters without an owner and shows it normally") {
  launches.clear();
  const ImportPatch patch(nullptr, "shell32.dll", "ShellExecuteW", recordLaunch);
  CHECK(ShellOpen(L"C:\\a b\\viewer.exe", L"\"one\" two") == 33);
  REQUIRE(launches.size() == 1);
  CHECK(launches[0].owner == nullptr);
  CHECK(launches[0].verb == L"open");
  CHECK(launches[0].file == L"C:\\a b\\viewer.exe");
  CHECK(launches[0].parameters == L"\"one\" two");
  CHECK(launches[0].folder == L"");
  CHECK(launches[0].show == 1);
}

TEST_CASE("opening a missing file answers with a number below 33 and changes no folder") {
  ScratchFolder scratch;
  wchar_t before[MAX_PATH] = {};
  wchar_t after[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, before);
  const int result = ShellOpen(scratch / L"missing.exe", L"");
  GetCurrentDirectoryW(MAX_PATH, after);
  CHECK(result == ERROR_FILE_NOT_FOUND);
  CHECK(std::wstring(before) == after);
}

TEST_CASE("a file URL gives its local path and no other address does") {
  CHECK(localPathOf(L"file:///C:/My%20Webs/site") == L"C:\\My Webs\\site");
  CHECK(localPathOf(L"file:///C:/My Webs/site/") == L"C:\\My Webs\\site\\");
  CHECK(localPathOf(L"file://server/share/site") == L"\\\\server\\share\\site");
  CHECK(localPathOf(L"file:///C:/50%2520off/C%231") == L"C:\\50%20off\\C#1");
  CHECK(localPathOf(L"http://server/sub").empty());
  CHECK(localPathOf(L"C:\\folder").empty());
  CHECK(localPathOf(L"").empty());
  CHECK(localPathOf(L"file:///C:/" + std::wstring(MAX_PATH, L'n')).empty());
}

namespace {

bool liesWithin(const std::wstring& path, const std::wstring& folder) {
  return KnownFolder(folder).holds(path);
}

}  // namespace

TEST_CASE("a folder and what is below it lies within it and nothing else does") {
  ScratchFolder disk;
  const std::wstring folder = disk.makeFolder(L"web\\Blue");
  disk.makeFolder(L"web\\Blue2");
  disk.makeFolder(L"web\\Blue\\images");
  CHECK(liesWithin(folder, folder));
  CHECK(liesWithin(folder + L"\\", folder));
  CHECK(liesWithin(folder, folder + L"\\"));
  CHECK(liesWithin(folder + L"\\images", folder));
  CHECK(liesWithin(folder + L"\\new\\deep\\er", folder));
  CHECK(liesWithin(folder + L"\\x\\..\\images", folder));
  CHECK(liesWithin(text::replaceAll(folder, L"\\", L"/"), folder));
  CHECK_FALSE(liesWithin(disk / L"web\\Blue2", folder));
  CHECK_FALSE(liesWithin(disk / L"web\\Blue2\\new", folder));
  CHECK_FALSE(liesWithin(disk / L"web", folder));
  CHECK_FALSE(liesWithin(folder + L"\\..\\Red", folder));
  CHECK_FALSE(liesWithin(L"Q:\\gone", folder));
}

TEST_CASE("a folder is at its own path however that is written and at no other") {
  ScratchFolder disk;
  const std::wstring folder = disk.makeFolder(L"web\\Blue");
  disk.makeFolder(L"web\\Blue\\images");
  const KnownFolder known(folder);
  for (const auto& path : {folder, folder + L"\\", disk / L"WEB\\x\\..\\blue", L"\\\\?\\" + folder})
    CHECK(known.isAt(path));
  for (const auto& path :
       {folder + L"\\images", disk / L"web", disk / L"web\\gone", std::wstring()})
    CHECK_FALSE(known.isAt(path));
  CHECK_FALSE(KnownFolder(L"").isAt(L""));
}

TEST_CASE("an address is read as escaped and as it stands") {
  CHECK(localPathsOf(L"file:///C:/my%20webs/a") ==
        std::vector<std::wstring>{L"C:\\my webs\\a", L"C:\\my%20webs\\a"});
  CHECK(localPathsOf(L"file:///C:/C#1/").back() == L"C:\\C#1\\");
  CHECK(localPathsOf(L"file:///C:/my webs") == std::vector<std::wstring>{L"C:\\my webs"});
  CHECK(localPathsOf(L"file://server/share/a") ==
        std::vector<std::wstring>{L"\\\\server\\share\\a"});
  CHECK(localPathsOf(L"http://server/sub").empty());
  CHECK(localPathsOf(L"").empty());
}

TEST_CASE("what has no path lies nowhere and holds nothing") {
  ScratchFolder disk;
  CHECK_FALSE(liesWithin(L"", disk.path()));
  CHECK_FALSE(liesWithin(disk.path(), L""));
  CHECK_FALSE(liesWithin(L"", L""));
  CHECK_FALSE(liesWithin(disk.path(), disk / L"gone"));
}

TEST_CASE("a folder is known in any letter case and by its short name") {
  ScratchFolder disk;
  const std::wstring folder = disk.makeFolder(L"A folder with a long name");
  std::wstring upper = folder;
  CharUpperW(upper.data());
  wchar_t shortName[MAX_PATH] = {};
  GetShortPathNameW(folder.c_str(), shortName, MAX_PATH);
  REQUIRE(std::wstring(shortName).find(L'~') != std::wstring::npos);
  CHECK(liesWithin(upper + L"\\new", folder));
  CHECK(liesWithin(folder + L"\\new", upper));
  CHECK(liesWithin(std::wstring(shortName) + L"\\new", folder));
  CHECK(liesWithin(folder + L"\\new", shortName));
}

TEST_CASE("a folder is known under a name of another kind") {
  ScratchFolder disk;
  const std::wstring folder = disk.makeFolder(L"Blue");
  disk.makeFolder(L"Red");
  const std::wstring other = L"\\\\?\\" + folder;
  CHECK(liesWithin(other, folder));
  CHECK(liesWithin(other + L"\\new\\deep", folder));
  CHECK(liesWithin(folder + L"\\new", other));
  CHECK_FALSE(liesWithin(L"\\\\?\\" + disk / L"Red", folder));
}

TEST_CASE("what lies on a server's share does not lie on the current drive") {
  wchar_t current[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, current);
  const std::wstring drive = std::wstring(current).substr(0, 3);
  CHECK_FALSE(liesWithin(L"\\\\server\\share", drive));
  CHECK_FALSE(liesWithin(L"\\\\server\\share\\web", drive));
  CHECK(liesWithin(L"\\\\server\\share\\web", L"\\\\SERVER\\share"));
}

TEST_CASE("the current folder does not stand for its whole drive") {
  ScratchFolder disk;
  wchar_t before[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, before);
  const std::wstring folder = disk.makeFolder(L"Blue");
  const std::wstring outside = disk.makeFolder(L"Red");
  SetCurrentDirectoryW(folder.c_str());
  CHECK_FALSE(liesWithin(outside, folder));
  CHECK(liesWithin(folder, folder.substr(0, 3)));
  SetCurrentDirectoryW(before);
}

namespace {

BOOL WINAPI tellNothing(HANDLE, BY_HANDLE_FILE_INFORMATION* data) {
  *data = {};
  return TRUE;
}

BOOL WINAPI refuseToTell(HANDLE, BY_HANDLE_FILE_INFORMATION*) {
  SetLastError(ERROR_NOT_SUPPORTED);
  return FALSE;
}

}  // namespace

TEST_CASE("a file system that cannot tell its folders apart leaves their names to do so") {
  ScratchFolder disk;
  const std::wstring folder = disk.makeFolder(L"Blue");
  disk.makeFolder(L"Red");
  std::wstring upper = folder;
  CharUpperW(upper.data());
  for (auto* answer : {tellNothing, refuseToTell}) {
    const ImportPatch patch(nullptr, "kernel32.dll", "GetFileInformationByHandle", answer);
    CHECK(liesWithin(upper + L"\\new", folder));
    CHECK_FALSE(liesWithin(disk / L"Red", folder));
    CHECK_FALSE(liesWithin(disk.path(), folder));
  }
}
