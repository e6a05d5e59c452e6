// The file in a template folder that describes its templates: a private-profile file with a section
// for each, named by the template's base name.
#pragma once

inline constexpr wchar_t descriptionFileName[] = L"quillet.ini";

// How long the buffers are that its values are read into, in characters of the code page, their end
// included: what is longer is cut.
inline constexpr unsigned descriptionValueLength = 512;
inline constexpr unsigned themeValueLength = 256;
