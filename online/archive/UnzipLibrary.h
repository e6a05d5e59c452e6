// The unzip library while it is loaded.
#pragma once

#include <windows.h>

#include "common/handles.h"
#include "online/archive/unzip_records.h"

namespace handles {
struct ModuleTraits {
  using type = HMODULE;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { FreeLibrary(handle); }
};
using Module = Unique<ModuleTraits>;
}  // namespace handles

namespace unzip {

class Library {
 public:
  // Loads unzip32.dll from the folder of this module, never from anywhere else: a library of that
  // name in the host's current folder or on the path is somebody else's. Raises an Error (53) when
  // it is not there, cannot be loaded or lacks an entry point or a version that is known here.
  Library();

  // The library's result (0 = success). The whole archive is handled.
  int run(const UnzipOptions& options, UnzipCallbacks& callbacks) const;

 private:
  using VersionEntry = unsigned(WINAPI*)(VersionRecord*);
  using UnzipEntry = int(WINAPI*)(int nameCount, char** names, int excludedCount, char** excluded,
                                  const void* options, void* callbacks);

  static void checkVersion(VersionEntry version);

  handles::Module module_;
  UnzipEntry unzip_ = nullptr;
};

}  // namespace unzip
