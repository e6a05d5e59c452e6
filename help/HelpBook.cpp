#include "help/HelpBook.h"

#include <algorithm>

#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"
#include "help/local_page.h"
#include "html/TokenReader.h"

namespace help {
namespace {

constexpr wchar_t contentsFile[] = L"contents.txt";
constexpr std::size_t blanksPerLevel = 2;

std::optional<Topic> topicIn(std::wstring_view line) {
  const auto mark = line.find(L'=');
  const auto begin = line.find_first_not_of(L' ');
  if (mark == line.npos || begin == mark) return {};
  Topic topic;
  topic.name = text::trimBlanks(line.substr(0, mark));
  topic.title = text::trimBlanks(line.substr(mark + 1));
  topic.level = static_cast<int>(begin / blanksPerLevel);
  return topic;
}

std::wstring textOf(const std::wstring& file) {
  std::wstring text;
  const std::wstring html = readPage(file).text;
  html::TokenReader reader(html);
  html::Token token;
  while (reader.next(token)) text += token.tag.empty() ? token.text : L" ";
  return text;
}

std::optional<std::size_t> firstOf(const std::vector<Topic>& topics, const auto& isWanted) {
  const auto found = std::ranges::find_if(topics, isWanted);
  if (found == topics.end()) return {};
  return static_cast<std::size_t>(found - topics.begin());
}

bool holdsAll(std::wstring_view text, const std::vector<std::wstring>& words) {
  return std::ranges::all_of(
      words, [&](const std::wstring& word) { return text::containsIgnoringCase(text, word); });
}

}  // namespace

HelpBook::HelpBook(const std::wstring& folder) : folder_(modCommon::withBackslash(folder)) {
  const std::wstring contents = readPage(folder_ + contentsFile).text;
  for (const std::wstring& line : text::split(text::replaceAll(contents, L"\r", L""), L'\n'))
    if (auto topic = topicIn(line)) topics_.push_back(std::move(*topic));
}

std::optional<std::size_t> HelpBook::find(std::wstring_view name) const {
  return firstOf(topics_,
                 [&](const Topic& each) { return text::equalIgnoringCase(each.name, name); });
}

std::wstring HelpBook::fileOf(const Topic& topic) const { return folder_ + topic.name + L".htm"; }

std::optional<std::size_t> HelpBook::topicOfFile(std::wstring_view file) const {
  return firstOf(topics_,
                 [&](const Topic& each) { return text::equalIgnoringCase(fileOf(each), file); });
}

std::vector<std::size_t> HelpBook::search(std::wstring_view words) const {
  std::vector<std::wstring> wanted = text::split(words, L' ');
  std::erase(wanted, L"");
  std::vector<std::size_t> inTitles;
  std::vector<std::size_t> inTexts;
  for (std::size_t i = 0; !wanted.empty() && i < topics_.size(); ++i) {
    if (holdsAll(topics_[i].title, wanted))
      inTitles.push_back(i);
    else if (holdsAll(topics_[i].title + L" " + textOf(fileOf(topics_[i])), wanted))
      inTexts.push_back(i);
  }
  inTitles.insert(inTitles.end(), inTexts.begin(), inTexts.end());
  return inTitles;
}

}  // namespace help
