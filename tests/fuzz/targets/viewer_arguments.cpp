// The command lines of the two help viewers.
#include "help/command_line.h"

#include "common/text.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

bool isPartOf(const std::wstring& part, const std::wstring& line) {
  return line.find(part) != line.npos;
}

const fuzz::Target target("viewer_arguments", [](fuzz::Input input) {
  const std::wstring line = input.text();
  const help::HelpRequest request = help::helpRequestOf(line);
  promise(isPartOf(request.folder, line) && isPartOf(request.topic, line),
          "a request is in its line");
  const help::QuickHelpRequest quick = help::quickHelpRequestOf(line);
  promise(isPartOf(quick.file, line) && isPartOf(quick.title, line), "a request is in its line");

  // As the add-in asks.
  const std::wstring folder = text::replaceAll(input.text(), L"\"", L"");
  const std::wstring topic = text::trimBlanks(input.text());
  const help::HelpRequest own =
      help::helpRequestOf(L"\"C:\\x\\KorvelHelp.exe\" \"" + folder + L"\\\" /c" + topic);
  promise(own.folder == folder + L"\\" && own.topic == topic,
          "what the add-in asks for comes over");
  const std::wstring title = text::replaceAll(topic, L"\"", L"");
  const help::QuickHelpRequest ownQuick =
      help::quickHelpRequestOf(L"viewer \"" + folder + L"\" \"" + title + L"\"");
  promise(ownQuick.file == folder && ownQuick.title == title,
          "what the add-in asks for comes over");
});

}  // namespace
