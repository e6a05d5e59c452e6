#include <algorithm>
#include <cstring>

#include "common/errors.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/MadeUpFolder.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"

using Lines = std::vector<std::wstring>;

namespace {

constexpr wchar_t question[] =
    L"ask: The DWT named \r\n \" /dwts/Blue. \"\r\n already exists. Do you want to overwrite the "
    L"existing DWT with the new DWT?";
constexpr wchar_t failure[] = L"fail: An error was encountered while copying the DWT's.";
constexpr wchar_t countCancelled[] =
    L"  ERROR in procedure CountFilesAndFolders of Form frmCopyToWeb. Error : Operation Cancelled.";
constexpr wchar_t cancelLine[] = L"Copy to web operation has been cancelled!!!";

bool has(const Lines& lines, const std::wstring& wanted) {
  return std::find(lines.begin(), lines.end(), wanted) != lines.end();
}

// The page, as it lies in the web.
std::string pageOf(const CopyFixture& fixture, const wchar_t* name = L"home.dwt") {
  return fixture.disk.readFile(std::wstring(L"webs\\site\\dwts\\Blue\\") + name);
}

// The first copy makes the folders and the second asks before it takes the template's place.
void checkCopiesUnder(const standin::HostOptions& options) {
  CopyFixture fixture(options);
  fixture.makeBlue();
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(view.of(L"ask: ").empty());
  CHECK(fixture.webTree(L"dwts") ==
        Lines{L"Blue\\", L"Blue\\home.dwt", L"Blue\\images\\", L"Blue\\images\\logo.gif"});
  CHECK(pageOf(fixture).find("Blends 001F") != std::string::npos);
  RecordingView again;
  CHECK(runCopy(fixture, again).copied);
  CHECK(again.of(L"ask: ").size() == 1);
}

}  // namespace

TEST_CASE("a copied template arrives without description file and host folders") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.webTree(L"dwts") ==
        Lines{L"Blue\\", L"Blue\\home.dwt", L"Blue\\images\\", L"Blue\\images\\logo.gif"});
  CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\images\\logo.gif") == "GIF89a");
}

TEST_CASE("a copy run writes its whole log in order") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  runCopy(fixture, view);
  CHECK(fixture.log.messages() == Lines{
                                      L"Begin process of copying DWT's to the web...",
                                      L"Preparing to copy DWT Folder : \"Blue\" to web...",
                                      L"DWT Path : " + fixture.templateFolder(),
                                      L"  Performing initialisation of the variables...",
                                      L"  Completed initialization of the variables...",
                                      L"  Preparing to copy files and folders to the web...",
                                      L"  Copying files and folders to the web.",
                                      L"  Creating folder : " + fixture.url(L"/dwts/Blue"),
                                      L"      Copying file : home.dwt",
                                      L"    Creating folder : " + fixture.url(L"/dwts/Blue/images"),
                                      L"      Copying file : logo.gif",
                                      L"  DWT copied successfully",
                                      L"  Cleaning uploaded folder...",
                                      L"  Folder cleaned.",
                                      L"  Applying themes to DWTs ( count: 1)...",
                                      L"    DWT: home, Theme: Blends 1F",
                                  });
  modCommon::WriteLog(L"after");
  CHECK(fixture.log.messages().back() == L"after");
}

TEST_CASE("a copy run shows its steps in order") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  runCopy(fixture, view);
  CHECK(view.events == Lines{
                           L"overall 0 of 5",
                           L"web: " + fixture.url(),
                           L"overall status: Initializing...",
                           L"current 0 of 2",
                           L"current step",
                           L"template: Blue skies",
                           L"current step",
                           L"overall step",
                           L"overall status: ",
                           L"overall status: Preparing to copy files and folders to the web...",
                           L"current 0 of 2",
                           L"current step",
                           L"current step",
                           L"overall step",
                           L"overall status: ",
                           L"overall status: Copying files and folders to the web...",
                           L"current 0 of 3",
                           L"current status: home.dwt",
                           L"current step",
                           L"current status: images",
                           L"current status: logo.gif",
                           L"current step",
                           L"current step",
                           L"current status: ",
                           L"current status: quillet.ini",
                           L"current status: ",
                           L"overall step",
                           L"overall status: ",
                           L"overall status: optimizing DWT folder...",
                           L"current 0 of 1",
                           L"current full",
                           L"overall step",
                           L"overall status: Applying themes to the DWTs...",
                           L"current 0 of 1",
                           L"current status: Applying theme to home...",
                           L"current step",
                           L"overall step",
                           L"current status: ",
                           L"unload",
                       });
}

TEST_CASE("a copy run refreshes the web with its flag set") {
  CopyFixture fixture;
  fixture.makeBlue();
  int refreshed = 0;
  fixture.host.session().webChanged = [&] { ++refreshed; };
  RecordingView view;
  runCopy(fixture, view);
  CHECK(refreshed == 1);
  CHECK(fixture.host.faults().lastArguments(L"Web.Refresh") == Lines{L"-1"});
}

