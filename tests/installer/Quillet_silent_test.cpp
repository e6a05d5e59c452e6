// The setup program and the one that removes, run silently.
#include <shlwapi.h>

#include <algorithm>
#include <set>

#include "tests/installer/Setup.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

using machine::Lines;
using package::CleanMachine;
using package::install;
using package::machineFolder;
using package::remove;
using package::Run;
using package::userFolder;

namespace {

const std::wstring classId = L"{EA65D517-CDCA-46D0-BD68-449BB8328D69}";
const std::wstring libraryId = L"{C5C4A6FE-C4FE-4D30-8B40-F7F9865B65BE}";
const std::wstring logonKey =
    L"Software\\Microsoft\\Active Setup\\Installed Components\\" + classId;

enum class For { everyone, user };

std::wstring folderOf(For whom) { return whom == For::everyone ? machineFolder() : userFolder(); }
std::wstring switchOf(For whom) { return whom == For::everyone ? L"/AllUsers" : L"/CurrentUser"; }
HKEY rootOf(For whom) { return whom == For::everyone ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

// A value below `key`, as machine::registry tells it.
struct Values {
  std::set<std::wstring> lines;

  void add(const std::wstring& key, const std::wstring& name, const std::wstring& text) {
    lines.insert(key + L" [" + name + L"] = \"" + text + L"\"");
  }
  void number(const std::wstring& key, const std::wstring& name, int value) {
    lines.insert(key + L" [" + name + L"] = dword " + std::to_wstring(value));
  }
};

void addModule(Values& values, const std::wstring& root, const std::wstring& folder) {
  const std::wstring file = folder + L"\\Quillet.dll";
  const std::wstring title = L"Orlique Dynamic Web Template";
  const std::wstring addIn = L"HKCU\\" + package::addInKey;
  const std::wstring clsid = root + L"\\" + package::classKey;
  const std::wstring library = root + L"\\Software\\Classes\\TypeLib\\" + libraryId + L"\\1.0";
  values.add(addIn, L"FriendlyName", L"Orlique Quillet");
  values.add(addIn, L"Description", title);
  values.number(addIn, L"LoadBehavior", 3);
  values.number(addIn, L"CommandLineSafe", 0);
  values.add(clsid, L"", title);
  values.add(clsid + L"\\InprocServer32", L"", file);
  values.add(clsid + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  values.add(clsid + L"\\ProgID", L"", L"DWT.DWTemplate");
  values.add(clsid + L"\\TypeLib", L"", libraryId);
  values.add(clsid + L"\\Version", L"", L"1.0");
  values.add(root + L"\\Software\\Classes\\DWT.DWTemplate", L"", title);
  values.add(root + L"\\Software\\Classes\\DWT.DWTemplate\\CLSID", L"", classId);
  values.add(library, L"", title);
  values.add(library + L"\\0\\win32", L"", file);
  values.add(library + L"\\FLAGS", L"", L"0");
  values.add(library + L"\\HELPDIR", L"", folder);
}

void addProgram(Values& values, const std::wstring& root, const std::wstring& folder,
                int kilobytes) {
  const std::wstring key = root + L"\\" + package::removalKey;
  values.add(key, L"DisplayName", L"Quillet");
  values.add(key, L"DisplayVersion", package::version());
  values.add(key, L"Publisher", L"Korvel Software");
  values.add(key, L"DisplayIcon", folder + L"\\uninstall.exe,0");
  values.add(key, L"InstallLocation", folder);
  values.add(key, L"UninstallString", L"\"" + folder + L"\\uninstall.exe\"");
  values.add(key, L"QuietUninstallString", L"\"" + folder + L"\\uninstall.exe\" /S");
  values.number(key, L"NoModify", 1);
  values.number(key, L"NoRepair", 1);
  values.number(key, L"EstimatedSize", kilobytes);
}

Lines onlyValues(const Lines& lines) {
  Lines values;
  for (const auto& line : lines)
    if (line.find(L" [") != line.npos) values.push_back(line);
  return values;
}

// What is in the folder is what ships, with what setup adds to it.
void checkFiles(const std::wstring& folder) {
  Lines expected = machine::tree(package::shippedFolder());
  for (const auto& line : expected) {
    CAPTURE(line.c_str());
    if (line.back() != L'\\')
      CHECK(machine::bytes(folder + L"\\" + line) ==
            machine::bytes(package::shippedFolder() + L"\\" + line));
  }
  expected.insert(expected.end(), {L"installed.ini", L"uninstall.exe"});
  std::sort(expected.begin(), expected.end());
  CHECK(machine::tree(folder) == expected);
}

int kilobytesIn(const std::wstring& folder) {
  std::size_t size = 0;
  for (const auto& line : machine::tree(folder))
    if (line.back() != L'\\') size += machine::bytes(folder + L"\\" + line).size();
  return static_cast<int>(size / 1024);
}

// Wine 8 finds no class below the user's own key, where Windows looks first; so it is shown to it
// below the machine's meanwhile.
class ClassesMerged {
 public:
  ClassesMerged() {
    for (const auto& key :
         {package::classKey, std::wstring(L"Software\\Classes\\DWT.DWTemplate")}) {
      HKEY from = nullptr;
      HKEY to = nullptr;
      if (RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, &from) != ERROR_SUCCESS)
        continue;
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &to,
                      nullptr);
      SHCopyKeyW(from, nullptr, to, 0);
      RegCloseKey(from);
      RegCloseKey(to);
      copied_.push_back(key);
    }
  }
  ~ClassesMerged() {
    for (const auto& key : copied_) machine::removeKey(HKEY_LOCAL_MACHINE, key);
  }
  ClassesMerged(const ClassesMerged&) = delete;
  ClassesMerged& operator=(const ClassesMerged&) = delete;

 private:
  Lines copied_;
};

const char* const useOfTheAddIn = R"(
timeout 30
wait main
menu "Dynamic Web Template" "Browse/Copy Dynamic Web Template to Web..."
wait enabled "Dynamic Web Template Browser" "Copy to Web"
select "Dynamic Web Template Browser" "Harbour Light"
press "Dynamic Web Template Browser" "Help"
wait window "Quillet Help"
close "Quillet Help"
wait gone "Quillet Help"
press "Dynamic Web Template Browser" "Copy to Web"
wait box "Dynamic Web Template Browser"
press "Dynamic Web Template Browser" "Yes"
wait main
expect file "dwts/Harbour Light/harbour.dwt"
)";

