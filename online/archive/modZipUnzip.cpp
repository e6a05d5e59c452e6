#include "online/archive/modZipUnzip.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "common/NoSystemBoxes.h"
#include "common/ansi.h"
#include "common/errors.h"
#include "common/text.h"
#include "online/archive/ArchiveFile.h"
#include "online/archive/UnzipLibrary.h"
#include "online/archive/gate.h"

namespace modZipUnzip {
namespace {

// An archive's entry as the library lists it.
struct Line {
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
  explicit Listener(UnpackingQuestions& questions) : questions_(questions) {}

  void print(std::wstring text);
  int replace(const std::wstring& name) const;
  int password(char* buffer, int size) const;
  void list(const Line& line);
  int service();

  std::wstring lastMessage;
  bool wasStopped = false;

 private:
  UnpackingQuestions& questions_;
  std::wstring listing_;
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
  std::wstring digits = text::decimal(number % 100);
  return digits.size() < 2 ? text::join({L"0", digits}) : digits;
}

constexpr std::size_t nameWidth = 50;
constexpr std::size_t sizeWidth = 11;

std::wstring listingHeading() {
  return text::join(
      {leftColumn(L"Filename:", nameWidth), rightColumn(L"Size", sizeWidth), L"  Date      Time"});
}

std::wstring listingLine(const Line& line) {
  return text::join({leftColumn(line.name, nameWidth),
                     rightColumn(text::decimal(line.unpackedSize), sizeWidth), L"  ",
                     twoDigits(line.month), L"/", twoDigits(line.day), L"/", twoDigits(line.year),
                     L"  ", twoDigits(line.hour), L":", twoDigits(line.minute)});
}

void Listener::print(std::wstring text) {
  constexpr wchar_t space[] = L" \t\r\n";
  const auto end = text.find_last_not_of(space);
  if (end == text.npos) return;
  text.erase(end + 1);
  text.erase(0, text.find_first_not_of(space));
  lastMessage = std::move(text);
}

void Listener::list(const Line& line) {
  if (listing_.empty()) listing_ = listingHeading();
  listing_ += L"\r\n";
  listing_ += listingLine(line);
  lastMessage = listing_;
}

int Listener::replace(const std::wstring& name) const {
  switch (questions_.overwrite(name)) {
    case UnpackingQuestions::Overwrite::yes:
      return unzip::replaceYes;
    case UnpackingQuestions::Overwrite::no:
      return unzip::replaceNo;
    default:
      return unzip::replaceNone;
  }
}

// A user who cancels is not asked again for each file of the archive.
int Listener::password(char* buffer, int size) const {
  if (size <= 0) return unzip::passwordCancelAll;
  const auto typed = questions_.password(size - 1);
  if (!typed) return unzip::passwordCancelAll;
  const std::string bytes = text::toAnsi(*typed).substr(0, static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
  return unzip::passwordEntered;
}

// The library says so after each file.
int Listener::service() {
  if (!wasStopped) wasStopped = !questions_.keepGoing();
  return wasStopped ? unzip::stop : unzip::goOn;
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

int WINAPI onReplace(char* name, unsigned size) noexcept {
  return guarded(unzip::replaceNone, [&](Listener& listener) {
    return listener.replace(text::fromAnsi({name, strnlen(name, size)}));
  });
}

void WINAPI onMessage(unzip::Size unpackedSize, unzip::Size, unsigned, unsigned month, unsigned day,
                      unsigned year, unsigned hour, unsigned minute, char, const char* name,
                      const char*, unsigned long, char) noexcept {
  guarded(0, [&](Listener& listener) {
    listener.list({text::fromAnsi(name), unpackedSize, month, day, year, hour, minute});
    return 0;
  });
}

int WINAPI onService(const char*, unzip::Size) noexcept {
  return guarded(unzip::stop, [](Listener& listener) { return listener.service(); });
}

// The paths in the code page, as the library takes them.
struct LibraryPaths {
  std::string archive;
  std::string folder;
};

unzip::UnzipOptions recordOf(const Options& options, const LibraryPaths& paths) {
  unzip::UnzipOptions record = {};
  record.version = unzip::optionsVersion;
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
  record.archive = paths.archive.c_str();
  record.folder = paths.folder.empty() ? nullptr : paths.folder.c_str();
  return record;
}

int run(const unzip::Library& library, const Options& options, const LibraryPaths& paths,
        Listener& listener) {
  const Listening listening(listener);
  unzip::UnzipCallbacks callbacks = {};
  callbacks.print = onPrint;
  callbacks.replace = onReplace;
  callbacks.password = onPassword;
  callbacks.message = onMessage;
  callbacks.service = onService;
  return library.run(recordOf(options, paths), callbacks);
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

// The library goes by bytes. Where those of the last letter end with that of a backslash, it would
// take it for the path's own and unpack beside the folder.
std::string folderPath(const std::wstring& path) {
  std::string ansi = text::toAnsi(path);
  if (ansi.ends_with('\\') && !path.ends_with(L'\\')) ansi += '/';
  return ansi;
}

// A system that could not make the file may name it all the same.
bool canMakeFileIn(const std::wstring& folder) {
  const NoSystemBoxes quiet;
  wchar_t name[MAX_PATH];
  return GetTempFileNameW(folder.c_str(), L"qui", 0, name) && DeleteFileW(name);
}

// What a result says for which the library has no words.
std::wstring resultText(int result) {
  return text::join({L"The unzip library ended with the result ", text::decimal(result), L"."});
}

long runChecked(const unzip::Library& library, const Options& options, const LibraryPaths& paths,
                std::wstring& lastMessage, UnpackingQuestions& questions) {
  Listener listener(questions);
  const int result = run(library, options, paths, listener);
  if (listener.wasStopped) throw errors::operationCancelled();
  lastMessage = std::move(listener.lastMessage);
  if (result != unzip::success && lastMessage.empty()) lastMessage = resultText(result);
  // The library says "disk full" whatever keeps it from making a file.
  if (result == unzip::cannotWrite && !canMakeFileIn(options.ExtractDir))
    return unzip::cannotCreate;
  return result;
}

// The archive is open from the first look at it until the library has done with it.
long unpack(const unzip::Library& library, const Options& options, const archive::Passage& passage,
            std::wstring& lastMessage, UnpackingQuestions& questions) {
  const std::wstring folder = ansiPath(options.ExtractDir);
  const LibraryPaths paths = {archivePath(options.ZipFileName), folderPath(folder)};
  std::optional<archive::ArchiveFile> file;
  std::optional<std::wstring> damage;
  try {
    file.emplace(options.ZipFileName);
  } catch (const Error& error) {
    damage = archive::damageOfUnopened(error, passage);
  }
  if (file) damage = archive::damageOf(*file, passage, questions);
  if (damage) {
    lastMessage = std::move(*damage);
    return unzip::notAnArchive;
  }
  if (!text::fitsAnsi(folder) || paths.folder.size() >= MAX_PATH) {
    lastMessage = errors::descriptionOf(errors::badFileName);
    return unzip::cannotCreate;
  }
  return runChecked(library, options, paths, lastMessage, questions);
}

}  // namespace

ThemeMode::ThemeMode(bool on) noexcept : before_(std::exchange(themeMode, on)) {}
ThemeMode::~ThemeMode() { themeMode = before_; }
bool ThemeMode::isOn() noexcept { return themeMode; }

long Unzip(const Options& options, std::wstring& lastMessage, UnpackingQuestions& questions) {
  lastMessage.clear();
  // What the questions let happen must not begin another run beside this one: the library keeps
  // what it works on to itself, once.
  if (current) throw Error(errors::permissionDenied, L"Another archive is being unpacked.");
  const unzip::Library library;
  const archive::Passage passage = {options.ZipFileName, options.ExtractDir};
  try {
    return unpack(library, options, passage, lastMessage, questions);
  } catch (const Error& error) {
    lastMessage = error.description();
    throw;
  }
}

}  // namespace modZipUnzip
