#include "catalogue/TemplateScan.h"

#include "common/ansi.h"
#include "common/errors.h"
#include "common/handles.h"
#include "tests/catalogue/catalogue_support.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

namespace {

std::wstring systemText(DWORD code) {
  wchar_t buffer[2048] = {};
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                 buffer, 2048, nullptr);
  return buffer;
}

UINT errorMode() {
  const UINT mode = SetErrorMode(0);
  SetErrorMode(mode);
  return mode;
}

// Directory searches as another file system would answer them.
struct OtherFileSystem {
  static inline OtherFileSystem* current = nullptr;

  OtherFileSystem() { current = this; }
  ~OtherFileSystem() { current = nullptr; }
  OtherFileSystem(const OtherFileSystem&) = delete;
  OtherFileSystem& operator=(const OtherFileSystem&) = delete;

  static HANDLE WINAPI findFirst(LPCSTR pattern, LPWIN32_FIND_DATAA data) {
    current->modeDuringSearch = errorMode();
    if (std::string_view(pattern).starts_with(current->notReady) && !current->notReady.empty()) {
      SetLastError(ERROR_NOT_READY);
      return INVALID_HANDLE_VALUE;
    }
    const HANDLE search = current->first.original<decltype(findFirst)>()(pattern, data);
    if (search != INVALID_HANDLE_VALUE) current->change(*data);
    if (!current->breakingOff.empty() && std::string_view(pattern).ends_with(current->breakingOff))
      current->broken = search;
    return search;
  }

  static BOOL WINAPI findNext(HANDLE search, LPWIN32_FIND_DATAA data) {
    if (search == current->broken) {
      SetLastError(ERROR_NETNAME_DELETED);
      return FALSE;
    }
    const BOOL found = current->next.original<decltype(findNext)>()(search, data);
    if (found) current->change(*data);
    return found;
  }

  void change(WIN32_FIND_DATAA& data) const {
    if (data.cFileName == otherAttributesOf) data.dwFileAttributes = attributes;
  }

  ImportPatch first{nullptr, "kernel32.dll", "FindFirstFileA", findFirst};
  ImportPatch next{nullptr, "kernel32.dll", "FindNextFileA", findNext};
  std::string notReady;
  std::string breakingOff;  // how the patterns end whose searches do so behind the first entry
  HANDLE broken = nullptr;
  std::string otherAttributesOf;
  DWORD attributes = 0;
  UINT modeDuringSearch = 0;
};

// How often a description file is asked for a value, each of which opens it anew.
class ProfileReads {
 public:
  ProfileReads() {
    current_ = this;
    count_ = 0;
  }
  static int count() { return count_; }

 private:
  static DWORD WINAPI read(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD length,
                           LPCSTR file) {
    ++count_;
    return current_->patch_.original<decltype(read)>()(section, key, fallback, value, length, file);
  }

  static inline ProfileReads* current_ = nullptr;
  static inline int count_ = 0;
  ImportPatch patch_{nullptr, "kernel32.dll", "GetPrivateProfileStringA", read};
};

// A listed folder on the disk, and the list that its scan fills.
struct ScannedFolder {
  ScratchFolder listed;
  ListedTemplates list;
  TemplateScan scan{list};

  void run() { scan.ScanFolder(listed.path()); }
  std::wstring operator/(std::wstring_view relative) const { return listed / relative; }
};

}  // namespace

TEST_CASE("templates stand exactly one level below a listed folder") {
  ScannedFolder folder;
  folder.listed.writeFile(L"a.dwt");
  folder.listed.writeFile(L"T\\a.dwt");
  folder.listed.writeFile(L"T\\sub\\a.dwt");
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt"});
}

TEST_CASE("a listed template has its path and title and folder") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\home.dwt");
  folder.listed.writeFile(L"T\\quillet.ini", "[home]\r\nTitle=Home page\r\n");
  folder.run();
  REQUIRE(folder.list.rows.size() == 1);
  CHECK(folder.list.rows[0].key == folder / L"T\\home.dwt");
  CHECK(folder.list.rows[0].title == L"Home page");
  CHECK(folder.list.rows[0].folder == folder / L"T");
}

TEST_CASE("listing a template opens its description file once") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\home.dwt");
  folder.listed.writeFile(L"T\\quillet.ini", "[home]\r\nTitle=Home page\r\n");
  const ProfileReads reads;
  folder.run();
  CHECK(folder.list.rows.size() == 1);
  CHECK(reads.count() == 1);
}

