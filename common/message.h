// Message boxes as the program shows them.
#pragma once

#include <windows.h>

#include <string_view>

#include "common/module.h"

// The system's own flag words (16 critical, 32 question, 48 exclamation, 64 information; 0 OK,
// 3 Yes/No/Cancel, 4 Yes/No) and answers (IDOK, IDYES, ...). Modal to `owner`; the system's own
// box, with visual styles. Never fails: a box that cannot be shown answers 0, and its text stands
// in the log.
int showMessage(HWND owner, std::wstring_view text, UINT style,
                std::wstring_view title = module::title) noexcept;
