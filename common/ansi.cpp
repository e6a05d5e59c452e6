#include "common/ansi.h"

#include <windows.h>

namespace text {
namespace {

std::string convert(std::wstring_view value, BOOL* lossy) {
  if (value.empty()) return {};
  const int length = static_cast<int>(value.size());
  const int needed = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, value.data(), length,
                                         nullptr, 0, nullptr, lossy);
  std::string result(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, value.data(), length, result.data(), needed,
                      nullptr, lossy);
  return result;
}

}  // namespace

std::string toAnsi(std::wstring_view value) { return convert(value, nullptr); }

bool fitsAnsi(std::wstring_view value) {
  BOOL lossy = FALSE;
  convert(value, &lossy);
  return !lossy;
}

std::wstring fromAnsi(std::string_view value) {
  if (value.empty()) return {};
  const int length = static_cast<int>(value.size());
  const int needed = MultiByteToWideChar(CP_ACP, 0, value.data(), length, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(CP_ACP, 0, value.data(), length, result.data(), needed);
  return result;
}

}  // namespace text
