// A downloaded file at the gate before the unzip library.
#include "online/archive/Directory.h"
#include "online/archive/contents.h"
#include "online/archive/entry_names.h"
#include "tests/fuzz/ArchivePromises.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

constexpr std::size_t longestPath = 200;

const fuzz::Target target("archive_gate", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const unsigned patience = input.byte();
  fuzz::Bytes archive(input.rest());
  fuzz::EveryStep run;
  archive::Directory directory;
  const archive::Finding finding = fuzz::passGate(archive, directory, longestPath, run);
  fuzz::checkEffort(archive, directory, run);
  promise(finding.fault != archive::Fault::stopped, "nothing stops by itself");
  promise(finding.entry == archive::Finding::noEntry || finding.entry < directory.entries.size(),
          "a fault is that of an entry");
  if (!finding) fuzz::checkAccepted(archive, directory, longestPath);

  // The same once more, given up after some steps.
  fuzz::EveryStep shortRun(patience);
  archive::Directory again;
  const archive::Finding stopped = fuzz::passGate(archive, again, longestPath, shortRun);
  promise(stopped.fault == finding.fault || stopped.fault == archive::Fault::stopped,
          "the verdict is the same or none");
});

}  // namespace
