// Downloads one archive of a catalogue as the download dialog does, and looks at it as the
// unpacking does.
#pragma once

#include <string>

#include "author/Work.h"
#include "online/transfer/DownloadTable.h"
#include "online/transfer/InternetSession.h"

namespace author {

struct ArchiveVerdict {
  enum class Fault {
    none,
    unreachable,    // the check of the addresses ends with a message
    withoutLength,  // the server does not tell it, so nothing is read
    brokenOff,      // the transfer ends with a message
    damaged,        // no valid archive
    refused,        // valid, and not unpacked all the same
    wrongPlace,     // unpacked, but no template or theme where one is looked for
  };
  Fault fault = Fault::none;
  std::wstring message;  // as the user would see it
};

// Raises 512 when `work` does not go on.
ArchiveVerdict tryArchive(const std::wstring& address, DownloadTable::Kind kind,
                          InternetSession& session, Work& work);

}  // namespace author
