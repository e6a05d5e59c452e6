// Rules about text that ask nothing of the system.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace text {

// All parts, one behind the other. Costs the caller a fraction of the code that a chain of "+"
// does.
std::wstring join(std::initializer_list<std::wstring_view> parts);

// Without the blanks (U+0020, nothing else) at both ends.
std::wstring trimBlanks(std::wstring_view value);

// Every occurrence of `what` becomes `with`; the replaced text is not looked at again. An empty
// `what` occurs nowhere.
std::wstring replaceAll(std::wstring_view value, std::wstring_view what, std::wstring_view with);

// What stands before the first NUL character.
std::wstring_view cutAtNul(std::wstring_view value);

// What follows the last `separator`; the whole text when there is none.
std::wstring_view afterLast(std::wstring_view value, wchar_t separator);

// What stands before the last `separator`; the whole text when there is none.
std::wstring_view beforeLast(std::wstring_view value, wchar_t separator);

// The pieces between separators: always one more than there are separators, empty ones kept.
std::vector<std::wstring> split(std::wstring_view value, wchar_t separator);

// `value`, ending in exactly the `ending` it may already have.
std::wstring withEnding(std::wstring_view value, wchar_t ending);

// A whole number as people write it: "-12". The library's own way brings a tenth of the module's
// size along, for floating-point numbers and locales.
std::wstring decimal(long long value);

// A message as the program keeps it: "|" stands for a line break and "%s" for `argument`. The
// breaks are made first, so a "|" in the argument stays what it is.
std::wstring message(std::wstring_view pattern, std::wstring_view argument);

}  // namespace text
