// Lets a failing check print wide text.
#pragma once

#include <doctest/doctest.h>

#include <string>
#include <vector>

#include <windows.h>

namespace doctest {

template <>
struct StringMaker<std::wstring> {
  static String convert(const std::wstring& value) {
    const int length = static_cast<int>(value.size());
    std::string bytes(static_cast<std::size_t>(length) * 3, '\0');
    bytes.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, value.data(), length, bytes.data(),
                            static_cast<int>(bytes.size()), nullptr, nullptr)));
    return String(("\"" + bytes + "\"").c_str());
  }
};

template <>
struct StringMaker<std::vector<std::wstring>> {
  static String convert(const std::vector<std::wstring>& values) {
    String result = "{";
    for (const auto& value : values)
      result = result + "\n    " + StringMaker<std::wstring>::convert(value);
    return result + "}";
  }
};

}  // namespace doctest