TEST_CASE("a template folder may hold several templates and other files") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.listed.writeFile(L"T\\b.DWT");
  folder.listed.writeFile(L"T\\c.htm");
  folder.listed.writeFile(L"T\\d.dwt.txt");
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt", folder / L"T\\b.DWT"});
}

TEST_CASE("a listed folder may end in a backslash") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.scan.ScanFolder(folder.listed.path() + L"\\");
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt"});
  CHECK(folder.list.rows[0].folder == folder / L"T");
}

TEST_CASE("the private folders of the host are not scanned") {
  ScannedFolder folder;
  folder.listed.writeFile(L"_VTI_cnf\\a.dwt");
  folder.listed.writeFile(L"_vti_pvt\\a.dwt");
  folder.listed.writeFile(L"T\\a.dwt");
  int folders = 0;
  folder.list.onAsked = [&] { return ++folders > 0; };
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt"});
  // Five entries of the listed folder, T once more, and one template.
  CHECK(folders == 7);
}

TEST_CASE("a template folder with _vti later in its name is scanned but nothing in it is listed") {
  ScannedFolder folder;
  folder.listed.writeFile(L"x_vti\\a.dwt");
  folder.listed.writeFile(L"X_VTI2\\a.dwt");
  folder.run();
  CHECK(folder.list.keys() == Lines{});
  // Four entries, each folder once more, and a template in each.
  CHECK(folder.list.asked == 8);
}

TEST_CASE("a file with _vti in its name is not listed") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a_Vti.dwt");
  folder.listed.writeFile(L"T\\b.dwt");
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\b.dwt"});
}

TEST_CASE("the private name may straddle the end of the folder and the file name") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T_v\\ti.dwt");
  folder.listed.writeFile(L"T_v\\b.dwt");
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T_v\\b.dwt"});
}

TEST_CASE("a template whose archive attribute is cleared is not listed") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.listed.writeFile(L"T\\b.dwt");
  OtherFileSystem files;
  files.otherAttributesOf = "a.dwt";
  files.attributes = FILE_ATTRIBUTE_NORMAL;
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\b.dwt"});
}

TEST_CASE("a template is listed for its archive attribute whatever else is set") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  OtherFileSystem files;
  files.otherAttributesOf = "a.dwt";
  files.attributes = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY |
                     FILE_ATTRIBUTE_SYSTEM;
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt"});
}

TEST_CASE("a folder whose name ends in .dwt is no template") {
  ScannedFolder folder;
  folder.listed.makeFolder(L"T\\a.dwt");
  folder.listed.writeFile(L"T.dwt\\b.dwt");
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T.dwt\\b.dwt"});
}

TEST_CASE("a folder that is listed twice gives each template once") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.run();
  folder.scan.ScanFolder(text::toLower(folder.listed.path()) + L"\\");
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt"});
}

TEST_CASE("a scan logs the folder and each title") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\home.dwt");
  folder.listed.writeFile(L"T\\quillet.ini", "[home]\r\nTitle=Home page\r\n");
  folder.listed.writeFile(L"U\\news.dwt");
  const LoggingOn logging;
  const DebugOutput output;
  folder.run();
  CHECK(output.messages() ==
        Lines{L"Scanning folder: " + folder.listed.path(), L"Home page", L"news"});
}

TEST_CASE("listing templates reads the folder list and scans in its order") {
  ScratchRegistry registry;
  ScratchFolder first;
  ScratchFolder second;
  first.writeFile(L"T\\one.dwt");
  second.writeFile(L"T\\two.dwt");
  listForMachine(registry, second.path());
  listForUser(registry, first.path());
  const LoggingOn logging;
  const DebugOutput output;
  ListedTemplates list;
  TemplateScan(list).ListTemplates();
  CHECK(list.titles() == Lines{L"two", L"one"});
  CHECK(output.messages() == Lines{L"Reading DWT folders list...", L"key opened",
                                   L"Global - " + second.path(), L"User - " + first.path(),
                                   L"DWT folders list contains 2 items.", L"Enumerating DWTs...",
                                   L"Scanning folder: " + second.path(), L"two",
                                   L"Scanning folder: " + first.path(), L"one",
                                   L"DWT enumeration complete. 2 DWTs listed."});
}

