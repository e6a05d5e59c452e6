// The border to the interfaces that take ANSI text. Inside, all text is wide.
#pragma once

#include <string>
#include <string_view>

namespace text {

// In the system's ANSI code page. A character that the page lacks becomes its default character
// ("?"), which no file name can hold. No best-fit look-alikes are taken: a name that does not fit
// must not find another file.
std::string toAnsi(std::wstring_view value);

// True when toAnsi loses nothing.
bool fitsAnsi(std::wstring_view value);

std::wstring fromAnsi(std::string_view value);

}  // namespace text
