// Rules about paths in a web's folder tree and about names of new folders. They ask nothing of the
// system or the host.
//
// A full path is a path in the tree: the root's text, then the folders below it, with "/" between
// them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace webfolder {

// The text of the tree's root: the web's address after its last "/".
std::wstring rootName(std::wstring_view address);

// The path to walk for an initial selection. One that begins with the web's URL, in any letter
// case, loses all of the URL but its last character; where its escapes differ, all of it.
std::wstring initialPath(std::wstring_view path, std::wstring_view webUrl);

// The folders to descend into, from the root on. What stands before the first "/" is none; "/" and
// a path without "/" lead nowhere.
std::vector<std::wstring> foldersOf(std::wstring_view path);

// The part of a full path below the root; a path without "/" stays as it is.
std::wstring belowRoot(std::wstring_view fullPath);

// What the user's choice means to the caller: the path below the root, empty for the root itself;
// when `absolute`, the web's URL, "/" and that path.
std::wstring chosenPath(std::wstring_view fullPath, std::wstring_view webUrl, bool absolute);

// How a folder reads to the user: its URL without the web's, "<web root>" for the root.
std::wstring displayPath(std::wstring_view folderUrl, std::wstring_view webUrl);

// True when one of `names` is `name`, ignoring letter case.
bool contains(const std::vector<std::wstring>& names, std::wstring_view name);

// "New_Folder", or the first of New_Folder1, New_Folder2, ... that none of `names` is. The counter
// is a 16-bit number: raises an Error (6) past its end.
std::wstring freeFolderName(const std::vector<std::wstring>& names);

}  // namespace webfolder
