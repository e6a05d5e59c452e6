// A file of the tests' own, whole. One that is not there fails the test.
#pragma once

#include <windows.h>

#include <string>

#include "common/handles.h"
#include "tests/support/text_output.h"

inline std::string readAll(const std::wstring& path) {
  const handles::File file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  REQUIRE_MESSAGE(static_cast<bool>(file), path);
  std::string bytes(GetFileSize(file.get(), nullptr), '\0');
  DWORD got = 0;
  ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr);
  return bytes;
}
