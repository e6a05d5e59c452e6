// Names of an archive's entries, given in bytes of whatever encoding.
#include <algorithm>

#include "online/archive/entry_names.h"
#include "tests/fuzz/ArchivePromises.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

const fuzz::Target target("archive_names", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const std::size_t longestPath = 1 + input.byte();
  archive::Directory directory;
  while (!input.ended() && directory.entries.size() < 200) {
    archive::Entry& entry = directory.entries.emplace_back();
    const unsigned flags = input.byte();
    entry.isUtf8 = flags & 1;
    entry.hasUnixAttributes = flags & 2;
    entry.hostSystem = static_cast<std::uint8_t>(flags >> 3 & 15);
    entry.hostVersion = flags & 4 ? 26 : 50;
    entry.name = input.line();
    if (flags & 0x80) entry.unicodeName = input.line();
  }
  fuzz::EveryStep run;
  const archive::Finding finding =
      archive::checkNames(directory, fuzz::codePages(), longestPath, run);
  promise(finding.entry == archive::Finding::noEntry || finding.entry < directory.entries.size(),
          "a fault is that of an entry");
  if (!finding) fuzz::checkNamesStayInside(directory, longestPath);
});

}  // namespace
