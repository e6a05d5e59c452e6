// What is wrong with the lines of a description file.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "author/Finding.h"
#include "webcopy/ThemeValue.h"

namespace author {

struct FolderReport;
using AddFinding = std::function<void(Finding)>;

// The theme that the copy applies to a template; nothing when the line is missing or ignored.
std::optional<ThemeValue> themeOf(const std::wstring& folder, const std::wstring& baseName);

// `report` with its tree and its templates.
void checkDescription(const FolderReport& report, const AddFinding& add);

}  // namespace author
