#include "author/slug.h"

#include <utility>

#include "common/letter_case.h"
#include "common/safe_names.h"
#include "common/text.h"

namespace author {
namespace {

constexpr std::size_t longest = 60;

constexpr std::pair<wchar_t, const wchar_t*> spelled[] = {
    {L'\xE4', L"ae"}, {L'\xF6', L"oe"}, {L'\xFC', L"ue"}, {L'\xDF', L"ss"}, {L'\xE5', L"a"},
    {L'\xE0', L"a"},  {L'\xE1', L"a"},  {L'\xE2', L"a"},  {L'\xE3', L"a"},  {L'\xE6', L"ae"},
    {L'\xE7', L"c"},  {L'\xE8', L"e"},  {L'\xE9', L"e"},  {L'\xEA', L"e"},  {L'\xEB', L"e"},
    {L'\xEC', L"i"},  {L'\xED', L"i"},  {L'\xEE', L"i"},  {L'\xEF', L"i"},  {L'\xF1', L"n"},
    {L'\xF2', L"o"},  {L'\xF3', L"o"},  {L'\xF4', L"o"},  {L'\xF5', L"o"},  {L'\xF8', L"oe"},
    {L'\xF9', L"u"},  {L'\xFA', L"u"},  {L'\xFB', L"u"},
};

std::wstring spelling(wchar_t letter) {
  if ((letter >= L'a' && letter <= L'z') || (letter >= L'0' && letter <= L'9'))
    return std::wstring(1, letter);
  for (const auto& [special, plain] : spelled)
    if (special == letter) return plain;
  return {};
}

}  // namespace

std::wstring slugOf(std::wstring_view text) {
  std::wstring slug;
  for (const wchar_t letter : text::toLower(text)) {
    const std::wstring plain = spelling(letter);
    if (!plain.empty())
      slug += plain;
    else if (!slug.empty() && slug.back() != L'-')
      slug += L'-';
  }
  slug.resize(slug.size() < longest ? slug.size() : longest);
  while (!slug.empty() && slug.back() == L'-') slug.pop_back();
  if (slug.empty()) return L"item";
  const bool isDevice = names::faultOf(slug) != names::Fault::none;
  return isDevice ? L"item-" + slug : slug;
}

std::wstring freeSlug(std::wstring_view text, text::NameSet& taken) {
  const std::wstring slug = slugOf(text);
  std::wstring free = slug;
  for (int number = 2; !taken.insert(free); ++number)
    free = text::join({slug, L"-", text::decimal(number)});
  return free;
}

}  // namespace author
