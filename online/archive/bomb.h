// Archives that are made to fill a disk.
#pragma once

namespace archive {

// True when what an archive claims to hold is out of all proportion to its own size, which nothing
// but an attack is. Both in bytes. One that claims less than it holds passes, since the library
// unpacks what is there: at most about a thousand times the archive's size, which is as far as its
// compression goes. Entries that share their contents, to hold more than that, it refuses.
bool isBomb(double unpackedSize, double archiveSize);

}  // namespace archive
