// The per-user settings store: strings below
// HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace settings {

// The sections and values the program uses.
inline constexpr wchar_t general[] = L"Settings";
inline constexpr wchar_t folders[] = L"DWT Folders";
inline constexpr wchar_t logging[] = L"Logging";                // "0" or "1", default 0
inline constexpr wchar_t downloadFolder[] = L"DWTDownloadDir";  // a folder path, default empty
inline constexpr wchar_t placement[] = L"DWTPlacement";         // see placement.h
inline constexpr wchar_t onlinePlacement[] = L"DWTOnlinePlacement";

// The key of a section, below the current user's root.
std::wstring keyPath(std::wstring_view application, std::wstring_view section);

// The application is the component's title throughout.
std::wstring GetSetting(std::wstring_view section, std::wstring_view name,
                        std::wstring_view fallback = {});
// Makes the missing keys; raises an Error when the value cannot be written.
void SaveSetting(std::wstring_view section, std::wstring_view name, std::wstring_view value);
// Without a name the whole section goes. What does not exist is no error.
void DeleteSetting(std::wstring_view section, std::wstring_view name = {});
// Name and data of every string in a section, in the registry's order; empty when it is missing.
// What the code page lacks of a name is "?", and the data of such a value is empty.
std::vector<std::pair<std::wstring, std::wstring>> GetAllSettings(std::wstring_view section);

}  // namespace settings
