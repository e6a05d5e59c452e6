#include "host/CommandLine.h"
#include "host/script/ScriptLine.h"
#include "tests/support/text_output.h"

using standin::parseCommandLine;
using standin::parseScriptLine;
using standin::ScriptError;

namespace {

using Words = std::vector<std::wstring>;

std::wstring errorOf(const wchar_t* line) {
  try {
    parseScriptLine(line);
  } catch (const ScriptError& error) {
    return error.text();
  }
  return {};
}

}  // namespace

TEST_CASE("a script line is a command and its quoted arguments") {
  const auto line = parseScriptLine(L"menu \"Format\" \"Dynamic Web Template\"");
  CHECK(line.command == L"menu");
  CHECK(line.arguments == Words{L"Format", L"Dynamic Web Template"});
}

TEST_CASE("a command may have two or three words") {
  CHECK(parseScriptLine(L"wait window \"a\"").command == L"wait window");
  const auto line = parseScriptLine(L"  expect no row \"a\"\t\"b\"\r");
  CHECK(line.command == L"expect no row");
  CHECK(line.arguments == Words{L"a", L"b"});
}

TEST_CASE("bare words behind the command are arguments") {
  const auto line = parseScriptLine(L"type \"Box\" 2110 \"text\"");
  CHECK(line.command == L"type");
  CHECK(line.arguments == Words{L"Box", L"2110", L"text"});
  CHECK(parseScriptLine(L"timeout 5").arguments == Words{L"5"});
}

TEST_CASE("a call is held from the first on or after some that are let through") {
  CHECK(parseScriptLine(L"hold \"WebFiles.Add\"").arguments == Words{L"WebFiles.Add"});
  CHECK(parseScriptLine(L"hold \"WebFiles.Add\" 3").arguments == Words{L"WebFiles.Add", L"3"});
  CHECK(parseScriptLine(L"wait held").command == L"wait held");
  CHECK(parseScriptLine(L"release").command == L"release");
}

TEST_CASE("a doubled quote in a quoted text is one quote") {
  CHECK(parseScriptLine(L"print \"a \"\"b\"\" c\"").arguments == Words{L"a \"b\" c"});
  CHECK(parseScriptLine(L"print \"\"").arguments == Words{L""});
}

TEST_CASE("a backslash in a quoted text is nothing special") {
  CHECK(parseScriptLine(L"print \"C:\\new\\\"").arguments == Words{L"C:\\new\\"});
}

TEST_CASE("comments and empty lines are no commands") {
  CHECK(parseScriptLine(L"").command.empty());
  CHECK(parseScriptLine(L"   # menu \"a\"").command.empty());
  CHECK(parseScriptLine(L"print \"#1\" # the number").arguments == Words{L"#1"});
}

TEST_CASE("a quote without an end is an error") {
  CHECK(errorOf(L"print \"a") == L"a text in double quotes has no end");
}

TEST_CASE("an unknown command is an error") {
  CHECK(errorOf(L"jump \"a\"") == L"there is no such command");
  CHECK(errorOf(L"\"print\" \"a\"") == L"there is no such command");
  CHECK(errorOf(L"wait") == L"there is no such command");
}

TEST_CASE("a wrong number of arguments is an error") {
  CHECK(errorOf(L"press \"a\"") == L"\"press\" has a wrong number of arguments");
  CHECK(errorOf(L"exit now") == L"\"exit\" has a wrong number of arguments");
}

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
