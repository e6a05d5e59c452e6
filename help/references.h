// What an address within a page means. Pages may come from anywhere, so what they refer to is taken
// only from their own folder.
#pragma once

#include <optional>
#include <string>

namespace help {

// The file that an address within the page `file` means: one in the page's folder or below it.
// Nothing for an address of another kind or place.
std::optional<std::wstring> fileBeside(const std::wstring& file, const std::wstring& address);

// An address that may be handed to the user's own web browser or mail program.
bool isOutside(const std::wstring& address);

}  // namespace help
