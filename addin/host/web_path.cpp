#include "addin/host/web_path.h"

#include <cstdint>

#include "common/letter_case.h"

namespace webpath {
namespace {

constexpr std::wstring_view slashes = L"/\\";

int digitValue(wchar_t character) {
  if (character >= L'0' && character <= L'9') return character - L'0';
  if (character >= L'A' && character <= L'F') return character - L'A' + 10;
  if (character >= L'a' && character <= L'f') return character - L'a' + 10;
  return -1;
}

// The byte that the escape at `place` stands for; -1 where there is none.
int byteAt(std::wstring_view text, std::size_t place) {
  if (place + 2 >= text.size() || text[place] != L'%') return -1;
  const int high = digitValue(text[place + 1]);
  const int low = digitValue(text[place + 2]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

// How many bytes a character has whose first one this is; 0 for none.
int lengthOf(int first) {
  if (first < 0) return 0;
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;  // in the address; 0 where there is no character
};

// The character that the escapes from `place` on stand for.
Character characterAt(std::wstring_view text, std::size_t place) {
  const int first = byteAt(text, place);
  const int bytes = lengthOf(first);
  if (bytes == 0 || first == 0) return {};
  constexpr std::uint32_t dataBits[] = {0x7F, 0x1F, 0x0F, 0x07};
  std::uint32_t code = static_cast<std::uint32_t>(first) & dataBits[bytes - 1];
  for (int i = 1; i < bytes; ++i) {
    const int next = byteAt(text, place + 3 * static_cast<std::size_t>(i));
    if (next < 0 || (next & 0xC0) != 0x80) return {};
    code = code << 6 | static_cast<std::uint32_t>(next & 0x3F);
  }
  constexpr std::uint32_t smallest[] = {0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (code < smallest[bytes - 1] || code > 0x10FFFF || surrogate) return {};
  return {code, 3 * static_cast<std::size_t>(bytes)};
}

void append(std::wstring& text, std::uint32_t code) {
  if (code >= 0x10000) {
    text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
    code = 0xDC00 + (code & 0x3FF);
  }
  text += static_cast<wchar_t>(code);
}

// Up to the next slash; the slash is left.
std::wstring_view takeLevel(std::wstring_view& path) {
  const std::wstring_view level = path.substr(0, path.find_first_of(slashes));
  path.remove_prefix(level.size());
  return level;
}

// How a level is spelled that differs from `other`; nothing when the two are no spellings of one
// name.
std::optional<Spelling> spellingOf(std::wstring_view level, std::wstring_view other) {
  if (text::equalIgnoringCase(unescaped(level), other)) return Spelling::escaped;
  if (text::equalIgnoringCase(level, unescaped(other))) return Spelling::plain;
  if (text::equalIgnoringCase(unescaped(level), unescaped(other))) return Spelling::escaped;
  return std::nullopt;
}

}  // namespace

std::vector<std::wstring> levels(std::wstring_view path) {
  std::vector<std::wstring> result;
  std::wstring level;
  for (const wchar_t character : path) {
    if (character != L'/' && character != L'\\') {
      level += character;
    } else if (!level.empty()) {
      result.push_back(std::move(level));
      level.clear();
    }
  }
  if (!level.empty()) result.push_back(std::move(level));
  return result;
}

std::wstring normal(std::wstring_view path) {
  std::wstring result;
  for (const auto& level : levels(path)) {
    if (!result.empty()) result += L'/';
    result += level;
  }
  return result;
}

bool isAbsolute(std::wstring_view path) {
  const auto mark = path.find(L"://");
  return mark != path.npos && mark >= 2 && path.find_first_of(slashes) == mark + 1;
}

std::wstring unescaped(std::wstring_view address) {
  std::wstring result;
  for (std::size_t place = 0; place < address.size();) {
    const Character character = characterAt(address, place);
    if (character.length == 0) {
      result += address[place++];
    } else {
      append(result, character.code);
      place += character.length;
    }
  }
  return result;
}

std::optional<Below> below(std::wstring_view address, std::wstring_view root) {
  root = root.substr(0, root.find_last_not_of(slashes) + 1);
  if (root.empty()) return std::nullopt;
  Spelling spelling = Spelling::unknown;
  for (;;) {
    const std::wstring_view own = takeLevel(root);
    const std::wstring_view level = takeLevel(address);
    if (!text::equalIgnoringCase(level, own)) {
      const auto found = spellingOf(level, own);
      if (!found) return std::nullopt;
      spelling = *found;
    }
    if (root.empty()) return Below{std::wstring(address), spelling};
    if (address.empty()) return std::nullopt;
    root.remove_prefix(1);
    address.remove_prefix(1);
  }
}

}  // namespace webpath
