#include "help/references.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "common/letter_case.h"
#include "common/safe_names.h"
#include "common/text.h"

namespace help {
namespace {

constexpr std::wstring_view outsideSchemes[] = {L"http://", L"https://", L"mailto:"};

std::string toUtf8(std::wstring_view value) {
  std::string bytes(3 * value.size(), '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, value.data(), static_cast<int>(value.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

std::wstring fromUtf8(std::string_view bytes) {
  std::wstring value(bytes.size(), L'\0');
  value.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), value.data(),
                          static_cast<int>(value.size()))));
  return value;
}

int digitOf(char letter) {
  constexpr std::string_view digits = "0123456789abcdef";
  const auto lower =
      static_cast<char>(letter >= 'A' && letter <= 'F' ? letter - 'A' + 'a' : letter);
  return static_cast<int>(digits.find(lower));  // -1: none
}

// A percent sign and two digits stand for a byte of UTF-8, as in any address.
std::wstring unescaped(std::wstring_view address) {
  const std::string escaped = toUtf8(address);
  std::string bytes;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    const bool mark = escaped[i] == '%' && i + 2 < escaped.size();
    const int high = mark ? digitOf(escaped[i + 1]) : -1;
    const int low = mark ? digitOf(escaped[i + 2]) : -1;
    const bool isByte = high >= 0 && low >= 0;
    bytes += isByte ? static_cast<char>(high << 4 | low) : escaped[i];
    if (isByte) i += 2;
  }
  return fromUtf8(bytes);
}

}  // namespace

std::optional<std::wstring> fileBeside(const std::wstring& file, const std::wstring& address) {
  const std::wstring path =
      text::replaceAll(unescaped(address.substr(0, address.find_first_of(L"?#"))), L"/", L"\\");
  if (path.empty() || path.find_first_of(L"*?\"<>|") != path.npos ||
      path.find(L'\0') != path.npos || names::faultOf(path) != names::Fault::none)
    return {};
  return std::wstring(text::beforeLast(file, L'\\')) + L"\\" + path;
}

bool isOutside(const std::wstring& address) {
  return std::ranges::any_of(outsideSchemes, [&](std::wstring_view scheme) {
    return text::beginsIgnoringCase(address, scheme);
  });
}

}  // namespace help
