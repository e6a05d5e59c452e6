// What unpacking an archive leaves as it was, and what it withstands.
#include <clocale>
#include <cstdlib>
#include <ctime>

#include "online/modZipUnzip.h"
#include "tests/online/OwnModule.h"
#include "tests/online/Unpacking.h"
#include "tests/support/ImportPatch.h"

namespace {

// The state of the C run-time that the library shares with the host.
struct RuntimeState {
  std::string locale = setlocale(LC_ALL, nullptr);
  std::string zone = std::getenv("TZ") ? std::getenv("TZ") : "(none)";
  long bias = _timezone;
  std::string systemZone = [] {
    char value[64] = "(none)";
    GetEnvironmentVariableA("TZ", value, sizeof value);
    return std::string(value);
  }();

  bool operator==(const RuntimeState&) const = default;
};

// A host with a locale and a time zone of its own.
class HostRuntime {
 public:
  HostRuntime() {
    setlocale(LC_ALL, "C");
    _putenv("TZ=XYZ-3");
    _tzset();
  }
  ~HostRuntime() {
    _putenv("TZ=");
    _tzset();
  }
  HostRuntime(const HostRuntime&) = delete;
  HostRuntime& operator=(const HostRuntime&) = delete;
};

}  // namespace

TEST_CASE("unpacking leaves the locale and the time zone of the process as they were") {
  const HostRuntime host;
  const RuntimeState before;
  CHECK(before.zone == "XYZ-3");
  CHECK(before.bias == -3 * 3600);
  const Unpacking unpacking(onePage());
  CHECK(unpacking.run());
  const RuntimeState after;
  CHECK(after.locale == before.locale);
  CHECK(after.zone == before.zone);
  CHECK(after.systemZone == before.systemZone);
  CHECK(after.bias == before.bias);
}

namespace {

// An entry that holds 560 bytes and claims this many.
ZipMaker liar(std::uint32_t claimed) {
  const std::string plain = [] {
    std::string text;
    for (int i = 0; i < 40; ++i) text += "one two three ";
    return text;
  }();
  ZipMaker::Extras extras;
  extras.method = 8;
  extras.unpackedCrc = ZipMaker::crc(plain);
  extras.unpackedSize = claimed;
  return ZipMaker().add("page.htm", std::string(deflated, sizeof deflated - 1), extras);
}

}  // namespace

// The library goes by what is there; what is claimed is only shown.
TEST_CASE("an archive that claims less than it holds is unpacked whole and inside its folder") {
  ModalDriver driver;
  const Unpacking unpacking(liar(20));
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.htm").size() == 560);
  CHECK(unpacking.scratch.tree().size() == 4);
}

TEST_CASE("an archive whose entries share their contents is not unpacked beyond the first") {
  const std::string one = onePage().bytes();
  const std::string files = one.substr(0, one.find("PK\1\2"));
  const std::string entry = one.substr(files.size(), one.size() - 22 - files.size());
  std::string other = entry;
  other.replace(other.find("page.htm"), 8, "copy.htm");
  std::string end = one.substr(one.size() - 22);
  end[8] = end[10] = 2;
  end[12] = static_cast<char>(2 * entry.size());
  ModalDriver driver;
  const Unpacking unpacking(files + entry + other + end);
  CHECK_FALSE(unpacking.run());
  CHECK(unpacking.scratch.tree() ==
        Tree{L"inside\\", L"inside\\page.htm", L"staging\\", L"staging\\theme.zip"});
  CHECK(driver.boxes().empty());
}

TEST_CASE("a file that is no archive is not mistaken for the archive beside it") {
  for (const wchar_t* name : {L"staging\\pack", L"staging\\pack.x"}) {
    ModalDriver driver;
    const Unpacking unpacking(onePage());
    const std::wstring archive = unpacking.scratch.writeFile(name, "no archive");
    CopyFileW(unpacking.archive.c_str(), (archive + L".zip").c_str(), FALSE);
    CHECK_FALSE(modCommon::UnzipFiles(archive, unpacking.folder));
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == notAnArchive(archive));
    CHECK(unpacking.scratch.tree() ==
          Tree{L"inside\\", L"staging\\", std::wstring(name) + L".zip", L"staging\\theme.zip"});
  }
}

TEST_CASE("an archive without an ending is unpacked and not the one beside it") {
  const Unpacking unpacking(onePage());
  const std::wstring archive =
      unpacking.scratch.writeFile(L"staging\\theme", ZipMaker().add("right.htm", "x").bytes());
  CHECK(modCommon::UnzipFiles(archive, unpacking.folder));
  CHECK(unpacking.read(L"right.htm") == "x");
  CHECK_FALSE(unpacking.scratch.exists(L"inside\\page.htm"));
}

TEST_CASE("a file with a bracket in its name that is no archive is named in a message") {
  for (const bool exists : {true, false}) {
    ModalDriver driver;
    const Unpacking unpacking(onePage());
    const std::wstring archive = unpacking.scratch / L"staging\\pack[1].zip";
    if (exists) unpacking.scratch.writeFile(L"staging\\pack[1].zip", "no archive");
    CHECK_FALSE(modCommon::UnzipFiles(archive, unpacking.folder));
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == notAnArchive(archive));
    CHECK(unpacking.untouched());
  }
}

TEST_CASE("an archive with a long comment is found by the end of its directory") {
  std::string bytes = onePage().bytes();
  const std::string comment(60000, '-');
  bytes[bytes.size() - 2] = static_cast<char>(comment.size() & 0xFF);
  bytes[bytes.size() - 1] = static_cast<char>(comment.size() >> 8);
  const Unpacking unpacking(onePage());
  const std::wstring archive =
      unpacking.scratch.writeFile(L"staging\\pack[1].zip", bytes + comment);
  CHECK(modCommon::UnzipFiles(archive, unpacking.folder));
  CHECK(unpacking.read(L"page.htm") == "new page");
}
