#include "host/pages/address.h"

#include <windows.h>
#include <shlwapi.h>

#include <algorithm>
#include <string_view>

namespace standin::pages {
namespace {

constexpr DWORD longestAddress = 8192;

bool isDrivePath(const std::wstring& text) { return text.size() > 2 && text[1] == L':'; }

bool isPath(const std::wstring& text) { return isDrivePath(text) || text.starts_with(L"\\\\"); }

std::wstring longPath(const std::wstring& path) {
  wchar_t full[longestAddress] = {};
  if (!GetFullPathNameW(path.c_str(), longestAddress, full, nullptr)) return path;
  wchar_t name[MAX_PATH] = {};
  const bool known = wcslen(full) < MAX_PATH && GetLongPathNameW(full, name, MAX_PATH);
  return known ? name : full;
}

void appendEscaped(std::wstring& url, std::wstring_view letter) {
  char bytes[8];
  const int count = WideCharToMultiByte(CP_UTF8, 0, letter.data(), static_cast<int>(letter.size()),
                                        bytes, sizeof bytes, nullptr, nullptr);
  for (int i = 0; i < count; ++i) {
    constexpr wchar_t digits[] = L"0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(bytes[i]);
    url += {L'%', digits[byte / 16], digits[byte % 16]};
  }
}

std::wstring fileUrl(const std::wstring& path, Letters letters) {
  std::wstring rest = path;
  std::replace(rest.begin(), rest.end(), L'\\', L'/');
  std::wstring url = isDrivePath(path) ? L"file:///" : L"file:";
  for (std::size_t place = 0; place < rest.size();) {
    const bool pair = rest[place] >= 0xD800 && rest[place] < 0xDC00 && place + 1 < rest.size();
    const std::wstring_view letter = std::wstring_view(rest).substr(place, pair ? 2 : 1);
    const bool unsafe = letter[0] <= L' ' || wcschr(L"%#\"<>{}|^[]`", letter[0]) != nullptr;
    if (unsafe || (letter[0] > 0x7E && letters == Letters::escaped))
      appendEscaped(url, letter);
    else
      url += letter;
    place += letter.size();
  }
  return url;
}

// The query stays as it is written.
std::wstring canonical(const std::wstring& url) {
  const std::size_t end = std::min(url.find_first_of(L"#?"), url.size());
  wchar_t text[longestAddress] = {};
  DWORD length = longestAddress;
  if (FAILED(UrlCanonicalizeW(url.substr(0, end).c_str(), text, &length, URL_ESCAPE_UNSAFE)))
    return url;
  return text + url.substr(end);
}

}  // namespace

std::wstring addressOf(const std::wstring& addressOrPath, Letters letters) {
  if (isPath(addressOrPath)) return fileUrl(longPath(addressOrPath), letters);
  if (!addressOrPath.starts_with(L"file:")) return canonical(addressOrPath);
  const std::size_t end = std::min(addressOrPath.find_first_of(L"#?"), addressOrPath.size());
  wchar_t path[longestAddress] = {};
  DWORD length = longestAddress;
  if (FAILED(PathCreateFromUrlW(addressOrPath.substr(0, end).c_str(), path, &length, 0)) ||
      !isPath(path))
    return addressOrPath;
  return fileUrl(longPath(path), letters) + addressOrPath.substr(end);
}

}  // namespace standin::pages
