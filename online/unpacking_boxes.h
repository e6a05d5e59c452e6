// The questions of unpacking as boxes.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "online/archive/UnpackingQuestions.h"

namespace online {

// Both are modal to `owner`.
UnpackingQuestions::Overwrite askToOverwrite(HWND owner, const std::wstring& name);
std::optional<std::wstring> askForPassword(HWND owner, int longest);

}  // namespace online
