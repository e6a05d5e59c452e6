// Unpacking an archive of many files.
#include "bench/rows.h"
#include "common/ansi.h"
#include "online/archive/unzip_records.h"
#include "tests/online/archive/UnpackingBoxes.h"
#include "tests/support/ScratchFolder.h"

namespace bench {
namespace {

constexpr std::size_t files = 2000;

std::wstring archive() { return places() / L"unpack.zip"; }

void checkAll(const ScratchFolder& target) {
  if (const auto there = target.tree().size(); there < files)
    throw CannotRun{"only " + std::to_string(there) + " files are unpacked"};
}

double ours() {
  const ScratchFolder target;
  const Stopwatch watch;
  const bool unpacked = unzipFiles(archive(), target.path());
  const double time = watch.milliseconds();
  if (!unpacked) throw CannotRun{"the archive is not unpacked"};
  checkAll(target);
  return time;
}

int WINAPI onPrint(char*, unsigned long length) { return static_cast<int>(length); }
int WINAPI onReplace(char*, unsigned) { return unzip::replaceYes; }
int WINAPI onPassword(char*, int, const char*, const char*) { return unzip::passwordCancelAll; }
void WINAPI onMessage(unzip::Size, unzip::Size, unsigned, unsigned, unsigned, unsigned, unsigned,
                      unsigned, char, const char*, const char*, unsigned long, char) {}
int WINAPI onService(const char*, unzip::Size) { return 0; }

// The library alone.
double bare() {
  using Entry = int(WINAPI*)(int, char**, int, char**, const void*, void*);
  const ScratchFolder target;
  const std::string from = text::toAnsi(archive());
  const std::string to = text::toAnsi(target.path());
  const Stopwatch watch;
  const HMODULE library = LoadLibraryW(L"unzip32.dll");
  const auto unpack = reinterpret_cast<Entry>(
      reinterpret_cast<void*>(GetProcAddress(library, "Wiz_SingleEntryUnzip")));
  if (!unpack) throw CannotRun{"unzip32.dll is not beside the program"};
  unzip::UnzipOptions options = {};
  options.version = unzip::optionsVersion;
  options.quiet = 2;
  options.folders = 1;
  options.overwrite = 1;
  options.archive = from.c_str();
  options.folder = to.c_str();
  unzip::UnzipCallbacks callbacks = {};
  callbacks.print = onPrint;
  callbacks.replace = onReplace;
  callbacks.password = onPassword;
  callbacks.message = onMessage;
  callbacks.service = onService;
  const int result = unpack(0, nullptr, 0, nullptr, &options, &callbacks);
  FreeLibrary(library);
  const double time = watch.milliseconds();
  if (result != unzip::success) throw CannotRun{"the library does not unpack the archive"};
  checkAll(target);
  return time;
}

}  // namespace

std::vector<Row> unpackingRows() {
  return {{"unpack", "unpacking 50 MB in 2000 files", "", 0, {Limit::times, 1.3}, [] {
             return inPairs(ours, bare);
           }}};
}

}  // namespace bench