TEST_CASE("a copy run holds no object of the host when it is over") {
  CopyFixture fixture;
  fixture.makeBlue();
  const long before = fixture.host.liveObjects();
  RecordingView view;
  runCopy(fixture, view);
  CHECK(fixture.host.liveObjects() == before);
}

TEST_CASE("a sub-folder named _vti_cnf is neither counted nor copied in any letter case") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\home.dwt");
  fixture.disk.writeFile(L"templates\\Blue\\_VTI_cnf\\home.dwt");
  fixture.disk.writeFile(L"templates\\Blue\\images\\_vti_cnf\\deep\\logo.gif");
  fixture.disk.writeFile(L"templates\\Blue\\images\\my_vti_notes.txt");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"home.dwt", L"images\\"});
  CHECK(view.of(L"current 0 of ")[2] == L"current 0 of 2");
  CHECK_FALSE(has(fixture.log.messages(), L"      Copying file : my_vti_notes.txt"));
}

TEST_CASE("nothing is copied out of a template folder whose own path contains _vti") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\x_vti\\Blue\\home.dwt");
  fixture.disk.writeFile(L"templates\\x_vti\\Blue\\images\\logo.gif");
  RecordingView view;
  CHECK(runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"x_vti\\Blue")).copied);
  CHECK(fixture.webTree() == Lines{L"dwts\\", L"dwts\\Blue\\"});
  CHECK(view.of(L"current 0 of ")[2] == L"current 0 of 0");
}

TEST_CASE("the description file is neither counted nor copied in any letter case at any depth") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\home.dwt");
  fixture.disk.writeFile(L"templates\\Blue\\QUILLET.INI");
  fixture.disk.writeFile(L"templates\\Blue\\sub\\Quillet.Ini");
  fixture.disk.writeFile(L"templates\\Blue\\sub\\quillet.ini.txt");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"home.dwt", L"sub\\", L"sub\\quillet.ini.txt"});
  CHECK(view.of(L"current 0 of ")[2] == L"current 0 of 3");
}

TEST_CASE("the current bar takes as many steps in the walk as it has room for") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"templates\\Blue\\a\\b\\c\\deep.txt");
  fixture.disk.writeFile(L"templates\\Blue\\a\\quillet.ini");
  RecordingView view;
  runCopy(fixture, view);
  int steps = 0;
  bool walking = false;
  for (const auto& event : view.events) {
    if (event == L"current 0 of 7") walking = true;
    if (event == L"overall status: optimizing DWT folder...") walking = false;
    if (walking && event == L"current step") ++steps;
  }
  CHECK(steps == 7);
}

TEST_CASE("a template folder without a template runs the theme step over nothing") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\page.htm");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"page.htm"});
  // Count, walk, then a bar that has room for one although there is nothing to step.
  CHECK(view.of(L"current 0 of ") == Lines{L"current 0 of 2", L"current 0 of 2", L"current 0 of 1",
                                           L"current 0 of 1", L"current 0 of 0"});
  CHECK(has(fixture.log.messages(), L"  Applying themes to DWTs ( count: 0)..."));
}

TEST_CASE("a description file in the web stays when no template was imported") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\page.htm");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\quillet.ini");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"page.htm", L"quillet.ini"});
}

TEST_CASE("a description file that an earlier copy left in the web is removed") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\quillet.ini");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK_FALSE(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\quillet.ini"));
  const Lines lines = fixture.log.messages();
  CHECK(has(lines, L"  Cleaning uploaded folder..."));
  CHECK(has(lines, L"    Quillet ini file found and deleted"));
  CHECK(has(lines, L"  Folder cleaned."));
}

