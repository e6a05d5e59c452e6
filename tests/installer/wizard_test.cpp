// The pages of the setup program and of the one that removes, in their real windows.
#include "tests/installer/Setup.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

using machine::Lines;
using package::CleanMachine;
using package::install;
using package::machineFolder;
using package::Pages;
using package::Run;
using package::userFolder;

namespace {

constexpr wchar_t everyone[] = L"Everyone on this computer";
constexpr wchar_t onlyMe[] = L"Only me";
constexpr wchar_t removesSettings[] = L"Remove my settings, too";

std::wstring quoted(const std::wstring& path) { return L"\"" + path + L"\""; }

// As the page tells it: with one digit that is cut off.
std::wstring megabytesShipped() {
  std::size_t kilobytes = 0;
  for (const auto& line : machine::tree(package::shippedFolder()))
    if (line.back() != L'\\')
      kilobytes += (machine::bytes(package::shippedFolder() + L"\\" + line).size() + 1023) / 1024;
  return std::to_wstring(kilobytes / 1024) + L"." + std::to_wstring(kilobytes % 1024 * 10 / 1024);
}

// The program's own copy of itself works on when the one that was started has ended.
void waitForRemoval(const std::wstring& folder) {
  const bool gone = pumpUntil(
      [&] { return !machine::exists(folder) && !Pages(L"Quillet Uninstall").isOpen(); }, 60000);
  CHECK(gone);
}

}  // namespace

TEST_CASE("Through the pages it is installed for everyone and removed again") {
  const CleanMachine clean;
  const Lines files = machine::files();
  {
    Run setup(quoted(package::setupProgram()));
    Pages pages(L"Quillet Setup");
    pages.waitFor(L"Welcome to Quillet " + package::version());
    pages.next();
    pages.waitFor(L"License Agreement");
    pages.next();
    pages.waitFor(L"For Whom");
    CHECK(pages.isChosen(everyone));
    pages.next();
    pages.waitFor(L"Choose Install Location");
    CHECK(pages.typed() == machineFolder());
    CHECK(pages.isEnabled(L"Next >"));
    pages.next();
    pages.waitFor(L"Online Catalogue");
    CHECK(pages.typed() == L"");
    pages.type(L"server/start.htm");
    pages.next();
    CHECK(pages.answerBox(IDOK) ==
          L"An address begins with http://, https:// or file:/// and names a place. Without a "
          L"catalogue, leave the box empty.");
    pages.type(L"http://server/start.htm");
    pages.next();
    pages.waitFor(L"Quillet " + package::version() + L" is installed");
    pages.next();
    CHECK(setup.exitCode() == 0);
  }
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::machineKey, L"DWTOnline") ==
        L"http://server/start.htm");
  CHECK(machine::exists(machineFolder() + L"\\Quillet.dll"));

  Run removal(quoted(machineFolder() + L"\\uninstall.exe"));
  Pages pages(L"Quillet Uninstall");
  pages.waitFor(L"Uninstall Quillet");
  pages.next();
  pages.waitFor(L"Your Settings");
  CHECK_FALSE(pages.isChosen(removesSettings));
  pages.next();
  pages.waitFor(L"Uninstallation Complete");
  pages.next();
  waitForRemoval(machineFolder());
  CHECK_FALSE(machine::hasKey(HKEY_LOCAL_MACHINE, package::makerKey));
}

TEST_CASE("Through the pages it is installed for the user alone and removed with the settings") {
  const CleanMachine clean;
  {
    Run setup(quoted(package::setupProgram()), Run::As::user);
    Pages pages(L"Quillet Setup");
    pages.waitFor(L"Welcome");
    pages.next();
    pages.waitFor(L"License Agreement");
    pages.next();
    const std::wstring page = pages.waitFor(L"For Whom");
    CHECK(pages.isChosen(onlyMe));
    CHECK(
        page.find(L"The online catalogue is not available then: its address is kept for the whole "
                  L"computer, and only an administrator can set it.") != page.npos);
    pages.next();
    const std::wstring place = pages.waitFor(L"Choose Install Location");
    CHECK(pages.typed() == userFolder());
    CHECK(place.find(L"Space required: " + megabytesShipped() + L" MB") != place.npos);
    CHECK(pages.isEnabled(L"Install"));
    pages.next();
    const std::wstring last = pages.waitFor(L"Quillet " + package::version() + L" is installed");
    CHECK(last.find(L"The online catalogue is not available in an installation for you only.") !=
          last.npos);
    pages.next();
    CHECK(setup.exitCode() == 0);
  }
  CHECK(machine::exists(userFolder() + L"\\Quillet.dll"));

  Run removal(quoted(userFolder() + L"\\uninstall.exe"));
  Pages pages(L"Quillet Uninstall");
  pages.waitFor(L"Uninstall Quillet");
  pages.next();
  pages.waitFor(L"Your Settings");
  pages.choose(removesSettings);
  pages.next();
  pages.waitFor(L"Uninstallation Complete");
  pages.next();
  waitForRemoval(userFolder());
  CHECK_FALSE(machine::hasKey(HKEY_CURRENT_USER, package::settingsKey));
}