const char* const openCatalogue = R"(
timeout 30
wait main
menu "Dynamic Web Template" "Dynamic Web Templates Online..."
wait window "DWT Online"
close "DWT Online"
)";

}  // namespace

TEST_CASE(
    "A silent installation for everyone puts all in its place and its removal leaves nothing") {
  const CleanMachine clean;
  const Lines files = machine::files();
  const Lines registry = machine::registry();
  REQUIRE(install(L"/AllUsers \"/CATALOGUE=http://server/start page.htm\"") == 0);
  checkFiles(machineFolder());

  Values expected;
  addModule(expected, L"HKLM", machineFolder());
  addProgram(expected, L"HKLM", machineFolder(), kilobytesIn(machineFolder()));
  const std::wstring maker = L"HKLM\\" + package::makerKey;
  expected.add(maker, L"CommonPath", machineFolder() + L"\\");
  expected.add(maker + L"\\Quillet Viewer", L"DWTOnline", L"http://server/start page.htm");
  expected.add(maker + L"\\Quillet Viewer\\DWT Folders", machineFolder() + L"\\Templates", L"");
  expected.add(L"HKLM\\" + logonKey, L"", L"Quillet");
  expected.add(L"HKLM\\" + logonKey, L"StubPath",
               L"\"C:\\windows\\system32\\regsvr32.exe\" /s /n /i:list \"" + machineFolder() +
                   L"\\Quillet.dll\"");
  expected.add(L"HKLM\\" + logonKey, L"Version", L"1,0,0,0");
  const Lines written = onlyValues(machine::added(registry, machine::registry()));
  CHECK(written == Lines(expected.lines.begin(), expected.lines.end()));

  CHECK(remove(machineFolder()) == 0);
  CHECK(machine::changed(files, machine::files()) == Lines());
  CHECK(machine::changed(registry, machine::registry()) == Lines());
}

