#include "html/TokenReader.h"

#include <algorithm>
#include <cwctype>

namespace html {
namespace {

struct Entity {
  std::wstring_view name;
  wchar_t letter;
};

constexpr Entity entities[] = {
    {L"amp", L'&'},        {L"lt", L'<'},          {L"gt", L'>'},        {L"quot", L'"'},
    {L"nbsp", L'\xA0'},    {L"copy", L'\xA9'},     {L"middot", L'\xB7'}, {L"auml", L'\xE4'},
    {L"ouml", L'\xF6'},    {L"uuml", L'\xFC'},     {L"szlig", L'\xDF'},  {L"ndash", L'\x2013'},
    {L"mdash", L'\x2014'}, {L"hellip", L'\x2026'}, {L"raquo", L'\xBB'},
};

bool isBlank(wchar_t letter) { return std::iswspace(static_cast<wint_t>(letter)) != 0; }

std::wstring lowered(std::wstring text) {
  for (wchar_t& letter : text)
    letter = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter)));
  return text;
}

// 0 for an entity that is not known.
wchar_t letterOf(std::wstring_view name) {
  if (name.size() > 1 && name[0] == L'#') {
    const bool hex = name[1] == L'x' || name[1] == L'X';
    const std::wstring digits(name.substr(hex ? 2 : 1));
    return static_cast<wchar_t>(std::wcstoul(digits.c_str(), nullptr, hex ? 16 : 10));
  }
  for (const Entity& entity : entities)
    if (entity.name == name) return entity.letter;
  return L'\0';
}

}  // namespace

std::wstring Token::attribute(std::wstring_view name) const {
  for (const auto& [key, value] : attributes)
    if (key == name) return value;
  return {};
}

std::wstring withoutEntities(std::wstring_view text) {
  constexpr std::size_t longest = 8;
  std::wstring result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::wstring_view ahead = text.substr(at, text[at] == L'&' ? longest + 1 : 1);
    const auto end = ahead.find(L';', 1);
    const wchar_t letter = end != ahead.npos ? letterOf(ahead.substr(1, end - 1)) : L'\0';
    result += letter ? letter : text[at];
    if (letter) at += end;
  }
  return result;
}

bool TokenReader::next(Token& token) {
  while (!atEnd() && skipMarkup()) {
  }
  if (atEnd()) return false;
  token = {};
  start_ = at_;
  if (letter() == L'<')
    readTag(token);
  else
    readText(token);
  return true;
}

bool TokenReader::skipMarkup() {
  const std::size_t start = at_;
  if (isAt(L"<!--"))
    skipTo(L"-->");
  else if (isAt(L"<!") || isAt(L"<?"))
    skipTo(L">");
  return at_ != start;
}

void TokenReader::skipTo(std::wstring_view end) {
  const auto found = html_.find(end, at_);
  at_ = found == html_.npos ? html_.size() : found + end.size();
}

void TokenReader::skipToClosing(const std::wstring& tag) {
  for (skipTo(L"</"); !atEnd(); skipTo(L"</"))
    if (lowered(std::wstring(html_.substr(at_, tag.size()))) == tag) return skipTo(L">");
}

void TokenReader::readText(Token& token) {
  const auto end = std::min(html_.find(L'<', at_), html_.size());
  token.text = withoutEntities(html_.substr(at_, end - at_));
  at_ = end;
}

void TokenReader::readTag(Token& token) {
  const std::size_t start = at_++;
  token.closing = !atEnd() && letter() == L'/';
  if (token.closing) ++at_;
  token.tag = lowered(readName());
  if (token.tag.empty()) {  // a bare "<"
    token = {};
    at_ = start + 1;
    token.text = L"<";
    return;
  }
  for (skipBlanks(); !atEnd() && letter() != L'>'; skipBlanks()) readAttribute(token);
  if (!atEnd()) ++at_;
  if (!token.closing && (token.tag == L"script" || token.tag == L"style")) {
    skipToClosing(token.tag);
  }
}

void TokenReader::readAttribute(Token& token) {
  std::wstring name = lowered(readName());
  if (name.empty()) {
    ++at_;
    return;
  }
  skipBlanks();
  std::wstring value;
  if (!atEnd() && letter() == L'=') {
    ++at_;
    skipBlanks();
    value = readValue();
  }
  token.attributes.emplace_back(std::move(name), std::move(value));
}

std::wstring TokenReader::readName() {
  const std::size_t start = at_;
  while (!atEnd() && (std::iswalnum(static_cast<wint_t>(letter())) || letter() == L'-')) ++at_;
  return std::wstring(html_.substr(start, at_ - start));
}

std::wstring TokenReader::readValue() {
  const wchar_t quote = !atEnd() && (letter() == L'"' || letter() == L'\'') ? letter() : L'\0';
  if (quote) ++at_;
  const std::size_t start = at_;
  while (!atEnd() && (quote ? letter() != quote : !isBlank(letter()) && letter() != L'>')) ++at_;
  const auto value = html_.substr(start, at_ - start);
  if (quote && !atEnd()) ++at_;
  return withoutEntities(value);
}

void TokenReader::skipBlanks() {
  while (!atEnd() && isBlank(letter())) ++at_;
}

}  // namespace html
