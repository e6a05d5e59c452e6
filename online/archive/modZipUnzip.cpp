#include "online/archive/modZipUnzip.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "common/NoSystemBoxes.h"
#include "common/ansi.h"
#include "common/errors.h"
#include "common/forms/frmInputBox.h"
#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "online/archive/ArchiveFile.h"
#include "online/archive/ArchiveNames.h"
#include "online/archive/UnzipLibrary.h"
#include "online/transfer/ByteSize.h"

namespace modZipUnzip {
namespace {

// 48 (exclamation) and 3 (Yes, No and Cancel), joined as texts instead of added. The system shows
// the buttons and no icon; kept as it stands.
constexpr UINT overwriteStyle = 483;

struct Entry {
  std::wstring name;
  unzip::Size unpackedSize = 0;
  unsigned month = 0;
  unsigned day = 0;
  unsigned year = 0;
  unsigned hour = 0;
  unsigned minute = 0;
};

// What the library calls back during one call of it.
class Listener {
 public:
  explicit Listener(HWND owner) : owner_(owner) {}
  virtual ~Listener() = default;

  void print(std::wstring text);
  int replace(const std::wstring& name) const;
  int password(char* buffer, int size) const;
  virtual void entry(const Entry& entry);

  std::wstring lastMessage;

 private:
  HWND owner_;
  std::wstring listing_;
};

// Takes in an archive's directory before anything is unpacked.
class DirectoryCheck final : public Listener {
 public:
  using Listener::Listener;
  void entry(const Entry& entry) override;

  std::wstring unsafeName;  // the first one
  double unpackedSize = 0;  // in bytes; cannot overflow, whatever the archive claims
};

// The listener of the call in progress: the library hands no context to its callbacks.
Listener* current = nullptr;

bool themeMode = false;

class Listening {
 public:
  explicit Listening(Listener& listener) : before_(current) { current = &listener; }
  ~Listening() { current = before_; }
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;

 private:
  Listener* before_;
};

// "name" to a column of `width` characters; what is longer keeps its length.
std::wstring leftColumn(std::wstring text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), L' ');
  return text;
}

std::wstring rightColumn(const std::wstring& text, std::size_t width) {
  return text.size() < width ? std::wstring(width - text.size(), L' ') + text : text;
}

std::wstring twoDigits(unsigned number) {
  std::wstring digits = std::to_wstring(number % 100);
  return digits.size() < 2 ? text::join({L"0", digits}) : digits;
}

constexpr std::size_t nameWidth = 50;
constexpr std::size_t sizeWidth = 11;

std::wstring listingHeading() {
  return text::join(
      {leftColumn(L"Filename:", nameWidth), rightColumn(L"Size", sizeWidth), L"  Date      Time"});
}

std::wstring listingLine(const Entry& entry) {
  return text::join({leftColumn(entry.name, nameWidth),
                     rightColumn(std::to_wstring(entry.unpackedSize), sizeWidth), L"  ",
                     twoDigits(entry.month), L"/", twoDigits(entry.day), L"/",
                     twoDigits(entry.year), L"  ", twoDigits(entry.hour), L":",
                     twoDigits(entry.minute)});
}

void Listener::print(std::wstring text) {
  constexpr wchar_t space[] = L" \t\r\n";
  const auto end = text.find_last_not_of(space);
  if (end == text.npos) return;
  text.erase(end + 1);
  text.erase(0, text.find_first_not_of(space));
  lastMessage = std::move(text);
}

void Listener::entry(const Entry& entry) {
  if (listing_.empty()) listing_ = listingHeading();
  listing_ += L"\r\n";
  listing_ += listingLine(entry);
  lastMessage = listing_;
}

int Listener::replace(const std::wstring& name) const {
  switch (showMessage(owner_, text::join({L"Overwrite ", name, L"?"}), overwriteStyle,
                      L"VBUnZip32 - File Already Exists!")) {
    case IDYES:
      return unzip::replaceYes;
    case IDNO:
      return unzip::replaceNo;
    default:
      return unzip::replaceNone;
  }
}

