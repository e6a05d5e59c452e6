// An archive as a file, before the unzip library is handed it.
#pragma once

#include <string>

namespace archive {

// True when the file can be read and holds the record that closes an archive's directory, no
// farther from its end than the unzip library looks for it.
bool hasDirectory(const std::wstring& path);

}  // namespace archive
