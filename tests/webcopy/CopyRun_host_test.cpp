// Copies into hosts that lie, refuse, or write addresses in a way of their own.
#include <windows.h>

#include <algorithm>

#include "common/text.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"

using Lines = std::vector<std::wstring>;

namespace {

constexpr wchar_t question[] =
    L"ask: The DWT named \r\n \" /dwts/Blue. \"\r\n already exists. Do you want to overwrite the "
    L"existing DWT with the new DWT?";
constexpr wchar_t failure[] = L"fail: An error was encountered while copying the DWT's.";

bool has(const Lines& lines, const std::wstring& wanted) {
  return std::find(lines.begin(), lines.end(), wanted) != lines.end();
}

// A web that has the template already, in a host that does not find its folder.
struct HiddenTemplate {
  explicit HiddenTemplate(standin::HostOptions options = {}) : fixture(std::move(options)) {
    fixture.makeBlue();
    fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  }
  void refuseLooks(int times) {
    fixture.host.faults().refuse(L"Web.LocateFolder", L"Timed out.", E_FAIL, 0, times);
  }
  std::string page() const { return fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\home.dwt"); }

  CopyFixture fixture;
  RecordingView view;
};

// Names that an address may write in two ways, two of them one name's two ways.
struct OddNames {
  explicit OddNames(standin::HostOptions options) : fixture(std::move(options)) {
    fixture.disk.writeFile(L"templates\\Blue sky\\my home.dwt", "<html><head></head></html>");
    fixture.disk.writeFile(L"templates\\Blue sky\\50% off\\a b\\\u00e4.gif", "one");
    fixture.disk.writeFile(L"templates\\Blue sky\\50%20off\\a%20b.gif", "two");
    fixture.disk.writeFile(L"templates\\Blue sky\\quillet.ini", "[my home]\r\nTheme=Blends 1F\r\n");
    fixture.host.openWeb(fixture.disk.makeFolder(L"webs\\my web"));
  }
  bool copy(const std::wstring& destination) {
    return runCopy(fixture, view, destination, fixture.templateFolder(L"Blue sky")).copied;
  }
  void checkArrived(const std::wstring& folder) const {
    const std::wstring copy = L"webs\\my web\\" + folder + L"\\Blue sky\\";
    CHECK(fixture.disk.readFile(copy + L"my home.dwt").find("Blends 001F") != std::string::npos);
    CHECK(fixture.disk.readFile(copy + L"50% off\\a b\\\u00e4.gif") == "one");
    CHECK(fixture.disk.readFile(copy + L"50%20off\\a%20b.gif") == "two");
    CHECK_FALSE(fixture.disk.exists(copy + L"quillet.ini"));
  }
  std::wstring addressOf(const std::wstring& folder) const {
    return fixture.application().activeWeb()->locateFolder(folder)->url();
  }

  CopyFixture fixture;
  RecordingView view;
};

std::vector<standin::HostOptions> spellings() {
  std::vector<standin::HostOptions> all(8);
  for (unsigned bits = 0; bits < 8; ++bits) {
    all[bits].webUrlEscaped = (bits & 1) != 0;
    all[bits].itemUrlsEscaped = (bits & 2) != 0;
    all[bits].locateUnescapes = (bits & 4) != 0;
  }
  return all;
}

// A file of a template, and one of the user's that its path would mean in an address.
struct Misread {
  const wchar_t* own;
  const wchar_t* users;
};

constexpr Misread misread[] = {
    {L"logo%20x.gif", L"dwts\\Blue\\logo x.gif"},
    {L"page.htm#x.htm", L"dwts\\Blue\\page.htm"},
    {L"50%20off\\a.gif", L"dwts\\Blue\\50 off\\a.gif"},
    {L"%2e%2e\\index.htm", L"dwts\\index.htm"},
    {L"a#\\..gif", L"dwts\\Blue\\a"},
};

// The template of one such file, and a web of the user's with the other.
struct MisreadCopy {
  MisreadCopy(const Misread& names, standin::HostOptions options)
      : fixture(std::move(options)), names_(names) {
    fixture.disk.writeFile(std::wstring(L"templates\\Blue\\") + names.own, "own");
    fixture.disk.writeFile(std::wstring(L"webs\\site\\") + names.users, "user's");
  }
  std::string own() const {
    const std::wstring path = std::wstring(L"webs\\site\\dwts\\Blue\\") + names_.own;
    return fixture.disk.exists(path) ? fixture.disk.readFile(path) : "";
  }
  std::string users() const {
    return fixture.disk.readFile(std::wstring(L"webs\\site\\") + names_.users);
  }
  bool copy() { return runCopy(fixture, view).copied; }

