#include "tests/support/ScratchFolder.h"

#include <windows.h>

#include <string>

#include "tests/support/text_output.h"

TEST_CASE("a scratch folder has nothing of a process before it that was ended by force") {
  std::wstring path;
  {
    const ScratchFolder folder;
    path = folder.path();
  }
  // The next one of this process.
  const auto number = path.rfind(L' ') + 1;
  path = path.substr(0, number) + std::to_wstring(std::stoi(path.substr(number)) + 1);
  REQUIRE(CreateDirectoryW(path.c_str(), nullptr));
  REQUIRE(CreateDirectoryW((path + L"\\left").c_str(), nullptr));
  const ScratchFolder next;
  REQUIRE(next.path() == path);
  CHECK(next.tree() == std::vector<std::wstring>());
}
