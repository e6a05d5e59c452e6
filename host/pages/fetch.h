// Where pages and pictures come from.
#pragma once

#include <string>

namespace standin::pages {

// `address`, which may say only where it is from `base` on. Its query stays as it is written.
std::wstring resolved(const std::wstring& base, const std::wstring& address);

// The bytes behind "http://" and "file://" addresses; false when there are none.
bool fetch(const std::wstring& address, std::string& bytes);

}  // namespace standin::pages