TEST_CASE("only the folder of the first imported template is cleaned") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\a\\first.dwt");
  fixture.disk.writeFile(L"templates\\Blue\\b\\second.dwt");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\a\\quillet.ini");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\b\\quillet.ini");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK_FALSE(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\a\\quillet.ini"));
  CHECK(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\b\\quillet.ini"));
}

TEST_CASE("a file URL is read as the folder it means") {
  CHECK(CopyRun::sourcePathOf(L"file:///C:/Templates/Blue") == L"C:\\Templates\\Blue");
  CHECK(CopyRun::sourcePathOf(L"C:\\Templates\\Blue") == L"C:\\Templates\\Blue");
  CHECK(CopyRun::sourcePathOf(L"C:/Templates/Blue") == L"C:/Templates/Blue");
  CHECK(CopyRun::sourcePathOf(L"") == L"");
}

TEST_CASE("a file URL in another letter case is recognised but keeps its prefix") {
  CHECK(CopyRun::sourcePathOf(L"FILE:///C:/Templates") == L"FILE:\\\\\\C:\\Templates");
  CHECK(CopyRun::sourcePathOf(L"File:///C:/a/file:///b") == L"File:\\\\\\C:\\a\\b");
}

TEST_CASE("every prefix within a file URL is taken out") {
  CHECK(CopyRun::sourcePathOf(L"file:///C:/a/file:///b") == L"C:\\a\\b");
}

TEST_CASE("a template given as a file URL is copied and gets no theme") {
  CopyFixture fixture;
  fixture.makeBlue();
  std::wstring tag = L"file:///" + fixture.templateFolder();
  for (auto& letter : tag)
    if (letter == L'\\') letter = L'/';
  RecordingView view;
  CHECK(runCopy(fixture, view, L"/dwts", tag).copied);
  CHECK(pageOf(fixture) == "<html><head></head></html>");
  const Lines lines = fixture.log.messages();
  CHECK(lines[1] == L"Preparing to copy DWT Folder : \"" + tag + L"\" to web...");
  CHECK(lines[2] == L"DWT Path : " + tag);
}

TEST_CASE("a destination with and without a slash at its end gives the same target") {
  for (const wchar_t* destination : {L"/dwts", L"/dwts/"}) {
    CopyFixture fixture;
    fixture.makeBlue();
    RecordingView view;
    CHECK(runCopy(fixture, view, destination).copied);
    CHECK(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\home.dwt"));
    CHECK(has(fixture.log.messages(), L"  Creating folder : " + fixture.url(L"/dwts/Blue")));
  }
}

TEST_CASE("a template can be copied into the web's root and into an absolute address") {
  for (const wchar_t* destination : {L"/", L"", L"a/b", L"\\a\\b"}) {
    CopyFixture fixture;
    fixture.makeBlue();
    RecordingView view;
    CHECK(runCopy(fixture, view, destination).copied);
  }
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  CHECK(runCopy(fixture, view, fixture.url(L"/deep/er")).copied);
  CHECK(fixture.disk.exists(L"webs\\site\\deep\\er\\Blue\\home.dwt"));
}

TEST_CASE("an existing template is overwritten only after a question") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  RecordingView view;
  view.answer = false;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(view.of(L"ask: ") == Lines{question});
  CHECK(pageOf(fixture) == "old");
}

TEST_CASE("the question shows percent signs and bars of the target as they are") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\50%s\\home.dwt");
  fixture.disk.makeFolder(L"webs\\site\\dwts\\50%s");
  RecordingView view;
  view.answer = false;
  runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"50%s"));
  CHECK(view.of(L"ask: ") ==
        Lines{L"ask: The DWT named \r\n \" /dwts/50%s. \"\r\n already exists. Do you want to "
              L"overwrite the existing DWT with the new DWT?"});
}

TEST_CASE("a declined overwrite copies nothing and runs the remaining steps over nothing") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.makeFolder(L"webs\\site\\dwts\\Blue");
  RecordingView view;
  view.answer = false;
  const RunResult result = runCopy(fixture, view);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(fixture.webTree(L"dwts\\Blue").empty());
  CHECK(fixture.log.messages() ==
        Lines{
            L"Begin process of copying DWT's to the web...",
            L"Preparing to copy DWT Folder : \"Blue\" to web...",
            L"DWT Path : " + fixture.templateFolder(),
            L"  Performing initialisation of the variables...",
            L"  Completed initialization of the variables...",
            L"  Preparing to copy files and folders to the web...",
            L"  Existing DWT not to be overwritten. New DWT will not be copied",
            L"  Cleaning uploaded folder...",
            L"  Folder cleaned.",
            L"  Applying themes to DWTs ( count: 0)...",
        });
  CHECK(view.of(L"unload").size() == 2);
  CHECK(view.of(L"overall step").size() == 5);
}

TEST_CASE("an agreed overwrite replaces files of the same name and keeps the others") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\images\\LOGO.GIF", "old");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\mine.htm", "mine");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(pageOf(fixture).find("Blends") != std::string::npos);
  CHECK(pageOf(fixture, L"images\\logo.gif") == "GIF89a");
  CHECK(pageOf(fixture, L"mine.htm") == "mine");
}

TEST_CASE("an agreed overwrite says so in the log before and after") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.makeFolder(L"webs\\site\\dwts\\Blue");
  RecordingView view;
  runCopy(fixture, view);
  const Lines lines = fixture.log.messages();
  CHECK(lines[6] == L"  Overwriting DWT : Blue");
  CHECK(lines[7] == L"  Copying files and folders to the web.");
  CHECK(has(lines, L"  DWT copied successfully"));
  CHECK(has(lines, L"  Overwritten DWT : Blue"));
}

TEST_CASE("a source folder that cannot be enumerated is told and cancels the run") {
  CopyFixture fixture;
  const std::wstring missing = fixture.templateFolder(L"Gone");
  RecordingView view;
  const RunResult result = runCopy(fixture, view, L"/dwts", missing);
  CHECK_FALSE(result.copied);
  CHECK(result.cancelled);
  CHECK(result.cancelDescription == L"Operation Cancelled.");
  CHECK(result.cancelSource == L"The caption");
  CHECK(view.of(L"inform: ") == Lines{L"inform: Could not open : \r\n" + missing});
  CHECK(view.of(L"fail: ").empty());
  CHECK(fixture.log.messages() == Lines{
                                      L"Begin process of copying DWT's to the web...",
                                      L"Preparing to copy DWT Folder : \"Gone\" to web...",
                                      L"DWT Path : " + missing,
                                      L"  Performing initialisation of the variables...",
                                      L"  Completed initialization of the variables...",
                                      L"  Preparing to copy files and folders to the web...",
                                      L"  Copying files and folders to the web.",
                                      L"  Creating folder : " + fixture.url(L"/dwts/Gone"),
                                      std::wstring(L"    ") + cancelLine,
                                  });
}

