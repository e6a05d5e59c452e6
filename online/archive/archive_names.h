// Which names of an archive may be unpacked. Archives come from the network, so their names are
// taken as an attack until they are known to stay inside the folder they are unpacked into.
#pragma once

#include <string_view>

namespace archive {

enum class NameFault {
  none,
  climbsOut,  // a ".." in the path
  absolute,   // begins at the root of a drive or a share
  colon,      // a drive letter, or a stream of another file
  reserved,   // a device of the system ("CON", "lpt1.txt")
  trailing,   // a part ends in a point or a blank, which the system would drop
};

// `name` with "/" or "\" between its parts; a folder's name ends in one.
NameFault faultOf(std::wstring_view name);

// True when what an archive claims to hold is out of all proportion to its own size, which nothing
// but an attack is. Both in bytes. One that claims less than it holds passes, since the library
// unpacks what is there: at most about a thousand times the archive's size, which is as far as its
// compression goes. Entries that share their contents, to hold more than that, it refuses.
bool isBomb(double unpackedSize, double archiveSize);

}  // namespace archive
