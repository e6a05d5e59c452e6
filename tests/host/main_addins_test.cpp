// The program with the add-in that ships, and its dialog of add-ins.
#include "tests/addin/ShippedModule.h"
#include "tests/host/Program.h"
#include "tests/support/text_output.h"

namespace {

constexpr char entriesThere[] =
    "expect menu \"Format\" \"Dynamic Web Template\""
    " \"Browse/Copy Dynamic Web Template to Web...\"\n"
    "expect menu \"Format\" \"Dynamic Web Template\" \"Dynamic Web Templates Online...\"\n";
constexpr char entriesGone[] =
    "expect no menu \"Browse/Copy Dynamic Web Template to Web...\"\n"
    "expect no menu \"Dynamic Web Templates Online...\"\n";

// An entry in the host's list while it lives, of an add-in that no component stands behind.
class BrokenAddIn {
 public:
  BrokenAddIn() {
    HKEY key = nullptr;
    RegCreateKeyW(HKEY_CURRENT_USER, path, &key);
    const DWORD never = 0;
    RegSetValueExW(key, L"LoadBehavior", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&never),
                   sizeof never);
    RegSetValueExW(key, L"FriendlyName", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"Nobody home"),
                   sizeof L"Nobody home");
    RegCloseKey(key);
  }
  ~BrokenAddIn() { RegDeleteKeyW(HKEY_CURRENT_USER, path); }
  BrokenAddIn(const BrokenAddIn&) = delete;
  BrokenAddIn& operator=(const BrokenAddIn&) = delete;

 private:
  static constexpr wchar_t path[] =
      L"Software\\Microsoft\\Office\\FrontPage\\Addins\\Quillet.NobodyHome";
};

// Unloads and loads the add-in in the program's own dialog, and leaves.
void unloadAndLoad(const std::wstring& arguments) {
  const RegisteredModule registered;
  REQUIRE(registered.outcome() == S_OK);
  Program program;
  program.addIns = true;
  const Outcome outcome =
      program.script(std::string("timeout 15\n") + entriesThere + "unload \"DWT.DWTemplate\"\n" +
                         entriesGone + "load \"DWT.DWTemplate\"\n" + entriesThere + "exit\n",
                     arguments);
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

}  // namespace

TEST_CASE("the program loads the add-in at its start and its dialog unloads and loads it") {
  unloadAndLoad({});
}

TEST_CASE("the program loads the add-in through Invoke and its dialog unloads and loads it") {
  unloadAndLoad(L"--by-dispatch");
}

TEST_CASE("the program without add-ins has no entries of theirs and loads one when asked") {
  const RegisteredModule registered;
  REQUIRE(registered.outcome() == S_OK);
  const Program program;
  const Outcome outcome = program.script(std::string("timeout 15\n") + entriesGone +
                                         "load \"DWT.DWTemplate\"\n" + entriesThere + "exit\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

TEST_CASE("the dialog of add-ins shows what each one is and says why one does not load") {
  const RegisteredModule registered;
  const BrokenAddIn broken;
  Program program;
  program.addIns = true;
  const Outcome outcome = program.script(
      "timeout 15\n"
      "menu \"Tools\" \"Add-ins...\"\n"
      "expect row \"Add-ins\" \"Orlique Quillet\"\n"
      "expect row \"Add-ins\" \"DWT.DWTemplate\"\n"
      "expect row \"Add-ins\" \"Loaded\"\n"
      "expect row \"Add-ins\" \"Nobody home\"\n"
      "expect row \"Add-ins\" \"Not loaded\"\n"
      "select \"Add-ins\" \"DWT.DWTemplate\"\n"
      "wait enabled \"Add-ins\" \"Unload\"\n"
      "select \"Add-ins\" \"Quillet.NobodyHome\"\n"
      "wait enabled \"Add-ins\" \"Load\"\n"
      "press \"Add-ins\" \"Load\"\n"
      "wait box \"Add-ins\"\n"
      "expect text \"Add-ins\" \"Not loaded: it failed with 0x800401F3.\"\n"
      "press \"Add-ins\" \"OK\"\n"
      "expect row \"Add-ins\" \"Not loaded: it failed with 0x800401F3.\"\n"
      "press \"Add-ins\" \"Close\"\n"
      "wait gone \"Add-ins\"\n"
      "exit\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}
