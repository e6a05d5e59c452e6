// Templates that lie in the very web that they are copied to: no copy may cost their files.
#include <windows.h>

#include "common/handles.h"
#include "common/text.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"
#include "webcopy/same_place.h"

using Lines = std::vector<std::wstring>;

namespace {

constexpr wchar_t question[] =
    L"ask: The DWT named \r\n \" /dwts/Blue. \"\r\n already exists. Do you want to overwrite the "
    L"existing DWT with the new DWT?";
constexpr wchar_t errorLine[] =
    L"  ERROR in procedure EH_CopyDWTToWeb of Form frmCopyToWeb. Error : Path/File access error";

// A web whose own folder `place` is used as a template folder.
struct OwnTemplate {
  explicit OwnTemplate(const std::wstring& place, standin::HostOptions options = {})
      : fixture(std::move(options)), folder(fixture.disk / (L"webs\\site" + place)) {
    write(L"home.dwt", "<html><head></head></html>");
    write(L"images\\logo.gif", "GIF89a");
    write(L"quillet.ini", "[home]\r\nTitle=Blue\r\n");
  }

  void write(const wchar_t* name, const char* bytes) const {
    fixture.disk.writeFile(folder.substr(fixture.disk.path().size() + 1) + L"\\" + name, bytes);
  }
  int calls(const wchar_t* member) const { return fixture.host.faults().calls(member); }

  CopyFixture fixture;
  RecordingView view;
  std::wstring folder;
};

std::wstring samePlace(const std::wstring& folder) {
  return L"Cannot copy \" " + folder +
         L" \". \r\n The destination folder is the same as the source folder.";
}

// The copy ends with the message and its line in the log, and the web is what it was.
void checkRefused(OwnTemplate& own, const std::wstring& destination, const std::wstring& tag) {
  const Lines before = own.fixture.webTree();
  const RunResult result = runCopy(own.fixture, own.view, destination, tag);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(own.view.of(L"fail: ") == Lines{L"fail: " + samePlace(CopyRun::sourcePathOf(tag))});
  CHECK(own.view.of(L"ask: ").empty());
  CHECK(own.view.events.back() == L"unload");
  CHECK(own.fixture.log.messages().back() == errorLine);
  CHECK(own.fixture.webTree() == before);
  CHECK(own.calls(L"WebFile.Delete") == 0);
  CHECK(own.calls(L"WebFolders.Add") == 0);
  CHECK(own.calls(L"WebFiles.Add") == 0);
}

std::wstring upperCased(std::wstring path) {
  CharUpperW(path.data());
  return path;
}

std::wstring shortened(const std::wstring& path) {
  wchar_t name[MAX_PATH] = {};
  GetShortPathNameW(path.c_str(), name, MAX_PATH);
  return name;
}

// The web's address with the first letter of "webs" written as an escape.
standin::HostOptions escapedAddress(const CopyFixture& fixture) {
  standin::HostOptions options;
  options.webUrl = text::replaceAll(fixture.url(), L"/webs/", L"/%77ebs/");
  return options;
}

}  // namespace

TEST_CASE("a template that lies where its copy would go is left as it is") {
  OwnTemplate own(L"\\dwts\\Blue");
  checkRefused(own, L"/dwts", own.folder);
  CHECK(own.fixture.log.messages() == Lines{
                                          L"Begin process of copying DWT's to the web...",
                                          L"Preparing to copy DWT Folder : \"Blue\" to web...",
                                          L"DWT Path : " + own.folder,
                                          L"  Performing initialisation of the variables...",
                                          L"  Completed initialization of the variables...",
                                          L"  Preparing to copy files and folders to the web...",
                                          errorLine,
                                      });
}

TEST_CASE("a web that is a template folder itself is not copied into itself") {
  OwnTemplate own(L"");
  checkRefused(own, L"/dwts", own.folder);
  CHECK(own.fixture.log.messages() == Lines{
                                          L"Begin process of copying DWT's to the web...",
                                          L"Preparing to copy DWT Folder : \"site\" to web...",
                                          L"DWT Path : " + own.folder,
                                          L"  Performing initialisation of the variables...",
                                          L"  Completed initialization of the variables...",
                                          L"  Preparing to copy files and folders to the web...",
                                          errorLine,
                                      });
}

