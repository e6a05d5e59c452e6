// The gate in front of the unzip library, which parses inside the host whatever it is handed: an
// archive goes through only when all of it has been read and understood here.
#pragma once

#include <optional>
#include <string>

#include "common/KeepGoing.h"
#include "common/errors.h"
#include "online/archive/ArchiveFile.h"

namespace archive {

// What an archive is and where to it goes, for what is said of it.
struct Passage {
  std::wstring archive;
  std::wstring folder;
};

// Why the file is no valid archive; nothing when it may be unpacked. One that is valid and must not
// be unpacked all the same raises an Error whose description names the archive and the first
// reason. 512 when `run` does not go on. Nothing is written.
std::optional<std::wstring> damageOf(ArchiveFile& file, const Passage& passage, KeepGoing& run);

// The same for a file that could not even be opened: one that is not there is no valid archive.
std::wstring damageOfUnopened(const Error& error, const Passage& passage);

}  // namespace archive
