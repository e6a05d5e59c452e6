#include "author/Json.h"

#include "common/text.h"

namespace author {

std::wstring jsonText(std::wstring_view value) {
  constexpr std::wstring_view digits = L"0123456789abcdef";
  std::wstring result = L"\"";
  for (const wchar_t letter : value) {
    if (letter == L'"' || letter == L'\\') {
      result += L'\\';
      result += letter;
    } else if (letter < 0x20 || (letter >= 0xD800 && letter < 0xE000) || letter == 0x7F) {
      // Halves of pairs, too: alone they could not be written in UTF-8.
      result += L"\\u";
      for (int shift = 12; shift >= 0; shift -= 4)
        result += digits[static_cast<std::size_t>(letter >> shift & 0xF)];
    } else {
      result += letter;
    }
  }
  return result + L"\"";
}

void Json::begin(std::wstring_view key) {
  if (level_ > 0) written_ += isFirst_ ? L"\n" : L",\n";
  isFirst_ = false;
  written_.append(2 * level_, L' ');
  if (!key.empty()) written_ += jsonText(key) + L": ";
}

Json& Json::open(std::wstring_view key, wchar_t bracket) {
  begin(key);
  written_ += bracket;
  ++level_;
  isFirst_ = true;
  return *this;
}

Json& Json::close(wchar_t bracket) {
  --level_;
  if (!isFirst_) {
    written_ += L'\n';
    written_.append(2 * level_, L' ');
  }
  isFirst_ = false;
  written_ += bracket;
  if (level_ == 0) written_ += L'\n';
  return *this;
}

Json& Json::text(std::wstring_view key, std::wstring_view value) {
  begin(key);
  written_ += jsonText(value);
  return *this;
}

Json& Json::number(std::wstring_view key, long long value) {
  begin(key);
  written_ += ::text::decimal(value);
  return *this;
}

Json& Json::truth(std::wstring_view key, bool value) {
  begin(key);
  written_ += value ? L"true" : L"false";
  return *this;
}

Json& Json::nothing(std::wstring_view key) {
  begin(key);
  written_ += L"null";
  return *this;
}

}  // namespace author
