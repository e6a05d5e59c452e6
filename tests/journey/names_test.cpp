// File names of every kind on both journeys. These cases are run under several code pages: what a
// code page lacks has to be told of, and what it has arrives as it is.
#include <algorithm>
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

// As the system's own ANSI functions give it: what the code page lacks as what it has for it.
std::string narrow(const std::wstring& text) {
  char bytes[1024] = {};
  WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
  return bytes;
}

std::wstring asTheCodePageHasIt(const std::wstring& text) {
  wchar_t wide[1024] = {};
  MultiByteToWideChar(CP_ACP, 0, narrow(text).c_str(), -1, wide, 1024);
  return wide;
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

// In the code page as authors write it, or in UTF-16, as those do whose text it lacks.
std::string descriptionFile(const std::wstring& text) {
  if (fits(text)) return narrow(text);
  const std::wstring marked = L"\uFEFF" + text;
  return {reinterpret_cast<const char*>(marked.data()), marked.size() * sizeof(wchar_t)};
}

bool isListed(const Journey& journey, const std::wstring& title) {
  return std::ranges::count(journey.titles(), title) == 1;
}

// A template with another name where `where` says.
struct Place {
  std::wstring folder = L"Named";
  std::wstring page = L"named";  // without its ending
  std::wstring title = L"Named";
  std::wstring theme = {};
};

void makeTemplate(const ScratchFolder& disk, const Place& place) {
  std::wstring description = L"[" + place.page + L"]\r\nTitle=" + place.title + L"\r\n";
  if (!place.theme.empty()) description += L"Theme=" + place.theme + L" 1111\r\n";
  const std::wstring folder = L"templates\\" + place.folder + L"\\";
  disk.writeFile(folder + place.page + L".dwt",
                 "<html><head><title>A page</title></head><body>text</body></html>");
  disk.writeFile(folder + L"quillet.ini", descriptionFile(description));
}

std::wstring copiedPage(const Place& place) {
  return L"webs\\my site\\dwts\\" + place.folder + L"\\" + place.page + L".dwt";
}

// The folder or the page is listed under `listed` and copied when the code page has the name, and
// otherwise left alone with a line that says so.
void checkListedIfItFits(const Place& place, const std::wstring& name, const std::wstring& listed) {
  Journey journey;
  makeTemplate(journey.disk, place);
  journey.start();
  journey.copy(listed);
  CHECK(isListed(journey, listed) == fits(name));
  CHECK(journey.disk.exists(copiedPage(place)) == fits(name));
  const std::wstring tail = asTheCodePageHasIt(name) + (name == place.page ? L".dwt \"" : L"\\ \"");
  const auto tells = [&](const std::wstring& line) {
    return line.starts_with(L"Could not open \"") && line.ends_with(tail);
  };
  CHECK(std::ranges::any_of(journey.log.messages(), tells) != fits(name));
  journey.finish();
}

void checkTemplateFolder(const std::wstring& name) {
  checkListedIfItFits({.folder = name}, name, L"Named");
}

void checkTemplatePage(const std::wstring& name) {
  checkListedIfItFits({.page = name, .title = L"Listed"}, name, L"Listed");
}

// The host is asked in wide letters throughout.
void checkWebFolder(const std::wstring& name) {
  Journey journey;
  makeTemplate(journey.disk, {});
  journey.host.openWeb(journey.disk.makeFolder(L"webs\\" + name));
  journey.start();
  journey.copy(L"Named");
  CHECK_FALSE(journey.leftOpen());
  CHECK(journey.disk.exists(L"webs\\" + name + L"\\dwts\\Named\\named.dwt"));
  journey.finish();
}

// What the code page lacks of it is shown as the system gives it.
void checkTitle(const std::wstring& title) {
  Journey journey;
  makeTemplate(journey.disk, {.title = title});
  journey.start();
  const std::wstring shown = asTheCodePageHasIt(title);
  journey.copy(shown);
  CHECK(isListed(journey, shown));
  CHECK((shown == title) == fits(title));
  CHECK_FALSE(journey.leftOpen());
  CHECK(journey.disk.exists(copiedPage({})));
  journey.finish();
}

// A theme that the code page cannot name is none that the host has; the template arrives all the
// same.
void checkTheme(const std::wstring& theme) {
  Journey journey;
  makeTemplate(journey.disk, {.theme = theme});
  const std::wstring folder = L"themes\\" + theme + L"\\" + theme;
  journey.disk.writeFile(folder + L".inf", "[info]\r\ntitle=Theme\r\n");
  journey.disk.writeFile(folder + L".elm", "elements");
  journey.start();
  journey.copy(L"Named");
  CHECK_FALSE(journey.leftOpen());
  CHECK(journey.disk.exists(copiedPage({})));
  CHECK(journey.disk.exists(L"webs\\my site\\_themes\\" + theme + L"\\" + theme + L".elm") ==
        fits(theme));
  const auto lacks = [](const std::wstring& line) {
    return line.ends_with(L"  Theme not available in FP");
  };
  CHECK(std::ranges::any_of(journey.log.messages(), lacks) != fits(theme));
  journey.finish();
}

// A page's name of such a length that its path in `folder` has `length` characters.
std::wstring nameForPath(const std::wstring& folder, std::size_t length) {
  return std::wstring(length - folder.size() - 1 - 4, L'n') + L".htm";
}

// Copies a file of that name to a web that is named by its shortest path or by a long one, so that
// either the template's file or its copy has the longer path.
Copied copyPath(const std::wstring& web, const std::wstring& longerFolder, std::size_t length) {
  Journey journey;
  makeTemplate(journey.disk, {});
  const std::wstring name = nameForPath(journey.disk / longerFolder, length);
  journey.disk.writeFile(L"templates\\Named\\" + name, "content");
  journey.host.openWeb(journey.disk.makeFolder(web));
  journey.start();
  journey.copy(L"Named");
  const Copied copied = {!journey.leftOpen(),
                         journey.disk.readFile(web + L"\\dwts\\Named\\" + name) == "content",
                         journey.disk.readFile(L"templates\\Named\\" + name) == "content",
                         journey.disk.exists(web + L"\\dwts\\Named\\named.dwt")};
  journey.finish();
  return copied;
}

Copied copyFromPath(std::size_t length) { return copyPath(L"w", L"templates\\Named", length); }

Copied copyToPath(std::size_t length) {
  return copyPath(L"webs\\wide", L"webs\\wide\\dwts\\Named", length);
}

void checkWhole(const Copied& copied) {
  CHECK(copied.isWhole);
  CHECK(copied.isThere);
  CHECK(copied.isKept);
}

void checkWholeOrTold(const Copied& copied) {
  CHECK(copied.isKept);
  CHECK(copied.isWhole == copied.isThere);
}

// A folder that only programs of another kind can make.
void checkFolderListedOrTold(const std::wstring& name) {
  Journey journey;
  const std::wstring folder = L"\\\\?\\" + journey.disk / (L"templates\\" + name);
  REQUIRE(CreateDirectoryW(folder.c_str(), nullptr));
  for (const wchar_t* file : {L"\\named.dwt", L"\\quillet.ini"})
    writeVerbatim(folder.substr(4) + file, "[named]\r\nTitle=Named\r\n");
  journey.start();
  journey.copy(L"Named");
  const bool isCopied = journey.disk.exists(L"webs\\my site\\dwts\\" + name + L"\\named.dwt");
  if (isListed(journey, L"Named")) CHECK(journey.leftOpen() != isCopied);
  const auto tells = [](const std::wstring& line) {
    return line.starts_with(L"Could not open \"") || line.find(L"ERROR in procedure") != line.npos;
  };
  CHECK(std::ranges::any_of(journey.log.messages(), tells) != isCopied);
  CHECK_FALSE(readVerbatim(folder.substr(4) + L"\\named.dwt").empty());
  journey.finish();
  for (const wchar_t* file : {L"\\named.dwt", L"\\quillet.ini"})
    removeVerbatim(folder.substr(4) + file);
  RemoveDirectoryW(folder.c_str());
}

// What a download of an archive with a file of that name came to.
struct Downloaded {
  bool isThere;
  std::vector<std::wstring> boxes;
  std::vector<std::wstring> files;
};

Downloaded downloadIn(Journey& journey, const ZipMaker& archive, const std::wstring& name,
                      const std::wstring& folder = L"downloads",
                      const std::wstring& applicationData = L"data") {
  HttpServer server({{"/d.zip", HttpServer::ok(archive.bytes())}});
  journey.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                             L"DWTOnline", L"http://127.0.0.1/catalogue/start.htm");
  journey.registry.setString(HKEY_CURRENT_USER, ownSettings, L"DWTDownloadDir",
                             journey.disk.makeFolder(folder));
  journey.registry.setString(HKEY_CURRENT_USER, shellFolders, L"AppData",
                             journey.disk.makeFolder(applicationData));
  journey.registry.setNumber(HKEY_CURRENT_USER, internetSettings, L"ProxyEnable", 0);
  journey.start();
  journey.modal.onDialog(L"DWT Online", [&](HWND window) {
    journey.page.follow(L"http://127.0.0.1/DWTOnlineDownload.htm?dwt1=" + server.url(L"/d.zip"));
    PostMessageW(window, WM_CLOSE, 0, 0);
  });
  REQUIRE(journey.host.click(dwtOnline));
  Downloaded downloaded;
  downloaded.isThere = readVerbatim(journey.disk / (folder + L"\\" + name)) == "content";
  for (const ShownBox& box : journey.modal.boxes()) downloaded.boxes.push_back(box.text);
  for (const auto& entry : journey.disk.tree())
    if (entry.starts_with(folder + L"\\"))
      downloaded.files.push_back(entry.substr(folder.size() + 1));
  journey.finish();
  return downloaded;
}

