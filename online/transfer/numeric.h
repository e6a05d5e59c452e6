// Which texts are numbers.
#pragma once

#include <string_view>

// As OLE Automation reads them for this user: blanks, signs, exponents and the user's own
// separators are allowed.
bool isNumeric(std::wstring_view value);
