#include "author/page_text.h"

#include <algorithm>
#include <iterator>

#include "common/escapes.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "html/TokenReader.h"

namespace author {
namespace {

constexpr std::wstring_view space = L" \t\r\n\f";
constexpr std::wstring_view fileAttributes[] = {L"href",     L"src",    L"background", L"lowsrc",
                                                L"longdesc", L"dynsrc", L"data"};
constexpr unsigned utf8 = 65001;
constexpr unsigned systemsOwn = 0;

bool isFileAttribute(std::wstring_view name) {
  return std::find(std::begin(fileAttributes), std::end(fileAttributes), name) !=
         std::end(fileAttributes);
}

void append(std::vector<Link>& links, std::wstring_view css, std::size_t offset) {
  for (const Link& each : linksOfStyleSheet(css)) links.push_back({each.address, offset});
}

// "5; url=next.htm"
std::wstring refreshAddress(const html::Token& token) {
  constexpr std::wstring_view mark = L"url=";
  if (!text::equalIgnoringCase(token.attribute(L"http-equiv"), L"refresh")) return {};
  const std::wstring content = token.attribute(L"content");
  const auto at = text::toLower(content).find(mark);
  return at == content.npos ? std::wstring() : withoutSpace(content.substr(at + mark.size()));
}

void takeTag(std::vector<Link>& links, const html::Token& token, std::size_t offset) {
  // Where a page's addresses start from says nothing of a file.
  if (token.tag == L"base") return;
  for (const auto& [name, value] : token.attributes) {
    if (isFileAttribute(name) && !value.empty()) links.push_back({withoutSpace(value), offset});
    if (name == L"style") append(links, value, offset);
  }
  if (token.tag == L"meta")
    if (const std::wstring address = refreshAddress(token); !address.empty())
      links.push_back({address, offset});
}

// <!--webbot bot="Include" u-include="head.htm" -->
void takeComponent(std::vector<Link>& links, const Comment& comment) {
  const std::wstring words = withoutSpace(comment.text);
  if (!text::beginsIgnoringCase(words, L"webbot")) return;
  const std::wstring asTag = L"<" + words + L">";
  html::TokenReader reader(asTag);
  html::Token token;
  if (!reader.next(token)) return;
  for (const auto& [name, value] : token.attributes)
    if (name.starts_with(L"u-") && !value.empty()) links.push_back({value, comment.offset});
}

// Comments become blanks, so that offsets stay what they are.
std::wstring withoutCssComments(std::wstring_view css) {
  std::wstring result(css);
  for (auto from = result.find(L"/*"); from != result.npos; from = result.find(L"/*", from)) {
    auto end = result.find(L"*/", from + 2);
    end = end == result.npos ? result.size() : end + 2;
    std::replace_if(
        result.begin() + static_cast<std::ptrdiff_t>(from),
        result.begin() + static_cast<std::ptrdiff_t>(end),
        [](wchar_t letter) { return letter != L'\n'; }, L' ');
  }
  return result;
}

std::wstring unquoted(std::wstring_view text) {
  std::wstring result = withoutSpace(text);
  if (result.size() >= 2 && (result.front() == L'"' || result.front() == L'\'') &&
      result.back() == result.front())
    result = result.substr(1, result.size() - 2);
  return result;
}

bool isLetter(wchar_t letter) {
  return (letter >= L'a' && letter <= L'z') || (letter >= L'A' && letter <= L'Z');
}

// How many characters the scheme in front has, its colon included; 0 without one.
std::size_t schemeLength(std::wstring_view address) {
  std::size_t at = 0;
  while (at < address.size() &&
         (isLetter(address[at]) ||
          (at > 0 &&
           (std::wstring_view(L"0123456789+-.").find(address[at]) != std::wstring_view::npos))))
    ++at;
  return at > 0 && at < address.size() && address[at] == L':' ? at + 1 : 0;
}

std::wstring plainPath(std::wstring_view address) {
  const std::wstring path(address.substr(0, address.find_first_of(L"?#")));
  auto plain = text::unescaped(path, utf8);
  if (!plain) plain = text::unescaped(path, systemsOwn);
  return text::replaceAll(plain.value_or(path), L"/", L"\\");
}

}  // namespace

std::wstring withoutSpace(std::wstring_view text) {
  const auto first = text.find_first_not_of(space);
  if (first == text.npos) return {};
  return std::wstring(text.substr(first, text.find_last_not_of(space) - first + 1));
}

int lineOf(std::wstring_view text, std::size_t offset) {
  offset = std::min(offset, text.size());
  return 1 + static_cast<int>(std::count(
                 text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), L'\n'));
}

