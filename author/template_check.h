// What the browser will list and show of one template folder, and what it, the copy and the host
// will pass over in silence.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "author/Finding.h"
#include "author/Work.h"
#include "author/disk.h"
#include "webcopy/ThemeValue.h"

namespace author {

// A template as the browser lists it. Paths are full ones.
struct ListedTemplate {
  std::wstring file;
  std::wstring title;
  std::wstring description;
  std::wstring preview;  // a picture or a page; the template's own page when there is no other
  bool isPicture = false;
  long width = 0;  // of the picture; 0 for a page and for a picture that cannot be shown
  long height = 0;
  std::wstring notes;
  std::optional<ThemeValue> theme;  // the one that the copy asks the host for
  std::vector<std::wstring> regions;
};

struct FolderReport {
  std::wstring folder;  // full path
  std::wstring shown;   // as the user wrote it
  FolderTree tree;
  std::vector<ListedTemplate> templates;  // in the order of their files
  Findings findings;                      // by file and line
};

// How long a path may be below the folder that templates are downloaded to, the template folder's
// name counted. That folder may take 89 of the 259 characters of a path: "C:\Documents and
// Settings\", a user's name of 20 letters, "\Application Data\Korvel Software\DWTs\".
inline constexpr std::size_t longestPathBelow = 170;

// `folder` is a full path. Raises an Error when it cannot be read, 512 when `work` does not go on.
FolderReport checkTemplateFolder(const std::wstring& folder, const std::wstring& shown, Work& work);

// True for a file that the copy takes along.
bool isCopied(const FolderReport& report, const FolderEntry& entry);

}  // namespace author
