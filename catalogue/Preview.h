// What the browser shows of a template. Pure rules.
#pragma once

#include <string>
#include <string_view>

#include "catalogue/TemplateInfo.h"

struct Preview {
  std::wstring heading;
  std::wstring description;
  std::wstring file;   // full path of a picture or page
  std::wstring notes;  // full path of a page
  bool isImage = false;
};

// The preview of the template file `templateFile` with the description `info`. What the description
// leaves empty is the template's own page.
Preview previewOf(const std::wstring& templateFile, const TemplateInfo& info);

// True when the engine itself shows files of that name: pages, plain text, and the pictures that it
// draws. For others it looks for a program, which would open them inside of this one, or run them.
bool isPageFile(std::wstring_view path);

// The heading while nothing is previewed.
inline constexpr wchar_t emptyHeading[] = L"Preview : ";

// A path that a label can wrap: a blank after each backslash.
std::wstring wrappable(std::wstring_view path);

// `percent` of a length in pixels; halves to the even neighbour.
long zoomed(long length, long percent);
