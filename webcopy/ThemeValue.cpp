#include "webcopy/ThemeValue.h"

#include <cstdint>

namespace {

constexpr std::size_t fewestFlagCharacters = 2;
constexpr std::size_t mostFlagCharacters = 4;

int digitValue(wchar_t character) {
  if (character >= L'0' && character <= L'9') return character - L'0';
  if (character >= L'A' && character <= L'F') return character - L'A' + 10;
  if (character >= L'a' && character <= L'f') return character - L'a' + 10;
  return -1;
}

bool isPassedOver(wchar_t character) {
  return character == L' ' || character == L'\t' || character == L'\n';
}

}  // namespace

long hexadecimalValue(std::wstring_view digits) {
  std::uint16_t value = 0;
  for (const wchar_t character : digits.substr(0, mostFlagCharacters)) {
    if (isPassedOver(character)) continue;
    const int digit = digitValue(character);
    if (digit < 0) break;
    value = static_cast<std::uint16_t>(value * 16 + digit);
  }
  return static_cast<std::int16_t>(value);
}

std::optional<ThemeValue> parseThemeValue(std::wstring_view value) {
  const std::size_t blank = value.find(L' ');
  if (blank == std::wstring_view::npos) return std::nullopt;
  const std::wstring_view flags = value.substr(blank + 1);
  if (flags.size() < fewestFlagCharacters) return std::nullopt;
  return ThemeValue{std::wstring(value.substr(0, blank)), hexadecimalValue(flags)};
}
