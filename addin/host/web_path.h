// Rules about paths inside a web.
#pragma once

#include <optional>
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

// The text with what its escapes ("%C3%A4") stand for, read as UTF-8 or else in the ANSI code page;
// as it stands where they are neither.
std::wstring unescaped(std::wstring_view address);

// Whether an address has escapes in it.
enum class Spelling { unknown, plain, escaped };

struct Below {
  std::wstring path;  // as the address spells it, with the slash it begins with
  Spelling spelling = Spelling::unknown;
};

// What follows `root` in an address at or below it; nothing for another address. Letter case,
// slashes and escapes of either make no difference. Where the two spell the root differently, that
// tells how the address is spelled.
std::optional<Below> below(std::wstring_view address, std::wstring_view root);

}  // namespace webpath
