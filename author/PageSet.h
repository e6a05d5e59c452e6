// The pages that a catalogue is made with: those in the program, and an author's own in their place
// or beside them.
#pragma once

#include <map>
#include <string>

#include "author/Work.h"

namespace author {

// By path, with "\" between the parts. Pages (.htm) are read as the browser does, by
// what they say they are in; other files are taken as they are.
using PageSet = std::map<std::wstring, std::string>;

// The program's own.
PageSet ownPages();

// With those of a folder in the place of namesakes. Raises an Error.
PageSet pagesWith(const std::wstring& folder, KeepGoing& run);

// Writes the program's own into a folder that is not there yet, or empty. Raises an Error.
void writePages(const std::wstring& folder);

}  // namespace author
