#include <windows.h>

#include <sddl.h>

#include <functional>

#include "common/ansi.h"
#include "common/errors.h"
#include "online/archive/unzip_records.h"
#include "tests/online/OwnModule.h"
#include "tests/online/archive/Unpacking.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"

namespace {

std::wstring unsafe(const Unpacking& unpacking, const std::wstring& name) {
  return L"The archive \" " + unpacking.archive +
         L" \" was not unpacked. The name of a file in it is not safe, since it could lead outside "
         L"of the chosen folder : " +
         name;
}

// Unpacks an archive with this one name between two harmless ones.
void checkRefused(const std::string& name, const std::wstring& shown) {
  ModalDriver driver;
  const Unpacking unpacking(
      ZipMaker().add("first.htm", "1").add(name, "evil").add("last.htm", "2"));
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == unsafe(unpacking, shown));
  CHECK(driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(unpacking.untouched());
}

}  // namespace

TEST_CASE("an archive is unpacked with its folders and without a message") {
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker()
                                .add("page.dwt", "the page")
                                .add("images/", "")
                                .add("images/deep/dot.gif", "a dot"));
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.dwt") == "the page");
  CHECK(unpacking.read(L"images\\deep\\dot.gif") == "a dot");
  CHECK(driver.boxes().empty());
}

TEST_CASE("a compressed archive is unpacked") {
  const std::string plain = [] {
    std::string text;
    for (int i = 0; i < 40; ++i) text += "one two three ";
    return text;
  }();
  ZipMaker::Extras extras;
  extras.method = 8;
  extras.unpackedCrc = ZipMaker::crc(plain);
  extras.unpackedSize = static_cast<std::uint32_t>(plain.size());
  const Unpacking unpacking(
      ZipMaker().add("page.htm", std::string(deflated, sizeof deflated - 1), extras));
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == plain);
}

TEST_CASE("files that exist are overwritten without a question even when they are newer") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  unpacking.scratch.writeFile(L"inside\\page.htm", "old page");
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == "new page");
  CHECK(driver.boxes().empty());
}

TEST_CASE("a file that is no archive is named in a message and deleted") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking("this is no archive at all");
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == notAnArchive(unpacking.archive));
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(driver.boxes()[0].buttons == Tree{L"OK"});
  CHECK(unpacking.scratch.tree() == Tree{L"inside\\", L"staging\\"});
  REQUIRE(output.messages().size() >= 1);
  const std::wstring logged = output.messages().back();
  CHECK(logged.size() > 10);
  std::wstring upper = logged;
  CharUpperW(upper.data());
  CHECK(logged == upper);
}

TEST_CASE("a truncated archive is named in a message and deleted") {
  ModalDriver driver;
  std::string bytes = ZipMaker().add("page.htm", std::string(5000, 'x')).bytes();
  bytes.resize(3000);
  const Unpacking unpacking(bytes);
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == notAnArchive(unpacking.archive));
  CHECK(unpacking.scratch.tree() == Tree{L"inside\\", L"staging\\"});
}

TEST_CASE("an empty file is no archive") {
  ModalDriver driver;
  const Unpacking unpacking(std::string{});
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == notAnArchive(unpacking.archive));
  CHECK_FALSE(unpacking.scratch.exists(L"staging\\theme.zip"));
}

TEST_CASE("an archive that is not there is named in the same message") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  DeleteFileW(unpacking.archive.c_str());
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == notAnArchive(unpacking.archive));
}

TEST_CASE("an extraction folder that cannot be made is named in a message") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  const std::wstring folder = unpacking.scratch / L"gone\\deeper";
  CHECK_FALSE(unzipFiles(unpacking.archive, folder));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        folder + L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(unpacking.scratch.exists(L"staging\\theme.zip"));
}

TEST_CASE("an extraction folder that is a file is named in a message") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  const std::wstring folder = unpacking.scratch.writeFile(L"a file", "x");
  CHECK_FALSE(unzipFiles(unpacking.archive, folder));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        folder + L"\r\nInvalid file path or you do not have write permission to this location.");
}