// A user who cancels is not asked again for each file of the archive.
int Listener::password(char* buffer, int size) const {
  if (size <= 0) return unzip::passwordCancelAll;
  const auto typed = forms::askForText(L"Please Enter The Password!", size - 1, owner_);
  if (!typed) return unzip::passwordCancelAll;
  const std::string bytes = text::toAnsi(*typed).substr(0, static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
  return unzip::passwordEntered;
}

void DirectoryCheck::entry(const Entry& entry) {
  unpackedSize += static_cast<double>(entry.unpackedSize);
  if (!unsafeName.empty()) return;
  // The whole listing would grow with each entry of an archive that may have very many.
  lastMessage = text::join({listingHeading(), L"\r\n", listingLine(entry)});
  if (archive::faultOf(entry.name) != archive::NameFault::none) unsafeName = entry.name;
}

// Nothing may fly through the library: it is C, and it leaves by long jumps.
template <class Body>
int guarded(int fallback, Body&& body) noexcept {
  if (!current) return fallback;
  try {
    return body(*current);
  } catch (...) {
    return fallback;
  }
}

int WINAPI onPrint(char* text, unsigned long length) noexcept {
  guarded(0, [&](Listener& listener) {
    listener.print(text::fromAnsi({text, length}));
    return 0;
  });
  return static_cast<int>(length);
}

int WINAPI onPassword(char* buffer, int size, const char*, const char*) noexcept {
  return guarded(unzip::passwordCancelAll,
                 [&](Listener& listener) { return listener.password(buffer, size); });
}

// NOLINTNEXTLINE(readability-non-const-parameter): the type is the library's.
int WINAPI onReplaceOld(char* name) noexcept {
  return guarded(unzip::replaceNone,
                 [&](Listener& listener) { return listener.replace(text::fromAnsi(name)); });
}

int WINAPI onReplaceNew(char* name, unsigned size) noexcept {
  return guarded(unzip::replaceNone, [&](Listener& listener) {
    return listener.replace(text::fromAnsi({name, strnlen(name, size)}));
  });
}

void takeEntry(const char* name, Entry entry) noexcept {
  guarded(0, [&](Listener& listener) {
    entry.name = text::fromAnsi(name);
    listener.entry(entry);
    return 0;
  });
}

void WINAPI onMessageOld(unsigned long unpackedSize, unsigned long, unsigned, unsigned month,
                         unsigned day, unsigned year, unsigned hour, unsigned minute, char,
                         const char* name, const char*, unsigned long, char) noexcept {
  takeEntry(name, {{}, unpackedSize, month, day, year, hour, minute});
}

void WINAPI onMessageNew(unzip::Size unpackedSize, unzip::Size, unsigned, unsigned month,
                         unsigned day, unsigned year, unsigned hour, unsigned minute, char,
                         const char* name, const char*, unsigned long, char) noexcept {
  takeEntry(name, {{}, unpackedSize, month, day, year, hour, minute});
}

int WINAPI onServiceOld(const char*, unsigned long) noexcept { return 0; }
int WINAPI onServiceNew(const char*, unzip::Size) noexcept { return 0; }

// The fields that both kinds of the record have.
template <class Record>
Record commonFields(const Options& options) {
  Record record = {};
  // An existing file is replaced however new it is; the library alone would keep a newer one.
  record.extractOnlyNewer = options.ExtractNewer && !options.OverWriteFiles;
  record.spaceToUnderscore = options.SpaceToUnderScore;
  record.promptToOverwrite = options.PromptOverwrite;
  record.quiet = options.MessageLevel;
  record.toStdOut = options.WriteToStdOut;
  record.test = options.TestZip;
  record.list = options.ExtractList;
  record.freshen = options.ExtractOnlyNewer;
  record.comment = options.DisplayComment;
  record.folders = options.HonorDirectories;
  record.overwrite = options.OverWriteFiles;
  record.convertLineEnds = options.ConvertCRtoCRLF;
  record.zipInfo = options.Verbose;
  record.ignoreCase = !options.CaseSensitive;
  record.privilege = options.Privilege;
  return record;
}

// The paths in the code page, as the library takes them.
struct LibraryPaths {
  std::string archive;
  std::string folder;
};

int runNew(const unzip::Library& library, const Options& options, const LibraryPaths& paths) {
  auto record = commonFields<unzip::OptionsNew>(options);
  record.version = unzip::optionsVersion;
  record.archive = paths.archive.c_str();
  record.folder = paths.folder.empty() ? nullptr : paths.folder.c_str();
  unzip::CallbacksNew callbacks = {};
  callbacks.print = onPrint;
  callbacks.replace = onReplaceNew;
  callbacks.password = onPassword;
  callbacks.message = onMessageNew;
  callbacks.service = onServiceNew;
  return library.run(record, callbacks);
}

int runOld(const unzip::Library& library, const Options& options, const LibraryPaths& paths) {
  auto record = commonFields<unzip::OptionsOld>(options);
  record.archive = paths.archive.c_str();
  record.folder = paths.folder.empty() ? nullptr : paths.folder.c_str();
  unzip::CallbacksOld callbacks = {};
  callbacks.print = onPrint;
  callbacks.replace = onReplaceOld;
  callbacks.password = onPassword;
  callbacks.message = onMessageOld;
  callbacks.service = onServiceOld;
  return library.run(record, callbacks);
}

int run(const unzip::Library& library, const Options& options, const LibraryPaths& paths,
        Listener& listener) {
  const Listening listening(listener);
  return library.hasNewRecords() ? runNew(library, options, paths)
                                 : runOld(library, options, paths);
}

// A name that the code page cannot hold is given by its short form, where there is one.
std::wstring ansiPath(const std::wstring& path) {
  if (text::fitsAnsi(path)) return path;
  const NoSystemBoxes quiet;
  wchar_t shortPath[MAX_PATH];
  const DWORD length = GetShortPathNameW(path.c_str(), shortPath, MAX_PATH);
  return length > 0 && length < MAX_PATH ? std::wstring(shortPath, length) : path;
}

// The library takes the archive's name as a pattern of which "[" can be a part of a real name.
std::wstring asPattern(const std::wstring& path) {
  if (path.find(L'[') == path.npos) return path;
  const std::wstring slashes = text::replaceAll(path, L"\\", L"/");
  const auto nameStart = slashes.rfind(L'/') + 1;
  return text::join(
      {slashes.substr(0, nameStart), text::replaceAll(slashes.substr(nameStart), L"[", L"[[]")});
}

std::string archivePath(const std::wstring& path) {
  const std::wstring ansi = ansiPath(path);
  // A "?" in place of a character would be taken for any character.
  if (!text::fitsAnsi(ansi) || ansi.find_first_of(L"*?") != ansi.npos)
    throw Error(errors::badFileName);
  return text::toAnsi(asPattern(ansi));
}

// A file that is no archive makes the library look for another one, with ".zip" behind the whole
// name; and a pattern that matches no archive is a success to it.
bool isMistaken(const std::wstring& path) {
  const bool doubtful =
      path.find(L'[') != path.npos || modCommon::fileExists(text::join({path, L".zip"}));
  return doubtful && !archive::hasDirectory(path);
}

bool writesFiles(const Options& options) {
  return !options.WriteToStdOut && !options.TestZip && options.ExtractList == 0 &&
         !options.DisplayComment && !options.Verbose;
}

Error refusal(const Options& options, long number, const std::wstring& why) {
  return {number,
          text::join({L"The archive \" ", options.ZipFileName, L" \" was not unpacked. ", why})};
}

void checkSize(const Options& options, double unpackedSize) {
  if (unpackedSize == 0) return;  // nothing was listed; there may be no such file
  const NoSystemBoxes quiet;
  const auto archiveSize = static_cast<double>(modCommon::fileSize(options.ZipFileName));
  if (archive::isBomb(unpackedSize, archiveSize))
    throw refusal(options, errors::diskFull,
                  text::join({L"It claims to hold ", online::byteSizeText(unpackedSize),
                              L", which is out of all proportion to its own size."}));
  ULARGE_INTEGER available = {};
  if (GetDiskFreeSpaceExW(options.ExtractDir.c_str(), &available, nullptr, nullptr) &&
      unpackedSize > static_cast<double>(available.QuadPart))
    throw refusal(
        options, errors::diskFull,
        text::join({L"It holds ", online::byteSizeText(unpackedSize), L", but there are only ",
                    online::byteSizeText(static_cast<double>(available.QuadPart)),
                    L" left on the disk."}));
}

// The library's result of listing the archive. Raises an Error when it must not be unpacked.
int checkDirectory(const unzip::Library& library, const Options& options, const LibraryPaths& paths,
                   std::wstring& lastMessage, HWND owner) {
  Options listing;
  listing.ExtractList = 1;
  listing.HonorDirectories = true;
  DirectoryCheck directory(owner);
  const int result = run(library, listing, paths, directory);
  lastMessage = directory.lastMessage;
  if (!directory.unsafeName.empty())
    throw refusal(
        options, errors::pathFileAccess,
        text::join({L"The name of a file in it is not safe, since it could lead outside of "
                    L"the chosen folder : ",
                    directory.unsafeName}));
  checkSize(options, directory.unpackedSize);
  return result;
}

bool canMakeFileIn(const std::wstring& folder) {
  const NoSystemBoxes quiet;
  wchar_t name[MAX_PATH];
  if (!GetTempFileNameW(folder.c_str(), L"qui", 0, name)) return false;
  DeleteFileW(name);
  return true;
}

}  // namespace

