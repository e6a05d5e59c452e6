// The border to the interfaces that take ANSI text. Inside, all text is wide.
#pragma once

#include <string>
#include <string_view>

namespace text {

// In the system's ANSI code page. A character that the page lacks becomes its default character
// ("?"), which no file name or key can hold: such a name fails to be found, it never finds another.
// No best-fit look-alikes are taken.
std::string toAnsi(std::wstring_view value);

// True when toAnsi loses nothing.
bool fitsAnsi(std::wstring_view value);

std::wstring fromAnsi(std::string_view value);

}  // namespace text