namespace {

// A folder in which nobody may make anything: of the system around Wine one that even its
// administrator cannot write, of Windows one whose access list says so.
class DeniedFolder {
 public:
  DeniedFolder() {
    constexpr wchar_t devices[] = L"Z:\\sys\\kernel";
    if (GetFileAttributesW(devices) != INVALID_FILE_ATTRIBUTES) {
      path_ = devices;
      return;
    }
    path_ = scratch_.makeFolder(L"denied");
    setAccess(L"D:(D;;WDDC;;;WD)(A;OICI;FA;;;WD)");
  }
  ~DeniedFolder() { setAccess(L"D:(A;OICI;FA;;;WD)"); }
  DeniedFolder(const DeniedFolder&) = delete;
  DeniedFolder& operator=(const DeniedFolder&) = delete;

  const std::wstring& path() const { return path_; }

 private:
  void setAccess(const wchar_t* list) const {
    if (!path_.starts_with(scratch_.path())) return;
    PSECURITY_DESCRIPTOR access = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(list, SDDL_REVISION_1, &access, nullptr);
    SetFileSecurityW(path_.c_str(), DACL_SECURITY_INFORMATION, access);
    LocalFree(access);
  }

  ScratchFolder scratch_;
  std::wstring path_;
};

}  // namespace

TEST_CASE("an extraction folder without write permission is named in a message") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  // Empty, since that folder has no room either.
  const Unpacking unpacking(ZipMaker().add("page.htm", ""));
  const DeniedFolder denied;
  CHECK_FALSE(unzipFiles(unpacking.archive, denied.path()));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        denied.path() +
            L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(unpacking.scratch.exists(L"staging\\theme.zip"));
  REQUIRE(output.messages().size() == 1);
  CHECK(output.messages()[0].find(L"CANNOT CREATE") != std::wstring::npos);
}

TEST_CASE("a file that is in the way of a folder is no folder without permission") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  unpacking.scratch.makeFolder(L"inside\\page.htm");
  CHECK_FALSE(unpacking.run());
  CHECK(driver.boxes().empty());
}

TEST_CASE("other results of the library are logged without a message") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker().bytes());
  CHECK_FALSE(unpacking.run());
  CHECK(driver.boxes().empty());
  CHECK(unpacking.scratch.exists(L"staging\\theme.zip"));
  REQUIRE(output.messages().size() == 1);
  CHECK(output.messages()[0].find(L"ZIPFILE IS EMPTY") != std::wstring::npos);
}

TEST_CASE("a result for which the library has no words is logged with its number") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  typePassword(driver, {}, IDCANCEL);
  ZipMaker::Extras extras;
  extras.password = "sesame";
  const Unpacking unpacking(ZipMaker().add("page.htm", "secret", extras));
  CHECK_FALSE(unpacking.run());
  CHECK(driver.boxes().empty());
  CHECK(output.messages() == Tree{L"THE UNZIP LIBRARY ENDED WITH THE RESULT 82."});
}

TEST_CASE("a damaged file in an archive is named in the log and the archive is deleted") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  std::string bytes = onePage().bytes();
  bytes[bytes.find("new page")] = 'N';  // no longer what its check sum says
  const Unpacking unpacking(bytes);
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == notAnArchive(unpacking.archive));
  CHECK(unpacking.scratch.tree() == Tree{L"inside\\", L"staging\\"});
  CHECK(output.messages() == Tree{L"THE CONTENTS OF A FILE IN IT ARE DAMAGED : PAGE.HTM"});
}

