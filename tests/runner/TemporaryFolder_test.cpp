#include "tests/runner/TemporaryFolder.h"

#include <windows.h>

#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

TEST_CASE("a temporary folder is empty at first whatever was there before") {
  const ScratchFolder disk;
  disk.writeFile(L"Q1\\old\\file", "x");
  const TemporaryFolder folder(disk / L"Q1");
  CHECK(folder.path() == disk / L"Q1");
  CHECK(disk.tree() == std::vector<std::wstring>{L"Q1\\"});
}

TEST_CASE("a temporary folder goes with what is hidden or cannot be written in it") {
  const ScratchFolder disk;
  {
    const TemporaryFolder folder(disk / L"Q1");
    for (const wchar_t* name : {L"Q1\\deep\\hidden", L"Q1\\read only"})
      SetFileAttributesW(disk.writeFile(name, "x").c_str(),
                         FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
  }
  CHECK(disk.tree().empty());
}
