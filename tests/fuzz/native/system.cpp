// Models of the rest that the rules ask of the system. They are as strict as the system is known to
// be, and where it may answer anything they answer what is worst.
#include <windows.h>
#include <shlwapi.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/FileIdentity.h"
#include "online/transfer/numeric.h"
#include "tests/fuzz/System.h"

namespace {

std::string description;

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isSame(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char one, char other) { return lower(one) == lower(other); });
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string_view withoutQuotes(std::string_view value) {
  const bool isQuoted = value.size() > 1 && value.front() == value.back() &&
                        (value.front() == '"' || value.front() == '\'');
  return isQuoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view valueOf(std::string_view section, std::string_view key,
                         std::string_view fallback) {
  bool isInside = false;
  std::string_view rest = description;
  while (!rest.empty()) {
    const auto end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = trimmed(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.starts_with('[')) {
      isInside = isSame(line.substr(1, std::min(line.find(']'), line.size()) - 1), section);
      continue;
    }
    const auto equals = line.find('=');
    if (isInside && equals != line.npos && isSame(trimmed(line.substr(0, equals)), key))
      return withoutQuotes(trimmed(line.substr(equals + 1)));
  }
  return fallback;
}

// The parts of a path, those that lead back taken into account.
std::vector<std::wstring> partsOf(std::wstring_view path, std::size_t fewest) {
  std::vector<std::wstring> parts;
  while (!path.empty()) {
    const auto end = std::min(path.find_first_of(L"\\/"), path.size());
    const std::wstring part(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
    if (part == L"..") {
      if (parts.size() > fewest) parts.pop_back();
    } else if (!part.empty() && part != L".") {
      parts.push_back(part);
    }
  }
  return parts;
}

std::wstring fullPath(std::wstring_view path) {
  const bool onShare = path.size() > 1 && (path[0] == L'\\' || path[0] == L'/') &&
                       (path[1] == L'\\' || path[1] == L'/');
  const bool onDrive = !onShare && path.size() > 1 && path[1] == L':';
  std::wstring full = onShare ? L"\\" : onDrive ? std::wstring(path.substr(0, 2)) : L"C:";
  if (onDrive) path.remove_prefix(2);
  for (const std::wstring& part : partsOf(path, onShare ? 2 : 0)) full.append(L"\\").append(part);
  return full.size() == 2 ? full + L"\\" : full;
}

DWORD handOut(const std::wstring& made, wchar_t* to, DWORD size) {
  if (made.size() + 1 > size) return static_cast<DWORD>(made.size() + 1);
  to[made.copy(to, made.size())] = L'\0';
  return static_cast<DWORD>(made.size());
}

}  // namespace

DWORD GetLastError() { return ERROR_FILE_NOT_FOUND; }
UINT SetErrorMode(UINT) { return 0; }
DWORD FormatMessageW(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, void*) { return 0; }

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* fallback,
                               char* value, DWORD size, const char*) {
  if (size == 0) return 0;
  const std::string_view found = valueOf(section, key, fallback).substr(0, size - 1);
  value[found.copy(value, found.size())] = '\0';
  return static_cast<DWORD>(found.size());
}

DWORD GetFullPathNameW(const wchar_t* path, DWORD size, wchar_t* full, wchar_t**) {
  return *path == L'\0' ? 0 : handOut(fullPath(path), full, size);
}

// Nothing is there.
DWORD GetLongPathNameW(const wchar_t*, wchar_t*, DWORD) { return 0; }
modCommon::FileIdentity modCommon::identityOf(const std::wstring&) { return {}; }

HFONT CreateFontW(int height, int, int, int, int, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                  DWORD, const wchar_t*) {
  return reinterpret_cast<HFONT>(static_cast<std::intptr_t>(-height));
}

static HGDIOBJ selected;
HGDIOBJ SelectObject(HDC, HGDIOBJ object) { return std::exchange(selected, object); }

// A letter is half as wide as high.
BOOL GetTextExtentPoint32W(HDC, const wchar_t*, int count, SIZE* size) {
  const auto height = static_cast<LONG>(reinterpret_cast<std::intptr_t>(selected));
  *size = {count * height / 2, height};
  return TRUE;
}

BOOL GetTextMetricsW(HDC, TEXTMETRICW* metrics) {
  metrics->tmAscent = static_cast<LONG>(reinterpret_cast<std::intptr_t>(selected)) * 3 / 4;
  return TRUE;
}

HRESULT UrlCanonicalizeW(const wchar_t* address, wchar_t* canonical, DWORD* size, DWORD) {
  const DWORD length = handOut(address, canonical, *size);
  if (length >= *size) return -1;
  *size = length;
  return 0;
}

// Digits with a point and an exponent, as in most countries.
bool isNumeric(std::wstring_view value) {
  const auto takeAny = [&value](std::wstring_view letters) {
    const auto end = std::min(value.find_first_not_of(letters), value.size());
    value.remove_prefix(end);
    return end;
  };
  const auto takeSign = [&value] {
    if (value.starts_with(L'-') || value.starts_with(L'+')) value.remove_prefix(1);
  };
  constexpr std::wstring_view digits = L"0123456789";
  takeAny(L" ");
  takeSign();
  auto count = takeAny(digits);
  if (value.starts_with(L'.')) {
    value.remove_prefix(1);
    count += takeAny(digits);
  }
  if (count == 0) return false;
  if (value.starts_with(L'e') || value.starts_with(L'E')) {
    value.remove_prefix(1);
    takeSign();
    if (takeAny(digits) == 0) return false;
  }
  takeAny(L" ");
  return value.empty();
}

std::wstring fuzz::descriptionFile(std::string_view bytes) {
  description = bytes;
  return L"C:\\template\\quillet.ini";
}
