#include "common/FileSearch.h"

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

std::vector<std::wstring> namesOf(FileSearch& search) {
  std::vector<std::wstring> names;
  for (bool found = search.found(); found; found = search.next())
    if (!search.entry().isDots()) names.push_back(search.entry().name);
  std::sort(names.begin(), names.end());
  return names;
}

HANDLE WINAPI noMedium(LPCSTR, LPWIN32_FIND_DATAA) {
  SetLastError(ERROR_NOT_READY);
  return INVALID_HANDLE_VALUE;
}

decltype(&FindFirstFileA) realFindFirstFile = nullptr;

// A record whose name fills it to the last byte.
HANDLE WINAPI nameWithoutEnd(LPCSTR pattern, LPWIN32_FIND_DATAA data) {
  const HANDLE search = realFindFirstFile(pattern, data);
  std::fill(std::begin(data->cFileName), std::end(data->cFileName), 'n');
  return search;
}

}  // namespace

TEST_CASE("a search yields every entry with its kind") {
  ScratchFolder scratch;
  scratch.writeFile(L"b.dwt");
  scratch.writeFile(L"\u00e4 b.dwt");
  const std::wstring hidden = scratch.makeFolder(L"folder");
  SetFileAttributesW(hidden.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  FileSearch search(scratch / L"*.*");
  CHECK(search.startError() == ERROR_SUCCESS);
  int folders = 0;
  int dots = 0;
  std::vector<std::wstring> files;
  for (bool found = search.found(); found; found = search.next()) {
    if (search.entry().isDots())
      ++dots;
    else if (search.entry().isFolder())
      ++folders;
    else
      files.push_back(search.entry().name);
  }
  std::sort(files.begin(), files.end());
  CHECK(dots == 2);
  CHECK(folders == 1);
  CHECK(files == std::vector<std::wstring>{L"b.dwt", L"\u00e4 b.dwt"});
  CHECK_FALSE(search.next());
}

TEST_CASE("a search without a match tells the code of the system and has no next entry") {
  ScratchFolder scratch;
  FileSearch search(scratch / L"*.dwt");
  CHECK_FALSE(search.found());
  CHECK(search.startError() == ERROR_FILE_NOT_FOUND);
  CHECK_FALSE(search.next());
  FileSearch elsewhere(scratch / L"missing\\*.dwt");
  CHECK(elsewhere.startError() == ERROR_PATH_NOT_FOUND);
}

TEST_CASE("a drive without a medium is told by the start of the search") {
  ImportPatch patch(nullptr, "kernel32.dll", "FindFirstFileA", noMedium);
  FileSearch search(L"A:\\*.*");
  CHECK_FALSE(search.found());
  CHECK(search.startError() == ERROR_NOT_READY);
}

TEST_CASE("a pattern with characters outside the code page finds nothing else") {
  ScratchFolder scratch;
  scratch.writeFile(L"a.dwt");
  FileSearch search(scratch / L"\u0416.dwt");
  CHECK_FALSE(search.found());
  CHECK(search.startError() == ERROR_INVALID_NAME);
}

TEST_CASE("a name that fills the record of the search is taken whole and no further") {
  ImportPatch patch(nullptr, "kernel32.dll", "FindFirstFileA", nameWithoutEnd);
  realFindFirstFile = patch.original<std::remove_pointer_t<decltype(&FindFirstFileA)>>();
  FileSearch search(L"C:\\*.*");
  REQUIRE(search.found());
  CHECK(search.entry().name == std::wstring(MAX_PATH, L'n'));
}

TEST_CASE("a search closes its handle and gives the error mode back") {
  ScratchFolder scratch;
  scratch.writeFile(L"a.dwt");
  const long before = handles::liveCount();
  const UINT previous = SetErrorMode(SEM_NOGPFAULTERRORBOX);
  {
    FileSearch search(scratch / L"*.*");
    CHECK(handles::liveCount() == before + 1);
    CHECK(namesOf(search) == std::vector<std::wstring>{L"a.dwt"});
  }
  CHECK(handles::liveCount() == before);
  CHECK(SetErrorMode(previous) == SEM_NOGPFAULTERRORBOX);
}