ThemeMode::ThemeMode(bool on) noexcept : before_(std::exchange(themeMode, on)) {}
ThemeMode::~ThemeMode() { themeMode = before_; }
bool ThemeMode::isOn() noexcept { return themeMode; }

long Unzip(const Options& options, std::wstring& lastMessage, HWND owner) {
  lastMessage.clear();
  const unzip::Library library;
  if (isMistaken(options.ZipFileName)) return unzip::notAnArchive;
  const std::wstring folder = ansiPath(options.ExtractDir);
  if (!text::fitsAnsi(folder)) return unzip::cannotCreate;
  const LibraryPaths paths = {archivePath(options.ZipFileName), text::toAnsi(folder)};

  // An archive whose directory cannot be read to its end is not touched: what follows the damage is
  // not known.
  if (writesFiles(options))
    if (const int result = checkDirectory(library, options, paths, lastMessage, owner);
        result > unzip::warning)
      return result;

  Listener listener(owner);
  const int result = run(library, options, paths, listener);
  lastMessage = std::move(listener.lastMessage);
  // The library says "disk full" whatever keeps it from making a file.
  if (result == unzip::cannotWrite && !canMakeFileIn(options.ExtractDir))
    return unzip::cannotCreate;
  return result;
}

}  // namespace modZipUnzip