TEST_CASE("a sub-folder that cannot be enumerated is told and cancels the run") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\a.txt");
  const std::wstring folder = fixture.disk.makeFolder(L"templates\\Blue\\images");
  RecordingView view;
  // It goes while its folder in the web is made.
  fixture.host.faults().before(L"WebFolders.Add", [&] {
    if (fixture.disk.exists(L"webs\\site\\dwts\\Blue\\a.txt")) RemoveDirectoryW(folder.c_str());
  });
  const RunResult result = runCopy(fixture, view);
  CHECK(result.cancelled);
  CHECK_FALSE(result.copied);
  CHECK(view.of(L"inform: ") == Lines{L"inform: Could not open : \r\n" + folder});
  CHECK(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\a.txt"));
}

TEST_CASE("a run can be cancelled at each of its checks") {
  int checks = 0;
  {
    CopyFixture fixture;
    fixture.makeBlue();
    RecordingView view;
    CHECK(runCopy(fixture, view).copied);
    checks = view.checks;
  }
  REQUIRE(checks > 20);
  for (int check = 1; check <= checks; ++check) {
    CAPTURE(check);
    CopyFixture fixture;
    fixture.makeBlue();
    RecordingView view;
    view.refusedCheck = check;
    const RunResult result = runCopy(fixture, view);
    CHECK_FALSE(result.copied);
    CHECK(result.cancelled);
    CHECK(result.cancelDescription == L"Operation Cancelled.");
    CHECK(result.cancelSource == L"The caption");
    CHECK(view.of(L"fail: ").empty());
    CHECK(view.of(L"inform: ").empty());
    const std::wstring last = fixture.log.messages().back();
    CHECK(last.substr(last.find_first_not_of(L' ')) == cancelLine);
    CHECK_FALSE(has(fixture.log.messages(), L"  DWT copied successfully"));
    modCommon::WriteLog(L"after");
    CHECK(fixture.log.messages().back() == L"after");
  }
}

TEST_CASE("a cancel is looked for at every entry and once more before it is copied") {
  const auto checksWith = [](const std::function<void(CopyFixture&)>& fill) {
    CopyFixture fixture;
    fixture.disk.makeFolder(L"templates\\Blue");
    fill(fixture);
    RecordingView view;
    CHECK(runCopy(fixture, view).copied);
    return view.checks;
  };
  const int empty = checksWith([](CopyFixture&) {});
  const int withFile =
      checksWith([](CopyFixture& fixture) { fixture.disk.writeFile(L"templates\\Blue\\a.txt"); });
  const int withFolder =
      checksWith([](CopyFixture& fixture) { fixture.disk.makeFolder(L"templates\\Blue\\a"); });
  // One of them in the count.
  CHECK(withFile == empty + 3);
  // Its own "." and ".." are entries, too.
  CHECK(withFolder == empty + 3 + 4);
}

TEST_CASE("the cancel line stands where the log stood and then its indentation goes") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  view.refusedCheck = 1;
  runCopy(fixture, view);
  CHECK(fixture.log.messages() == Lines{
                                      L"Begin process of copying DWT's to the web...",
                                      L"Preparing to copy DWT Folder : \"Blue\" to web...",
                                      L"DWT Path : " + fixture.templateFolder(),
                                      L"  Performing initialisation of the variables...",
                                      std::wstring(L"  ") + cancelLine,
                                  });
}

TEST_CASE("a cancel during the count is logged there and ends the run at the next check") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  view.refusedCheck = 4;
  const RunResult result = runCopy(fixture, view);
  CHECK(result.cancelled);
  CHECK(fixture.webTree().empty());
  CHECK(fixture.log.messages() == Lines{
                                      L"Begin process of copying DWT's to the web...",
                                      L"Preparing to copy DWT Folder : \"Blue\" to web...",
                                      L"DWT Path : " + fixture.templateFolder(),
                                      L"  Performing initialisation of the variables...",
                                      L"  Completed initialization of the variables...",
                                      L"  Preparing to copy files and folders to the web...",
                                      countCancelled,
                                      std::wstring(L"  ") + cancelLine,
                                  });
}

TEST_CASE("what was imported before a cancel stays in the web") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\a.txt");
  fixture.disk.writeFile(L"templates\\Blue\\b.txt");
  RecordingView view;
  view.onCheck = [&] {
    if (fixture.disk.exists(L"webs\\site\\dwts\\Blue\\a.txt")) view.refusedCheck = view.checks + 1;
  };
  CHECK(runCopy(fixture, view).cancelled);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"a.txt"});
}

