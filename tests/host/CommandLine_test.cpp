#include "host/CommandLine.h"

#include "tests/support/text_output.h"

using standin::parseCommandLine;

TEST_CASE("the command line names web and themes and script") {
  const auto line =
      parseCommandLine({L"C:\\My Webs\\site", L"--themes", L"C:\\t", L"--script", L"-", L"--stay",
                        L"--no-addins", L"--by-dispatch", L"--show-pages"});
  CHECK(line.error.empty());
  CHECK(line.webFolder == L"C:\\My Webs\\site");
  CHECK(line.themesFolder == L"C:\\t");
  CHECK(line.script == L"-");
  CHECK(line.stay);
  CHECK_FALSE(line.addIns);
  CHECK(line.byDispatch);
  CHECK(line.showPages);
}

TEST_CASE("an empty command line opens no web and loads add-ins") {
  const auto line = parseCommandLine({});
  CHECK(line.error.empty());
  CHECK(line.webFolder.empty());
  CHECK(line.addIns);
  CHECK_FALSE(line.showPages);
}

TEST_CASE("the command line sets the host's options by name") {
  const auto line = parseCommandLine(
      {L"--option", L"addMakesLevels=1", L"--version", L"6.0", L"--option", L"webUrl=http://a"});
  CHECK(line.options.addMakesLevels);
  CHECK(line.options.version == L"6.0");
  CHECK(line.options.webUrl == L"http://a");
}

TEST_CASE("mistakes on the command line are named") {
  CHECK(parseCommandLine({L"--colour"}).error == L"There is no such switch: --colour");
  CHECK(parseCommandLine({L"--script"}).error == L"--script needs a value.");
  CHECK(parseCommandLine({L"a", L"b"}).error == L"Only one web can be open: b");
  CHECK(parseCommandLine({L"--option", L"colour=1"}).error == L"There is no such option: colour=1");
  CHECK(parseCommandLine({L"--option", L"toolbar"}).error == L"There is no such option: toolbar");
}