  CopyFixture fixture;
  RecordingView view;

 private:
  Misread names_;
};

}  // namespace

TEST_CASE("a template that is there although a look for it failed is not replaced unasked") {
  for (const int refusedLooks : {1, 2, -1}) {
    for (const bool addGives : {false, true}) {
      CAPTURE(refusedLooks);
      CAPTURE(addGives);
      standin::HostOptions options;
      options.addExistingFolderGivesIt = addGives;
      HiddenTemplate hidden(options);
      hidden.refuseLooks(refusedLooks);
      hidden.view.answer = false;
      CHECK_FALSE(runCopy(hidden.fixture, hidden.view).copied);
      CHECK(hidden.view.of(L"ask: ") == Lines{question});
      CHECK(hidden.view.of(L"fail: ").empty());
      CHECK(hidden.page() == "old");
      CHECK(hidden.fixture.webTree(L"dwts\\Blue") == Lines{L"home.dwt"});
    }
  }
}

TEST_CASE("a template without files is there too when a look for it failed") {
  for (const wchar_t* folder : {L"webs\\site\\dwts\\Blue", L"webs\\site\\dwts\\Blue\\images"}) {
    for (const bool addGives : {false, true}) {
      // Nothing tells an empty folder that is given for a new one from a new one.
      const bool empty = std::wstring(folder).ends_with(L"Blue");
      if (empty && addGives) continue;
      CAPTURE(std::wstring(folder));
      CAPTURE(addGives);
      standin::HostOptions options;
      options.addExistingFolderGivesIt = addGives;
      CopyFixture fixture(options);
      fixture.makeBlue();
      fixture.disk.makeFolder(folder);
      fixture.host.faults().refuse(L"Web.LocateFolder", L"Timed out.");
      RecordingView view;
      view.answer = false;
      CHECK_FALSE(runCopy(fixture, view).copied);
      CHECK(view.of(L"ask: ") == Lines{question});
    }
  }
}

TEST_CASE("a cancel while the template's folder is made is noticed before anything else") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  fixture.host.faults().before(L"WebFolders.Add", [&] { view.refusedCheck = view.checks + 1; });
  CHECK(runCopy(fixture, view).cancelled);
  CHECK(fixture.log.messages().back() == L"  Copy to web operation has been cancelled!!!");
  CHECK(fixture.host.faults().calls(L"WebFolder.Url") == 0);
}

TEST_CASE(
    "a template that is found late can be left alone and the remaining steps run over nothing") {
  HiddenTemplate hidden;
  hidden.refuseLooks(1);
  hidden.view.answer = false;
  CHECK_FALSE(runCopy(hidden.fixture, hidden.view).copied);
  CHECK(hidden.fixture.log.messages() ==
        Lines{
            L"Begin process of copying DWT's to the web...",
            L"Preparing to copy DWT Folder : \"Blue\" to web...",
            L"DWT Path : " + hidden.fixture.templateFolder(),
            L"  Performing initialisation of the variables...",
            L"  Completed initialization of the variables...",
            L"  Preparing to copy files and folders to the web...",
            L"  Copying files and folders to the web.",
            L"  Creating folder : " + hidden.fixture.url(L"/dwts/Blue"),
            L"  Existing DWT not to be overwritten. New DWT will not be copied",
            L"  Cleaning uploaded folder...",
            L"  Folder cleaned.",
            L"  Applying themes to DWTs ( count: 0)...",
        });
  CHECK(hidden.view.of(L"overall step").size() == 5);
}

