// What an archive says of itself: the record at its end, its directory, and each entry's own
// header. Read as the unzip library reads them; where the format lets readers differ, nothing is
// read at all. The format is the one that PKWARE's APPNOTE describes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/KeepGoing.h"
#include "online/archive/ByteSource.h"
#include "online/archive/Fault.h"

namespace archive {

enum Method : std::uint16_t { stored = 0, deflated = 8, aesEncrypted = 99 };

struct Entry {
  std::string name;         // as it stands in the directory
  std::string unicodeName;  // UTF-8; stands for `name` when not empty
  bool isUtf8 = false;      // `name` itself is in UTF-8
  bool isEncrypted = false;
  bool isDescribedBehind = false;  // sizes and check sum stand behind the data, too
  std::uint16_t method = stored;
  std::uint32_t crc = 0;
  std::uint64_t packedSize = 0;
  std::uint64_t size = 0;  // what it claims to hold
  // Who made it: the file system and the tool's version, by which names are encoded.
  std::uint8_t hostSystem = 0;
  std::uint8_t hostVersion = 0;
  bool hasUnixAttributes = false;
  bool isFolder = false;  // to the library; known once the names are checked
  // In the file, a program in front counted.
  std::uint64_t header = 0;
  std::uint64_t data = 0;
  std::uint64_t end = 0;  // behind its data and what describes them
};

struct Directory {
  Finding finding;  // the first that keeps the archive packed
  std::vector<Entry> entries;
};

// `Fault::stopped` when `run` does not go on.
Directory readDirectory(ByteSource& source, KeepGoing& run);

}  // namespace archive
