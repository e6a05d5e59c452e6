// What the two viewers are asked for on their command lines.
//
// The add-in quotes a folder that ends in a backslash, so the system's own rule for arguments, by
// which a backslash takes a quote's meaning away, does not hold here: a quote always ends what the
// one before it began.
#pragma once

#include <string>
#include <string_view>

namespace help {

// KorvelHelp.exe "<help folder>\" [/c<topic>]
struct HelpRequest {
  std::wstring folder;  // empty: none was given
  std::wstring topic;   // empty: the first one
};

// KorvelQuickHelp.exe "<file>" "<title>"
struct QuickHelpRequest {
  std::wstring file;
  std::wstring title;
};

// `line` is the whole command line, the program's own name included.
HelpRequest helpRequestOf(std::wstring_view line);
QuickHelpRequest quickHelpRequestOf(std::wstring_view line);

}  // namespace help