TEST_CASE("a refused import leaves the walk without a message and the run comes to its end") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"templates\\Blue\\zebra.txt");
  fixture.host.faults().refuse(L"WebFiles.Add", L"No room.", E_FAIL, 1, 1);
  RecordingView view;
  const RunResult result = runCopy(fixture, view);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(view.of(L"fail: ").empty());
  CHECK(view.of(L"inform: ").empty());
  CHECK(view.of(L"unload").size() == 2);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"home.dwt", L"images\\"});
  CHECK(fixture.log.messages() == Lines{
                                      L"Begin process of copying DWT's to the web...",
                                      L"Preparing to copy DWT Folder : \"Blue\" to web...",
                                      L"DWT Path : " + fixture.templateFolder(),
                                      L"  Performing initialisation of the variables...",
                                      L"  Completed initialization of the variables...",
                                      L"  Preparing to copy files and folders to the web...",
                                      L"  Copying files and folders to the web.",
                                      L"  Creating folder : " + fixture.url(L"/dwts/Blue"),
                                      L"      Copying file : home.dwt",
                                      L"    Creating folder : " + fixture.url(L"/dwts/Blue/images"),
                                      L"      Copying file : logo.gif",
                                      (L"      ERROR in procedure CopyFolderTree of Form "
                                       L"frmCopyToWeb. Error : No room."),
                                      L"  DWT copied successfully",
                                      L"  Cleaning uploaded folder...",
                                      L"  Folder cleaned.",
                                      L"  Applying themes to DWTs ( count: 1)...",
                                      L"    DWT: home, Theme: Blends 1F",
                                  });
}

namespace {

constexpr wchar_t countOverflow[] =
    L"  ERROR in procedure CountFilesAndFolders of Form frmCopyToWeb. Error : Overflow";
constexpr wchar_t runOverflow[] =
    L"  ERROR in procedure EH_CopyDWTToWeb of Form frmCopyToWeb. Error : Overflow";

}  // namespace

TEST_CASE("32767 files and folders are not too many") {
  CopyFixture fixture;
  const MadeUpFolder<AnsiSearch> endless("Endless", 1, 32766);
  RecordingView view;
  // The walk meets files that are not there.
  CHECK_FALSE(runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"Endless")).copied);
  CHECK(view.has(L"current 0 of 32767"));
  CHECK(view.of(L"fail: ").empty());
  CHECK_FALSE(has(fixture.log.messages(), countOverflow));
}

TEST_CASE("a count past 32767 is logged as an overflow and ends the count") {
  CopyFixture fixture;
  const MadeUpFolder<AnsiSearch> endless("Endless", 0, 40000);
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"Endless")).copied);
  CHECK(has(fixture.log.messages(), countOverflow));
  CHECK(view.has(L"current 0 of 32767"));
}

TEST_CASE("files and folders that pass 32767 together end the run with a message") {
  CopyFixture fixture;
  const MadeUpFolder<AnsiSearch> endless("Endless", 1, 32767);
  RecordingView view;
  const RunResult result = runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"Endless"));
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK_FALSE(has(fixture.log.messages(), countOverflow));
  CHECK(fixture.log.messages().back() == runOverflow);
  CHECK(view.of(L"fail: ") == Lines{failure});
  CHECK(view.events.back() == L"unload");
  CHECK(fixture.webTree().empty());
}

namespace {

BOOL WINAPI shareGone(HANDLE, WIN32_FIND_DATAA*) {
  SetLastError(ERROR_NETNAME_DELETED);
  return FALSE;
}

}  // namespace

TEST_CASE("a source folder that breaks off in the middle is not taken for a whole copy") {
  CopyFixture fixture;
  fixture.makeBlue();
  const ImportPatch patch(nullptr, "kernel32.dll", "FindNextFileA", shareGone);
  RecordingView view;
  const RunResult result = runCopy(fixture, view);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(view.of(L"fail: ").empty());
  CHECK(view.of(L"unload").size() == 2);
}

TEST_CASE("a host that gives no file back for an import is asked for it") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\home.dwt");
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini", "[home]\r\nTheme=Blends 1F\r\n");
  fixture.host.faults().returnNothing(L"WebFiles.Add");
  fixture.host.faults().before(L"WebFiles.Add", [&] {
    fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\HOME.dwt", "<html><head></head></html>");
  });
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(pageOf(fixture).find("Blends 001F") != std::string::npos);
}

TEST_CASE("a host that imports nothing and does not say so ends the walk quietly") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.host.faults().returnNothing(L"WebFiles.Add");
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(view.of(L"fail: ").empty());
}

TEST_CASE("a file that cannot be deleted in the web is not imported") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  fixture.host.faults().refuse(L"WebFile.Delete", L"It is checked out.");
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(pageOf(fixture) == "old");
  CHECK(view.of(L"fail: ").empty());
  CHECK(has(fixture.log.messages(), L"  Overwritten DWT : Blue"));
}

