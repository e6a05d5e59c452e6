#include "tests/support/ScratchFolder.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

void removeTree(const std::wstring& path) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &data);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      const std::wstring name = data.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring full = path + L"\\" + name;
      SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_NORMAL);
      if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        removeTree(full);
      else
        DeleteFileW(full.c_str());
    } while (FindNextFileW(search, &data));
    FindClose(search);
  }
  RemoveDirectoryW(path.c_str());
}

void listTree(const std::wstring& root, const std::wstring& relative,
              std::vector<std::wstring>& result) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW((root + L"\\" + relative + L"*").c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = data.cFileName;
    if (name == L"." || name == L"..") continue;
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      result.push_back(relative + name + L"\\");
      listTree(root, relative + name + L"\\", result);
    } else {
      result.push_back(relative + name);
    }
  } while (FindNextFileW(search, &data));
  FindClose(search);
}

void makeFolders(const std::wstring& path) {
  for (auto slash = path.find(L'\\', 3); slash != path.npos; slash = path.find(L'\\', slash + 1))
    CreateDirectoryW(path.substr(0, slash).c_str(), nullptr);
  CreateDirectoryW(path.c_str(), nullptr);
}

}  // namespace

ScratchFolder::ScratchFolder() {
  static int serial = 0;
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  path_ = std::wstring(temp) + L"Quillet test " + std::to_wstring(GetCurrentProcessId()) + L" " +
          std::to_wstring(++serial);
  removeTree(path_);  // of an earlier process with this number that was ended by force
  makeFolders(path_);
}

ScratchFolder::~ScratchFolder() { removeTree(path_); }

std::wstring ScratchFolder::operator/(std::wstring_view relative) const {
  return path_ + L"\\" + std::wstring(relative);
}

std::wstring ScratchFolder::makeFolder(std::wstring_view relative) const {
  const std::wstring full = *this / relative;
  makeFolders(full);
  return full;
}

std::wstring ScratchFolder::writeFile(std::wstring_view relative, std::string_view bytes) const {
  const std::wstring full = *this / relative;
  makeFolders(full.substr(0, full.rfind(L'\\')));
  const HANDLE file = CreateFileW(full.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
  return full;
}

bool ScratchFolder::exists(std::wstring_view relative) const {
  return GetFileAttributesW((*this / relative).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string ScratchFolder::readFile(std::wstring_view relative) const {
  const HANDLE file =
      CreateFileW((*this / relative).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string bytes(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  CloseHandle(file);
  return bytes;
}

std::vector<std::wstring> ScratchFolder::tree() const {
  std::vector<std::wstring> result;
  listTree(path_, L"", result);
  std::sort(result.begin(), result.end());
  return result;
}