TEST_CASE("a template that is found late can be overwritten") {
  HiddenTemplate hidden;
  hidden.refuseLooks(1);
  CHECK(runCopy(hidden.fixture, hidden.view).copied);
  CHECK(hidden.view.of(L"ask: ") == Lines{question});
  CHECK(hidden.page().find("Blends 001F") != std::string::npos);
  CHECK(has(hidden.fixture.log.messages(), L"  Overwriting DWT : Blue"));
  CHECK(has(hidden.fixture.log.messages(), L"  Overwritten DWT : Blue"));
}

TEST_CASE("a template that appears while its folder is made is not replaced unasked") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.makeFolder(L"webs\\site\\dwts");
  fixture.host.faults().before(L"WebFolders.Add", [&] {
    fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  });
  RecordingView view;
  view.answer = false;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(view.of(L"ask: ") == Lines{question});
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"home.dwt"});
}

TEST_CASE("the host's own folder in a new one is not taken for a template that is there") {
  standin::HostOptions options;
  options.vtiFoldersListed = true;
  CopyFixture fixture(options);
  fixture.makeBlue();
  fixture.disk.makeFolder(L"webs\\site\\dwts");
  fixture.host.faults().before(
      L"WebFolder.Files", [&] { fixture.disk.makeFolder(L"webs\\site\\dwts\\Blue\\_vti_cnf"); });
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(view.of(L"ask: ").empty());
}

TEST_CASE("a host that cannot count what lies in a new folder gets the copy all the same") {
  for (const wchar_t* member : {L"WebFiles.Count", L"WebFolders.Count"}) {
    CopyFixture fixture;
    fixture.makeBlue();
    fixture.host.faults().refuse(member, L"No.");
    RecordingView view;
    CHECK(runCopy(fixture, view).copied);
    CHECK(view.of(L"ask: ").empty());
  }
}

TEST_CASE("a file that the web holds under the template's name ends the run with a message") {
  for (const bool addGives : {false, true}) {
    standin::HostOptions options;
    options.addExistingFolderGivesIt = addGives;
    CopyFixture fixture(options);
    fixture.makeBlue();
    fixture.disk.writeFile(L"webs\\site\\dwts\\Blue", "a file");
    RecordingView view;
    CHECK_FALSE(runCopy(fixture, view).copied);
    CHECK(view.of(L"ask: ").empty());
    CHECK(view.of(L"fail: ") == Lines{failure});
    CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue") == "a file");
  }
}

TEST_CASE("a template arrives whole however a host spells its addresses") {
  for (const auto& options : spellings()) {
    CAPTURE(options.webUrlEscaped);
    CAPTURE(options.itemUrlsEscaped);
    CAPTURE(options.locateUnescapes);
    OddNames odd(options);
    CHECK(odd.copy(L"/my dwts"));
    odd.checkArrived(L"my dwts");
    CHECK(odd.view.of(L"ask: ").empty());
    CHECK(odd.copy(L"/my dwts"));
    odd.checkArrived(L"my dwts");
    CHECK(odd.view.of(L"ask: ").size() == 1);
  }
}

TEST_CASE("a template arrives in the folder whose address it is given however that is spelled") {
  for (const auto& options : spellings()) {
    for (const wchar_t* folder : {L"my dwts", L"50% off", L"50%20off"}) {
      CAPTURE(options.webUrlEscaped);
      CAPTURE(options.itemUrlsEscaped);
      CAPTURE(options.locateUnescapes);
      CAPTURE(std::wstring(folder));
      OddNames odd(options);
      odd.fixture.disk.writeFile(
          std::wstring(L"webs\\my web\\") + folder + L"\\Blue sky\\my home.dwt", "old");
      CHECK(odd.copy(odd.addressOf(folder)));
      CHECK(odd.view.of(L"ask: ").size() == 1);
      odd.checkArrived(folder);
    }
  }
}

