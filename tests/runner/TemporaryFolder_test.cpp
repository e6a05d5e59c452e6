#include "tests/runner/TemporaryFolder.h"

#include <windows.h>

#include "common/handles.h"
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

TEST_CASE("a temporary folder goes with names in it that the system reads as others") {
  const ScratchFolder disk;
  {
    const TemporaryFolder folder(disk / L"Q1");
    const std::wstring verbatim = L"\\\\?\\" + folder.path();
    for (const wchar_t* name : {L"\\ends in a dot.", L"\\ends in a blank "}) {
      REQUIRE(CreateDirectoryW((verbatim + name).c_str(), nullptr));
      const handles::File file(CreateFileW((verbatim + name + L"\\file.").c_str(), GENERIC_WRITE, 0,
                                           nullptr, CREATE_NEW, 0, nullptr));
      REQUIRE(static_cast<bool>(file));
    }
  }
  CHECK(disk.tree().empty());
}
