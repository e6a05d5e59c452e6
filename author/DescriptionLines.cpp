#include "author/DescriptionLines.h"

#include "author/page_text.h"
#include "common/letter_case.h"
#include "common/text.h"

namespace author {
namespace {

void takeLine(DescriptionLines& lines, const std::wstring& raw, int number) {
  const std::wstring line = withoutSpace(raw);
  if (line.empty() || line.front() == L';') return;
  if (line.front() == L'[') {
    const auto end = line.rfind(L']');
    lines.sections.push_back(
        {withoutSpace(line.substr(1, end == line.npos ? end : end - 1)), number, {}});
    return;
  }
  const auto equals = line.find(L'=');
  if (equals == line.npos || lines.sections.empty()) {
    lines.strayLines.push_back(number);
    return;
  }
  lines.sections.back().keys.push_back(
      {withoutSpace(line.substr(0, equals)), number, line.find(L'\0', equals) != line.npos});
}

}  // namespace

const DescriptionKey* DescriptionSection::find(std::wstring_view key) const {
  for (const DescriptionKey& each : keys)
    if (text::equalIgnoringCase(each.name, key)) return &each;
  return nullptr;
}

const DescriptionSection* DescriptionLines::find(std::wstring_view section) const {
  for (const DescriptionSection& each : sections)
    if (text::equalIgnoringCase(each.name, section)) return &each;
  return nullptr;
}

int DescriptionLines::lineOf(std::wstring_view section, std::wstring_view key) const {
  const DescriptionSection* const found = find(section);
  const DescriptionKey* const entry = found ? found->find(key) : nullptr;
  return entry ? entry->line : 0;
}

DescriptionLines readDescription(std::wstring_view text) {
  DescriptionLines lines;
  int number = 0;
  for (const std::wstring& line : text::split(text, L'\n')) takeLine(lines, line, ++number);
  return lines;
}

}  // namespace author
