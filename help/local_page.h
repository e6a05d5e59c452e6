// Pages of the disk, which may come from anywhere: they are read with bounds, and what they refer
// to is taken only from their own folder. Nothing of them is run, and nothing is fetched for them.
#pragma once

#include <optional>
#include <string>

#include "html/Page.h"

namespace help {

// What is read of a page at most, in bytes; the rest is not shown.
inline constexpr unsigned long long longestPage = 1u << 20;
inline constexpr unsigned long long largestPicture = 16u << 20;

struct PageText {
  bool found = false;
  bool whole = true;
  std::wstring text;
};

// The text of a file in the encoding that it names.
PageText readPage(const std::wstring& file);

// The page to show for a file: a page of HTML as it is, a text or a picture as a page around it,
// and a page that says so for a file that is missing or of another kind.
html::Page pageOf(const std::wstring& file);

// The path of a picture of the page, by its name; nothing for an address of another kind or place.
std::optional<std::wstring> pictureBeside(const std::wstring& file, const std::wstring& address);

// The bytes of a picture's file; empty when it cannot be read or is too large.
std::string readPicture(const std::wstring& path);

}  // namespace help
