#include "online/archive/ArchiveFile.h"

#include <windows.h>

#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

// No test makes a file that is as long.
BOOL WINAPI tellLong(HANDLE, BY_HANDLE_FILE_INFORMATION* about) {
  *about = {};
  about->nFileSizeHigh = 3;
  about->nFileSizeLow = 0x80000005;
  return TRUE;
}

}  // namespace

TEST_CASE("an archive of more than 4 GB has its whole size") {
  const ScratchFolder disk;
  disk.writeFile(L"a.zip", "x");
  const ImportPatch patch(nullptr, "kernel32.dll", "GetFileInformationByHandle", tellLong);
  CHECK(archive::ArchiveFile(disk / L"a.zip").size() == 0x3'80000005);
}
