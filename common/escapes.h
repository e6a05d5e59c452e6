// Escapes ("%20") in addresses.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace text {

// The text with its escapes read as bytes of that code page; nothing when they are no text in it.
std::optional<std::wstring> unescaped(std::wstring_view value, unsigned codePage);

}  // namespace text
