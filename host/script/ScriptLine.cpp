#include "host/script/ScriptLine.h"

namespace standin {
namespace {

struct Command {
  const wchar_t* name;
  std::size_t least;
  std::size_t most;
};

constexpr std::size_t any = 16;

const Command commands[] = {
    {L"menu", 1, any},
    {L"show menu", 1, any},
    {L"hide menu", 0, 0},
    {L"drop", 2, 2},
    {L"choose", 1, 1},
    {L"wait window", 1, 1},
    {L"wait box", 1, 1},
    {L"wait gone", 1, 1},
    {L"wait enabled", 2, 2},
    {L"wait bar", 2, 2},
    {L"wait main", 0, 0},
    {L"wait held", 0, 0},
    {L"wait tip", 1, 1},
    {L"hold", 1, 2},
    {L"release", 0, 0},
    {L"refuse", 2, 2},
    {L"allow", 0, 0},
    {L"run", 1, 1},
    {L"press", 2, 2},
    {L"follow", 2, 2},
    {L"post", 2, 2},
    {L"point", 0, 2},
    {L"select", 2, 2},
    {L"expand", 2, 2},
    {L"type", 3, 3},
    {L"check", 3, 3},
    {L"close", 1, 1},
    {L"picture", 1, 2},
    {L"tree", 0, 1},
    {L"cat", 1, 1},
    {L"print", 1, 1},
    {L"windows", 0, 0},
    {L"expect text", 2, 2},
    {L"expect row", 2, 2},
    {L"expect no row", 2, 2},
    {L"expect menu", 1, any},
    {L"expect no menu", 1, any},
    {L"expect file", 1, 1},
    {L"expect no file", 1, 1},
    {L"expect in file", 2, 2},
    {L"load", 1, 1},
    {L"unload", 1, 1},
    {L"timeout", 1, 1},
    {L"exit", 0, 0},
};

struct Token {
  std::wstring text;
  bool quoted;
};

std::wstring quotedText(std::wstring_view line, std::size_t& at) {
  std::wstring text;
  for (++at; at < line.size(); ++at) {
    if (line[at] != L'"') {
      text += line[at];
    } else if (at + 1 < line.size() && line[at + 1] == L'"') {
      text += line[++at];
    } else {
      ++at;
      return text;
    }
  }
  throw ScriptError(L"a text in double quotes has no end");
}

bool isBlank(wchar_t letter) { return letter == L' ' || letter == L'\t' || letter == L'\r'; }

std::vector<Token> tokensOf(std::wstring_view line) {
  std::vector<Token> tokens;
  std::size_t at = 0;
  while (at < line.size()) {
    if (isBlank(line[at])) {
      ++at;
    } else if (line[at] == L'#') {
      break;
    } else if (line[at] == L'"') {
      tokens.push_back({quotedText(line, at), true});
    } else {
      const std::size_t start = at;
      while (at < line.size() && !isBlank(line[at]) && line[at] != L'"') ++at;
      tokens.push_back({std::wstring(line.substr(start, at - start)), false});
    }
  }
  return tokens;
}

const Command* commandNamed(const std::wstring& name) {
  for (const Command& command : commands)
    if (name == command.name) return &command;
  return nullptr;
}

// The longest run of bare words that is a command.
const Command* commandOf(const std::vector<Token>& tokens, std::size_t& words) {
  const Command* found = nullptr;
  std::wstring name;
  for (std::size_t i = 0; i < tokens.size() && !tokens[i].quoted; ++i) {
    name += (i ? L" " : L"") + tokens[i].text;
    if (const Command* command = commandNamed(name)) {
      found = command;
      words = i + 1;
    }
  }
  return found;
}

}  // namespace

ScriptLine parseScriptLine(std::wstring_view line) {
  const auto tokens = tokensOf(line);
  if (tokens.empty()) return {};
  std::size_t words = 0;
  const Command* command = commandOf(tokens, words);
  if (!command) throw ScriptError(L"there is no such command");
  ScriptLine result{command->name, {}};
  for (std::size_t i = words; i < tokens.size(); ++i) result.arguments.push_back(tokens[i].text);
  if (result.arguments.size() < command->least || result.arguments.size() > command->most)
    throw ScriptError(L"\"" + result.command + L"\" has a wrong number of arguments");
  return result;
}

}  // namespace standin
