// What the authors' program is told, and what it makes of it: its command line, names of files,
// pages with gaps, JSON.
#include "author/Json.h"
#include "author/command_line.h"
#include "author/page_template.h"
#include "author/slug.h"
#include "common/errors.h"
#include "common/safe_names.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

// Many titles that are all the same would take most of the time.
constexpr std::size_t mostTitles = 16;

void checkSlugs(const std::vector<std::wstring>& titles) {
  text::NameSet taken;
  std::vector<std::wstring> slugs;
  for (const std::wstring& title : titles) {
    if (slugs.size() == mostTitles) break;
    slugs.push_back(author::freeSlug(title, taken));
  }
  text::NameSet seen;
  for (const std::wstring& slug : slugs) {
    promise(!slug.empty() && slug.size() <= 80, "a name is not too long");
    promise(seen.insert(slug), "each has a name of its own");
    promise(slug.find_first_not_of(L"abcdefghijklmnopqrstuvwxyz0123456789-") == slug.npos,
            "a name has plain letters");
    promise(names::faultOf(slug + L".zip") == names::Fault::none, "every system takes a name");
    promise(author::slugOf(slug) == slug || slug.size() > 60, "a name of a name is the name");
  }
}

// Quotes, and what only they may enclose: neither breaks nor controls.
void checkJson(const std::wstring& value) {
  const std::wstring text = author::jsonText(value);
  promise(text.size() >= 2 && text.front() == L'"' && text.back() == L'"', "a text has quotes");
  bool isEscaped = false;
  for (const wchar_t letter : text.substr(1, text.size() - 2)) {
    promise(letter >= 0x20 && (letter != L'"' || isEscaped), "a text ends at its quote");
    isEscaped = letter == L'\\' && !isEscaped;
  }
  promise(!isEscaped, "the last quote is one");
}

void checkFilled(const std::wstring& page, const std::vector<std::wstring>& words) {
  author::Values values;
  for (const std::wstring& word : words) {
    values.texts[word] = word;
    values.lists[word].resize(2);
    values.lists[word][0].texts[L"a"] = word;
  }
  try {
    const std::wstring filled = author::fillIn(page, values);
    if (page.find(L"{{") == page.npos) promise(filled == page, "a page without gaps stays");
  } catch (const Error& error) {
    promise(!error.description().empty(), "a page that cannot be filled in says why");
  }
  const std::wstring escaped = author::escapedForPage(page);
  promise(escaped.find_first_of(L"<>\"") == escaped.npos, "a text is no tag");
}

const fuzz::Target target("author_words", [](fuzz::Input input) {
  const std::wstring page = input.text();
  const std::vector<std::wstring> words = input.texts();
  const author::Request request = author::parseCommandLine(words);
  promise(request.folders.size() + request.themes.size() <= words.size(), "a folder was named");
  checkSlugs(words);
  checkJson(page);
  checkFilled(page, words);
});

}  // namespace
