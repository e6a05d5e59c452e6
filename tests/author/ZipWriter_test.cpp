#include "author/ZipWriter.h"

#include "common/errors.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

// What is not on the disk is not asked for.
BOOL WINAPI takeAll(HANDLE, const void*, DWORD count, DWORD* written, OVERLAPPED*) {
  *written = count;
  return TRUE;
}

}  // namespace

TEST_CASE("an archive has room for 65,535 entries") {
  const ScratchFolder disk;
  const ImportPatch quick(nullptr, "kernel32.dll", "WriteFile", takeAll);
  author::NewFile file(disk / L"a.zip");
  author::ZipWriter zip(file);
  for (int i = 0; i < 65535; ++i) zip.addFolder(L"a");
  try {
    zip.addFolder(L"a");
    FAIL("one entry too many");
  } catch (const Error& error) {
    CHECK(error.number() == errors::overflow);
    CHECK(error.description() == (disk / L"a.zip") + L": An archive cannot hold so much.");
  }
  CHECK(zip.count() == 65535);
}