LineNumbers::LineNumbers(std::wstring_view text) {
  for (auto at = text.find(L'\n'); at != text.npos; at = text.find(L'\n', at + 1))
    ends_.push_back(at);
}

int LineNumbers::of(std::size_t offset) const {
  return 1 + static_cast<int>(std::lower_bound(ends_.begin(), ends_.end(), offset) - ends_.begin());
}

std::vector<Comment> commentsOf(std::wstring_view html) {
  constexpr std::wstring_view open = L"<!--";
  constexpr std::wstring_view close = L"-->";
  std::vector<Comment> comments;
  for (auto from = html.find(open); from != html.npos;) {
    const auto text = from + open.size();
    const auto end = std::min(html.find(close, text), html.size());
    comments.push_back({std::wstring(html.substr(text, end - text)), from});
    from = html.find(open, end);
  }
  return comments;
}

std::vector<Link> linksOfPage(std::wstring_view html) {
  std::vector<Link> links;
  html::TokenReader reader(html);
  for (html::Token token; reader.next(token);) {
    if (token.tag.empty() || token.closing) continue;
    takeTag(links, token, reader.start());
    if (token.tag == L"style")
      for (const Link& each :
           linksOfStyleSheet(html.substr(reader.start(), reader.end() - reader.start())))
        links.push_back({each.address, reader.start() + each.offset});
  }
  for (const Comment& comment : commentsOf(html)) takeComponent(links, comment);
  return links;
}

std::vector<Link> linksOfStyleSheet(std::wstring_view css) {
  const std::wstring plain = withoutCssComments(css);
  const std::wstring low = text::toLower(plain);
  std::vector<Link> links;
  const auto take = [&](std::size_t from, std::size_t end) {
    const std::wstring address = unquoted(std::wstring_view(plain).substr(from, end - from));
    if (!address.empty()) links.push_back({address, from});
  };
  // What does not end once does not end later either: the rest is looked through no more.
  constexpr std::wstring_view url = L"url(";
  for (auto at = low.find(url); at != low.npos; at = low.find(url, at + 1)) {
    const auto end = low.find(L')', at);
    take(at + url.size(), std::min(end, low.size()));
    if (end == low.npos) break;
  }
  constexpr std::wstring_view import = L"@import";
  for (auto at = low.find(import); at != low.npos; at = low.find(import, at + 1)) {
    const auto quote = low.find_first_not_of(space, at + import.size());
    if (quote == low.npos || (low[quote] != L'"' && low[quote] != L'\'')) continue;
    const auto end = low.find(low[quote], quote + 1);
    take(quote + 1, std::min(end, low.size()));
    if (end == low.npos) break;
  }
  std::sort(links.begin(), links.end(),
            [](const Link& left, const Link& right) { return left.offset < right.offset; });
  return links;
}

std::wstring scriptsOf(std::wstring_view html) {
  std::wstring scripts;
  html::TokenReader reader(html);
  for (html::Token token; reader.next(token);) {
    if (token.tag == L"script" && !token.closing)
      scripts += html.substr(reader.start(), reader.end() - reader.start());
    for (const auto& [name, value] : token.attributes)
      if (name.starts_with(L"on")) scripts += value + L"\n";
  }
  return scripts;
}

Target targetOf(std::wstring_view address, std::wstring_view page) {
  using Kind = Target::Kind;
  if (address.empty() || address.front() == L'#' || address.front() == L'?') return {};
  if (const std::size_t scheme = schemeLength(address); scheme > 0) {
    const bool isLocal = scheme == 2 || text::beginsIgnoringCase(address, L"file:");
    return {isLocal ? Kind::localDisk : Kind::elsewhere, {}, false};
  }
  if (address.starts_with(L"\\\\")) return {Kind::localDisk, {}, false};
  if (address.starts_with(L"//")) return {};
  const std::wstring path = plainPath(address);
  if (path.starts_with(L'\\')) return {Kind::outside, {}, false};
  std::vector<std::wstring> parts = text::split(page, L'\\');
  parts.pop_back();
  bool isFolder = false;
  for (const std::wstring& part : text::split(path, L'\\')) {
    isFolder = part.empty() || part == L"." || part == L"..";
    if (part == L".." && parts.empty()) return {Kind::outside, {}, false};
    if (part == L"..")
      parts.pop_back();
    else if (!isFolder)
      parts.push_back(part);
  }
  Target target{Kind::inFolder, {}, isFolder};
  for (const std::wstring& part : parts) target.path += (target.path.empty() ? L"" : L"\\") + part;
  return target;
}

}  // namespace author
