#include "host/script/ScriptLine.h"
#include "tests/support/text_output.h"

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
