// What stands on the machine where setup programs write: to compare before and after.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace machine {

using Lines = std::vector<std::wstring>;

// Every file with its size and every folder (with a trailing backslash) where programs, their data
// and the users' files are; sorted.
Lines files();
// Every key and value below Software, of the machine as 32-bit programs see it and of the user;
// sorted.
Lines registry();

// The lines of `after` that `before` has not.
Lines added(const Lines& before, const Lines& after);
// What came with a "+" and what went with a "-". Whole lists would take minutes to write out.
Lines changed(const Lines& before, const Lines& after);

std::wstring value(HKEY root, const std::wstring& key, const std::wstring& name);  // empty: missing
bool hasKey(HKEY root, const std::wstring& key);
void setValue(HKEY root, const std::wstring& key, const std::wstring& name,
              const std::wstring& text);
void removeKey(HKEY root, const std::wstring& key);
void removeValue(HKEY root, const std::wstring& key, const std::wstring& name);

bool exists(const std::wstring& path);
std::string bytes(const std::wstring& path);
void write(const std::wstring& path, std::string_view bytes);  // makes the folders above
// Below the folder, relative and sorted; folders have a trailing backslash.
Lines tree(const std::wstring& folder);
void removeTree(const std::wstring& folder);

}  // namespace machine
