// Stops, and what others can do to an archive meanwhile.
#include <windows.h>

#include <functional>

#include "common/handles.h"
#include "tests/online/archive/Unpacking.h"
#include "tests/support/DebugOutput.h"

namespace {

// Counts how often it is asked, and does something each time.
class Run : public KeepGoing {
 public:
  explicit Run(std::function<bool(int)> answer) : answer_(std::move(answer)) {}
  bool keepGoing() override { return answer_(++asked); }
  int asked = 0;

 private:
  std::function<bool(int)> answer_;
};

ZipMaker threePages() {
  return ZipMaker().add("a.htm", "new a").add("b.htm", "new b").add("c.htm", "new c");
}

bool unpack(const Unpacking& unpacking, Run& run) {
  return unzipFiles(unpacking.archive, unpacking.folder, &run);
}

constexpr wchar_t stoppedLine[] =
    L"Error 512 (Operation Cancelled.) in procedure UnzipFiles of Module modCommon";

bool opens(const std::wstring& path, DWORD access, DWORD share) {
  const handles::File file(
      CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
  return static_cast<bool>(file);
}

}  // namespace

TEST_CASE("a stop at the gate writes nothing and shows nothing") {
  for (int at = 1; at <= 7; ++at) {
    CAPTURE(at);
    const Logging logging;
    DebugOutput output;
    ModalDriver driver;
    const Unpacking unpacking(threePages());
    Run run([at](int asked) { return asked < at; });
    CHECK_FALSE(unpack(unpacking, run));
    CHECK(run.asked == at);
    CHECK(driver.boxes().empty());
    CHECK(output.messages() == Tree{stoppedLine, L"OPERATION CANCELLED."});
    CHECK(unpacking.untouched());
    CHECK(GetModuleHandleW(L"unzip32.dll") == nullptr);
  }
}

TEST_CASE("a stop between two files leaves the rest as it was and nothing open") {
  const Unpacking whole(threePages());
  Run all([](int) { return true; });
  CHECK(unpack(whole, all));

  ModalDriver driver;
  const Unpacking unpacking(threePages());
  for (const wchar_t* name : {L"inside\\a.htm", L"inside\\b.htm", L"inside\\c.htm"})
    unpacking.scratch.writeFile(name, "mine");
  Run run([&](int asked) { return asked < all.asked - 1; });
  CHECK_FALSE(unpack(unpacking, run));
  CHECK(driver.boxes().empty());
  CHECK(unpacking.read(L"a.htm") == "new a");
  CHECK(unpacking.read(L"b.htm") == "new b");
  CHECK(unpacking.read(L"c.htm") == "mine");
  for (const wchar_t* name : {L"a.htm", L"b.htm", L"c.htm"})
    CHECK(opens(unpacking.folder + L"\\" + name, GENERIC_READ | GENERIC_WRITE, 0));
  CHECK(opens(unpacking.archive, GENERIC_READ | GENERIC_WRITE, 0));
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"c.htm") == "new c");
}

TEST_CASE("a large file is looked at in pieces with the window alive between them") {
  const Unpacking unpacking(ZipMaker().addDeflated("page.htm", std::string(10'000'000, 'x')));
  Run run([](int) { return true; });
  CHECK(unpack(unpacking, run));
  CHECK(run.asked > 100);
}

TEST_CASE("an archive can be neither written nor replaced while it is checked and unpacked") {
  const Unpacking unpacking(threePages());
  const std::wstring other = unpacking.scratch.writeFile(L"other.zip", "other");
  bool isKept = true;
  Run run([&](int) {
    const std::wstring& path = unpacking.archive;
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    isKept = isKept && !opens(path, GENERIC_WRITE, all) && !DeleteFileW(path.c_str()) &&
             !MoveFileExW(other.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) &&
             opens(path, GENERIC_READ, all);
    return true;
  });
  CHECK(unpack(unpacking, run));
  CHECK(run.asked > 3);
  CHECK(isKept);
}

TEST_CASE("an archive that somebody writes is not unpacked and stays") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  {
    const handles::File writer(CreateFileW(unpacking.archive.c_str(), GENERIC_WRITE,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                           OPEN_EXISTING, 0, nullptr));
    CHECK_FALSE(unpacking.run());
  }
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        L"The archive \" " + unpacking.archive + L" \" was not unpacked. Permission denied");
  CHECK(unpacking.untouched());
}

TEST_CASE("another archive that comes while one is unpacked is turned away") {
  ModalDriver driver;
  const Unpacking unpacking(threePages());
  const Unpacking other(onePage());
  int turnedAway = 0;
  Run run([&](int) {
    if (GetModuleHandleW(L"unzip32.dll") && unpacking.scratch.exists(L"inside\\a.htm") &&
        !other.run())
      ++turnedAway;
    return true;
  });
  CHECK(unpack(unpacking, run));
  CHECK(turnedAway == 3);
  CHECK(other.untouched());
  REQUIRE(driver.boxes().size() == 3);
  CHECK(driver.boxes()[0].text == L"Another archive is being unpacked.");
  CHECK(other.run());
}

TEST_CASE("a path with wild cards is no archive's path") {
  for (const wchar_t* name : {L"staging\\*.zip", L"staging\\th?me.zip"}) {
    ModalDriver driver;
    const Unpacking unpacking(onePage());
    CHECK_FALSE(unzipFiles(unpacking.scratch / name, unpacking.folder));
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == L"Bad file name or number");
    CHECK(unpacking.untouched());
  }
}
