#include "addin/host/web_path.h"

namespace webpath {

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
  return mark != path.npos && mark >= 2 && path.find_first_of(L"/\\") == mark + 1;
}

}  // namespace webpath