TEST_CASE(
    "A silent installation for the user alone stays in the profile and its removal leaves "
    "nothing") {
  const CleanMachine clean;
  const Lines files = machine::files();
  const Lines registry = machine::registry();
  REQUIRE(install(L"/CurrentUser", package::setupProgram(), Run::As::user) == 0);
  checkFiles(userFolder());
  const std::wstring profile = userFolder().substr(0, userFolder().find(L"\\AppData"));
  for (const auto& line : machine::added(files, machine::files()))
    CHECK(line.substr(0, profile.size()) == profile);

  Values expected;
  addModule(expected, L"HKCU", userFolder());
  addProgram(expected, L"HKCU", userFolder(), kilobytesIn(userFolder()));
  expected.add(L"HKCU\\" + package::userFolders, userFolder() + L"\\Templates",
               userFolder() + L"\\Templates");
  const Lines written = onlyValues(machine::added(registry, machine::registry()));
  CHECK(written == Lines(expected.lines.begin(), expected.lines.end()));

  CHECK(remove(userFolder(), L"", Run::As::user) == 0);
  CHECK(machine::changed(files, machine::files()) == Lines());
  CHECK(machine::changed(registry, machine::registry()) == Lines());
}

TEST_CASE("The add-in runs in the host from where it was installed for everyone") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers /CATALOGUE=http://127.0.0.1:1/start.htm") == 0);
  CHECK(package::Web().runHost(useOfTheAddIn) == 0);
  CHECK(package::Web().runHost(openCatalogue) == 0);
}

TEST_CASE("The add-in runs in the host from where it was installed for the user alone") {
  const CleanMachine clean;
  REQUIRE(install(L"/CurrentUser") == 0);
  const ClassesMerged asWindowsHasThem;
  CHECK(package::Web().runHost(useOfTheAddIn) == 0);
}

TEST_CASE("Every further user gets the entry by what the system runs at the log-on") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers") == 0);
  machine::removeKey(HKEY_CURRENT_USER, package::addInKey);
  const std::wstring command = machine::value(HKEY_LOCAL_MACHINE, logonKey, L"StubPath");
  REQUIRE(Run(command).exitCode() == 0);
  CHECK(machine::value(HKEY_CURRENT_USER, package::addInKey, L"FriendlyName") ==
        L"Orlique Quillet");
  CHECK_FALSE(machine::hasKey(HKEY_CURRENT_USER, package::classKey));
}

