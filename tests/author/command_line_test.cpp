#include "author/command_line.h"

#include "common/text.h"
#include "tests/support/text_output.h"

using author::parseCommandLine;
using author::Request;
using Command = Request::Command;

namespace {

using Words = std::vector<std::wstring>;

std::wstring faultOf(const Words& words) { return parseCommandLine(words).fault; }

}  // namespace

TEST_CASE("a check takes folders and an option anywhere") {
  const Request request = parseCommandLine({L"check", L"one", L"--json", L"two words"});
  CHECK(request.fault.empty());
  CHECK(request.command == Command::check);
  CHECK(request.folders == Words{L"one", L"two words"});
  CHECK(request.json);
}

TEST_CASE("a catalogue takes all of its options") {
  const Request request = parseCommandLine(
      {L"catalogue", L"one", L"-o", L"site", L"--url", L"http://a", L"--theme", L"t1", L"--theme",
       L"t2", L"--pages", L"p", L"--title", L"The Quay", L"--anyway"});
  CHECK(request.fault.empty());
  CHECK(request.command == Command::catalogue);
  CHECK(request.output == L"site");
  CHECK(request.address == L"http://a");
  CHECK(request.themes == Words{L"t1", L"t2"});
  CHECK(request.pages == L"p");
  CHECK(request.title == L"The Quay");
  CHECK(request.anyway);
}

TEST_CASE("a published catalogue is checked by its address alone") {
  const Request request = parseCommandLine({L"catalogue", L"--check", L"http://a/index.htm"});
  CHECK(request.fault.empty());
  CHECK(request.command == Command::checkCatalogue);
  CHECK(request.address == L"http://a/index.htm");
  CHECK(faultOf({L"catalogue", L"--check", L"http://a", L"folder"}) ==
        L"Beside --check ADDRESS nothing else is given.");
}

TEST_CASE("help and version win over what follows them") {
  CHECK(parseCommandLine({L"--help", L"nonsense"}).command == Command::help);
  CHECK(parseCommandLine({L"check", L"--version"}).command == Command::version);
  CHECK(parseCommandLine({L"check", L"/?"}).command == Command::help);
  CHECK(faultOf({L"--help", L"nonsense"}).empty());
  CHECK(faultOf({L"--version", L"-o"}).empty());
  CHECK(faultOf({L"--help"}).empty());
}

TEST_CASE("a folder may begin with a dash behind two of them") {
  CHECK(parseCommandLine({L"check", L"--", L"-o"}).folders == Words{L"-o"});
}

TEST_CASE("what is not understood is said") {
  CHECK(faultOf({}) == L"A command is missing.");
  CHECK(faultOf({L"chekc"}) == L"There is no command \"chekc\".");
  CHECK(faultOf({L"check"}) == L"A folder is missing.");
  CHECK(faultOf({L"check", L""}) == L"A folder's name is empty.");
  CHECK(faultOf({L"check", L"a", L"--fast"}) == L"There is no option --fast.");
  CHECK(faultOf({L"check", L"a", L"-o", L"b"}) ==
        L"The option -o does not belong to the command check.");
  CHECK(faultOf({L"-o", L"b"}) ==
        L"The option -o does not belong to the program; a command comes first.");
  CHECK(faultOf({L"pack", L"a"}) == L"The option -o is missing: where to write to.");
  CHECK(faultOf({L"pack", L"a", L"-o"}) == L"The option -o needs a value.");
  CHECK(faultOf({L"pack", L"a", L"-o", L"b", L"-o", L"c"}) == L"The option -o is given twice.");
  CHECK(faultOf({L"pack", L"a", L"b", L"-o", L"c"}) == L"One folder is packed at a time.");
  CHECK(faultOf({L"catalogue", L"a", L"-o", L"b"}) ==
        L"The option --url is missing: the address that the catalogue will have.");
  CHECK(faultOf({L"pages", L"a", L"-o", L"b"}) ==
        L"The command pages takes no folder but that of the option -o.");
}

TEST_CASE("No line of the help is broken by a console of 80 columns") {
  for (const std::wstring& line : text::split(author::usageText, L'\n')) {
    CAPTURE(line);
    CHECK(line.size() < 80);
  }
}