Downloaded downloadToPath(std::size_t length) {
  Journey journey;
  const std::wstring name = nameForPath(journey.disk / L"downloads", length);
  return downloadIn(journey, ZipMaker().add(toUtf8(name), "content"), name);
}

// With the flag that says so.
Downloaded downloadUtf8(const std::wstring& name) {
  ZipMaker::Extras utf8;
  utf8.flags = 0x0800;
  Journey journey;
  std::wstring inArchive = name;
  std::ranges::replace(inArchive, L'\\', L'/');
  return downloadIn(journey, ZipMaker().add(toUtf8(inArchive), "content", utf8), name);
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

// The folder comes out of the registry, which is read in the code page. That may have a letter that
// looks like the one it lacks: then the folder by that name is made and used.
void checkDownloadFolder(const std::wstring& name) {
  Journey journey;
  const std::wstring folder = L"downloads " + name;
  const std::wstring known = asTheCodePageHasIt(folder);
  REQUIRE((known == folder) == fits(name));
  const Downloaded downloaded =
      downloadIn(journey, ZipMaker().add("page.htm", "content"), L"page.htm", folder);
  CHECK(downloaded.isThere == fits(name));
  if (known.find(L'?') == known.npos) {
    CHECK(journey.disk.readFile(known + L"\\page.htm") == "content");
    CHECK(downloaded.boxes == std::vector<std::wstring>());
  } else {
    checkRefused(downloaded);
    CHECK(downloaded.boxes[0] ==
          L"The disk is not in the drive or the specified path does not exist.");
  }
}

// So do archives on their way, below the folder for application data.
void checkStagingFolder(const std::wstring& name) {
  Journey journey;
  const std::wstring known = asTheCodePageHasIt(name);
  const Downloaded downloaded = downloadIn(journey, ZipMaker().add("page.htm", "content"),
                                           L"page.htm", L"downloads", L"data " + name);
  CHECK(downloaded.isThere == (known.find(L'?') == known.npos));
  if (downloaded.isThere)
    CHECK(downloaded.boxes == std::vector<std::wstring>());
  else
    checkRefused(downloaded);
}

constexpr wchar_t umlauts[] = L"Gr\u00FC\u00DFe";
constexpr wchar_t cyrillic[] = L"\u0416\u0443\u043A";
// Its bytes in code page 932 end with that of a backslash.
constexpr wchar_t backslashByte[] = L"\u6E2F\u8868";
constexpr wchar_t longLetter[] = L"\U0001F600";

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

TEST_CASE("A folder with a letter of two bytes that ends like a backslash is unpacked") {
  checkUnpackedIfItFits(L"\u6E2F\u8868\\page.htm");
}

// The library would write another one in its place.
TEST_CASE("An archive with a letter beyond sixteen bits in a name stays packed") {
  checkRefused(downloadUtf8(L"\U0001F600.htm"));
}

TEST_CASE("A file with Cyrillic letters in its name is unpacked") {
  checkUnpackedIfItFits(L"\u0416\u0443\u043A.htm");
}

// The system would drop the last letter, so that another file than the one named would be written.
TEST_CASE("An archive with a dot at the end of a name stays packed") {
  checkRefused(downloadUtf8(L"page."));
}

TEST_CASE("An archive with a blank at the end of a name stays packed") {
  checkRefused(downloadUtf8(L"page "));
}

TEST_CASE("An archive with the name of a device stays packed") {
  checkRefused(downloadUtf8(L"con.htm"));
}

TEST_CASE("A template in a folder with umlauts in its name is copied") {
  checkTemplateFolder(umlauts);
}

TEST_CASE("A template in a folder with Cyrillic letters in its name is copied") {
  checkTemplateFolder(cyrillic);
}

TEST_CASE(
    "A template in a folder with a Chinese letter that ends like a backslash in its name is "
    "copied") {
  checkTemplateFolder(backslashByte);
}

TEST_CASE("A template in a folder with a letter beyond sixteen bits in its name is copied") {
  checkTemplateFolder(longLetter);
}

TEST_CASE(
    "A template page with a Chinese letter that ends like a backslash in its name is listed by its "
    "title and copied") {
  checkTemplatePage(backslashByte);
}

TEST_CASE(
    "A template page with a letter beyond sixteen bits in its name is listed by its title and "
    "copied") {
  checkTemplatePage(longLetter);
}

TEST_CASE("A template is copied to a web with umlauts in its name") { checkWebFolder(umlauts); }

TEST_CASE("A template is copied to a web with Cyrillic letters in its name") {
  checkWebFolder(cyrillic);
}

TEST_CASE(
    "A template is copied to a web with a Chinese letter that ends like a backslash in its name") {
  checkWebFolder(backslashByte);
}

TEST_CASE("A template is copied to a web with a letter beyond sixteen bits in its name") {
  checkWebFolder(longLetter);
}

TEST_CASE("A template with umlauts in its title is listed and copied") { checkTitle(umlauts); }

TEST_CASE("A template with Cyrillic letters in its title is listed and copied") {
  checkTitle(cyrillic);
}

TEST_CASE(
    "A template with a Chinese letter that ends like a backslash in its title is listed and "
    "copied") {
  checkTitle(backslashByte);
}

TEST_CASE("A template with a letter beyond sixteen bits in its title is listed and copied") {
  checkTitle(longLetter);
}

TEST_CASE("A theme with umlauts in its name is applied") { checkTheme(umlauts); }

TEST_CASE("A theme with Cyrillic letters in its name is applied") { checkTheme(cyrillic); }

TEST_CASE("A theme with a Chinese letter that ends like a backslash in its name is applied") {
  checkTheme(backslashByte);
}

TEST_CASE("A theme with a letter beyond sixteen bits in its name is applied") {
  checkTheme(longLetter);
}

TEST_CASE("An archive is unpacked into a folder with umlauts in its name") {
  checkDownloadFolder(umlauts);
}

TEST_CASE("An archive is unpacked into a folder with Cyrillic letters in its name") {
  checkDownloadFolder(cyrillic);
}

TEST_CASE(
    "An archive is unpacked into a folder with a Chinese letter that ends like a backslash in its "
    "name") {
  checkDownloadFolder(backslashByte);
}

TEST_CASE("An archive is unpacked into a folder with a letter beyond sixteen bits in its name") {
  checkDownloadFolder(longLetter);
}

TEST_CASE("An archive is unpacked from below a folder with Cyrillic letters in its name") {
  checkStagingFolder(cyrillic);
}

TEST_CASE(
    "An archive is unpacked from below a folder with a Chinese letter that ends like a backslash "
    "in "
    "its name") {
  checkStagingFolder(backslashByte);
}

TEST_CASE("A template in a folder with a dot at the end of its name is copied or told of") {
  checkFolderListedOrTold(L"Dotted.");
}

TEST_CASE("A template in a folder with a blank at the end of its name is copied or told of") {
  checkFolderListedOrTold(L"Blank ");
}

TEST_CASE("A template in a folder with the name of a device is copied or told of") {
  checkFolderListedOrTold(L"aux");
}

TEST_CASE("A file whose path has 259 characters is copied") { checkWhole(copyFromPath(259)); }

TEST_CASE("A file whose path has 260 characters is copied or told of") {
  checkWholeOrTold(copyFromPath(260));
}

TEST_CASE("A file is copied to a path of 259 characters") { checkWhole(copyToPath(259)); }

TEST_CASE("A file is copied to a path of 260 characters or told of") {
  checkWholeOrTold(copyToPath(260));
}

TEST_CASE("A template with a title of 259 characters is listed and copied") {
  checkTitle(std::wstring(259, L't'));
}

TEST_CASE("A file is unpacked to a path of 259 characters") {
  const Downloaded downloaded = downloadToPath(259);
  CHECK(downloaded.isThere);
  CHECK(downloaded.boxes == std::vector<std::wstring>());
}

TEST_CASE("An archive with a file for a path of 260 characters stays packed") {
  checkRefused(downloadToPath(260));
}

// The library's own limit is one of bytes.
TEST_CASE("A file whose path has fewer than 260 letters and more bytes stays packed") {
  Journey journey;
  const std::wstring folder = L"downloads " + std::wstring(120, L'd');
  const std::wstring name = std::wstring(65, L'\u6E2F') + L".htm";
  REQUIRE((journey.disk / folder).size() + 1 + name.size() < 260);
  ZipMaker::Extras utf8;
  utf8.flags = 0x0800;
  const Downloaded downloaded =
      downloadIn(journey, ZipMaker().add(toUtf8(name), "content", utf8), name, folder);
  checkRefused(downloaded);
}

TEST_CASE("A folder whose path has fewer than 260 letters and more bytes is told of") {
  Journey journey;
  const std::wstring folder =
      L"downloads " + std::wstring(55, L'\u6E2F') + L"\\" + std::wstring(55, L'\u6E2F');
  checkRefused(downloadIn(journey, ZipMaker().add("page.htm", "content"), L"page.htm", folder));
}
