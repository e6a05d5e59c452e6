// Which folders are looked through.
#include "author/Selection.h"

#include "common/errors.h"
#include "tests/author/OddFolders.h"
#include "tests/author/TemplateOnDisk.h"
#include "tests/support/MadeUpFolder.h"
#include "tests/support/error_number.h"

using namespace author;

namespace {

Selection lookThrough(const std::vector<std::wstring>& folders) {
  RecordedConsole console;
  return author::lookThrough(folders, console);
}

Told rulesOf(const Findings& findings) {
  Told rules;
  for (const Finding& each : findings) rules.push_back(each.rule);
  return rules;
}

}  // namespace

TEST_CASE("a folder with no template is told") {
  const ScratchFolder disk;
  const std::wstring folder = disk.makeFolder(L"Empty");
  const Selection selection = lookThrough({folder});
  CHECK(TemplateOnDisk::told(selection.findings()) ==
        Told{folder +
             L":0: no-template: There is no file that ends in .dwt. | The browser lists "
             L"nothing for this folder. | Put the template into the folder itself, under a "
             L"name that ends in .dwt."});
}

TEST_CASE("a folder of templates and themes is looked through a level deep") {
  const ScratchFolder disk;
  disk.writeFile(L"all\\One\\one.dwt", quayPage);
  disk.writeFile(L"all\\glass\\glass.inf",
                 "[info]\r\ntitle=Glass\r\n[titles]\r\n1033=Sea Glass\r\n");
  disk.writeFile(L"all\\glass\\glass.elm", "x");
  disk.writeFile(L"all\\_vti_pvt\\x.dwt", "x");
  disk.writeFile(L"all\\one.txt", "x");
  const Selection selection = lookThrough({disk / L"all", disk / L"all\\One\\"});
  REQUIRE(selection.templates.size() == 1);
  CHECK(selection.templates[0].folder == disk / L"all\\One");
  REQUIRE(selection.themes.size() == 1);
  CHECK(selection.themes[0].name == L"glass");
  CHECK(selection.themes[0].title == L"Sea Glass");
  CHECK(selection.themes[0].findings.empty());
}

TEST_CASE("a theme whose parts or name the host does not take is told") {
  const ScratchFolder disk;
  disk.writeFile(L"Sea Glass\\glass.inf", "x");
  const Selection selection = lookThrough({disk / L"Sea Glass"});
  CHECK(rulesOf(selection.findings()) ==
        Told{L"theme-name-blank", L"theme-part-missing", L"theme-part-missing"});
}

TEST_CASE("folders and names of a theme that cannot be packed are told") {
  const ScratchFolder disk;
  disk.writeFile(L"glass\\glass.inf", "x");
  disk.writeFile(L"glass\\glass.elm", "x");
  disk.makeFolder(L"glass\\link");
  disk.makeFolder(L"glass\\locked");
  disk.writeFile(L"glass\\\u6E2F.gif", "x");
  const std::wstring lengthy(165, L'd');
  disk.writeFile(L"glass\\" + lengthy, "x");
  const OddFolders odd;
  const std::wstring folder = disk / L"glass";
  CHECK(TemplateOnDisk::told(lookThrough({folder}).findings()) ==
        Told{folder + L"\\" + lengthy +
                 L":0: path-length: The path has 171 characters from the theme's name on. | With "
                 L"more than 170 it cannot be unpacked by everybody. | Use shorter names, or fewer "
                 L"folders inside of each other.",
             folder + L"\\\u6E2F.gif:0: code-page: The name has a character that this system's "
                      L"code page lacks. | The theme cannot be unpacked everywhere. | Give it a "
                      L"name of letters, digits, \"-\" and \"_\".",
             folder + L"\\locked:0: unreadable: The folder cannot be read. | The theme cannot be "
                      L"packed. | Give yourself the right to read it.",
             folder + L"\\link:0: link-folder: The folder is a link to another place of the disk. "
                      L"| It is not packed. | Put the files themselves into the theme's folder."});
}

TEST_CASE("a whole drive is no template") {
  const MadeUpFolder<WideSearch> drive(L"C:\\", 0, 0);
  CHECK(numberOf([] { lookThrough({L"C:\\"}); }) == errors::badFileName);
}

TEST_CASE("a folder that is not there is an error with its name") {
  const ScratchFolder disk;
  const std::wstring gone = disk / L"gone";
  try {
    lookThrough({gone});
    FAIL("no error");
  } catch (const Error& error) {
    CHECK(error.number() == errors::pathNotFound);
    CHECK(std::wstring(error.description()) == gone + L": There is no such folder.");
  }
}

TEST_CASE("a check that is stopped ends") {
  const TemplateOnDisk quay;
  RecordedConsole console;
  console.goesOn = 3;
  CHECK(numberOf([&] { author::lookThrough({quay.folder}, console); }) == errors::cancelled);
}
