// The whole way from an archive to files: the gate, then the unzip library.
#pragma once

#include <cstdint>
#include <string_view>

namespace fuzz {

struct Unpacked {
  bool passed = false;       // the gate
  std::size_t files = 0;     // in the folder
  std::uint64_t bytes = 0;   // in all of them
  bool isElsewhere = false;  // something was touched that is not in the folder
  bool leftOpen = false;     // the archive or a file
};

// Unpacks into a folder that is made for it and taken away afterwards. Natively an archive is given
// to the library when `passed` says so; on Windows the product judges for itself.
Unpacked unpack(std::string_view archive, bool passed);

}  // namespace fuzz
