// The template folder list: which local folders are scanned for templates.
//
// Machine-wide entries are the value names of HKEY_LOCAL_MACHINE\Software\Korvel Software\Quillet
// Viewer\DWT Folders, read only; per-user entries are the value names of the settings section
// "DWT Folders" (the data repeats the path).
#pragma once

#include <string>
#include <vector>

// Each entry is a tag letter and a folder path: "G" machine-wide, "U" per user. Machine-wide
// entries come first, each source in its own storage order; duplicates stay and nothing is
// normalised.
using TemplateFolderList = std::vector<std::wstring>;

inline constexpr wchar_t machineWideTag = L'G';
inline constexpr wchar_t perUserTag = L'U';

namespace modCommon {

// Fills `list` and returns how many entries it has. More than 32767 raise errors::overflow (6). A
// window shows the wait cursor around it.
short ReadTemplateFolderList(TemplateFolderList& list);

}  // namespace modCommon
