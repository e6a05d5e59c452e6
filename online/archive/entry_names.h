// The names of an archive's entries: how they are to be read, and what the unzip library makes of
// them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "online/archive/CodePages.h"
#include "online/archive/Directory.h"

namespace archive {

// Nothing for what is no UTF-8: overlong forms, halves of pairs and numbers beyond Unicode are
// none.
std::optional<std::wstring> fromUtf8(std::string_view bytes);

// The name that the library goes by; nothing when it is said to be in UTF-8 and is not.
std::optional<std::wstring> nameOf(const Entry& entry, const CodePages& pages);

// What the library makes of a name: the path below its folder, with "/" between the parts.
// Characters that no file name has become "_", a version number of another system is dropped
// (";1"), and so are parts that mean "here"; a name that is nothing but those leaves nothing.
struct Place {
  std::wstring path;
  bool isFolder = false;
};
Place placeOf(std::wstring_view name, const Entry& entry);

// The first entry whose name is not to be unpacked; which ones are folders is noted. `longestPath`
// is how many bytes the path below the folder may have. `Fault::stopped` when `run` does not go on.
Finding checkNames(Directory& directory, const CodePages& pages, std::size_t longestPath,
                   KeepGoing& run);

}  // namespace archive
