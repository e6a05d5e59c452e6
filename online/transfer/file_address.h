// Which addresses are those of files, and what the files are called. Pure rules.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "online/transfer/modWINInetURL.h"

namespace online {

// True when an address, taken apart, may be the address of a file. One that could not be taken
// apart passes: the test of its scheme refuses it.
bool isFileAddress(const std::optional<modWINInetURL::CrackedUrl>& parts);

// The address's own file name, with "%20" as a blank; nothing when that cannot be a file's name on
// this system: it could lead out of the folder.
std::optional<std::wstring> fileNameOf(std::wstring_view address);

// "a.zip" becomes "a (2).zip". `path` may have folders before the name.
std::wstring numbered(std::wstring_view path, int number);

}  // namespace online