TEST_CASE("a local file that has gone meanwhile leaves its namesake in the web") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  const std::wstring source = fixture.disk.writeFile(L"templates\\Blue\\home.dwt", "new");
  fixture.host.faults().before(L"Web.LocateFile", [&] { DeleteFileW(source.c_str()); });
  RecordingView view;
  const RunResult result = runCopy(fixture, view);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(view.of(L"fail: ").empty());
  CHECK(pageOf(fixture) == "old");
  CHECK(fixture.host.faults().calls(L"WebFile.Delete") == 0);
}

TEST_CASE("a refused sub-folder leaves the walk without a message") {
  CopyFixture fixture;
  fixture.makeBlue();
  // "dwts" and "Blue" are made, "images" is not.
  fixture.host.faults().refuse(L"WebFolders.Add", L"No.", E_FAIL, 2);
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(view.of(L"fail: ").empty());
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"home.dwt"});
  CHECK(has(fixture.log.messages(), L"  Folder cleaned.") == false);
  CHECK(has(fixture.log.messages(), L"DWT copied successfully"));
}

TEST_CASE("a refused template folder ends the run with a message") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.host.faults().refuse(L"WebFolders.Add", L"The web is read-only.");
  RecordingView view;
  const RunResult result = runCopy(fixture, view);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(view.of(L"fail: ") == Lines{failure});
  CHECK(view.events.back() == L"unload");
  CHECK(fixture.log.messages().back() ==
        L"  ERROR in procedure EH_CopyDWTToWeb of Form frmCopyToWeb. Error : The web is "
        L"read-only.");
}

TEST_CASE("a run without an open web ends with a message") {
  for (const bool refuses : {false, true}) {
    standin::HostOptions options;
    options.noWebIsError = refuses;
    CopyFixture fixture(options);
    fixture.makeBlue();
    fixture.host.closeWeb();
    RecordingView view;
    CHECK_FALSE(runCopy(fixture, view).copied);
    CHECK(view.of(L"fail: ") == Lines{failure});
    CHECK(fixture.log.messages() ==
          Lines{L"Begin process of copying DWT's to the web...",
                L"ERROR in procedure EH_CopyDWTToWeb of Form frmCopyToWeb. Error : Object variable "
                L"or With block variable not set"});
  }
}

TEST_CASE("a web that is closed in the middle of the walk ends the run with a message") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  view.onCheck = [&] {
    if (fixture.disk.exists(L"webs\\site\\dwts\\Blue\\home.dwt")) fixture.host.closeWeb();
  };
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(view.of(L"fail: ") == Lines{failure});
}

TEST_CASE("a host that refuses any one of its calls lets no run succeed falsely or fail loudly") {
  struct Refused {
    const wchar_t* member;
    bool shown;  // by a message; otherwise the walk is left quietly
  };
  constexpr Refused calls[] = {
      {L"Application.ActiveWeb", true}, {L"Web.Url", true},
      {L"Application.MakeAbs", true},   {L"WebFolder.Url", true},
      {L"Web.RootFolder", true},        {L"WebFiles.Add", false},
      {L"WebFolder.Files", false},      {L"WebFile.Url", true},
      {L"WebFile.Name", true},          {L"WebFile.Extension", true},
      {L"Application.Themes", true},    {L"Themes.Count", true},
      {L"Themes.Item", true},           {L"Theme.Name", true},
      {L"WebFile.ApplyTheme", true},    {L"Web.Refresh", true},
  };
  for (const Refused& call : calls) {
    CAPTURE(std::wstring(call.member));
    CopyFixture fixture;
    fixture.makeBlue();
    fixture.host.faults().refuse(call.member, L"The host refuses.");
    RecordingView view;
    const RunResult result = runCopy(fixture, view);
    CHECK_FALSE(result.copied);
    CHECK_FALSE(result.cancelled);
    CHECK(view.of(L"fail: ").size() == (call.shown ? 1u : 0u));
    CHECK(view.of(L"unload").size() >= 1);
    CHECK(fixture.host.faults().calls(call.member) > 0);
  }
}

TEST_CASE("a host that returns nothing where an object is due ends the run") {
  for (const wchar_t* member : {L"Application.ActiveWeb", L"Web.RootFolder", L"WebFolder.Folders",
                                L"WebFolder.Files", L"Application.Themes", L"Themes.Item"}) {
    for (const bool empty : {false, true}) {
      CAPTURE(std::wstring(member));
      standin::HostOptions options;
      options.nothingIsEmpty = empty;
      CopyFixture fixture(options);
      fixture.makeBlue();
      fixture.host.faults().returnNothing(member);
      RecordingView view;
      CHECK_FALSE(runCopy(fixture, view).copied);
      CHECK(view.of(L"unload").size() >= 1);
    }
  }
}

