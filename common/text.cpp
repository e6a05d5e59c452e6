#include "common/text.h"

namespace text {

std::wstring join(std::initializer_list<std::wstring_view> parts) {
  std::wstring result;
  for (const auto part : parts) result.append(part);
  return result;
}

std::wstring trimBlanks(std::wstring_view value) {
  const auto first = value.find_first_not_of(L' ');
  if (first == value.npos) return {};
  const auto last = value.find_last_not_of(L' ');
  return std::wstring(value.substr(first, last - first + 1));
}

std::wstring replaceAll(std::wstring_view value, std::wstring_view what, std::wstring_view with) {
  if (what.empty()) return std::wstring(value);
  std::wstring result;
  std::size_t done = 0;
  for (auto hit = value.find(what); hit != value.npos; hit = value.find(what, done)) {
    result.append(value.substr(done, hit - done)).append(with);
    done = hit + what.size();
  }
  return result.append(value.substr(done));
}

std::wstring_view cutAtNul(std::wstring_view value) { return value.substr(0, value.find(L'\0')); }

std::wstring_view afterLast(std::wstring_view value, wchar_t separator) {
  return value.substr(value.rfind(separator) + 1);
}

std::wstring_view beforeLast(std::wstring_view value, wchar_t separator) {
  return value.substr(0, value.rfind(separator));
}

std::vector<std::wstring> split(std::wstring_view value, wchar_t separator) {
  std::vector<std::wstring> pieces;
  for (;;) {
    const auto hit = value.find(separator);
    pieces.emplace_back(value.substr(0, hit));
    if (hit == value.npos) return pieces;
    value.remove_prefix(hit + 1);
  }
}

std::wstring withEnding(std::wstring_view value, wchar_t ending) {
  std::wstring result(value);
  if (result.empty() || result.back() != ending) result += ending;
  return result;
}

std::wstring decimal(long long value) {
  // As without a sign, which the smallest number needs.
  auto rest = static_cast<unsigned long long>(value);
  if (value < 0) rest = 0 - rest;
  std::wstring digits;
  do {
    digits.insert(digits.begin(), static_cast<wchar_t>(L'0' + rest % 10));
    rest /= 10;
  } while (rest != 0);
  return value < 0 ? L"-" + digits : digits;
}

std::wstring message(std::wstring_view pattern, std::wstring_view argument) {
  return replaceAll(replaceAll(pattern, L"|", L"\r\n"), L"%s", argument);
}

}  // namespace text
