// Archives that lie. None of them reaches the unzip library, and nothing of them is written.
#include <windows.h>

#include <cstdio>
#include <functional>

#include "common/ansi.h"
#include "common/errors.h"
#include "common/handles.h"
#include "tests/online/archive/Unpacking.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"

namespace {

std::wstring upper(std::wstring text) {
  CharUpperW(text.data());
  return text;
}

// The log is in the code page.
std::wstring inLog(const std::wstring& text) { return text::fromAnsi(text::toAnsi(text)); }

bool isFree(const std::wstring& path) {
  const handles::File file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                       OPEN_EXISTING, 0, nullptr));
  return static_cast<bool>(file);
}

// What is left of a run that ended before the library was asked.
void checkUnharmed(const Unpacking& unpacking) {
  CHECK(unpacking.untouched());
  CHECK(isFree(unpacking.archive));
  CHECK(GetModuleHandleW(L"unzip32.dll") == nullptr);
  const Unpacking next(onePage());
  CHECK(next.run());
}

// One message with the reason, in the log, too, and no trace otherwise.
void checkRefused(const std::string& bytes, const std::wstring& reason, long number = 75) {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(bytes);
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  const std::wstring text =
      L"The archive \" " + unpacking.archive + L" \" was not unpacked. " + reason;
  CHECK(driver.boxes()[0].text == text);
  CHECK(driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(driver.boxes()[0].buttons == Tree{L"OK"});
  CHECK(output.messages() == Tree{inLog(L"Error " + std::to_wstring(number) + L" (" + text +
                                        L") in procedure UnzipFiles of Module modCommon"),
                                  inLog(upper(text))});
  checkUnharmed(unpacking);
}
void checkRefused(const ZipMaker& zip, const std::wstring& reason) {
  checkRefused(zip.bytes(), reason);
}

// The message of an archive that is none; it is deleted.
void checkDamaged(const std::string& bytes, const std::wstring& logged) {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(bytes);
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == notAnArchive(unpacking.archive));
  CHECK(output.messages() == Tree{upper(logged)});
  CHECK(unpacking.scratch.tree() == Tree{L"inside\\", L"staging\\"});
}

void checkUnpacked(const std::string& bytes, const std::wstring& name = L"page.htm",
                   const std::string& text = "new page") {
  ModalDriver driver;
  const Unpacking unpacking(bytes);
  CHECK(unpacking.run());
  CHECK(driver.boxes().empty());
  CHECK(unpacking.read(name) == text);
}

ZipMaker page(const ZipMaker::Extras& extras) {
  return ZipMaker().add("first.htm", "1").add("page.htm", "new page", extras);
}

const std::wstring differs = L"A file in it is described in two ways that differ : ";
const std::wstring unsafe =
    L"The name of a file in it is not safe, since it could lead outside of the chosen folder : ";

}  // namespace

// The two headers of an entry

TEST_CASE("an entry of another method in its own header keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.localMethod = 42;
  checkRefused(page(extras), differs + L"page.htm");
}

// The library makes the file of such an entry first and leaves it open: the run-time that it shares
// with the host has 512 streams.
TEST_CASE("archives with unknown methods exhaust none of the host's streams") {
  ZipMaker zip;
  for (int i = 0; i < 700; ++i) {
    ZipMaker::Extras extras;
    extras.localMethod = 42;
    zip.add("page" + std::to_string(i) + ".htm", "x", extras);
  }
  checkRefused(zip, differs + L"page0.htm");
  const ScratchFolder scratch;
  std::FILE* file = _wfopen((scratch / L"of the host").c_str(), L"w");
  REQUIRE(file != nullptr);
  std::fclose(file);
}

TEST_CASE("a single entry of an unknown method harms no file that is there") {
  ModalDriver driver;
  ZipMaker::Extras extras;
  extras.localMethod = 42;
  const Unpacking unpacking(ZipMaker().add("page.htm", "new page", extras));
  const std::wstring mine = unpacking.scratch.writeFile(L"inside\\page.htm", "my page");
  CHECK_FALSE(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == "my page");
  CHECK(isFree(mine));
}