TEST_CASE("An upgrade takes the place of the older version and keeps settings and address") {
  for (const For whom : {For::everyone, For::user}) {
    CAPTURE(static_cast<int>(whom));
    const CleanMachine clean;
    const std::wstring folder = folderOf(whom);
    REQUIRE(install(switchOf(whom) + (whom == For::everyone ? L" /CATALOGUE=http://old/" : L""),
                    package::olderSetupProgram()) == 0);
    CHECK(machine::value(rootOf(whom), package::removalKey, L"DisplayVersion") == L"0.9.0");
    CHECK(machine::exists(folder + L"\\notes.txt"));
    machine::setValue(HKEY_CURRENT_USER, package::settingsKey + L"\\Settings", L"Logging", L"1");
    machine::setValue(HKEY_CURRENT_USER, package::userFolders, L"C:\\mine", L"C:\\mine");
    machine::removeValue(HKEY_CURRENT_USER, package::userFolders, folder + L"\\Templates");

    REQUIRE(install(L"") == 0);
    checkFiles(folder);
    CHECK(machine::value(rootOf(whom), package::removalKey, L"DisplayVersion") ==
          package::version());
    CHECK(machine::value(HKEY_CURRENT_USER, package::settingsKey + L"\\Settings", L"Logging") ==
          L"1");
    CHECK(machine::value(HKEY_CURRENT_USER, package::userFolders, L"C:\\mine") == L"C:\\mine");
    CHECK(machine::value(HKEY_CURRENT_USER, package::userFolders, folder + L"\\Templates") == L"");
    CHECK(machine::value(HKEY_LOCAL_MACHINE, package::machineKey, L"DWTOnline") ==
          (whom == For::everyone ? L"http://old/" : L""));
    REQUIRE(remove(folder) == 0);
    CHECK(machine::value(HKEY_CURRENT_USER, package::userFolders, L"C:\\mine") == L"C:\\mine");
    CHECK_FALSE(machine::exists(folder));
  }
}

TEST_CASE("Templates that the user made or changed are neither replaced nor removed") {
  const CleanMachine clean;
  const std::wstring samples = machineFolder() + L"\\Templates\\";
  REQUIRE(install(L"/AllUsers", package::olderSetupProgram()) == 0);
  machine::write(samples + L"Harbour Light\\harbour.css", "mine");
  machine::write(samples + L"Retired\\retired.dwt", "mine, too");
  machine::write(samples + L"Own\\own.dwt", "my own");
  REQUIRE(install(L"/AllUsers") == 0);
  CHECK(machine::bytes(samples + L"Harbour Light\\harbour.css") == "mine");
  CHECK(machine::bytes(samples + L"Retired\\retired.dwt") == "mine, too");
  CHECK(machine::bytes(samples + L"Own\\own.dwt") == "my own");
  CHECK(machine::bytes(samples + L"Allotment\\quillet.ini") ==
        machine::bytes(package::shippedFolder() + L"\\Templates\\Allotment\\quillet.ini"));

  REQUIRE(remove(machineFolder()) == 0);
  CHECK(machine::tree(machineFolder()) == Lines{L"Templates\\", L"Templates\\Harbour Light\\",
                                                L"Templates\\Harbour Light\\harbour.css",
                                                L"Templates\\Own\\", L"Templates\\Own\\own.dwt",
                                                L"Templates\\Retired\\",
                                                L"Templates\\Retired\\retired.dwt"});
}

TEST_CASE("Running setup again repairs what has gone or changed") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers /CATALOGUE=http://server/") == 0);
  DeleteFileW((machineFolder() + L"\\KorvelHelp.exe").c_str());
  machine::write(machineFolder() + L"\\unzip32.dll", "damaged");
  machine::removeTree(machineFolder() + L"\\Templates\\Allotment");
  machine::removeKey(HKEY_LOCAL_MACHINE, package::classKey);
  machine::removeKey(HKEY_LOCAL_MACHINE, package::machineFolders);
  REQUIRE(install(L"") == 0);
  checkFiles(machineFolder());
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::classKey + L"\\InprocServer32", L"") ==
        machineFolder() + L"\\Quillet.dll");
  CHECK(machine::hasKey(HKEY_LOCAL_MACHINE, package::machineFolders));
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::machineKey, L"DWTOnline") == L"http://server/");
}

TEST_CASE("An older version is refused over a newer one unless a switch allows it") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers") == 0);
  CHECK(install(L"", package::olderSetupProgram()) == 4);
  checkFiles(machineFolder());
  CHECK(install(L"/Downgrade", package::olderSetupProgram()) == 0);
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::removalKey, L"DisplayVersion") == L"0.9.0");
  CHECK(machine::bytes(machineFolder() + L"\\ReadMe.txt") == "an older text");
}

