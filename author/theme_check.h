// What the host and our unpacking will make of a theme's folder.
#pragma once

#include <string>

#include "author/Finding.h"
#include "author/Work.h"
#include "author/disk.h"

namespace author {

struct ThemeReport {
  std::wstring folder;  // full path
  std::wstring shown;   // as the user wrote it
  std::wstring name;    // what a template's description calls it: the folder's name
  std::wstring title;   // what people call it
  FolderTree tree;
  Findings findings;
};

// `folder` is a full path. Raises an Error when it cannot be read, 512 when `work` does not go on.
ThemeReport checkTheme(const std::wstring& folder, const std::wstring& shown, Work& work);

}  // namespace author
