// Comparisons that ignore letter case, by the user's locale.
#pragma once

#include <string>
#include <string_view>

namespace text {

std::wstring toLower(std::wstring_view value);
std::wstring toUpper(std::wstring_view value);

bool equalIgnoringCase(std::wstring_view left, std::wstring_view right);
bool containsIgnoringCase(std::wstring_view value, std::wstring_view what);
bool beginsIgnoringCase(std::wstring_view value, std::wstring_view beginning);

// `replaceAll` that finds `what` in any letter case.
std::wstring replaceIgnoringCase(std::wstring_view value, std::wstring_view what,
                                 std::wstring_view with);

}  // namespace text