TEST_CASE("a folder listed for the machine and by the user gives each template once") {
  ScratchRegistry registry;
  ScratchFolder folder;
  folder.writeFile(L"T\\one.dwt");
  listForMachine(registry, folder.path());
  listForUser(registry, folder.path());
  const LoggingOn logging;
  const DebugOutput output;
  ListedTemplates list;
  TemplateScan(list).ListTemplates();
  CHECK(list.titles() == Lines{L"one"});
  CHECK(output.has(L"DWT enumeration complete. 1 DWTs listed."));
}

TEST_CASE("an empty folder list logs no enumeration") {
  ScratchRegistry registry;
  const LoggingOn logging;
  const DebugOutput output;
  ListedTemplates list;
  TemplateScan(list).ListTemplates();
  CHECK(list.rows.empty());
  CHECK(list.asked == 0);
  CHECK(output.messages() ==
        Lines{L"Reading DWT folders list...", L"DWT folders list contains 0 items."});
}

TEST_CASE("a listed folder that does not exist is logged and the scan goes on") {
  ScratchRegistry registry;
  ScratchFolder folder;
  folder.writeFile(L"T\\one.dwt");
  listForMachine(registry, L"C:\\no such folder");
  listForUser(registry, folder.path());
  const LoggingOn logging;
  const DebugOutput output;
  ListedTemplates list;
  TemplateScan(list).ListTemplates();
  const std::wstring unopened = L"Could not open \" C:\\no such folder\\ \"";
  CHECK(output.has(unopened));
  CHECK(list.unopened == Lines{unopened});
  CHECK(list.folders == Lines{L"C:\\no such folder", folder.path()});
  CHECK(list.messages.empty());
  CHECK(list.titles() == Lines{L"one"});
}

namespace {

// What a folder of two templates has listed and logged when the searches whose patterns end so
// break off behind their first entry.
struct BrokenScan {
  explicit BrokenScan(const char* pattern) {
    folder.listed.writeFile(L"T\\one.dwt");
    folder.listed.writeFile(L"T\\two.dwt");
    OtherFileSystem disk;
    disk.breakingOff = pattern;
    const LoggingOn logging;
    folder.scan.ScanFolder(folder.listed.path());
  }

  ScannedFolder folder;
  DebugOutput output;
};

}  // namespace

TEST_CASE("a listed folder that breaks off in the middle is told of like one that cannot be read") {
  const BrokenScan scan("\\*.*");
  const std::wstring unopened = L"Could not open \" " + scan.folder.listed.path() + L"\\ \"";
  CHECK(scan.output.messages() ==
        Lines{L"Scanning folder: " + scan.folder.listed.path(), unopened});
  CHECK(scan.folder.list.unopened == Lines{unopened});
}

TEST_CASE("a template's folder that breaks off in the middle is logged behind what it had") {
  const BrokenScan scan("\\T\\*.dwt");
  CHECK(scan.folder.list.titles().size() == 1);
  CHECK(scan.output.has(L"Could not open \" " + (scan.folder / L"T") + L"\\ \""));
}

TEST_CASE("a listed file is logged as a folder that could not be opened") {
  ScannedFolder folder;
  folder.listed.writeFile(L"a.dwt");
  const LoggingOn logging;
  const DebugOutput output;
  folder.scan.ScanFolder(folder / L"a.dwt");
  CHECK(output.messages() == Lines{L"Scanning folder: " + (folder / L"a.dwt"),
                                   L"Could not open \" " + (folder / L"a.dwt") + L"\\ \""});
  CHECK(folder.list.messages.empty());
}

TEST_CASE("a percent sign in a listed path stays in the log line") {
  ListedTemplates list;
  const LoggingOn logging;
  const DebugOutput output;
  TemplateScan(list).ScanFolder(L"C:\\100%s|x");
  CHECK(output.has(L"Could not open \" C:\\100%s|x\\ \""));
}

TEST_CASE("a listed path outside the code page is logged as one that could not be opened") {
  ScratchFolder folder;
  folder.writeFile(L"\x4E2D\\T\\a.dwt");
  ListedTemplates list;
  const LoggingOn logging;
  const DebugOutput output;
  TemplateScan(list).ScanFolder(folder / L"\x4E2D");
  CHECK(list.rows.empty());
  CHECK(output.has(L"Could not open \" " + (folder / L"?") + L"\\ \""));
}