TEST_CASE("a template is not copied into a folder of its own at any depth") {
  OwnTemplate own(L"\\dwts\\Blue");
  checkRefused(own, L"/dwts/Blue/images/deep", own.folder);
}

TEST_CASE("a template that lies where its copy would go is known in any letter case") {
  OwnTemplate own(L"\\dwts\\Blue");
  checkRefused(own, L"/DWTS", upperCased(own.folder));
}

TEST_CASE("a template that lies where its copy would go is known by its file URL") {
  OwnTemplate own(L"\\dwts\\Blue");
  checkRefused(own, own.fixture.url(L"/dwts/"), own.fixture.url(L"/dwts/Blue"));
}

TEST_CASE("a template that lies where its copy would go is known by a roundabout path") {
  OwnTemplate own(L"\\dwts\\Blue");
  checkRefused(own, L"/dwts", own.fixture.disk / L"webs\\site\\dwts\\..\\.\\dwts\\Blue");
}

TEST_CASE("a template that lies where its copy would go is known by its short path") {
  OwnTemplate own(L"\\dwts\\Blue skies over the sea");
  const std::wstring name = shortened(own.folder);
  REQUIRE(name.find(L'~') != name.npos);
  checkRefused(own, L"/dwts", name);
}

TEST_CASE("a template in a web known by its short path is not copied onto itself") {
  OwnTemplate own(L"\\dwts of the year\\Blue");
  const std::wstring name = shortened(own.folder);
  REQUIRE(name.find(L'~') != name.npos);
  checkRefused(own, L"/dwts of the year", name);
}

TEST_CASE("a template that lies where its copy would go is known through an escaped address") {
  OwnTemplate own(L"\\dwts\\Blue");
  own.fixture.host.options() = escapedAddress(own.fixture);
  REQUIRE(own.fixture.application().activeWeb()->url().find(L"%77ebs") != std::wstring::npos);
  checkRefused(own, L"/dwts", own.folder);
}

TEST_CASE("a template whose name looks like an escape is not copied onto itself") {
  for (const wchar_t* name : {L"\\dwts\\50%20off", L"\\dwts\\C#1", L"\\dwts\\Blue skies"}) {
    CAPTURE(std::wstring(name));
    OwnTemplate own(name);
    checkRefused(own, L"/dwts", own.folder);
  }
}

TEST_CASE("a template whose name looks like an escape is known below an escaped address") {
  for (const wchar_t* name : {L"\\dwts\\50%20off", L"\\dwts\\C#1", L"\\dwts\\Blue skies"}) {
    CAPTURE(std::wstring(name));
    for (const bool absolute : {false, true}) {
      CAPTURE(absolute);
      OwnTemplate own(name);
      own.fixture.host.options() = escapedAddress(own.fixture);
      const std::wstring web = own.fixture.application().activeWeb()->url();
      checkRefused(own, (absolute ? web : L"") + L"/dwts", own.folder);
    }
  }
}

TEST_CASE("a template in a folder that looks like an escape is known below an escaped address") {
  for (const bool absolute : {false, true}) {
    CAPTURE(absolute);
    OwnTemplate own(L"\\50%20off\\Blue");
    own.fixture.host.options() = escapedAddress(own.fixture);
    const std::wstring web = own.fixture.application().activeWeb()->url();
    checkRefused(own, (absolute ? web : L"") + L"/50%20off", own.folder);
  }
}

TEST_CASE("a template in the web can be copied to another folder of the web") {
  for (const wchar_t* destination : {L"/other", L"/dwts/Blue2", L"/"}) {
    CAPTURE(std::wstring(destination));
    OwnTemplate own(L"\\dwts\\Blue");
    CHECK(runCopy(own.fixture, own.view, destination, own.folder).copied);
    const Lines files = {L"home.dwt", L"images\\", L"images\\logo.gif"};
    const std::wstring folder = std::wstring(destination).substr(1) + L"/Blue";
    CHECK(own.fixture.webTree(text::replaceAll(folder.front() == L'/' ? folder.substr(1) : folder,
                                               L"/", L"\\")) == files);
    CHECK(own.fixture.webTree(L"dwts\\Blue") ==
          Lines{L"home.dwt", L"images\\", L"images\\logo.gif", L"quillet.ini"});
  }
}

