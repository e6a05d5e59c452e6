// Archives that the program makes, and what our unpacking makes of them.
#include "author/Package.h"
#include "author/Sha256.h"
#include "author/program.h"
#include "common/errors.h"
#include "tests/author/FullDisk.h"
#include "tests/author/TemplateOnDisk.h"
#include "tests/online/archive/UnpackingBoxes.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/support/error_number.h"

using namespace author;

namespace {

// A template, where its archive goes, and where that is unpacked.
struct Packing {
  TemplateOnDisk quay;
  ScratchFolder out;
  std::wstring archive = out / L"quay.zip";
  RecordedConsole console;

  ExitCode run(std::vector<std::wstring> more = {}) {
    std::vector<std::wstring> arguments = {L"pack", quay.folder, L"-o", archive};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runProgram(arguments, console);
  }
  // By the real library.
  bool unpack() { return unzipFiles(archive, out.makeFolder(L"unpacked")); }
  std::string bytes() const { return out.readFile(L"quay.zip"); }
};

void setTime(const std::wstring& path, WORD year) {
  const SYSTEMTIME day = {year, 3, 0, 14, 9, 26, 52, 0};
  FILETIME time = {};
  SystemTimeToFileTime(&day, &time);
  const handles::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
  REQUIRE(SetFileTime(file.get(), nullptr, nullptr, &time));
}

}  // namespace

TEST_CASE("an archive unpacks to the template folder as it was") {
  Packing packing;
  std::string noise(70000, '\0');
  unsigned state = 1;
  for (char& byte : noise) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  packing.quay.write(L"images\\stone.gif", noise);
  packing.quay.write(L"quay.css", "body { background: url(images/stone.gif) } b { color: " +
                                      std::string(5000, 'x') + " }");
  DeleteFileW((packing.quay.folder + L"\\stone.gif").c_str());
  REQUIRE(packing.run() == fine);
  CHECK(packing.bytes().size() < 76000);
  CHECK(packing.bytes().size() > 70000);
  REQUIRE(packing.unpack());
  for (const wchar_t* name : {L"quay.dwt", L"quay.css", L"quillet.ini", L"images\\stone.gif"})
    CHECK(packing.out.readFile(L"unpacked\\Quay\\" + std::wstring(name)) ==
          packing.quay.disk.readFile(L"Quay\\" + std::wstring(name)));
  CHECK(packing.out.tree().size() == 8);
}

TEST_CASE("a template that was unpacked from its archive is listed as before") {
  Packing packing;
  REQUIRE(packing.run() == fine);
  REQUIRE(packing.unpack());
  const FolderReport report =
      checkTemplateFolder(packing.out / L"unpacked\\Quay", L"Quay", packing.console);
  CHECK(report.findings.empty());
  REQUIRE(report.templates.size() == 1);
  CHECK(report.templates[0].title == L"The Quay");
}

TEST_CASE("the same files give the same archive whatever their times") {
  Packing packing;
  REQUIRE(packing.run() == fine);
  const std::string first = packing.bytes();
  setTime(packing.quay.folder + L"\\quay.dwt", 2001);
  REQUIRE(packing.run() == fine);
  CHECK(packing.bytes() == first);
  CHECK(packing.out.tree() == Told{L"quay.zip"});
}

TEST_CASE("an archive replaces what an earlier one has left") {
  Packing packing;
  REQUIRE(packing.run() == fine);
  REQUIRE(packing.unpack());
  packing.quay.write(L"quay.css", "b { background: url(stone.gif); color: red }");
  REQUIRE(packing.run() == fine);
  REQUIRE(packing.unpack());
  CHECK(packing.out.readFile(L"unpacked\\Quay\\quay.css") ==
        "b { background: url(stone.gif); color: red }");
}

