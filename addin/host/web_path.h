// Rules about paths inside a web.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace webpath {

// The levels of a path: what stands between its "/" and "\", without empty parts.
std::vector<std::wstring> levels(std::wstring_view path);

// The levels joined by "/".
std::wstring normal(std::wstring_view path);

// True for "scheme:..." with a scheme of at least two letters, so that a drive is none.
bool isAbsolute(std::wstring_view path);

}  // namespace webpath