TEST_CASE("a name that climbs out keeps the whole archive packed") {
  checkRefused("../evil.htm", L"../evil.htm");
}
TEST_CASE("a name that climbs out behind a folder keeps the whole archive packed") {
  checkRefused("images/../../evil.htm", L"images/../../evil.htm");
}
TEST_CASE("a name that climbs out with backslashes keeps the whole archive packed") {
  checkRefused("..\\evil.htm", L"..\\evil.htm");
}
TEST_CASE("an absolute name keeps the whole archive packed") {
  checkRefused("/evil.htm", L"/evil.htm");
}
TEST_CASE("a name with a drive letter keeps the whole archive packed") {
  checkRefused("C:/evil.htm", L"C:/evil.htm");
}
TEST_CASE("a name of a stream keeps the whole archive packed") {
  checkRefused("first.htm:evil", L"first.htm:evil");
}
TEST_CASE("a reserved name keeps the whole archive packed") { checkRefused("nul.htm", L"nul.htm"); }
TEST_CASE("a name that ends in a point keeps the whole archive packed") {
  checkRefused("evil.htm.", L"evil.htm.");
}
TEST_CASE("a name that ends in a blank keeps the whole archive packed") {
  checkRefused("evil /x.htm", L"evil /x.htm");
}

TEST_CASE("a name that climbs out only in the local header does not leave the folder") {
  ModalDriver driver;
  ZipMaker::Extras extras;
  extras.directoryName = "page1.htm";
  const Unpacking unpacking(ZipMaker().add("../ev.htm", "evil", extras));
  CHECK_FALSE(unpacking.run());
  CHECK(unpacking.untouched());
}

TEST_CASE("control characters in a name do not lead outside of the folder") {
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker()
                                .add(".\x01./evil1.htm", "evil")
                                .add("..\x01/evil2.htm", "evil")
                                .add(".. \x01/evil3.htm", "evil")
                                .add("...\x01/evil4.htm", "evil"));
  unpacking.run();
  for (const std::wstring& path : unpacking.scratch.tree())
    CHECK_MESSAGE((path.starts_with(L"inside\\") || path.starts_with(L"staging\\")), path);
}

TEST_CASE("a bomb is not unpacked") {
  ModalDriver driver;
  ZipMaker::Extras extras;
  extras.claimedSize = 0xF0000000;
  const Unpacking unpacking(ZipMaker().addDeflated("page.htm", "little", extras));
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        L"The archive \" " + unpacking.archive +
            L" \" was not unpacked. It claims to hold 3.75 GB, which is out of all proportion to "
            L"its own size.");
  CHECK(unpacking.untouched());
}

namespace {

std::wstring askedOf;

BOOL WINAPI smallDisk(LPCWSTR folder, PULARGE_INTEGER available, PULARGE_INTEGER, PULARGE_INTEGER) {
  askedOf = folder;
  available->QuadPart = 2048;
  return TRUE;
}

}  // namespace

TEST_CASE("the room for a folder that is still to be made is that above it") {
  askedOf.clear();
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker().add("page.htm", std::string(4096, 'x')));
  const ImportPatch patch(nullptr, "KERNEL32.dll", "GetDiskFreeSpaceExW", smallDisk);
  CHECK_FALSE(unzipFiles(unpacking.archive, unpacking.folder + L"\\new\\deeper"));
  CHECK(askedOf == unpacking.folder + L"\\");
  CHECK(driver.boxes().size() == 1);
}

TEST_CASE("an archive that the disk cannot hold is not unpacked") {
  ModalDriver driver;
  const Unpacking unpacking(ZipMaker().add("page.htm", std::string(4096, 'x')));
  const ImportPatch patch(nullptr, "KERNEL32.dll", "GetDiskFreeSpaceExW", smallDisk);
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        L"The archive \" " + unpacking.archive +
            L" \" was not unpacked. It holds 4.00 KB, but there are only 2.00 KB left on the "
            L"disk.");
  CHECK(unpacking.untouched());
}

TEST_CASE("an encrypted archive is unpacked with the password that the user types") {
  ModalDriver driver;
  typePassword(driver, L"open sesame");
  ZipMaker::Extras extras;
  extras.password = "open sesame";
  const Unpacking unpacking(ZipMaker().add("page.htm", "a secret", extras));
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == "a secret");
  CHECK(driver.dialogs() == Tree{L"Quillet Viewer"});
}

