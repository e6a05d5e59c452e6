#include "help/command_line.h"

#include "common/letter_case.h"
#include "common/text.h"

namespace help {
namespace {

constexpr std::wstring_view blanks = L" \t";

void skipBlanks(std::wstring_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
}

// What stands in quotes, or up to the next blank; taken off the line.
std::wstring nextWord(std::wstring_view& line) {
  skipBlanks(line);
  const bool inQuotes = line.starts_with(L'"');
  if (inQuotes) line.remove_prefix(1);
  const auto end = std::min(inQuotes ? line.find(L'"') : line.find_first_of(blanks), line.size());
  std::wstring word(line.substr(0, end));
  line.remove_prefix(std::min(end + (inQuotes ? 1 : 0), line.size()));
  return word;
}

}  // namespace

HelpRequest helpRequestOf(std::wstring_view line) {
  nextWord(line);
  HelpRequest request;
  request.folder = nextWord(line);
  skipBlanks(line);
  if (text::beginsIgnoringCase(line, L"/c")) request.topic = text::trimBlanks(line.substr(2));
  return request;
}

QuickHelpRequest quickHelpRequestOf(std::wstring_view line) {
  nextWord(line);
  QuickHelpRequest request;
  request.file = nextWord(line);
  request.title = nextWord(line);
  return request;
}

}  // namespace help
