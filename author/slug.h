// Names of files that every web server and every system takes: of a template's title or folder.
#pragma once

#include <string>
#include <string_view>

#include "common/NameSet.h"

namespace author {

// Small letters, digits and "-": "gruener-daumen" of "Grüner Daumen!". "item" of a text without any
// of them, and in front of the name of a device ("con").
std::wstring slugOf(std::wstring_view text);

// The same with a number behind it where the name is taken, and takes it.
std::wstring freeSlug(std::wstring_view text, text::NameSet& taken);

}  // namespace author