TEST_CASE("a wrong password is asked for again") {
  ModalDriver driver;
  typePassword(driver, L"wrong");
  typePassword(driver, L"open sesame");
  ZipMaker::Extras extras;
  extras.password = "open sesame";
  const Unpacking unpacking(ZipMaker().add("page.htm", "a secret", extras));
  CHECK(unpacking.run());
  CHECK(unpacking.read(L"page.htm") == "a secret");
  CHECK(driver.dialogs().size() == 2);
}

TEST_CASE("a password that is cancelled is not asked for again and nothing is unpacked") {
  ModalDriver driver;
  typePassword(driver, L"open sesame", IDCANCEL);
  ZipMaker::Extras extras;
  extras.password = "open sesame";
  const Unpacking unpacking(
      ZipMaker().add("page.htm", "a secret", extras).add("other.htm", "another", extras));
  CHECK_FALSE(unpacking.run());
  CHECK(driver.dialogs().size() == 1);
  CHECK(driver.boxes().empty());
  CHECK(unpacking.untouched());
}

TEST_CASE("a password longer than the library takes is cut by the input box") {
  ModalDriver driver;
  driver.onDialog(L"Quillet Viewer", [](HWND dialog) {
    for (int i = 0; i < 200; ++i)
      SendDlgItemMessageW(dialog, IDC_INPUTBOX_TXTINPUT, WM_CHAR, L'x', 0);
    CHECK(windowText(dialog, IDC_INPUTBOX_TXTINPUT).size() < 200);
    press(dialog, IDCANCEL);
  });
  ZipMaker::Extras extras;
  extras.password = "open sesame";
  const Unpacking unpacking(ZipMaker().add("page.htm", "a secret", extras));
  CHECK_FALSE(unpacking.run());
}

TEST_CASE("an archive whose name holds a bracket is found under its own name") {
  const Unpacking unpacking(onePage());
  unpacking.scratch.writeFile(L"staging\\pack1.zip", ZipMaker().add("wrong.htm", "x").bytes());
  const std::wstring archive =
      unpacking.scratch.writeFile(L"staging\\pack[1].zip", onePage().bytes());
  CHECK(unzipFiles(archive, unpacking.folder));
  CHECK(unpacking.read(L"page.htm") == "new page");
  CHECK_FALSE(unpacking.scratch.exists(L"inside\\wrong.htm"));
}

TEST_CASE("an archive in a folder whose name holds a bracket is found") {
  const ScratchFolder scratch;
  const std::wstring archive = scratch.writeFile(L"new [2]\\theme.zip", onePage().bytes());
  CHECK(unzipFiles(archive, scratch.makeFolder(L"in [x]")));
  CHECK(scratch.readFile(L"in [x]\\page.htm") == "new page");
}

TEST_CASE("a missing library is a clear message and no harm") {
  const Logging logging;
  const DebugOutput output;
  const OwnModule own;
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == own.complaint());
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(output.messages() == std::vector{L"Error 53 (" + driver.boxes()[0].text +
                                         L") in procedure UnzipFiles of Module modCommon"});
  CHECK(unpacking.untouched());
}

TEST_CASE("a library that is no library is a clear message and no harm") {
  const OwnModule own;
  own.folder().writeFile(L"unzip32.dll", "MZ and nothing else");
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == own.complaint());
}

TEST_CASE("a library without the entry points is a clear message and no harm") {
  const OwnModule own;
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  REQUIRE(CopyFileW((std::wstring(system) + L"\\version.dll").c_str(),
                    (own.folder() / L"unzip32.dll").c_str(), FALSE));
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  CHECK_FALSE(unpacking.run());
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == L"The unzip library \" " + (own.folder() / L"unzip32.dll") +
                                      L" \" is not usable. The product may have to be "
                                      L"reinstalled.");
  CHECK(unpacking.untouched());
}

