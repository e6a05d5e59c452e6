// A template's description, as its folder's description file gives it.
#pragma once

#include <string>
#include <string_view>

struct TemplateInfo {
  std::wstring title;
  std::wstring description;
  std::wstring preview;  // full path of a picture or page; empty when there is none
  std::wstring readme;   // full path of the notes page; the preview when there is none
};

// Reads the description of the template `baseName` in `folder`; every missing key has its default.
TemplateInfo GetDWTInfo(std::wstring_view folder, std::wstring_view baseName);

// Its title alone: GetDWTInfo's, without a look for the other files.
std::wstring templateTitle(std::wstring_view folder, std::wstring_view baseName);

// True for a path whose extension is gif, jpg or jpeg in any letter case.
bool IsImageFile(std::wstring_view path);

// A file name without its last "." and what follows it.
std::wstring templateBaseName(std::wstring_view fileName);