TEST_CASE("a drive that is not ready is shown and logged") {
  ScratchRegistry registry;
  ScratchFolder folder;
  folder.writeFile(L"T\\one.dwt");
  listForMachine(registry, L"Q:\\Templates");
  listForUser(registry, folder.path());
  OtherFileSystem files;
  files.notReady = "Q:\\";
  const LoggingOn logging;
  const DebugOutput output;
  ListedTemplates list;
  TemplateScan(list).ListTemplates();
  CHECK(list.messages ==
        Lines{L"Could not access Q:\\Templates\\.\r\n" + systemText(ERROR_NOT_READY)});
  CHECK_FALSE(systemText(ERROR_NOT_READY).empty());
  CHECK(output.has(L"Could not open \" Q:\\Templates\\ \""));
  CHECK(list.titles() == Lines{L"one"});
}

TEST_CASE("a drive that is not ready brings up no box of the system") {
  OtherFileSystem files;
  files.notReady = "Q:\\";
  const UINT before = errorMode();
  SetErrorMode(0);
  ListedTemplates list;
  TemplateScan(list).ScanFolder(L"Q:\\");
  CHECK((files.modeDuringSearch & SEM_FAILCRITICALERRORS) != 0);
  CHECK(errorMode() == 0);
  SetErrorMode(before);
}

TEST_CASE("events are let in once for each entry and again before each template folder") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.listed.writeFile(L"file.txt");
  folder.run();
  // Two dots, a file and a folder; the folder again; its one template.
  CHECK(folder.list.asked == 6);
}

TEST_CASE("a cancelled scan raises 512 and keeps what was listed") {
  ScratchRegistry registry;
  ScratchFolder folder;
  folder.writeFile(L"A\\one.dwt");
  folder.writeFile(L"B\\two.dwt");
  listForUser(registry, folder.path());
  ListedTemplates list;
  list.onAsked = [&] { return list.rows.empty(); };
  const long open = handles::liveCount();
  const LoggingOn logging;
  const DebugOutput output;
  std::wstring description;
  try {
    TemplateScan(list).ListTemplates();
  } catch (const Error& error) {
    CHECK(error.number() == 512);
    description = error.description();
  }
  CHECK(description == L"Operation Cancelled.");
  CHECK(list.titles() == Lines{L"one"});
  CHECK_FALSE(list.waiting);
  CHECK(handles::liveCount() == open);
  CHECK(output.messages().back() == L"one");
}

TEST_CASE("a cancellation inside a template folder is passed on and not logged") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.list.onAsked = [] { return false; };
  const LoggingOn logging;
  const DebugOutput output;
  CHECK(numberOf([&] { folder.scan.RecurseFiles(folder / L"T"); }) == 512);
  CHECK(output.messages() == Lines{});
}

TEST_CASE("a scan can be cancelled at its very first entry") {
  ScannedFolder folder;
  folder.list.onAsked = [] { return false; };
  CHECK(numberOf([&] { folder.run(); }) == 512);
  CHECK(folder.list.asked == 1);
}

TEST_CASE("another error ends its template folder with a log line and the scan goes on") {
  ScannedFolder folder;
  folder.listed.writeFile(L"A\\a.dwt");
  folder.listed.writeFile(L"A\\b.dwt");
  folder.listed.writeFile(L"B\\c.dwt");
  folder.list.onAdd = [&](const TemplateEntry& entry) {
    if (entry.title == L"a") throw Error(errors::outOfMemory);
  };
  const LoggingOn logging;
  const DebugOutput output;
  folder.run();
  CHECK(folder.list.titles() == Lines{L"c"});
  CHECK(output.messages() ==
        Lines{L"Scanning folder: " + folder.listed.path(),
              L"ERROR in procedure RecurseFiles of Form frmQuillet. Error : 7\tOut of memory",
              L"c"});
}

TEST_CASE("the wait cursor is there while templates are listed and gone afterwards") {
  ScratchRegistry registry;
  ScratchFolder folder;
  folder.writeFile(L"A\\one.dwt");
  folder.writeFile(L"B\\two.dwt");
  listForUser(registry, folder.path());
  ListedTemplates list;
  TemplateScan(list).ListTemplates();
  CHECK(list.addedWaiting);
  CHECK(list.inTurns);
  CHECK_FALSE(list.waiting);
}

TEST_CASE("scanning one folder alone shows the wait cursor too") {
  ScannedFolder folder;
  folder.listed.writeFile(L"A\\one.dwt");
  folder.run();
  CHECK(folder.list.addedWaiting);
  CHECK(folder.list.inTurns);
  CHECK_FALSE(folder.list.waiting);
}

