// A dialog that asks for one line of text.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace forms {

// What was typed, at most `limit` characters; nothing when the user cancelled. Raises an Error
// (429) when there can be no window.
std::optional<std::wstring> askForText(const std::wstring& prompt, int limit, HWND owner);

}  // namespace forms