// Nothing in such a web's own address tells that the host escapes the others.
TEST_CASE("a folder whose address is escaped is found below a web whose address needs no escape") {
  for (const bool escaped : {false, true}) {
    for (const wchar_t* folder : {L"my dwts", L"50%20off"}) {
      CAPTURE(escaped);
      CAPTURE(std::wstring(folder));
      standin::HostOptions options;
      options.webUrl = L"http://server/sub";
      options.itemUrlsEscaped = escaped;
      OddNames odd(options);
      odd.fixture.disk.makeFolder(std::wstring(L"webs\\my web\\") + folder);
      CHECK(odd.copy(odd.addressOf(folder)));
      odd.checkArrived(folder);
    }
  }
}

TEST_CASE("a name that an address would read as another one costs the user no file") {
  for (const Misread& names : misread) {
    for (const bool locateUnescapes : {false, true}) {
      CAPTURE(std::wstring(names.own));
      CAPTURE(locateUnescapes);
      standin::HostOptions options;
      options.locateUnescapes = locateUnescapes;
      MisreadCopy odd(names, options);
      CHECK(odd.copy());
      CHECK(odd.users() == "user's");
      CHECK(odd.own() == "own");
      odd.fixture.disk.writeFile(std::wstring(L"templates\\Blue\\") + names.own, "new");
      CHECK(odd.copy());
      CHECK(odd.users() == "user's");
      CHECK(odd.own() == "new");
    }
  }
}

TEST_CASE("a host that adds folders under what their names stand for costs the user no file") {
  for (const Misread& names : misread) {
    for (const bool addGives : {false, true}) {
      CAPTURE(std::wstring(names.own));
      CAPTURE(addGives);
      standin::HostOptions options;
      options.locateUnescapes = options.addUnescapes = true;
      options.addExistingFolderGivesIt = addGives;
      MisreadCopy odd(names, options);
      const bool copied = odd.copy();
      CHECK(odd.users() == "user's");
      CHECK(copied == (odd.own() == "own"));
      const Lines lines = odd.fixture.log.messages();
      const bool told = std::any_of(lines.begin(), lines.end(), [](const auto& line) {
        return line.find(L"ERROR in procedure CopyFolderTree of Form") != line.npos;
      });
      CHECK(told == !copied);
    }
  }
}

TEST_CASE("a template whose own name an address would read as another one has its own folder") {
  for (const bool locateUnescapes : {false, true}) {
    for (const wchar_t* name : {L"%2e%2e", L"Blue%20sky", L"Blue#sky"}) {
      CAPTURE(locateUnescapes);
      CAPTURE(std::wstring(name));
      standin::HostOptions options;
      options.locateUnescapes = locateUnescapes;
      CopyFixture fixture(options);
      fixture.disk.writeFile(std::wstring(L"templates\\") + name + L"\\index.htm", "own");
      for (const wchar_t* users : {L"", L"dwts\\", L"dwts\\Blue sky\\", L"dwts\\Blue\\"})
        fixture.disk.writeFile(std::wstring(L"webs\\site\\") + users + L"index.htm", "user's");
      RecordingView view;
      CHECK(runCopy(fixture, view, L"/dwts", fixture.templateFolder(name)).copied);
      CHECK(view.of(L"ask: ").empty());
      for (const wchar_t* users : {L"", L"dwts\\", L"dwts\\Blue sky\\", L"dwts\\Blue\\"})
        CHECK(fixture.disk.readFile(std::wstring(L"webs\\site\\") + users + L"index.htm") ==
              "user's");
      CHECK(fixture.disk.readFile(std::wstring(L"webs\\site\\dwts\\") + name + L"\\index.htm") ==
            "own");
      CHECK(runCopy(fixture, view, L"/dwts", fixture.templateFolder(name)).copied);
      CHECK(view.of(L"ask: ").size() == 1);
    }
  }
}

