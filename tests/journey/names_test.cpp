// File names of every kind on both journeys. These cases are run under several code pages: what a
// code page lacks has to be told of, and what it has arrives as it is.
#include <string>

#include "tests/journey/Journey.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/support/text_output.h"
#include "tests/support/utf8.h"

namespace {

constexpr wchar_t shellFolders[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr wchar_t internetSettings[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
constexpr wchar_t ownSettings[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";

// Whether the code page has all of it.
bool fits(const std::wstring& name) {
  if (GetACP() == CP_UTF8) return true;
  char bytes[1024];
  BOOL replaced = FALSE;
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, name.c_str(), -1, bytes, sizeof bytes, nullptr,
                      &replaced);
  return !replaced;
}

// Also of names that the system's ordinary functions would change.
void writeVerbatim(const std::wstring& path, const std::string& bytes) {
  const HANDLE file = CreateFileW((L"\\\\?\\" + path).c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  REQUIRE(file != INVALID_HANDLE_VALUE);
  DWORD written = 0;
  CHECK(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
  CloseHandle(file);
}

// The bytes; nothing when it is not there.
std::string readVerbatim(const std::wstring& path) {
  const HANDLE file =
      CreateFileW((L"\\\\?\\" + path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  char buffer[64];
  DWORD read = 0;
  ReadFile(file, buffer, sizeof buffer, &read, nullptr);
  CloseHandle(file);
  return {buffer, read};
}

void removeVerbatim(const std::wstring& path) { DeleteFileW((L"\\\\?\\" + path).c_str()); }

// What a copy of a template with a file of that name came to.
struct Copied {
  bool isWhole;    // the window closed by itself
  bool isThere;    // with its contents
  bool isKept;     // the template still has it
  bool othersAre;  // the files beside it have arrived
};

Copied copyWith(const std::wstring& name) {
  Journey journey;
  journey.disk.writeFile(L"templates\\Named\\named.dwt", "page");
  journey.disk.writeFile(L"templates\\Named\\quillet.ini", "[named]\r\nTitle=Named\r\n");
  const std::wstring file = journey.disk / (L"templates\\Named\\" + name);
  writeVerbatim(file, "content");
  journey.start();
  journey.copy(L"Named");
  const Copied copied = {
      !journey.leftOpen(),
      readVerbatim(journey.disk / (L"webs\\my site\\dwts\\Named\\" + name)) == "content",
      readVerbatim(file) == "content",
      journey.disk.exists(L"webs\\my site\\dwts\\Named\\named.dwt")};
  journey.finish();
  removeVerbatim(file);
  return copied;
}

void checkArrivesIfItFits(const std::wstring& name) {
  const Copied copied = copyWith(name);
  CHECK(copied.isKept);
  CHECK(copied.isThere == fits(name));
  CHECK(copied.isWhole == fits(name));
}

// A name that only programs of another kind can make.
void checkToldOrThere(const std::wstring& name) {
  const Copied copied = copyWith(name);
  CHECK(copied.isKept);
  CHECK(copied.isWhole == copied.isThere);
}

// What a download of an archive with a file of that name came to.
struct Downloaded {
  bool isThere;
  std::vector<std::wstring> boxes;
  std::vector<std::wstring> files;
};

Downloaded downloadWith(const ZipMaker& archive, const std::wstring& name) {
  HttpServer server({{"/d.zip", HttpServer::ok(archive.bytes())}});
  Journey journey;
  journey.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                             L"DWTOnline", L"http://127.0.0.1/catalogue/start.htm");
  journey.registry.setString(HKEY_CURRENT_USER, ownSettings, L"DWTDownloadDir",
                             journey.disk.makeFolder(L"downloads"));
  journey.registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData",
                             journey.disk.makeFolder(L"data"));
  journey.registry.setNumber(HKEY_CURRENT_USER, internetSettings, L"ProxyEnable", 0);
  journey.start();
  journey.modal.onDialog(L"DWT Online", [&](HWND window) {
    journey.page.follow(L"http://127.0.0.1/DWTOnlineDownload.htm?dwt1=" + server.url(L"/d.zip"));
    PostMessageW(window, WM_CLOSE, 0, 0);
  });
  REQUIRE(journey.host.click(dwtOnline));
  Downloaded downloaded;
  downloaded.isThere = readVerbatim(journey.disk / (L"downloads\\" + name)) == "content";
  for (const ShownBox& box : journey.modal.boxes()) downloaded.boxes.push_back(box.text);
  for (const auto& entry : journey.disk.tree())
    if (entry.starts_with(L"downloads\\")) downloaded.files.push_back(entry.substr(10));
  journey.finish();
  return downloaded;
}

// With the flag that says so.
Downloaded downloadUtf8(const std::wstring& name) {
  ZipMaker::Extras utf8;
  utf8.flags = 0x0800;
  return downloadWith(ZipMaker().add(toUtf8(name), "content", utf8), name);
}

void checkRefused(const Downloaded& downloaded) {
  CHECK(downloaded.boxes.size() == 1);
  CHECK(downloaded.files == std::vector<std::wstring>{L""});
}

void checkUnpackedIfItFits(const std::wstring& name) {
  const Downloaded downloaded = downloadUtf8(name);
  CHECK(downloaded.isThere == fits(name));
  if (fits(name))
    CHECK(downloaded.boxes == std::vector<std::wstring>());
  else
    checkRefused(downloaded);
}

}  // namespace

TEST_CASE("A file with umlauts in its name is copied") {
  checkArrivesIfItFits(L"Gr\u00FC\u00DFe.htm");
}

TEST_CASE("A file with Chinese letters in its name is copied") {
  checkArrivesIfItFits(L"\u6E2F\u306E\u706F.htm");
}

TEST_CASE("A file with Cyrillic letters in its name is copied") {
  checkArrivesIfItFits(L"\u0416\u0443\u043A.htm");
}

// Its second byte is that of a backslash in code page 932.
TEST_CASE("A file with a letter of two bytes that ends like a backslash is copied") {
  checkArrivesIfItFits(L"\u8868\u30BD.htm");
}

TEST_CASE("A file with a letter beyond sixteen bits in its name is copied") {
  checkArrivesIfItFits(L"\U0001F600.htm");
}

TEST_CASE("A file with a dot at the end of its name is copied or told of") {
  checkToldOrThere(L"page.");
}

TEST_CASE("A file with a blank at the end of its name is copied or told of") {
  checkToldOrThere(L"page ");
}

TEST_CASE("A file with the name of a device is copied or told of") { checkToldOrThere(L"con.htm"); }

TEST_CASE("A file with umlauts in its name is unpacked") {
  checkUnpackedIfItFits(L"Gr\u00FC\u00DFe.htm");
}

TEST_CASE("A file with Chinese letters in its name is unpacked") {
  checkUnpackedIfItFits(L"\u6E2F\u306E\u706F.htm");
}

TEST_CASE("A file with a letter of two bytes that ends like a backslash is unpacked") {
  checkUnpackedIfItFits(L"\u8868\u30BD.htm");
}

// The library would write another one in its place.
TEST_CASE("An archive with a letter beyond sixteen bits in a name stays packed") {
  checkRefused(downloadUtf8(L"\U0001F600.htm"));
}
