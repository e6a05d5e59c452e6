#include "common/ansi.h"

#include <windows.h>

namespace text {
namespace {

// The system refuses flags and the question for losses where the code page is UTF-8, which loses
// nothing.
std::string convert(std::wstring_view value, BOOL* lossy) {
  if (value.empty()) return {};
  const UINT page = GetACP();
  const bool universal = page == CP_UTF8;
  const DWORD flags = universal ? 0 : WC_NO_BEST_FIT_CHARS;
  if (universal) lossy = nullptr;
  const int length = static_cast<int>(value.size());
  const int needed =
      WideCharToMultiByte(page, flags, value.data(), length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(page, flags, value.data(), length, result.data(), needed, nullptr, lossy);
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
  const UINT page = GetACP();
  const int needed = MultiByteToWideChar(page, 0, value.data(), length, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(page, 0, value.data(), length, result.data(), needed);
  return result;
}

}  // namespace text
