#include "online/archive/CUnzip.h"

#include "common/errors.h"
#include "tests/online/OwnModule.h"
#include "tests/online/archive/Unpacking.h"

TEST_CASE("each option reaches its place in the record of the library") {
  const OwnModule own;
  own.useStandIn();
  const ScratchFolder scratch;
  CUnzip extractor;
  extractor.ExtractNewer = true;
  extractor.MessageLevel = 7;
  extractor.TestZip = true;  // so that only one call is made
  extractor.ExtractOnlyNewer = true;
  extractor.HonorDirectories = true;
  extractor.ConvertCRtoCRLF = true;
  extractor.CaseSensitive = true;
  extractor.Privilege = 2;
  std::wstring archive = scratch.writeFile(L"x.zip", onePage().bytes());
  std::wstring folder = scratch.path();
  CHECK(runExtractor(extractor, archive, folder) == 0);
  CHECK(extractor.GetLastMessage() ==
        L"1536 1 0 0 7 0 1 0 1 0 1 0 1 0 0 0 0 0 2 " + archive + L" " + scratch.path());

  CUnzip others;
  others.SpaceToUnderScore = true;
  others.PromptOverwrite = true;
  others.WriteToStdOut = true;
  others.DisplayComment = true;
  others.OverWriteFiles = true;
  others.Verbose = true;
  ModalDriver driver;
  driver.answer(IDYES);
  CHECK(runExtractor(others, archive, folder) == 0);
  CHECK(others.GetLastMessage() ==
        L"1536 0 1 1 2 1 0 0 0 1 0 1 0 1 0 1 0 0 0 " + archive + L" " + scratch.path());
}

TEST_CASE("the extractor begins with its defaults") {
  const CUnzip extractor;
  CHECK_FALSE(extractor.ExtractNewer);
  CHECK_FALSE(extractor.SpaceToUnderScore);
  CHECK_FALSE(extractor.PromptOverwrite);
  CHECK(extractor.MessageLevel == 2);
  CHECK_FALSE(extractor.WriteToStdOut);
  CHECK_FALSE(extractor.TestZip);
  CHECK(extractor.ExtractList == 0);
  CHECK_FALSE(extractor.ExtractOnlyNewer);
  CHECK_FALSE(extractor.DisplayComment);
  CHECK_FALSE(extractor.HonorDirectories);
  CHECK_FALSE(extractor.OverWriteFiles);
  CHECK_FALSE(extractor.ConvertCRtoCRLF);
  CHECK_FALSE(extractor.Verbose);
  CHECK_FALSE(extractor.CaseSensitive);
  CHECK(extractor.Privilege == 0);
  CHECK(extractor.ZipFileName.empty());
  CHECK(extractor.ExtractDir.empty());
}

TEST_CASE("arguments of the extractor become its properties and come back") {
  const Unpacking unpacking(onePage());
  CUnzip extractor;
  extractor.ZipFileName = unpacking.archive;
  std::wstring archive;
  std::wstring folder = unpacking.folder;
  CHECK(runExtractor(extractor, archive, folder) == 0);
  CHECK(archive == unpacking.archive);
  CHECK(extractor.ExtractDir == unpacking.folder);
  CHECK(unpacking.read(L"page.htm") == "new page");
}

TEST_CASE("errors of the extractor bear its source") {
  const OwnModule own;
  CUnzip extractor;
  std::wstring archive = L"C:\\x.zip";
  std::wstring folder = L"C:\\";
  try {
    runExtractor(extractor, archive, folder);
    FAIL("no error");
  } catch (const Error& error) {
    CHECK(error.number() == errors::fileNotFound);
    CHECK(error.source() == L"CGUnZipFiles::Unzip");
  }
}

TEST_CASE("a listing is laid out in columns and writes nothing") {
  const Unpacking unpacking(ZipMaker().add("page.htm", "new page").add("images/dot.gif", "12"));
  CUnzip extractor;
  extractor.ExtractList = 1;
  std::wstring archive = unpacking.archive;
  std::wstring folder = unpacking.folder;
  CHECK(runExtractor(extractor, archive, folder) == 0);
  CHECK(extractor.GetLastMessage() ==
        L"Filename:                                                Size  Date      Time\r\n"
        L"page.htm                                                    8  01/01/00  12:00\r\n"
        L"images/dot.gif                                              2  01/01/00  12:00");
  CHECK(unpacking.untouched());
}

TEST_CASE("a test of an archive writes nothing") {
  const Unpacking unpacking(onePage());
  CUnzip extractor;
  extractor.TestZip = true;
  std::wstring archive = unpacking.archive;
  std::wstring folder = unpacking.folder;
  CHECK(runExtractor(extractor, archive, folder) == 0);
  CHECK(unpacking.untouched());
}

TEST_CASE("without the folders of the names everything lands in one folder") {
  const Unpacking unpacking(ZipMaker().add("images/deep/dot.gif", "a dot"));
  CUnzip extractor;
  std::wstring archive = unpacking.archive;
  std::wstring folder = unpacking.folder;
  CHECK(runExtractor(extractor, archive, folder) == 0);
  CHECK(unpacking.read(L"dot.gif") == "a dot");
}

namespace {

// Unpacks over an existing file, asking, and returns its contents afterwards.
std::string overwriteWith(int answer, ShownBox& box) {
  const Unpacking unpacking(onePage().add("other.htm", "new too"));
  unpacking.scratch.writeFile(L"inside\\page.htm", "old page");
  unpacking.scratch.writeFile(L"inside\\other.htm", "old too");
  CUnzip extractor;
  extractor.PromptOverwrite = true;
  std::wstring archive = unpacking.archive;
  std::wstring folder = unpacking.folder;
  ModalDriver driver;
  driver.answer(answer);
  driver.answer(IDNO);
  runExtractor(extractor, archive, folder);
  REQUIRE(driver.boxes().size() == (answer == IDCANCEL ? 1 : 2));
  box = driver.boxes()[0];
  CHECK(box.text == L"Overwrite " + unpacking.folder + L"/page.htm" + L"?");
  return unpacking.read(L"page.htm") + " " + unpacking.read(L"other.htm");
}

}  // namespace

TEST_CASE("the overwrite question replaces a file on Yes") {
  ShownBox box;
  CHECK(overwriteWith(IDYES, box) == "new page old too");
  CHECK(box.title == L"VBUnZip32 - File Already Exists!");
  CHECK(box.buttons == Tree{L"Yes", L"No", L"Cancel"});
}
TEST_CASE("the overwrite question keeps a file on No") {
  ShownBox box;
  CHECK(overwriteWith(IDNO, box) == "old page old too");
}
TEST_CASE("the overwrite question keeps all files on Cancel and is not asked again") {
  ShownBox box;
  CHECK(overwriteWith(IDCANCEL, box) == "old page old too");
}
