#include "author/disk.h"

#include "common/errors.h"
#include "tests/author/OddFolders.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

namespace {

struct GoesOn final : KeepGoing {
  bool keepGoing() override { return true; }
};

BOOL WINAPI refuseToRead(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) {
  SetLastError(ERROR_CRC);
  return FALSE;
}

}  // namespace

TEST_CASE("a file that is not finished goes again") {
  const ScratchFolder disk;
  {
    author::NewFile file(disk / L"a.txt");
    file.write("begun");
    CHECK(disk.exists(L"a.txt"));
  }
  CHECK_FALSE(disk.exists(L"a.txt"));
}

TEST_CASE("a file that is finished stays") {
  const ScratchFolder disk;
  author::writeFile(disk / L"a.txt", "whole");
  CHECK(disk.readFile(L"a.txt") == "whole");
}

TEST_CASE("a folder is made with those that are missing above it") {
  const ScratchFolder disk;
  author::makeFolders(disk / L"a\\b\\c");
  CHECK(disk.exists(L"a\\b\\c"));
  author::makeFolders(disk / L"a\\b\\c");
}

TEST_CASE("a folder on a drive that is not there cannot be made") {
  CHECK(numberOf([] { author::makeFolders(L"Q:\\a\\b"); }) != 0);
}

TEST_CASE("a folder whose path no program takes is told of and not looked into") {
  const ScratchFolder disk;
  for (const std::size_t length : {259U, 260U}) {
    const std::wstring name(length - disk.path().size() - 1, L'n');
    const std::wstring path = L"\\\\?\\" + (disk / name);
    REQUIRE(CreateDirectoryW(path.c_str(), nullptr));
    GoesOn run;
    const author::FolderTree tree = author::listTree(disk.path(), run);
    RemoveDirectoryW(path.c_str());
    CHECK(tree.entries.size() == 1);
    CHECK(tree.tooDeep.size() == length - 259);
  }
}

TEST_CASE("a folder goes with all that is in it but nothing of what it leads to") {
  const ScratchFolder disk;
  disk.writeFile(L"tree\\a\\b.txt", "x");
  disk.makeFolder(L"tree\\c\\link");
  disk.writeFile(L"tree\\link\\kept.txt", "x");
  const OddFolders odd;
  author::removeTree(disk / L"tree");
  CHECK(disk.tree() ==
        std::vector<std::wstring>{L"tree\\", L"tree\\link\\", L"tree\\link\\kept.txt"});
}

TEST_CASE("a file that breaks off while it is read is an error") {
  const ScratchFolder disk;
  disk.writeFile(L"a.txt", "whole");
  const ImportPatch broken(nullptr, "kernel32.dll", "ReadFile", refuseToRead);
  CHECK(numberOf([&] { author::readFile(disk / L"a.txt", 100); }) == errors::deviceIoError);
}

TEST_CASE("what is not there takes no other file's place") {
  const ScratchFolder disk;
  disk.writeFile(L"a.txt", "whole");
  CHECK(numberOf([&] { author::replaceFile(disk / L"gone", disk / L"a.txt"); }) ==
        errors::fileNotFound);
  CHECK(disk.readFile(L"a.txt") == "whole");
}
