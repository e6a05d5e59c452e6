// The characters of a page's bytes.
#pragma once

#include <string>
#include <string_view>

namespace html {

// By the page's own byte order mark or the "charset" in its first 1024 bytes; otherwise, or where
// that encoding is unknown here or not what the bytes are in, by the system's code page.
std::wstring decodePage(std::string_view bytes);

}  // namespace html