TEST_CASE("A folder of the user's choice is used and what was in it stays") {
  const CleanMachine clean;
  const std::wstring folder = L"C:\\Eigene Vorlagen (für alle)";
  machine::write(folder + L"\\letter.txt", "mine");
  REQUIRE(install(L"/CurrentUser /D=" + folder) == 0);
  CHECK(machine::value(HKEY_CURRENT_USER, package::classKey + L"\\InprocServer32", L"") ==
        folder + L"\\Quillet.dll");
  CHECK(install(L"/D=C:\\elsewhere") == 6);
  REQUIRE(remove(folder) == 0);
  CHECK(machine::tree(folder) == Lines{L"letter.txt"});
  machine::removeTree(folder);
}

TEST_CASE("Sample themes go where the host looks for them") {
  const CleanMachine clean;
  const std::wstring shared = L"C:\\Shared (office)\\";
  machine::setValue(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Shared tools", L"SharedFilesDir",
                    shared);
  machine::write(shared + L"Themes11\\blends\\blends.inf", "the host's");
  machine::write(shared + L"Themes11\\nightferry\\rule.gif", "somebody's own");
  REQUIRE(install(L"/AllUsers") == 0);
  CHECK(machine::exists(shared + L"Themes11\\nightferry\\nightferry.inf"));
  CHECK(machine::bytes(shared + L"Themes11\\nightferry\\rule.gif") == "somebody's own");
  CHECK_FALSE(machine::exists(machineFolder() + L"\\Themes"));
  REQUIRE(remove(machineFolder()) == 0);
  CHECK(machine::tree(shared) == Lines{L"Themes11\\", L"Themes11\\blends\\",
                                       L"Themes11\\blends\\blends.inf", L"Themes11\\nightferry\\",
                                       L"Themes11\\nightferry\\rule.gif"});
  machine::removeTree(shared.substr(0, shared.size() - 1));
  machine::removeKey(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Shared tools");
}

TEST_CASE("What another program had as the folder of the help is put back") {
  const CleanMachine clean;
  machine::setValue(HKEY_LOCAL_MACHINE, package::makerKey, L"CommonPath", L"C:\\common\\");
  REQUIRE(install(L"/AllUsers") == 0);
  REQUIRE(install(L"/AllUsers") == 0);
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::makerKey, L"CommonPath") ==
        machineFolder() + L"\\");
  REQUIRE(remove(machineFolder()) == 0);
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::makerKey, L"CommonPath") == L"C:\\common\\");
}

TEST_CASE("A copy of the module that is registered elsewhere stays registered") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers") == 0);
  machine::setValue(HKEY_LOCAL_MACHINE, package::classKey + L"\\InprocServer32", L"",
                    L"C:\\another\\Quillet.dll");
  REQUIRE(remove(machineFolder()) == 0);
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::classKey + L"\\InprocServer32", L"") ==
        L"C:\\another\\Quillet.dll");
}

TEST_CASE("Settings stay when it is removed unless a switch says otherwise") {
  const std::wstring data = L"\\Korvel Software\\Orlique\\_orlique\\left.zip";
  wchar_t appData[MAX_PATH] = {};
  ExpandEnvironmentStringsW(L"%APPDATA%", appData, MAX_PATH);
  for (const bool removed : {false, true}) {
    CAPTURE(removed);
    const CleanMachine clean;
    REQUIRE(install(L"/CurrentUser") == 0);
    machine::setValue(HKEY_CURRENT_USER, package::settingsKey + L"\\Settings", L"Logging", L"1");
    machine::write(appData + data, "left");
    REQUIRE(remove(userFolder(), removed ? L"/RemoveSettings" : L"") == 0);
    CHECK(machine::hasKey(HKEY_CURRENT_USER, package::settingsKey) != removed);
    CHECK(machine::exists(appData + data) != removed);
    CHECK(machine::exists(std::wstring(appData) + L"\\Korvel Software") != removed);
  }
}

