#include "host/model/disk.h"

#include <windows.h>

#include <algorithm>

#include "common/handles.h"
#include "host/model/Faults.h"

namespace standin::disk {
namespace {

[[noreturn]] void refuse(const wchar_t* what, const std::wstring& path) {
  const DWORD code = GetLastError();
  throw Refusal{
      static_cast<long>(HRESULT_FROM_WIN32(code)),
      std::wstring(what) + L" \"" + path + L"\" (system code " + std::to_wstring(code) + L")."};
}

// "CON", "NUL.txt": names that mean a device in every folder.
bool isDevice(const std::wstring& name) {
  wchar_t full[MAX_PATH] = {};
  GetFullPathNameW(name.c_str(), MAX_PATH, full, nullptr);
  return std::wstring_view(full).substr(0, 4) == L"\\\\.\\";
}

std::vector<std::wstring> names(const std::wstring& folder, bool folders) {
  std::vector<std::wstring> result;
  WIN32_FIND_DATAW found;
  const handles::Find search(FindFirstFileW((folder + L"\\*").c_str(), &found));
  if (!search) refuse(L"Cannot read the folder", folder);
  do {
    const std::wstring name = found.cFileName;
    const bool isFolderEntry = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isFolderEntry == folders && name != L"." && name != L"..") result.push_back(name);
  } while (FindNextFileW(search.get(), &found));
  std::sort(result.begin(), result.end(), [](const auto& one, const auto& other) {
    return lstrcmpiW(one.c_str(), other.c_str()) < 0;
  });
  return result;
}

}  // namespace

bool exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool isFolder(const std::wstring& path) {
  return exists(path) && (GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY);
}

bool isFile(const std::wstring& path) { return exists(path) && !isFolder(path); }

bool isValidName(std::wstring_view name) {
  return !name.empty() && name != L"." && name != L".." &&
         name.find_first_of(L"\\/:*?\"<>|") == name.npos && !isDevice(std::wstring(name));
}

std::vector<std::wstring> folderNames(const std::wstring& folder) { return names(folder, true); }
std::vector<std::wstring> fileNames(const std::wstring& folder) { return names(folder, false); }

unsigned long fileSize(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
  return data.nFileSizeLow;
}

void makeFolder(const std::wstring& path) {
  if (!CreateDirectoryW(path.c_str(), nullptr)) refuse(L"Cannot make the folder", path);
}

void copyFile(const std::wstring& from, const std::wstring& to) {
  if (!CopyFileW(from.c_str(), to.c_str(), FALSE)) refuse(L"Cannot import the file", from);
  SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_NORMAL);
}

void copyTree(const std::wstring& from, const std::wstring& to) {
  if (!isFolder(to)) makeFolder(to);
  for (const auto& name : fileNames(from)) copyFile(from + L"\\" + name, to + L"\\" + name);
  for (const auto& name : folderNames(from)) copyTree(from + L"\\" + name, to + L"\\" + name);
}

void deleteFile(const std::wstring& path) {
  if (!DeleteFileW(path.c_str())) refuse(L"Cannot delete the file", path);
}

std::string readBytes(const std::wstring& path) {
  const handles::File file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) refuse(L"Cannot read the file", path);
  std::string bytes(GetFileSize(file.get(), nullptr), '\0');
  DWORD read = 0;
  if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    refuse(L"Cannot read the file", path);
  bytes.resize(read);
  return bytes;
}

void writeBytes(const std::wstring& path, std::string_view bytes) {
  const handles::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  if (!file ||
      !WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
    refuse(L"Cannot write the file", path);
}

}  // namespace standin::disk
