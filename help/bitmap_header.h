// What a BMP file says of its picture, read before anything is decoded. Pure rules.
#pragma once

#include <optional>
#include <string_view>

#include "common/PictureHeader.h"

namespace help {

// Nothing for a file that is no bitmap of a form that the system writes, or whose picture is in
// another format within.
std::optional<PictureHeader> readBitmapHeader(std::string_view file);

}  // namespace help