TEST_CASE("names with umlauts come out of an archive as they went in") {
  Packing packing;
  packing.quay.write(L"quay.css",
                     "b { background: url(gr\xFCn.gif) } i { background: url(stone.gif) }");
  packing.quay.write(L"gr\u00FCn.gif", "x");
  REQUIRE(packing.run() == fine);
  REQUIRE(packing.unpack());
  CHECK(packing.out.readFile(L"unpacked\\Quay\\gr\u00FCn.gif") == "x");
}

TEST_CASE("a name beyond the English alphabet stands in an archive in both ways that tools read") {
  Packing packing;
  packing.quay.write(L"quay.css",
                     "b { background: url(gr\xFCn.gif) } i { background: url(stone.gif) }");
  packing.quay.write(L"gr\u00FCn.gif", "x");
  REQUIRE(packing.run() == fine);
  const std::string name = "Quay/gr\xC3\xBCn.gif";
  const std::string crc = ZipMaker::number(ZipMaker::crc(name), 4);
  const std::string field = ZipMaker::field(0x7075, "\1" + crc + name);
  const std::string bytes = packing.bytes();
  const auto header = bytes.find(name + field);
  REQUIRE(header != bytes.npos);
  CHECK(bytes[header - 30 + 7] == '\x08');  // the flag of UTF-8
  CHECK(bytes.find(name + field, header + 1) != bytes.npos);
}

TEST_CASE("the host's own files stay out of an archive and empty folders go in") {
  Packing packing;
  packing.quay.write(L"_vti_cnf\\quay.dwt", "x");
  packing.quay.disk.makeFolder(L"Quay\\pictures");
  packing.quay.disk.makeFolder(L"Quay\\pages\\_vti_cnf");
  REQUIRE(packing.run() == fine);
  REQUIRE(packing.unpack());
  CHECK(packing.out.tree() == Told{L"quay.zip", L"unpacked\\", L"unpacked\\Quay\\",
                                   L"unpacked\\Quay\\pages\\", L"unpacked\\Quay\\pictures\\",
                                   L"unpacked\\Quay\\quay.css", L"unpacked\\Quay\\quay.dwt",
                                   L"unpacked\\Quay\\quillet.ini", L"unpacked\\Quay\\stone.gif"});
}

TEST_CASE("an archive is told with its size and check sum") {
  Packing packing;
  REQUIRE(packing.run() == fine);
  const std::wstring sum = sha256Of(packing.bytes());
  const std::wstring size = std::to_wstring(packing.bytes().size());
  CHECK(packing.console.printed ==
        packing.archive + L": 4 files, " + size + L" bytes\nSHA-256 " + sum + L"\n");
  packing.console.printed.clear();
  REQUIRE(packing.run({L"--json"}) == fine);
  CHECK(packing.console.printed.ends_with(L"    \"files\": 4,\n    \"bytes\": " + size +
                                          L",\n    \"sha256\": \"" + sum +
                                          L"\"\n  },\n  \"fine\": true\n}\n"));
}

TEST_CASE("a finding keeps a folder from being packed unless it is to be packed anyway") {
  Packing packing;
  packing.quay.write(L"old.gif", "x");
  CHECK(packing.run() == findingsOrFailure);
  CHECK(packing.console.printed.ends_with(
      L"Nothing was written because of 1 finding. With --anyway it is.\n"));
  CHECK(packing.out.tree() == Told{});
  CHECK(packing.run({L"--anyway"}) == fine);
  CHECK(packing.out.tree() == Told{L"quay.zip"});
}

TEST_CASE("findings that keep a folder from being packed are told as JSON") {
  Packing packing;
  packing.quay.write(L"old.gif", "x");
  CHECK(packing.run({L"--json"}) == findingsOrFailure);
  CHECK(packing.console.printed.find(L"  \"findings\": [\n    {\n      \"rule\": \"unlinked\"") !=
        std::wstring::npos);
  CHECK(packing.console.printed.ends_with(L"  ],\n  \"fine\": false\n}\n"));
}

