// Which files of a template folder a copy leaves out. Pure rules.
#pragma once

#include <string_view>

#include "common/description_file.h"
#include "common/letter_case.h"

// The host's own folders and what lies in them stay where they are: `path` is a full one.
inline bool isHostsOwn(std::wstring_view path) { return text::containsIgnoringCase(path, L"_vti"); }

// Wherever it lies in the template folder.
inline bool isDescriptionFile(std::wstring_view name) {
  return text::equalIgnoringCase(name, descriptionFileName);
}

// A file or folder whose full path is longer, in characters, ends the copy: the system's ANSI
// functions take no longer one.
inline constexpr std::size_t longestLocalPath = 259;
