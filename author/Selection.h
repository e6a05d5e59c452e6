// The folders that a user names: a template's own, a theme's own, or one that holds such folders.
#pragma once

#include <string>
#include <vector>

#include "author/template_check.h"
#include "author/theme_check.h"

namespace author {

struct Selection {
  std::vector<FolderReport> templates;
  std::vector<ThemeReport> themes;

  Findings findings() const;  // of all of them
};

// Looks through each folder, in the order given. A folder that is named twice is looked through
// once. Raises an Error for one that is not there or cannot be read, 512 when `work` does not go
// on.
Selection lookThrough(const std::vector<std::wstring>& folders, Work& work);

}  // namespace author
