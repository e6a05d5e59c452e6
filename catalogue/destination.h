// Where in the open web a template is copied to.
//
// A destination is a folder's address: the web's address followed by a web path such as "/dwts".
#pragma once

#include <string>
#include <string_view>

// The web path of the folder that is offered when none was chosen.
inline constexpr wchar_t defaultWebFolder[] = L"/dwts";

std::wstring defaultDestination(const std::wstring& webUrl);

// Whether `templateFolder` lies where a copy of it in `destination` would lie.
//
// The two are compared as they stand: the copy's path keeps the backslash that its address ends
// with, and a template folder has none. So only a folder written with a backslash is ever found.
bool isSamePlace(std::wstring_view templateFolder, const std::wstring& destination);

// The texts of the questions and messages about destinations.
std::wstring copyToDefaultQuestion(const std::wstring& webUrl);
inline constexpr wchar_t createDefaultQuestion[] =
    L"Default DWT directory does not exist.\r\nDo you want to create the default DWT directory?";