TEST_CASE("an entry with another name in its own header keeps the archive packed") {
  for (const char* name : {"page1.htm", "../ev.htm", "PAGE.HTM"}) {
    ZipMaker::Extras extras;
    extras.directoryName = "page.htm";
    checkRefused(ZipMaker().add(name, "evil", extras), differs + L"page.htm");
  }
}

TEST_CASE("an entry with other flags in its own header keeps the archive packed") {
  for (const std::uint16_t flag : {0x0001, 0x0008, 0x0800}) {
    ZipMaker::Extras extras;
    extras.localFlags = flag;
    checkRefused(page(extras), differs + L"page.htm");
  }
}

TEST_CASE("an entry with another size or check sum in its own header keeps the archive packed") {
  ZipMaker::Extras size;
  size.localSize = 7;
  checkRefused(page(size), differs + L"page.htm");
  ZipMaker::Extras crc;
  crc.localCrc = 7;
  checkRefused(page(crc), differs + L"page.htm");
}

TEST_CASE("an entry whose long numbers differ in its own header keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.localSize = 0xFFFFFFFF;
  extras.localExtraField = ZipMaker::field(1, ZipMaker::number(800, 8));
  checkRefused(page(extras), differs + L"page.htm");
  extras.localExtraField = ZipMaker::field(1, ZipMaker::number(8, 8));
  checkUnpacked(page(extras).bytes());
}

TEST_CASE("long numbers that are given twice keep the archive packed") {
  ZipMaker::Extras extras;
  extras.localExtraField =
      ZipMaker::field(1, ZipMaker::number(8, 8)) + ZipMaker::field(1, ZipMaker::number(9, 8));
  checkRefused(page(extras), differs + L"page.htm");
}

TEST_CASE("numbers behind the data that differ keep the archive packed") {
  ZipMaker::Extras extras;
  extras.descriptor = ZipMaker::Descriptor{};
  std::string bytes = page(extras).bytes();
  bytes[bytes.find("PK\7\x08") + 12] = 9;  // the size
  checkRefused(bytes, differs + L"page.htm");
}

TEST_CASE("sizes behind the data are found in each of their forms") {
  for (const bool hasSignature : {true, false}) {
    for (const bool hasLongNumbers : {true, false}) {
      ZipMaker::Extras extras;
      extras.descriptor = ZipMaker::Descriptor{hasSignature, hasLongNumbers};
      checkUnpacked(
          ZipMaker().add("page.htm", "new page", extras).add("z.htm", "2", extras).bytes());
    }
  }
}

// The library reads long ones wherever the entry's own header has the field for them.
TEST_CASE("short sizes behind the data where long ones are announced keep the archive packed") {
  ZipMaker::Extras extras;
  extras.localExtraField = ZipMaker::field(1, ZipMaker::number(8, 8) + ZipMaker::number(8, 8));
  for (const bool hasSignature : {true, false}) {
    extras.descriptor = ZipMaker::Descriptor{hasSignature, false};
    checkRefused(ZipMaker().add("page.htm", "new page", extras).add("z.htm", "2"),
                 differs + L"page.htm");
    extras.descriptor = ZipMaker::Descriptor{hasSignature, true};
    checkUnpacked(ZipMaker().add("page.htm", "new page", extras).add("z.htm", "2").bytes());
  }
}

TEST_CASE("a stored entry whose two sizes differ keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.claimedSize = 4;
  checkRefused(page(extras), differs + L"page.htm");
}

// Where entries are

TEST_CASE("two entries with the same contents keep the archive packed") {
  ZipMaker::Extras extras;
  extras.offset = 0;
  checkRefused(ZipMaker().add("page.htm", "new page").add("page.htm", "new page", extras),
               L"A file in it shares its contents with another one : page.htm");
}

