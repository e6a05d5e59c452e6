// The template folder list: which local folders are scanned for templates.
//
// Machine-wide entries are the value names of HKEY_LOCAL_MACHINE\Software\Korvel Software\Quillet
// Viewer\DWT Folders, read only; per-user entries are the value names of the settings section
// "DWT Folders" (the data repeats the path).
#pragma once

#include <string>
#include <vector>

// The two lists, by the letters with which rows and menu entries are tagged.
enum class FolderList : wchar_t { machine = L'G', user = L'U' };

inline std::wstring letterOf(FolderList list) {
  return std::wstring(1, static_cast<wchar_t>(list));
}

struct ListedFolder {
  FolderList list;
  std::wstring path;
  bool operator==(const ListedFolder&) const = default;
};

// Machine-wide entries come first, each source in its own storage order; duplicates stay and
// nothing is normalised.
using TemplateFolderList = std::vector<ListedFolder>;

namespace modCommon {

// Fills `list` and returns how many entries it has. More than 32767 raise errors::overflow (6). A
// window shows the wait cursor around it.
short ReadTemplateFolderList(TemplateFolderList& list);

}  // namespace modCommon
