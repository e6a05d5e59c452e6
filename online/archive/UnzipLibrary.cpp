#include "online/archive/UnzipLibrary.h"

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <string>

#include "common/NoSystemBoxes.h"
#include "common/errors.h"
#include "common/module.h"
#include "common/text.h"

namespace unzip {
namespace {

constexpr wchar_t fileName[] = L"unzip32.dll";

std::wstring libraryPath() { return text::join({module::folder(), fileName}); }

Error unusable(const wchar_t* why) {
  return {errors::fileNotFound, text::join({L"The unzip library \" ", libraryPath(), L" \" ", why,
                                            L" The product may have to be reinstalled."})};
}

template <class Function>
Function entryPoint(HMODULE module, const char* name) {
  const auto address = reinterpret_cast<void*>(GetProcAddress(module, name));
  if (!address) throw unusable(L"is not usable.");
  return reinterpret_cast<Function>(address);
}

// The library takes over the user's locale and drops the time zone of the environment. It does so
// in the C run-time that it shares with the host, whose they are.
class RuntimeState {
 public:
  RuntimeState() : locale_(std::setlocale(LC_CTYPE, nullptr)) {
    if (const char* zone = std::getenv("TZ")) zone_ = std::string("TZ=") + zone;
  }
  ~RuntimeState() {
    std::setlocale(LC_CTYPE, locale_.c_str());
    if (zone_.empty()) return;
    _putenv(zone_.c_str());
    _tzset();
  }
  RuntimeState(const RuntimeState&) = delete;
  RuntimeState& operator=(const RuntimeState&) = delete;

 private:
  std::string locale_;
  std::string zone_;
};

}  // namespace

Library::Library() {
  const NoSystemBoxes quiet;
  // What the library itself imports is looked for beside it first.
  module_.reset(LoadLibraryExW(libraryPath().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  if (!module_) throw unusable(L"could not be loaded.");
  const auto version = entryPoint<VersionEntry>(module_.get(), "UzpVersion2");
  unzip_ = entryPoint<UnzipEntry>(module_.get(), "Wiz_SingleEntryUnzip");
  checkVersion(version);
}

void Library::checkVersion(VersionEntry version) {
  // An earlier library expects a shorter record and leaves this one empty. A later one says itself
  // whether it still takes the records known here.
  VersionRecord record = {};
  record.length = sizeof record;
  version(&record);
  if (record.unzip.major < 6 || record.oldestInterface.major > 6)
    throw unusable(L"has an unknown version.");
}

int Library::run(const UnzipOptions& options, UnzipCallbacks& callbacks) const {
  const RuntimeState state;
  return unzip_(0, nullptr, 0, nullptr, &options, &callbacks);
}

}  // namespace unzip
