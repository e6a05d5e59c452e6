#include "addin/host/web_path.h"

#include <windows.h>

#include "common/escapes.h"
#include "common/letter_case.h"

namespace webpath {
namespace {

constexpr std::wstring_view slashes = L"/\\";

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
  for (const UINT codePage : {static_cast<UINT>(CP_UTF8), static_cast<UINT>(CP_ACP)})
    if (auto plain = text::unescaped(address, codePage)) return *std::move(plain);
  return std::wstring(address);
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
