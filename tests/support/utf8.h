// Wide text as it is printed.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

inline std::string toUtf8(std::wstring_view text) {
  std::string bytes(text.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}
