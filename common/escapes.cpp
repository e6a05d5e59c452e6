#include "common/escapes.h"

#include <windows.h>

namespace text {
namespace {

int hexDigit(wchar_t c) noexcept {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

// The byte that is written as "%xx" at the place; -1 when there is none.
int escapedByte(std::wstring_view text, std::size_t place) noexcept {
  if (place + 2 >= text.size() || text[place] != L'%') return -1;
  const int high = hexDigit(text[place + 1]);
  const int low = hexDigit(text[place + 2]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

bool append(std::wstring& text, const std::string& bytes, UINT codePage) {
  if (bytes.empty()) return true;
  const int size = static_cast<int>(bytes.size());
  std::wstring letters(bytes.size(), L'\0');
  const int length =
      MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, letters.data(), size);
  text.append(letters, 0, static_cast<std::size_t>(length));
  return length > 0;
}

}  // namespace

std::optional<std::wstring> unescaped(std::wstring_view value, unsigned codePage) {
  std::wstring result;
  std::string bytes;
  for (std::size_t place = 0; place < value.size();) {
    const int byte = escapedByte(value, place);
    if (byte == 0) return std::nullopt;
    if (byte > 0) {
      bytes += static_cast<char>(byte);
      place += 3;
      continue;
    }
    if (!append(result, bytes, codePage)) return std::nullopt;
    bytes.clear();
    result += value[place++];
  }
  if (!append(result, bytes, codePage)) return std::nullopt;
  return result;
}

}  // namespace text