TEST_CASE("a cancel number from the host does not pass for success") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.host.faults().refuse(L"WebFiles.Add", L"Cancelled by the host.", errors::cancelled);
  RecordingView view;
  const RunResult result = runCopy(fixture, view);
  CHECK(result.cancelled);
  CHECK(result.cancelDescription == L"Operation Cancelled.");
  CHECK_FALSE(result.copied);
}

TEST_CASE("the theme named in the description file is applied with its flags") {
  CopyFixture fixture;
  fixture.makeBlue();
  RecordingView view;
  runCopy(fixture, view);
  CHECK(
      pageOf(fixture) ==
      "<html><head>\r\n<meta name=\"Microsoft Theme\" content=\"Blends 001F\">\r\n</head></html>");
}

TEST_CASE("a theme is found in any letter case") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini", "[home]\r\nTheme=bLENDS 01101\r\n");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(pageOf(fixture).find("content=\"Blends 0110\"") != std::string::npos);
  CHECK(has(fixture.log.messages(), L"    DWT: home, Theme: bLENDS 01101"));
}

TEST_CASE("a theme that the host lacks is logged and the copy goes on") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini", "[home]\r\nTheme=Sumi Painting 011\r\n");
  fixture.installTheme(L"Sumi Painting");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  const Lines lines = fixture.log.messages();
  REQUIRE(lines.size() > 1);
  CHECK(lines[lines.size() - 2] == L"    DWT: home, Theme: Sumi Painting 011");
  CHECK(lines.back() == L"      Theme not available in FP");
  CHECK(fixture.host.faults().calls(L"WebFile.ApplyTheme") == 0);
}

TEST_CASE("a theme value without usable flags is logged and otherwise ignored") {
  for (const char* value : {"Blends", "Blends 0"}) {
    CopyFixture fixture;
    fixture.makeBlue();
    fixture.disk.writeFile(L"templates\\Blue\\quillet.ini",
                           std::string("[home]\r\nTheme=") + value + "\r\n");
    RecordingView view;
    CHECK(runCopy(fixture, view).copied);
    CHECK(fixture.host.faults().calls(L"WebFile.ApplyTheme") == 0);
    CHECK(fixture.log.messages().back() ==
          L"    DWT: home, Theme: " + std::wstring(value, value + strlen(value)));
  }
}

TEST_CASE("a missing description file section or key means no theme and no log line") {
  for (const char* contents :
       {"", "[other]\r\nTheme=Blends 1F\r\n", "[home]\r\nTitle=x\r\n", "[home]\r\nTheme=\r\n"}) {
    CopyFixture fixture;
    fixture.makeBlue();
    fixture.disk.writeFile(L"templates\\Blue\\quillet.ini", contents);
    RecordingView view;
    CHECK(runCopy(fixture, view).copied);
    CHECK(fixture.log.messages().back() == L"  Applying themes to DWTs ( count: 1)...");
    CHECK(view.has(L"current status: Applying theme to home..."));
    CHECK(view.events[view.events.size() - 4] == L"current step");
  }
}

TEST_CASE("each template of a folder is looked up under its own section") {
  CopyFixture fixture;
  fixture.installTheme(L"Arcs");
  fixture.disk.writeFile(L"templates\\Blue\\one.dwt", "<html><head></head></html>");
  fixture.disk.writeFile(L"templates\\Blue\\two.point.DWT", "<html><head></head></html>");
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini",
                         "[one]\r\nTheme=Arcs 11\r\n[two.point]\r\nTheme=Blends FFFF\r\n");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(pageOf(fixture, L"one.dwt").find("content=\"Arcs 0011\"") != std::string::npos);
  CHECK(pageOf(fixture, L"two.point.DWT").find("content=\"Blends FFFF\"") != std::string::npos);
  const Lines lines = fixture.log.messages();
  CHECK(lines[lines.size() - 3] == L"  Applying themes to DWTs ( count: 2)...");
  CHECK(lines[lines.size() - 2] == L"    DWT: one, Theme: Arcs 11");
  CHECK(lines[lines.size() - 1] == L"    DWT: two.point, Theme: Blends FFFF");
}

TEST_CASE("a template below the folder is looked up in the folder's own description file") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\sub\\inner.dwt", "<html><head></head></html>");
  fixture.disk.writeFile(L"templates\\Blue\\quillet.ini", "[inner]\r\nTheme=Blends 1F\r\n");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(pageOf(fixture, L"sub\\inner.dwt").find("Blends 001F") != std::string::npos);
}

TEST_CASE("a file whose name ends in dwt without a point counts as a template") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\mydwt");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(view.has(L"current status: Applying theme to mydw..."));
}

TEST_CASE("a file that is called dwt and nothing more counts as a template") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\dwt");
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(view.has(L"current status: Applying theme to dw..."));
}