TEST_CASE("an entry inside of another one keeps the archive packed") {
  const std::string inner = ZipMaker().add("inner.htm", "hidden").bytes();
  ZipMaker::Extras extras;
  extras.offset = 30 + 9;  // behind the header of the first one
  checkRefused(ZipMaker().add("outer.zip", inner).add("inner.htm", "hidden", extras),
               L"A file in it shares its contents with another one : inner.htm");
}

TEST_CASE("an entry outside of the file keeps the archive packed") {
  const std::wstring outside = L"A file in it is said to lie outside of the archive : page.htm";
  for (const std::uint32_t offset : {0x7FFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    ZipMaker::Extras extras;
    extras.offset = offset;
    checkRefused(page(extras), outside);
  }
  ZipMaker::Extras extras;
  extras.packedSize = 5000;
  extras.claimedSize = 5000;
  checkRefused(page(extras), outside);
}

TEST_CASE("an entry whose header is in the directory keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.offset = static_cast<std::uint32_t>(30 + 8 + 8);
  checkRefused(ZipMaker().add("page.htm", "new page", extras),
               L"A file in it is said to lie outside of the archive : page.htm");
}

// Kinds

TEST_CASE("a method that is neither stored nor deflated keeps the archive packed") {
  for (const std::uint16_t method : {1, 6, 9, 12, 14, 93, 95, 98}) {
    ZipMaker::Extras extras;
    extras.method = method;
    checkRefused(page(extras),
                 L"A file in it is compressed by a method that is not supported : page.htm");
  }
}

TEST_CASE("an encryption that is not the traditional one keeps the archive packed") {
  const std::wstring text =
      L"A file in it is encrypted by a method that is not supported : page.htm";
  ZipMaker::Extras aes;
  aes.method = 99;
  aes.flags = 1;
  checkRefused(page(aes), text);
  for (const std::uint16_t flag : {0x0041, 0x2000}) {
    ZipMaker::Extras strong;
    strong.flags = flag;
    checkRefused(page(strong), text);
  }
}

TEST_CASE("what an entry needs a later version for keeps the archive packed") {
  const std::wstring text = L"A file in it is of a kind that is not supported : page.htm";
  ZipMaker::Extras later;
  later.versionNeeded = 46;
  checkRefused(page(later), text);
  ZipMaker::Extras ofVms;
  for (const std::uint16_t version : {0x0214, 0x022B, 0x022D}) {
    ofVms.versionNeeded = version;
    checkRefused(page(ofVms), text);
  }
  ZipMaker::Extras patched;
  patched.flags = 0x0020;
  checkRefused(page(patched), text);
  ZipMaker::Extras label;
  label.madeBy = 0x0014;
  label.attributes = 0x08;
  checkRefused(page(label), text);
}

TEST_CASE("one of several parts is not unpacked") {
  ZipMaker::Extras extras;
  extras.part = 1;
  checkRefused(page(extras), L"It is one of several parts.");
  std::string bytes = onePage().bytes();
  bytes[bytes.size() - 18] = 1;
  checkRefused(bytes, L"It is one of several parts.");
  // The number of all parts, and the number of this one, among the long numbers.
  for (const std::size_t behind : {26U, 82U}) {
    bytes = onePage().bytesWithLongNumbers();
    bytes[bytes.size() - behind] = 2;
    checkRefused(bytes, L"It is one of several parts.");
  }
  // Its own part of the directory has fewer entries than the whole.
  bytes = onePage().bytes();
  --bytes[bytes.size() - 14];
  checkRefused(bytes, L"It is one of several parts.");
}

// Contents

namespace {

ZipMaker bomb(std::uint32_t claimed) {
  ZipMaker::Extras extras;
  extras.claimedSize = claimed;
  return ZipMaker()
      .add("first.htm", "1")
      .addDeflated("page.htm", std::string(20'000'000, 'x'), extras);
}

}  // namespace

TEST_CASE("an entry that holds more than it claims keeps the archive packed") {
  for (const std::uint32_t claimed : {0u, 10u, 19'999'999u})
    checkRefused(bomb(claimed), L"A file in it holds more than it claims : page.htm");
  ZipMaker::Extras extras;
  extras.claimedSize = 7;
  checkRefused(ZipMaker().addDeflated("page.htm", "new page", extras),
               L"A file in it holds more than it claims : page.htm");
}

TEST_CASE("an entry that holds less than it claims is a damaged archive") {
  checkDamaged(bomb(20'000'001).bytes(), L"The contents of a file in it are damaged : page.htm");
}

TEST_CASE("an archive that changed on its way replaces no file") {
  const ModalDriver driver;
  std::string bytes = onePage().bytes();
  bytes[bytes.find("new page")] = 'N';
  const Unpacking unpacking(bytes);
  unpacking.scratch.writeFile(L"inside\\page.htm", "my page");
  CHECK_FALSE(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == "my page");
}

TEST_CASE("more files than a short number counts keep the archive packed") {
  ZipMaker zip;
  for (int i = 0; i < 65'536; ++i) zip.add("page" + std::to_string(i) + ".htm", "");
  checkRefused(zip, L"It holds more than 65,535 files and folders.");
}

namespace {

// A disk that fails at one reading of a file, and at none when that does not come.
class FailingDisk {
 public:
  explicit FailingDisk(int at) : patch_(nullptr, "kernel32.dll", "ReadFile", read) {
    left_ = at;
    original_ = patch_.original<decltype(ReadFile)>();
  }
  static bool hasFailed() { return left_ <= 0; }

 private:
  static BOOL WINAPI read(HANDLE file, void* bytes, DWORD size, DWORD* done, OVERLAPPED* how) {
    if (--left_ != 0) return original_(file, bytes, size, done, how);
    SetLastError(ERROR_CRC);
    return FALSE;
  }

  static inline int left_ = 0;
  static inline decltype(ReadFile)* original_ = nullptr;
  ImportPatch patch_;
};

// Reads it once for each reading that can fail.
void checkEachReading(const std::string& bytes) {
  const Unpacking unpacking(bytes);
  int failures = 0;
  for (bool hasFailed = true; hasFailed; ++failures) {
    ModalDriver driver;
    const FailingDisk disk(failures + 1);
    const bool isUnpacked = unpacking.run();
    hasFailed = FailingDisk::hasFailed();
    CHECK(isUnpacked != hasFailed);
    if (!hasFailed) break;
    REQUIRE(driver.boxes().size() == 1);
    CHECK(driver.boxes()[0].text == L"Device I/O error");
    CHECK(unpacking.untouched());
  }
  // One for the directory, one for the contents.
  CHECK(failures >= 2);
}

}  // namespace

TEST_CASE("an archive whose disk fails while it is read stays packed, wherever that happens") {
  checkEachReading(onePage().bytes());
}

TEST_CASE("compressed contents whose disk fails while they are read stay packed") {
  checkEachReading(ZipMaker().addDeflated("page.htm", std::string(100'000, 'x')).bytes());
}

TEST_CASE("contents that were never compressed are a damaged archive") {
  ZipMaker::Extras extras;
  extras.method = 8;
  extras.unpackedSize = 8;
  checkDamaged(ZipMaker().add("page.htm", std::string(300, '\xFF'), extras).bytes(),
               L"The contents of a file in it are damaged : page.htm");
}

TEST_CASE("bytes behind compressed contents are a damaged archive") {
  ZipMaker::Extras extras;
  extras.method = 8;
  extras.unpackedCrc = ZipMaker::crc("new page");
  extras.unpackedSize = 8;
  checkDamaged(ZipMaker().add("page.htm", ZipMaker::deflated("new page") + "more", extras).bytes(),
               L"The contents of a file in it are damaged : page.htm");
}

TEST_CASE("contents of every length are checked to the last byte") {
  for (const std::size_t length : {0u, 1u, 3u, 32767u, 32768u, 32769u, 131072u, 131073u, 400001u}) {
    CAPTURE(length);
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + i * i % 23);
    checkUnpacked(ZipMaker().addDeflated("page.htm", text).bytes(), L"page.htm", text);
    checkUnpacked(ZipMaker().add("page.htm", text).bytes(), L"page.htm", text);
  }
}

TEST_CASE("only a folder has no compressed contents") {
  ZipMaker::Extras extras;
  extras.method = 8;
  extras.unpackedCrc = 0;
  extras.unpackedSize = 0;
  ZipMaker::Extras named = extras;
  named.extraField = ZipMaker::unicodeName("x/", "page.htm");
  checkDamaged(ZipMaker().add("x/", "", named).bytes(),
               L"The contents of a file in it are damaged : page.htm");
  ZipMaker::Extras fat = extras;
  fat.madeBy = 0x0014;
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker().add("page.htm", "new page").add("folder\\", "", fat));
  unpacking.run();  // the library complains of the backslash
  CHECK(driver.boxes().empty());
  CHECK(unpacking.read(L"page.htm") == "new page");
  CHECK(unpacking.scratch.exists(L"inside\\folder"));
}

// The directory

TEST_CASE("an archive with another number of entries than it says is a damaged one") {
  for (const std::uint16_t count : {0, 1, 3})
    checkDamaged(ZipMaker().add("a.htm", "1").add("b.htm", "2").bytesWithCount(count),
                 L"Its directory is damaged.");
}

TEST_CASE("a directory that is not where it is said to be is damaged") {
  const std::string bytes = onePage().bytes();
  const std::size_t end = bytes.size() - 22;
  const auto changed = [&](std::size_t at, int change) {
    std::string other = bytes;
    other[at] = static_cast<char>(other[at] + change);
    return other;
  };
  checkDamaged(changed(end + 12, 1), L"Its directory is damaged.");
  checkDamaged(changed(end + 12, -1), L"Its directory is damaged.");
  checkDamaged(changed(end + 16, 1), L"Its directory is damaged.");
  // As if a program stood in front.
  checkRefused(changed(end + 16, -1),
               L"A file in it is said to lie outside of the archive : page.htm");
}

TEST_CASE("a directory that says nothing of where it begins is damaged") {
  std::string bytes = onePage().bytes();
  bytes[bytes.size() - 6] = 0;
  checkDamaged(bytes, L"Its directory is damaged.");
}

TEST_CASE("bytes behind an archive do no harm where nothing is in front of it") {
  checkUnpacked(onePage().bytes() + "\r\n");
  checkDamaged("in front" + onePage().bytes() + "behind",
               L"The record at the end of its directory is missing.");
}

TEST_CASE("an archive whose comment is cut off is a damaged one") {
  std::string bytes = onePage().bytes();
  bytes[bytes.size() - 2] = 5;
  checkDamaged(bytes + "comm", L"The record at the end of its directory is missing.");
}

TEST_CASE("the end of an archive in the comment of another one is no end") {
  std::string bytes = onePage().bytes();
  const std::string comment = ZipMaker().add("other.htm", "x").bytes() + "end";
  bytes[bytes.size() - 2] = static_cast<char>(comment.size());
  checkDamaged(bytes + comment, L"The record at the end of its directory is missing.");
}

// The library looks for the record block by block: how much of the file's end it passes over
// depends on the file's size.
TEST_CASE("the cut end of an archive in the comment of another one is no end") {
  const std::string outer = onePage().bytes();
  const std::string hidden = ZipMaker().add("hidden.htm", "evil").bytes();
  constexpr std::size_t block = 8192;
  for (const std::size_t start : {std::size_t{0}, block, 2 * block}) {
    for (const std::size_t rest : {0u, 1u, 10u, 18u, 19u, 20u, 21u, 4000u}) {
      for (const std::size_t cut : {1u, 18u, 19u}) {
        const std::size_t size = start + rest;
        const std::string tail = hidden.substr(0, hidden.size() - cut);
        if (size < outer.size() + tail.size()) continue;
        CAPTURE(size);
        CAPTURE(cut);
        std::string bytes = outer + std::string(size - outer.size() - tail.size(), 'x') + tail;
        const std::size_t comment = size - outer.size();
        bytes[outer.size() - 2] = static_cast<char>(comment);
        bytes[outer.size() - 1] = static_cast<char>(comment >> 8);
        checkDamaged(bytes, L"The record at the end of its directory is missing.");
      }
    }
  }
}

TEST_CASE("a stored archive at the end of a truncated one is not taken for it") {
  const std::string inner = ZipMaker().add("inner.htm", "hidden").bytes();
  std::string bytes = ZipMaker().add("outer.zip", inner).add("z.htm", "x").bytes();
  bytes.resize(bytes.find("z.htm"));
  checkDamaged(bytes, L"The record at the end of its directory is missing.");
}

TEST_CASE("an archive with records for long numbers is unpacked") {
  checkUnpacked(onePage().bytesWithLongNumbers());
}

TEST_CASE("records for long numbers that contradict the short ones are damage") {
  std::string bytes = onePage().bytesWithLongNumbers();
  bytes[bytes.size() - 14] = 2;
  bytes[bytes.size() - 13] = 0;
  bytes[bytes.size() - 12] = 2;
  bytes[bytes.size() - 11] = 0;
  checkDamaged(bytes, L"Its directory is damaged.");
}

TEST_CASE("a record for long numbers elsewhere than before its locator is damage") {
  const std::string bytes = onePage().bytesWithLongNumbers();
  const std::size_t locator = bytes.size() - 42;
  std::string moved = bytes;
  moved.insert(locator, "between");
  checkDamaged(moved, L"Its directory is damaged.");
}

// Names

TEST_CASE("a name with a control character keeps the archive packed") {
  const std::wstring text = L"The name of a file in it holds a control character : ";
  checkRefused(ZipMaker().add("COM\x01"
                              "1",
                              "evil"),
               text + L"COM^A1");
  checkRefused(ZipMaker().add("a\x1F/b.htm", "evil"), text + L"a^_/b.htm");
  checkRefused(ZipMaker().add(std::string("page.htm\0.txt", 13), "evil"), text + L"page.htm^@.txt");
  checkRefused(ZipMaker().add("\x01", "evil"), text + L"^A");
  checkRefused(ZipMaker().add("page\n.htm", "evil"), text + L"page^J.htm");
}

TEST_CASE("a name that the library makes an unsafe one of keeps the archive packed") {
  for (const char* name : {"con;1", "images/nul.htm;2", "evil.;1", "evil ;12"})
    checkRefused(ZipMaker().add(name, "evil"), unsafe + std::wstring(name, name + strlen(name)));
}

TEST_CASE("a name that only some systems take for one with a version keeps the archive packed") {
  ZipMaker::Extras flag;
  flag.flags = 0x0800;
  checkRefused(ZipMaker().add("LPT1;\xC2\xB2", "evil", flag), unsafe + L"LPT1;\u00B2");
  checkRefused(ZipMaker().add("page.;1\xC2\xB3", "evil", flag), unsafe + L"page.;1\u00B3");
  checkRefused(ZipMaker().add("a/b;1;\xC2\xB9", "evil", flag), unsafe + L"a/b;1;\u00B9");
  checkRefused(ZipMaker().add("page;\xE0\xB9\x90", "evil", flag), unsafe + L"page;\u0E50");
  checkRefused(ZipMaker().add("page;\xE0\xB9\x99", "evil", flag), unsafe + L"page;\u0E59");
  checkRefused(ZipMaker().add("page.htm", "1").add("page.htm;\xB2", "2"),
               unsafe + L"page.htm;\u00B2");
  checkUnpacked(ZipMaker().add("page;\xB2.htm", "new page").bytes(), L"page;\u00B2.htm");
  checkUnpacked(ZipMaker().add("a;1/page\xB3", "new page").bytes(), L"a;1\\page\u00B3");
}

TEST_CASE("an entry without a name keeps the archive packed") {
  for (const char* name : {"", ".", "./.", ";1", "a/.", "a/./.", "a/.;1"})
    checkRefused(ZipMaker().add("first.htm", "1").add(name, "evil"), L"A file in it has no name.");
  ZipMaker::Extras fat;
  fat.madeBy = 0x0014;
  checkRefused(ZipMaker().add("a\\.", "evil", fat), L"A file in it has no name.");
}

TEST_CASE("a name in UTF-8 that climbs out keeps the archive packed") {
  ZipMaker::Extras field;
  field.extraField = ZipMaker::unicodeName("page.htm", "../evil.htm");
  checkRefused(page(field), unsafe + L"../evil.htm");
  ZipMaker::Extras flag;
  flag.flags = 0x0800;
  checkRefused(ZipMaker().add("../\xC3\xA9.htm", "evil", flag), unsafe + L"../\u00E9.htm");
}

TEST_CASE("a name in UTF-8 that is none keeps the archive packed") {
  ZipMaker::Extras flag;
  flag.flags = 0x0800;
  const std::wstring text = L"The name of a file in it is not in the encoding that it claims : ";
  checkRefused(ZipMaker().add("\xC0\xAE\xC0\xAE/evil.htm", "evil", flag),
               text + L"\u00C0\u00AE\u00C0\u00AE/evil.htm");
  checkRefused(ZipMaker().add("caf\xE9", "evil", flag), text + L"caf\u00E9");
}

TEST_CASE("a name that the code page lacks keeps the archive packed") {
  ZipMaker::Extras flag;
  flag.flags = 0x0800;
  const std::wstring text =
      L"The name of a file in it holds a character that this system's code page does not have : ";
  checkRefused(ZipMaker().add("\xE6\x97\xA5.htm", "x", flag), text + L"\u65E5.htm");
  // A look-alike of "/" that the system's best fit turns into one.
  checkRefused(ZipMaker().add("..\xEF\xBC\x8F"
                              "evil.htm",
                              "x", flag),
               text + L"..\uFF0Fevil.htm");
}

TEST_CASE("a name in UTF-8 that differs between the two headers keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.extraField = ZipMaker::unicodeName("page.htm", "one.htm");
  extras.localExtraField = ZipMaker::unicodeName("page.htm", "two.htm");
  checkRefused(page(extras), differs + L"one.htm");
}

TEST_CASE("a name in UTF-8 that is given twice keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.extraField =
      ZipMaker::unicodeName("page.htm", "one.htm") + ZipMaker::unicodeName("page.htm", "two.htm");
  checkRefused(page(extras), differs + L"two.htm");
}

TEST_CASE("a field for a name in UTF-8 that is too short keeps the archive packed") {
  ZipMaker::Extras extras;
  extras.extraField = ZipMaker::field(0x7075, "\1");
  checkRefused(page(extras), differs + L"page.htm");
}

// A mark of the archive's maker hides the attributes by which the encoding is found.
TEST_CASE("a name of the console's code page is read so whatever its attributes are hidden by") {
  ZipMaker::Extras extras;
  extras.madeBy = 0x0019;
  extras.attributes = 0x81A40000;
  extras.internalAttributes = 0x0004;
  checkRefused(
      ZipMaker().add("COM\xEC", "evil", extras),
      L"The name of a file in it holds a character that this system's code page does not have : "
      L"COM\u221E");
}

// The library cuts it there before it looks at its parts.
TEST_CASE("a name of more bytes than a path can have keeps the archive packed") {
  const auto named = [](std::size_t length) {
    std::string name;
    while (name.size() + 14 < length) name += "./";
    if (name.size() + 13 < length) name += '/';
    return name + "COM1page.html";
  };
  REQUIRE(named(260).size() == 260);
  REQUIRE(named(259).size() == 259);
  const std::string tooLong = named(260);
  checkRefused(ZipMaker().add(tooLong, "evil"), L"The path of a file in it would be too long : " +
                                                    std::wstring(tooLong.begin(), tooLong.end()));
  ZipMaker::Extras field;
  field.extraField = ZipMaker::unicodeName("page.htm", tooLong);
  checkRefused(page(field), L"The path of a file in it would be too long : " +
                                std::wstring(tooLong.begin(), tooLong.end()));
  checkUnpacked(ZipMaker().add(named(259), "new page").bytes(), L"COM1page.html");
}

TEST_CASE("a path that is too long keeps the archive packed") {
  const std::string name = std::string(250, 'x') + ".htm";
  checkRefused(
      ZipMaker().add("first.htm", "1").add(name, "x"),
      L"The path of a file in it would be too long : " + std::wstring(name.begin(), name.end()));
}

// A folder needs room for a short name behind it.
TEST_CASE("a path that is too long for a folder keeps the archive packed") {
  for (const char* file : {"", "a"}) {
    for (const std::size_t length : {247u, 248u}) {
      CAPTURE(std::string(file));
      CAPTURE(length);
      ModalDriver driver;
      const Unpacking unpacking(onePage());
      const std::string name(length - unpacking.folder.size() - 1, 'd');
      unpacking.scratch.writeFile(L"staging\\theme.zip",
                                  onePage().add(name + '/' + file, "").bytes());
      const bool fits = length == 247;
      CHECK(unpacking.run() == fits);
      CHECK(unpacking.read(L"page.htm") == (fits ? "new page" : ""));
      REQUIRE(driver.boxes().size() == (fits ? 0 : 1));
      if (!fits)
        CHECK(driver.boxes()[0].text ==
              L"The archive \" " + unpacking.archive +
                  L" \" was not unpacked. The path of a file in it would be too long : " +
                  std::wstring(name.begin(), name.end()) + L"/" + (*file ? L"a" : L""));
    }
  }
}

TEST_CASE("a file and a folder of one name keep the archive packed") {
  const std::wstring text = L"A file and a folder in it have the same name : ";
  checkRefused(ZipMaker().add("images", "x").add("images/dot.gif", "x"), text + L"images/dot.gif");
  checkRefused(ZipMaker().add("images/dot.gif", "x").add("IMAGES", "x"), text + L"IMAGES");
  checkRefused(ZipMaker().add("images/", "").add("Images", "x"), text + L"Images");
  checkRefused(ZipMaker().add("images", "x").add("images/", ""), text + L"images/");
  checkRefused(ZipMaker().add("a/b", "x").add("a/b-c", "x").add("a/b.d", "x").add("A/B/c", "x"),
               text + L"A/B/c");
  checkUnpacked(
      ZipMaker().add("a/b/c", "x").add("a/b-c", "y").add("a/", "").add("a/b/", "").bytes(),
      L"a\\b\\c", "x");
}

TEST_CASE("two names that become one file keep the archive packed") {
  const std::wstring text = L"Two files in it would become the same file on this system : ";
  checkRefused(ZipMaker().add("a?.htm", "x").add("a*.htm", "y"), text + L"a*.htm");
  checkRefused(ZipMaker().add("page.htm", "x").add("page.htm;1", "y"), text + L"page.htm;1");
}

TEST_CASE("of two entries with one name the last one is unpacked") {
  checkUnpacked(ZipMaker().add("page.htm", "old page").add("page.htm", "new page").bytes());
  checkUnpacked(ZipMaker().add("PAGE.htm", "old page").add("page.htm", "new page").bytes());
}

TEST_CASE("each of two entries with one name is looked at") {
  ZipMaker::Extras extras;
  extras.localMethod = 42;
  checkRefused(ZipMaker().add("page.htm", "1", extras).add("page.htm", "2"), differs + L"page.htm");
  checkRefused(ZipMaker().add("page.htm", "1").add("page.htm", "2", extras), differs + L"page.htm");
}
