// The choice of a menu entry's keyboard accelerator.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace accelerator {

// The character behind the first "&" that is no escaped ampersand; nothing when there is none. Ends
// early on purpose: an escape near the caption's end is not looked beyond.
std::wstring_view ofCaption(std::wstring_view caption);

// `caption` with "&" before its first character that is no blank and no accelerator of one of
// `captions`, letter case ignored; unchanged when there is no such character.
std::wstring add(const std::vector<std::wstring>& captions, const std::wstring& caption);

}  // namespace accelerator
