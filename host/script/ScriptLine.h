// One line of a script: a command of one or two bare words and its arguments.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace standin {

// What is wrong with a line, for people.
class ScriptError : public std::exception {
 public:
  explicit ScriptError(std::wstring text) : text_(std::move(text)) {}
  const std::wstring& text() const noexcept { return text_; }
  const char* what() const noexcept override { return "script error"; }

 private:
  std::wstring text_;
};

struct ScriptLine {
  std::wstring command;  // "wait window"; empty for a line without a command
  std::vector<std::wstring> arguments;
};

// Words are parted by blanks. An argument in double quotes may hold blanks; a doubled quote in it
// stands for one. "#" outside quotes begins a comment. Raises a ScriptError for a quote without an
// end, an unknown command or a wrong number of arguments.
ScriptLine parseScriptLine(std::wstring_view line);

}  // namespace standin
