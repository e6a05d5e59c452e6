// The file in a template folder that describes its templates: a private-profile file with a section
// for each, named by the template's base name.
#pragma once

inline constexpr wchar_t descriptionFileName[] = L"quillet.ini";