TEST_CASE("a folder of which not all was listed is not packed") {
  Packing packing;
  FolderTree tree = listTree(packing.quay.folder, packing.console);
  tree.isWhole = false;
  CHECK(numberOf([&] {
          packFolder(packing.quay.folder, tree, packing.archive, packing.console);
        }) == errors::overflow);
  CHECK(packing.out.tree() == Told{});
}

TEST_CASE("what our unpacking would refuse is not made") {
  Packing packing;
  packing.quay.write(L"\u6E2F.gif", "x");
  packing.out.writeFile(L"quay.zip", "the one before");
  CHECK(packing.run({L"--anyway"}) == findingsOrFailure);
  CHECK(packing.console.complained ==
        L"quillet-template: The archive would be refused by the download. The archive \" " +
            packing.archive +
            L" \" was not unpacked. The name of a file in it holds a character that this system's "
            L"code page does not have : Quay/\u6E2F.gif.\n");
  CHECK(packing.out.tree() == Told{L"quay.zip"});
  CHECK(packing.bytes() == "the one before");
}

TEST_CASE("a full disk leaves the archive of before and nothing else") {
  Packing packing;
  packing.out.writeFile(L"quay.zip", "the one before");
  {
    const FullDisk disk(400);
    CHECK(packing.run() == findingsOrFailure);
  }
  CHECK(packing.console.complained ==
        L"quillet-template: " + packing.archive + L".1.part: Disk full.\n");
  CHECK(packing.out.tree() == Told{L"quay.zip"});
  CHECK(packing.bytes() == "the one before");
}

TEST_CASE("a stopped packing leaves nothing behind") {
  Packing packing;
  REQUIRE(packing.run() == fine);
  DeleteFileW(packing.archive.c_str());
  const int needed = 1000000 - packing.console.goesOn;
  for (int steps = 0; steps < needed; ++steps) {
    packing.console.goesOn = steps;
    CHECK(packing.run() == findingsOrFailure);
    CHECK(packing.out.tree() == Told{});
  }
  packing.console.goesOn = needed;
  CHECK(packing.run() == fine);
}

TEST_CASE("an archive does not go into the folder that it is made of nor over a folder") {
  Packing packing;
  packing.archive = packing.quay.folder + L"\\quay.zip";
  CHECK(packing.run() == findingsOrFailure);
  CHECK(packing.console.complained ==
        L"quillet-template: " + packing.archive +
            L": The archive would lie in the folder that it holds.\n");
  packing.console.complained.clear();
  packing.archive = packing.out.makeFolder(L"there");
  CHECK(packing.run() == findingsOrFailure);
  CHECK(packing.console.complained ==
        L"quillet-template: " + packing.archive + L": This is a folder.\n");
  packing.console.complained.clear();
  packing.archive = packing.out / L"gone\\quay.zip";
  CHECK(packing.run() == findingsOrFailure);
  CHECK(packing.console.complained ==
        L"quillet-template: " + packing.archive + L": Path not found.\n");
}

TEST_CASE("a folder of templates is not packed as one") {
  Packing packing;
  const std::vector<std::wstring> arguments = {L"pack", packing.quay.disk.path(), L"-o",
                                               packing.archive};
  CHECK(runProgram(arguments, packing.console) == findingsOrFailure);
  CHECK(packing.console.complained ==
        L"quillet-template: " + packing.quay.disk.path() +
            L": This is not the folder of one template or theme, but holds others.\n");
}

TEST_CASE("a theme is packed with its name in front") {
  Packing packing;
  packing.quay.disk.writeFile(L"glass\\glass.inf", "x");
  packing.quay.disk.writeFile(L"glass\\glass.elm", "y");
  const std::vector<std::wstring> arguments = {L"pack", packing.quay.disk / L"glass", L"-o",
                                               packing.archive};
  REQUIRE(runProgram(arguments, packing.console) == fine);
  REQUIRE(packing.unpack());
  CHECK(packing.out.readFile(L"unpacked\\glass\\glass.elm") == "y");
}
