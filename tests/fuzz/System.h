// What a run needs of the system. Natively models of it answer, on Windows it does itself.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

// Natively the code page of Windows programs: 1252, 932 or UTF-8. On Windows it is as it is.
void chooseCodePage(unsigned choice);

// A file that the system's reader of description files reads, until the next one; its full path.
std::wstring descriptionFile(std::string_view bytes);

}  // namespace fuzz