TEST_CASE("a host that refuses to apply a theme ends the run with a message") {
  CopyFixture fixture;
  fixture.makeBlue();
  fixture.host.faults().refuse(L"WebFile.ApplyTheme", L"The theme is damaged.");
  RecordingView view;
  const RunResult result = runCopy(fixture, view);
  CHECK_FALSE(result.copied);
  CHECK_FALSE(result.cancelled);
  CHECK(view.of(L"fail: ") == Lines{failure});
  CHECK(fixture.log.messages().back() ==
        L"    ERROR in procedure EH_CopyDWTToWeb of Form frmCopyToWeb. Error : The theme is "
        L"damaged.");
  CHECK(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\home.dwt"));
}

TEST_CASE("files with unusual names are copied as they are") {
  CopyFixture fixture;
  const Lines names = {L"50%20off.htm", L"a b  c.htm", L"it's (1) & [2].htm", L"#x;y=z,~.htm",
                       L"\u00e4\u00f6\u00fc\u00df.htm"};
  for (const auto& name : names)
    fixture.disk.writeFile(L"templates\\Blue skies 100%\\" + name, "x");
  RecordingView view;
  CHECK(runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"Blue skies 100%")).copied);
  for (const auto& name : names) {
    CAPTURE(name);
    CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue skies 100%\\" + name) == "x");
  }
}

TEST_CASE("a file whose name the code page lacks is never taken for another one") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\\u0416x.htm", "new");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\ax.htm", "mine");
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(fixture.webTree(L"dwts\\Blue") == Lines{L"ax.htm"});
  CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\ax.htm") == "mine");
  CHECK(has(fixture.log.messages(), L"      Copying file : ?x.htm"));
}

// The system's ANSI search gives such a file the name that looks most like its own.
TEST_CASE("a file that comes under a name like its own leaves the web file of that name alone") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\\u0101x.htm", "new");
  fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\ax.htm", "mine");
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\ax.htm") == "mine");
  CHECK(has(fixture.log.messages(), L"      Copying file : ax.htm"));
}

TEST_CASE("two files that come under one name are not taken for a whole copy") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\Blue\\\u0101x.htm", "lost");
  fixture.disk.writeFile(L"templates\\Blue\\ax.htm", "found");
  RecordingView view;
  CHECK_FALSE(runCopy(fixture, view).copied);
  CHECK(fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\ax.htm") == "found");
  CHECK(view.of(L"fail: ").empty());
}

TEST_CASE("a folder whose path the code page lacks is told as one that cannot be opened") {
  CopyFixture fixture;
  fixture.disk.writeFile(L"templates\\\u0416\\home.dwt");
  RecordingView view;
  const RunResult result = runCopy(fixture, view, L"/dwts", fixture.templateFolder(L"\u0416"));
  CHECK_FALSE(result.copied);
  CHECK(view.of(L"inform: ") ==
        Lines{L"inform: Could not open : \r\n" + fixture.templateFolder(L"\u0416")});
}

TEST_CASE("a path of nearly 260 characters is copied") {
  CopyFixture fixture;
  const std::wstring folder = fixture.templateFolder();
  const std::wstring name(258 - folder.size() - 1, L'n');
  fixture.disk.writeFile(L"templates\\Blue\\" + name, "x");
  // The web's path is shorter than the template's, so the copy fits as well.
  RecordingView view;
  CHECK(runCopy(fixture, view, L"/").copied);
  CHECK(fixture.disk.readFile(L"webs\\site\\Blue\\" + name) == "x");
}

TEST_CASE("a template is copied twice into a host that hands over nothing as an empty value") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::nothingIsEmpty));
}

TEST_CASE("a template is copied twice into a host that refuses to locate an absent folder") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::absentFolderIsError));
}

TEST_CASE("a template is copied twice into a host that refuses to locate an absent file") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::absentFileIsError));
}

TEST_CASE(
    "a template is copied twice into a host that gives the existing folder for a new one of its "
    "name") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::addExistingFolderGivesIt));
}

TEST_CASE("a template is copied twice into a host that makes several levels of folders at once") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::addMakesLevels));
}

TEST_CASE("a template is copied twice into a host that takes the address of a new folder") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::addTakesUrl));
}

TEST_CASE("a template is copied twice into a host that takes a slash before a path") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::leadingSlashTaken));
}

TEST_CASE("a template is copied twice into a host that refuses a slash behind a path") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::trailingSlashTaken));
}

TEST_CASE(
    "a template is copied twice into a host that puts a path with a leading slash below the "
    "server") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::makeAbsFromServer));
}

TEST_CASE("a template is copied twice into a host that calls the root of the web a web") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::rootIsWeb));
}

TEST_CASE("a template is copied twice into a host that lists its own folders") {
  checkCopiesUnder(otherThanPlain(&standin::HostOptions::vtiFoldersListed));
}

TEST_CASE("a copy arrives in a web on a server") {
  standin::HostOptions options;
  options.webUrl = L"http://server/sub";
  CopyFixture fixture(options);
  fixture.makeBlue();
  RecordingView view;
  CHECK(runCopy(fixture, view).copied);
  CHECK(fixture.disk.exists(L"webs\\site\\dwts\\Blue\\images\\logo.gif"));
  CHECK(has(fixture.log.messages(), L"  Creating folder : http://server/sub/dwts/Blue"));
}