TEST_CASE("a description file from an earlier copy is found however a host spells its addresses") {
  for (const auto& options : spellings()) {
    OddNames odd(options);
    odd.fixture.disk.writeFile(L"webs\\my web\\my dwts\\Blue sky\\quillet.ini", "[x]");
    CHECK(odd.copy(L"/my dwts"));
    CHECK_FALSE(odd.fixture.disk.exists(L"webs\\my web\\my dwts\\Blue sky\\quillet.ini"));
    CHECK(has(odd.fixture.log.messages(), L"    Quillet ini file found and deleted"));
  }
}

TEST_CASE("what ends the walk is told in the log in the host's own words") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.host.faults().refuse(L"WebFolders.Add", L"The disk is write-protected.", 1234, 2);
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  const Lines lines = fixture.log.messages();
  const auto found = std::find(lines.begin(), lines.end(),
                               L"    ERROR in procedure CopyFolderTree of Form frmCopyToWeb. Error "
                               L": The disk is write-protected.");
  REQUIRE(found != lines.end());
  CHECK(found[-1] == L"    Creating folder : " + fixture.url(L"/dwts/Blue/images"));
  CHECK(found[1] == L"DWT copied successfully");
}

TEST_CASE("a cancelled walk is no error of the walk") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  view.onCheck = [&] {
    if (fixture.disk.exists(L"webs\\site\\dwts\\Blue\\home.dwt"))
      view.refusedCheck = view.checks + 1;
  };
  CHECK(runCopy(fixture, view).cancelled);
  for (const auto& line : fixture.log.messages()) CHECK(line.find(L"CopyFolderTree") == line.npos);
}

TEST_CASE("the walk over the host's themes ends at the first of the name") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.installTheme(L"Zebra");
  fixture.host.faults().refuse(L"Theme.Name", L"The theme is damaged.", E_FAIL, 1);
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.host.faults().calls(L"Theme.Name") == 1);
  CHECK(fixture.host.faults().calls(L"WebFile.ApplyTheme") == 1);
}

TEST_CASE("a theme before the wanted one whose name cannot be read ends the run with a message") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.installTheme(L"Arcs");
  fixture.host.faults().refuse(L"Theme.Name", L"The theme is damaged.", E_FAIL, 0, 1);
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(view.of(L"fail: ") == Lines{failure});
}

TEST_CASE("the host gets a theme's name as the description file has it") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini", "[home]\r\nTheme=bLENDS 01101\r\n");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.host.faults().lastArguments(L"WebFile.ApplyTheme") == Lines{L"bLENDS", L"272"});
}

TEST_CASE("a theme value is read up to 255 characters") {
  CopyFixture fixture;
  fixture.makeBlue();
  // The flags are the last that fit.
  const std::string name(250, 'n');
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini",
                         "[home]\r\nTheme=" + name + " 0001FFF\r\n");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  const Lines lines = fixture.log.messages();
  CHECK(has(lines, L"    DWT: home, Theme: " + std::wstring(250, L'n') + L" 0001"));
  CHECK(lines.back() == L"      Theme not available in FP");
}

TEST_CASE("a bar in the target's address stays a bar in the question") {
  standin::HostOptions options;
  options.webUrl = L"http://server/a|b";
  CopyFixture fixture(options);
  fixture.makeBlue();
  fixture.disk.makeFolder(L"webs\\site\\dwts\\Blue");
  RecordingView view;
  view.answer = false;
  runCopy(fixture, view, L"http://server/a|b/dwts");
  CHECK(view.of(L"ask: ") ==
        Lines{L"ask: The DWT named \r\n \" http://server/a|b/dwts/Blue. \"\r\n already exists. Do "
              L"you want to overwrite the existing DWT with the new DWT?"});
}
