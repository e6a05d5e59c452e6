#include "host/CommandLine.h"

namespace standin {
namespace {

void setOption(CommandLine& result, const std::wstring& pair) {
  const auto equals = pair.find(L'=');
  if (equals == pair.npos || !result.options.set(pair.substr(0, equals), pair.substr(equals + 1)))
    result.error = L"There is no such option: " + pair;
}

// True when the word is a switch without a value.
bool setFlag(CommandLine& result, const std::wstring& word) {
  if (word == L"--stay")
    result.stay = true;
  else if (word == L"--no-addins")
    result.addIns = false;
  else if (word == L"--by-dispatch")
    result.byDispatch = true;
  else if (word == L"--show-pages")
    result.showPages = true;
  else
    return false;
  return true;
}

// True when the word is a switch that takes a value.
bool setValue(CommandLine& result, const std::wstring& word, const std::wstring& value) {
  if (word == L"--themes")
    result.themesFolder = value;
  else if (word == L"--version")
    result.options.version = value;
  else if (word == L"--script")
    result.script = value;
  else if (word == L"--pictures")
    result.pictures = value;
  else if (word == L"--option")
    setOption(result, value);
  else
    return false;
  return true;
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::wstring>& arguments) {
  CommandLine result;
  for (std::size_t i = 0; i < arguments.size() && result.error.empty(); ++i) {
    const std::wstring& word = arguments[i];
    if (setFlag(result, word)) continue;
    if (word.substr(0, 2) != L"--") {
      if (!result.webFolder.empty()) result.error = L"Only one web can be open: " + word;
      result.webFolder = word;
    } else if (!setValue(result, word, i + 1 < arguments.size() ? arguments[i + 1] : L"")) {
      result.error = L"There is no such switch: " + word;
    } else if (++i == arguments.size()) {
      result.error = word + L" needs a value.";
    }
  }
  return result;
}

}  // namespace standin