TEST_CASE("a template folder that is deleted meanwhile gives nothing") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.list.onAsked = [&] {
    DeleteFileW((folder / L"T\\a.dwt").c_str());
    RemoveDirectoryW((folder / L"T").c_str());
    return true;
  };
  folder.run();
  CHECK(folder.list.rows.empty());
}

TEST_CASE("a template that is deleted meanwhile has the default title") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.listed.writeFile(L"T\\quillet.ini", "[a]\r\nTitle=Gone\r\n");
  folder.list.onAdd = [](const TemplateEntry& entry) { CHECK(entry.title == L"a"); };
  folder.list.onAsked = [&] {
    if (folder.list.asked == 5) {
      DeleteFileW((folder / L"T\\a.dwt").c_str());
      DeleteFileW((folder / L"T\\quillet.ini").c_str());
    }
    return true;
  };
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\a.dwt"});
}

TEST_CASE("template names may hold blanks and quotes and percent signs and umlauts") {
  ScannedFolder folder;
  const std::wstring name = L"T's 100% \x00E4\x00F6\x00FC\\it's 50% \x00DF [x].dwt";
  folder.listed.writeFile(name);
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / name});
  CHECK(folder.list.titles() == Lines{L"it's 50% \x00DF [x]"});
}

TEST_CASE("names outside the code page are passed over and logged") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\\x4E2D\x6587.dwt");
  folder.listed.writeFile(L"T\\plain.dwt");
  folder.listed.writeFile(L"\x4E2D\\a.dwt");
  const LoggingOn logging;
  const DebugOutput output;
  folder.run();
  CHECK(folder.list.keys() == Lines{folder / L"T\\plain.dwt"});
  CHECK(output.has(L"Could not open \" " + (folder / L"T\\??.dwt") + L" \""));
  CHECK(output.has(L"Could not open \" " + (folder / L"?\\") + L" \""));
}

TEST_CASE("a template folder that cannot be read is logged and the scan goes on") {
  ScannedFolder folder;
  folder.listed.writeFile(L"A\\a.dwt");
  folder.listed.writeFile(L"B\\b.dwt");
  OtherFileSystem files;
  files.notReady = text::toAnsi(folder / L"A\\");
  const LoggingOn logging;
  const DebugOutput output;
  folder.run();
  CHECK(folder.list.titles() == Lines{L"b"});
  CHECK(folder.list.messages.empty());
  CHECK(output.messages() == Lines{L"Scanning folder: " + folder.listed.path(),
                                   L"Could not open \" " + (folder / L"A\\") + L" \"", L"b"});
}

TEST_CASE("a template folder without templates logs nothing") {
  ScannedFolder folder;
  folder.listed.makeFolder(L"T");
  folder.listed.writeFile(L"U\\page.htm");
  const LoggingOn logging;
  const DebugOutput output;
  folder.run();
  CHECK(output.messages() == Lines{L"Scanning folder: " + folder.listed.path()});
}

TEST_CASE("a template whose path is as long as the system takes is listed") {
  ScannedFolder folder;
  const std::size_t room = 259 - folder.listed.path().size() - 2 - 6;
  const std::wstring name = std::wstring(room, L'x') + L"\\aa.dwt";
  folder.listed.writeFile(name);
  folder.run();
  REQUIRE(folder.list.rows.size() == 1);
  CHECK(folder.list.rows[0].key == folder / name);
  CHECK(folder.list.rows[0].title == L"aa");
}

TEST_CASE("a listed path longer than the system takes is logged and does no harm") {
  ListedTemplates list;
  const LoggingOn logging;
  const DebugOutput output;
  const std::wstring path = L"C:\\" + std::wstring(400, L'x');
  TemplateScan(list).ScanFolder(path);
  CHECK(list.rows.empty());
  CHECK(output.messages() ==
        Lines{L"Scanning folder: " + path, L"Could not open \" " + path + L"\\ \""});
}

TEST_CASE("a binary description file does not keep a template from being listed") {
  ScannedFolder folder;
  folder.listed.writeFile(L"T\\a.dwt");
  folder.listed.writeFile(L"T\\quillet.ini", std::string(5000, '\xFF'));
  folder.run();
  CHECK(folder.list.titles() == Lines{L"a"});
}
