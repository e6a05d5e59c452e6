// The archive of a template's or theme's folder, as a catalogue offers it.
#pragma once

#include <cstdint>
#include <string>

#include "author/Work.h"
#include "author/disk.h"

namespace author {

struct Package {
  std::wstring path;
  std::size_t files = 0;  // empty folders counted
  std::uint64_t size = 0;
  std::wstring sha256;
};

// Packs a folder with its name in front. Files of the host's own and links to other places stay
// out. Our own unpacking has looked at the archive before it takes the place of what is at `path`;
// whatever fails before that is raised and leaves nothing behind. 512 when `work` does not go on.
Package packFolder(const std::wstring& folder, const FolderTree& tree, const std::wstring& path,
                   Work& work);

// A path as long as that of a folder for downloads can be, see longestPathBelow. What fits there
// fits everywhere.
std::wstring longestDownloadFolder();

}  // namespace author
