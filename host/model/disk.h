// What the host does on the disk below a web. Failures raise a Refusal that names what was tried.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace standin::disk {

bool isFolder(const std::wstring& path);
bool isFile(const std::wstring& path);
bool exists(const std::wstring& path);
bool isValidName(std::wstring_view name);

// Names in the folder, sorted without regard to letter case.
std::vector<std::wstring> folderNames(const std::wstring& folder);
std::vector<std::wstring> fileNames(const std::wstring& folder);

unsigned long fileSize(const std::wstring& path);
void makeFolder(const std::wstring& path);
// The copy can be changed and deleted, whatever the original's attributes.
void copyFile(const std::wstring& from, const std::wstring& to);
void copyTree(const std::wstring& from, const std::wstring& to);
void deleteFile(const std::wstring& path);

std::string readBytes(const std::wstring& path);
void writeBytes(const std::wstring& path, std::string_view bytes);

}  // namespace standin::disk