TEST_CASE("While the host holds the module neither setup nor removal goes on") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers") == 0);
  {
    const HMODULE module = LoadLibraryW((machineFolder() + L"\\Quillet.dll").c_str());
    REQUIRE(module);
    CHECK(install(L"") == 5);
    CHECK(remove(machineFolder()) == 5);
    FreeLibrary(module);
  }
  checkFiles(machineFolder());
  CHECK(install(L"") == 0);
}

TEST_CASE("A user without an administrator's rights is told so by the exit code") {
  const CleanMachine clean;
  CHECK(install(L"/AllUsers", package::setupProgram(), Run::As::user) == 3);
  CHECK_FALSE(machine::exists(machineFolder()));
  REQUIRE(install(L"/AllUsers") == 0);
  CHECK(install(L"", package::setupProgram(), Run::As::user) == 3);
  CHECK(remove(machineFolder(), L"", Run::As::user) == 3);
  checkFiles(machineFolder());
}

TEST_CASE("Without a switch an administrator installs for everyone and a user for himself") {
  {
    const CleanMachine clean;
    CHECK(install(L"") == 0);
    CHECK(machine::exists(machineFolder()));
  }
  const CleanMachine clean;
  CHECK(install(L"", package::setupProgram(), Run::As::user) == 0);
  CHECK(machine::exists(userFolder()));
}

TEST_CASE("An installation for everyone and one for the user alone exclude each other") {
  for (const For whom : {For::everyone, For::user}) {
    const CleanMachine clean;
    REQUIRE(install(switchOf(whom)) == 0);
    CHECK(install(switchOf(whom == For::everyone ? For::user : For::everyone)) == 7);
    checkFiles(folderOf(whom));
  }
}

TEST_CASE("Switches that are not known or do not go together are refused") {
  const CleanMachine clean;
  for (const wchar_t* switches :
       {L"/Silent", L"/AllUsers /CurrentUser", L"/CurrentUser /CATALOGUE=http://server/",
        L"/AllUsers /CATALOGUE=", L"/AllUsers /CATALOGUE=server/start.htm",
        L"/AllUsers /CATALOGUE=http://", L"/AllUsers \"/CATALOGUE=javascript:alert(1)\"",
        L"setup.exe"}) {
    CAPTURE(switches);
    CHECK(install(switches) == 6);
  }
  CHECK(install(L"/AllUsers " + std::wstring(1100, L' ')) == 6);
  CHECK_FALSE(machine::exists(machineFolder()));
  CHECK_FALSE(machine::exists(userFolder()));
  REQUIRE(install(L"/AllUsers") == 0);
  CHECK(remove(machineFolder(), L"/All") == 6);
  checkFiles(machineFolder());
}

TEST_CASE("Windows before XP with its second service pack is refused") {
  const CleanMachine clean;
  const std::wstring wine = L"Software\\Wine\\AppDefaults\\QuilletSetup.exe";
  machine::setValue(HKEY_CURRENT_USER, wine, L"Version", L"win2k");
  const DWORD code = install(L"/AllUsers");
  machine::setValue(HKEY_CURRENT_USER, wine, L"Version", L"winxp");
  const DWORD codeOnXp = install(L"/AllUsers");
  machine::removeKey(HKEY_CURRENT_USER, wine);
  CHECK(code == 8);
  CHECK(codeOnXp == 0);
}

TEST_CASE("A first installation that cannot be completed is taken back") {
  const CleanMachine clean;
  const Lines registry = machine::registry();
  // A folder is where a file has to go.
  machine::write(machineFolder() + L"\\unzip32.dll\\mine.txt", "mine");
  CHECK(install(L"/AllUsers") == 2);
  CHECK(machine::tree(machineFolder()) == Lines{L"unzip32.dll\\", L"unzip32.dll\\mine.txt"});
  CHECK(machine::changed(registry, machine::registry()) == Lines());
}