TEST_CASE("Choosing the other scope proposes the other folder") {
  const CleanMachine clean;
  Run setup(quoted(package::setupProgram()));
  Pages pages(L"Quillet Setup");
  pages.waitFor(L"Welcome");
  pages.next();
  pages.waitFor(L"License Agreement");
  pages.next();
  pages.waitFor(L"For Whom");
  pages.choose(onlyMe);
  pages.next();
  pages.waitFor(L"Choose Install Location");
  CHECK(pages.typed() == userFolder());
  pages.cancel();
  CHECK(pages.answerBox(IDYES).find(L"quit Quillet Setup") != std::wstring::npos);
  CHECK(setup.exitCode() == 1);
  CHECK_FALSE(machine::exists(userFolder()));
}

TEST_CASE("Pages of an upgrade say which version is there and ask for no folder") {
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers", package::olderSetupProgram()) == 0);
  Run setup(quoted(package::setupProgram()));
  Pages pages(L"Quillet Setup");
  const std::wstring welcome = pages.waitFor(L"Welcome");
  CHECK(welcome.find(L"Version 0.9.0 is installed, in " + machineFolder()) != welcome.npos);
  pages.next();
  pages.waitFor(L"License Agreement");
  pages.next();
  pages.waitFor(L"For Whom");
  CHECK_FALSE(pages.isEnabled(everyone));
  CHECK_FALSE(pages.isEnabled(onlyMe));
  pages.next();
  pages.waitFor(L"Online Catalogue");
  pages.next();
  pages.waitFor(L"Quillet " + package::version() + L" is installed");
  pages.next();
  CHECK(setup.exitCode() == 0);
  CHECK(machine::value(HKEY_LOCAL_MACHINE, package::removalKey, L"DisplayVersion") ==
        package::version());
}

TEST_CASE("An older version asks before it takes the place of a newer one") {
  const std::wstring question =
      L"Quillet " + package::version() +
      L" is installed, which is newer than this version, 0.9.0.\r\n\r\nDo you want to put the "
      L"older version in its place?";
  const CleanMachine clean;
  REQUIRE(install(L"/AllUsers") == 0);
  Pages pages(L"Quillet Setup");
  {
    Run setup(quoted(package::olderSetupProgram()));
    CHECK(pages.answerBox(IDNO) == question);
    CHECK(setup.exitCode() == 4);
  }
  Run setup(quoted(package::olderSetupProgram()));
  CHECK(pages.answerBox(IDYES) == question);
  pages.waitFor(L"Welcome to Quillet 0.9.0");
  pages.cancel();
  pages.answerBox(IDYES);
  CHECK(setup.exitCode() == 1);
}

TEST_CASE("While the host holds the module setup offers to try again") {
  const std::wstring inUse =
      L"FrontPage is using Quillet. Please close FrontPage, and then choose Retry.";
  const CleanMachine clean;
  REQUIRE(install(L"/CurrentUser", package::olderSetupProgram()) == 0);
  const HMODULE module = LoadLibraryW((userFolder() + L"\\Quillet.dll").c_str());
  REQUIRE(module);
  for (const int answer : {IDCANCEL, IDRETRY}) {
    CAPTURE(answer);
    Run setup(quoted(package::setupProgram()));
    Pages pages(L"Quillet Setup");
    pages.waitFor(L"Welcome");
    pages.next();
    pages.waitFor(L"License Agreement");
    pages.next();
    pages.waitFor(L"For Whom");
    CHECK(pages.isEnabled(L"Install"));
    pages.next();
    if (answer == IDCANCEL) {
      CHECK(pages.answerBox(IDCANCEL) == inUse);
      CHECK(setup.exitCode() == 5);
      CHECK(machine::exists(userFolder() + L"\\notes.txt"));
      continue;
    }
    CHECK(pages.answerBox(IDRETRY) == inUse);
    FreeLibrary(module);
    CHECK(pages.answerBox(IDRETRY) == inUse);
    pages.waitFor(L"Quillet " + package::version() + L" is installed");
    pages.next();
    CHECK(setup.exitCode() == 0);
  }
}

TEST_CASE("A user without an administrator's rights who is refused them can choose anew") {
  const CleanMachine clean;
  Run setup(quoted(package::setupProgram()), Run::As::user);
  Pages pages(L"Quillet Setup");
  pages.waitFor(L"Welcome");
  pages.next();
  pages.waitFor(L"License Agreement");
  pages.next();
  pages.waitFor(L"For Whom");
  pages.choose(everyone);
  pages.next();
}
