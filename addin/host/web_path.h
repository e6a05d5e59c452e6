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

// The local paths that an address given by the host may stand for; none for one on a server.
// Whether a host escapes its addresses is not settled, so it is read in both ways.
std::vector<std::wstring> localPaths(const std::wstring& address);

}  // namespace webpath
