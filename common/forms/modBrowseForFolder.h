// The system's own dialog for choosing a folder.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace modBrowseForFolder {

// What the user is told of a choice without a path.
inline constexpr wchar_t invalidPath[] =
    L"Invalid path. Please select a valid file system path to search for DWT's.";

// Starts at the folder `path` when there is one. True when the user chose: `path` is then the
// chosen folder, or empty for a choice that no file function could open (a virtual folder, or a
// name outside the code page). False leaves `path` as it was.
bool BrowseForFolder(HWND owner, std::wstring_view prompt, std::wstring& path);

}  // namespace modBrowseForFolder
