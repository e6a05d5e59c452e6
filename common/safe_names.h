// Which names from elsewhere stay inside the folder that they are put behind. They are taken as an
// attack until they are known to. Pure rules.
#pragma once

#include <string_view>

namespace names {

enum class Fault {
  none,
  climbsOut,  // a ".." in the path
  absolute,   // begins at the root of a drive or a share
  colon,      // a drive letter, or a stream of another file
  reserved,   // a device of the system ("CON", "lpt1.txt")
  trailing,   // a part ends in a point or a blank, which the system would drop
};

// `name` with "/" or "\" between its parts; a folder's name ends in one.
Fault faultOf(std::wstring_view name);

}  // namespace names