TEST_CASE("the library is loaded only while an archive is unpacked") {
  const Unpacking unpacking(onePage());
  CHECK(GetModuleHandleW(L"unzip32.dll") == nullptr);
  CHECK(unpacking.run());
  CHECK(GetModuleHandleW(L"unzip32.dll") == nullptr);
}

namespace {

// Of which the tests' code page has no letter.
constexpr wchar_t beyondCodePage[] = L"\u0416\u0443\u043A";

// While it lives no file has a short name: some volumes then give the long one for it, others
// nothing.
class NoShortNames {
 public:
  enum class Answer { longName, none, tooLong };
  explicit NoShortNames(Answer answer) : patch_(nullptr, "KERNEL32.dll", "GetShortPathNameW", of) {
    answer_ = answer;
  }

 private:
  static DWORD WINAPI of(LPCWSTR path, LPWSTR buffer, DWORD length) {
    if (answer_ == Answer::tooLong) return length + 1;
    if (answer_ == Answer::none) {
      SetLastError(ERROR_INVALID_PARAMETER);
      return 0;
    }
    lstrcpynW(buffer, path, static_cast<int>(length));
    return static_cast<DWORD>(lstrlenW(buffer));
  }

  static inline Answer answer_ = Answer::none;
  ImportPatch patch_;
};

// Unpacks into a folder that the library cannot be told of.
void checkUntold(NoShortNames::Answer answer) {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  const std::wstring folder = unpacking.scratch.makeFolder(beyondCodePage);
  const NoShortNames none(answer);
  CHECK_FALSE(unzipFiles(unpacking.archive, folder));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text ==
        folder + L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(output.messages() == Tree{L"BAD FILE NAME OR NUMBER"});
  CHECK(unpacking.scratch.tree() == Tree{L"inside\\", L"staging\\", L"staging\\theme.zip",
                                         std::wstring(beyondCodePage) + L"\\"});
}

}  // namespace

TEST_CASE("a folder outside the code page is unpacked into by its short name") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  REQUIRE_FALSE(text::fitsAnsi(beyondCodePage));
  CHECK(unzipFiles(unpacking.archive, unpacking.scratch.makeFolder(beyondCodePage)));
  CHECK(unpacking.scratch.readFile(std::wstring(beyondCodePage) + L"\\page.htm") == "new page");
  CHECK(driver.boxes().empty());
}

TEST_CASE("an archive outside the code page is found by its short name") {
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  const std::wstring archive = unpacking.scratch.writeFile(
      std::wstring(beyondCodePage) + L"\\" + beyondCodePage + L".zip", onePage().bytes());
  CHECK(unzipFiles(archive, unpacking.folder));
  CHECK(unpacking.read(L"page.htm") == "new page");
  CHECK(driver.boxes().empty());
}

TEST_CASE("a folder outside the code page on a volume without short names is named in a message") {
  checkUntold(NoShortNames::Answer::longName);
}

TEST_CASE("a folder outside the code page whose short name is refused is named in a message") {
  checkUntold(NoShortNames::Answer::none);
}

TEST_CASE("a folder outside the code page whose short name is too long is named in a message") {
  checkUntold(NoShortNames::Answer::tooLong);
}

TEST_CASE("an archive outside the code page without a short name is an error and stays") {
  const Logging logging;
  DebugOutput output;
  ModalDriver driver;
  const Unpacking unpacking(onePage());
  const std::wstring name = std::wstring(beyondCodePage) + L".zip";
  const std::wstring archive = unpacking.scratch.writeFile(name, onePage().bytes());
  const NoShortNames none(NoShortNames::Answer::longName);
  CHECK_FALSE(unzipFiles(archive, unpacking.folder));
  REQUIRE(driver.boxes().size() == 1);
  CHECK(driver.boxes()[0].text == L"Bad file name or number");
  CHECK(unpacking.scratch.exists(name));
  CHECK(unpacking.scratch.tree().size() == 4);
}
