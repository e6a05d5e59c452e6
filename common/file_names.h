// Names of files. Pure rules.
#pragma once

#include <string_view>

namespace modCommon {

// True when the name, trimmed of blanks, is not empty and holds none of \ / : * ? < > | and the
// double quote.
bool IsValidFileName(std::wstring_view name);

}  // namespace modCommon