TEST_CASE("a template below the folder that it is copied to keeps its files") {
  OwnTemplate own(L"\\dwts\\Blue\\Blue");
  CHECK(runCopy(own.fixture, own.view, L"/dwts", own.folder).copied);
  CHECK(own.view.of(L"ask: ") == Lines{question});
  CHECK(own.fixture.webTree(L"dwts\\Blue") == Lines{L"Blue\\", L"Blue\\home.dwt", L"Blue\\images\\",
                                                    L"Blue\\images\\logo.gif", L"Blue\\quillet.ini",
                                                    L"home.dwt", L"images\\", L"images\\logo.gif"});
}

TEST_CASE("a template that a folder of its own would be copied onto is left as it is") {
  for (const wchar_t* place : {L"\\dwts\\Blue\\Blue", L"\\dwts\\Blue\\images\\deep\\Blue"}) {
    CAPTURE(std::wstring(place));
    OwnTemplate own(place);
    // A file that would be replaced before the walk meets the folder.
    own.fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\a.htm", "old");
    own.write(L"a.htm", "new");
    own.write(L"Blue\\home.dwt", "inner");
    own.write(L"images\\deep\\Blue\\home.dwt", "inner");
    checkRefused(own, L"/dwts", own.folder);
    CHECK(own.fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\a.htm") == "old");
  }
}

TEST_CASE("a template that only the host's own folders of it would meet is copied") {
  OwnTemplate own(L"\\dwts\\Blue\\_vti_x\\Blue");
  own.write(L"_vti_x\\Blue\\home.dwt", "inner");
  CHECK(runCopy(own.fixture, own.view, L"/dwts", own.folder).copied);
}

TEST_CASE("a look whether a template meets its target can be cancelled") {
  OwnTemplate own(L"\\dwts\\Blue\\Blue");
  int folders = 0;
  for (int number = 0; number < 20; ++number) {
    own.write((L"f" + std::to_wstring(number) + L"\\a.txt").c_str(), "x");
    own.fixture.disk.makeFolder(L"webs\\site\\dwts\\Blue\\f" + std::to_wstring(number));
  }
  own.view.onCheck = [&] {
    if (own.view.has(L"overall status: Copying files and folders to the web...")) ++folders;
    if (folders == 3) own.view.refusedCheck = own.view.checks + 1;
  };
  CHECK(runCopy(own.fixture, own.view, L"/dwts", own.folder).cancelled);
  CHECK(own.view.of(L"ask: ").empty());
}

// Such an address says nothing about the disk.
TEST_CASE("a template that is the copy in a web on a server itself loses no file") {
  standin::HostOptions options;
  options.webUrl = L"http://server/sub";
  OwnTemplate own(L"\\dwts\\Blue", options);
  const Lines before = own.fixture.webTree();
  CHECK_FALSE(runCopy(own.fixture, own.view, L"/dwts", own.folder).copied);
  CHECK(own.view.of(L"fail: ").empty());
  CHECK(own.fixture.webTree() == before);
  CHECK(own.fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\home.dwt") ==
        "<html><head></head></html>");
  CHECK(own.calls(L"WebFile.Delete") == 1);
}

TEST_CASE("a local file that another program keeps to itself leaves its namesake in the web") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  const std::wstring source = fixture.disk.writeFile(L"templates\\Blue\\home.dwt", "new");
  const handles::File kept(
      CreateFileW(source.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\home.dwt") == "old");
  CHECK(fixture.host.faults().calls(L"WebFile.Delete") == 0);
}

TEST_CASE("a local file that another program is writing to is copied all the same") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\page.htm", "old");
  const std::wstring source = fixture.disk.writeFile(L"templates\\Blue\\page.htm", "new");
  const handles::File written(CreateFileW(source.c_str(), GENERIC_WRITE,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\page.htm") == "new");
}

TEST_CASE("the message about one place names the template folder") {
  CHECK(samePlaceMessage(L"C:\\a|b\\%s") ==
        L"Cannot copy \" C:\\a|b\\%s \". \r\n The destination folder is the same as the source "
        L"folder.");
}
