// Addresses as the system's engine reports them.
#pragma once

#include <string>

namespace standin::pages {

// How letters outside ASCII stand in the address of a file.
enum class Letters { asTheyAre, escaped };

// What the engine makes of an address or a path of this disk: files by their full, long names as
// file URLs with forward slashes and escapes, all else in the usual spelling of a URL.
std::wstring addressOf(const std::wstring& addressOrPath, Letters letters = Letters::asTheyAre);

}  // namespace standin::pages
