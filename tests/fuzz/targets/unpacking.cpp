// A downloaded archive on its whole way: through the gate, and by the unzip library onto the disk.
#include <algorithm>

#include "online/archive/entry_names.h"
#include "tests/fuzz/ArchivePromises.h"
#include "tests/fuzz/ArchiveRecipe.h"
#include "tests/fuzz/Target.h"
#include "tests/fuzz/Unpacked.h"

using fuzz::promise;

namespace {

constexpr std::size_t longestPath = 200;

std::uint64_t claimed(const archive::Directory& directory) {
  std::uint64_t size = 0;
  for (const archive::Entry& entry : directory.entries)
    size += entry.isEncrypted ? std::max(entry.size, entry.packedSize * 1040) : entry.size;
  return size;
}

// A path can have at most so many folders; it may be the one that an entry has beside its own.
std::size_t mostFiles(const archive::Directory& directory) {
  std::size_t files = 1;
  for (const archive::Entry& entry : directory.entries) {
    const auto name = archive::nameOf(entry, fuzz::codePages());
    const std::wstring path = name ? archive::placeOf(*name, entry).path : L"";
    files += 1 + static_cast<std::size_t>(std::count(path.begin(), path.end(), L'/'));
  }
  return files;
}

const fuzz::Target target("unpacking", [](fuzz::Input input) {
  const std::string archive = fuzz::archiveOf(input);
  fuzz::Bytes bytes(archive);
  fuzz::EveryStep run;
  archive::Directory directory;
  const archive::Finding finding = fuzz::passGate(bytes, directory, longestPath, run);
  fuzz::checkEffort(bytes, directory, run);
  if (!finding) fuzz::checkAccepted(bytes, directory, longestPath);

  const fuzz::Unpacked unpacked = fuzz::unpack(archive, !finding);
  promise(!unpacked.isElsewhere, "nothing outside the folder is touched");
  promise(!unpacked.leftOpen, "nothing is left open");
  if (!unpacked.passed) return promise(unpacked.files == 0, "a refused archive leaves nothing");
  promise(unpacked.files <= mostFiles(directory), "there are no more files than entries");
  promise(unpacked.bytes <= claimed(directory), "there is no more in the files than was said");
});

}  // namespace
