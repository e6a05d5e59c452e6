// What the entries of an archive really hold, found out without writing any of it.
#pragma once

#include "common/KeepGoing.h"
#include "online/archive/Directory.h"

namespace archive {

// The first entry that does not hold exactly the bytes that it claims. Unpacking goes no farther
// beyond a claim than one piece of memory, 32 KB. What an encrypted entry holds nobody knows
// without its password: it is passed over.
Finding checkContents(ByteSource& source, const Directory& directory, KeepGoing& run);

}  // namespace archive
