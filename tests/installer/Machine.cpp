#include "tests/installer/Machine.h"

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace machine {
namespace {

template <class Visit>
void walk(const std::wstring& root, const std::wstring& relative, const Visit& visit) {
  WIN32_FIND_DATAW data = {};
  const HANDLE search = FindFirstFileW((root + L"\\" + relative + L"*").c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = data.cFileName;
    if (name == L"." || name == L"..") continue;
    const bool isFolder = data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
    const std::wstring path = relative + name + (isFolder ? L"\\" : L"");
    visit(path, data.nFileSizeLow);
    // Wine's links into the user's own home lead out of the prefix.
    if (isFolder && !(data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
      walk(root, path, visit);
  } while (FindNextFileW(search, &data));
  FindClose(search);
}

// What a file of the registry, as Wine writes it, has between quotes.
std::wstring unescaped(const std::string& text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    result += static_cast<wchar_t>(static_cast<unsigned char>(text[i]));
  }
  return result;
}

// The place of the quote that ends what begins behind `from`.
std::size_t closingQuote(const std::string& line, std::size_t from) {
  while (from < line.size() && line[from] != '"') from += line[from] == '\\' ? 2 : 1;
  return from;
}

std::wstring dataText(const std::string& text) {
  if (text.compare(0, 6, "dword:") == 0)
    return L"dword " + std::to_wstring(std::stoul(text.substr(6), nullptr, 16));
  if (text[0] == '"') return L"\"" + unescaped(text.substr(1, closingQuote(text, 1) - 1)) + L"\"";
  return {text.begin(), text.end()};
}

// 32-bit programs have some keys below this one; what is shared and what is not is no matter here.
std::wstring withoutView(std::wstring key) {
  const std::wstring view = L"Wow6432Node\\";
  for (auto at = key.find(view); at != key.npos; at = key.find(view)) key.erase(at, view.size());
  // Whoever made it first decided on its spelling.
  const std::wstring library = L"\\Typelib\\";
  if (const auto at = key.find(library); at != key.npos) key[at + 5] = L'L';
  return key;
}

// One file holds all, and asking for every value by itself takes seconds on a busy machine.
void addSaved(const std::wstring& file, const std::wstring& root, Lines& lines) {
  std::ifstream saved(file.c_str());
  std::wstring key;
  for (std::string line; std::getline(saved, line);) {
    while (!line.empty() && line.back() == '\\') {
      std::string rest;
      std::getline(saved, rest);
      line.replace(line.size() - 1, 1, rest.substr(rest.find_first_not_of(' ')));
    }
    if (line.empty() || line[0] == '#' || line[0] == ';') continue;
    if (line[0] == '[') {
      key = root + withoutView(unescaped(line.substr(1, line.rfind(']') - 1)));
      lines.push_back(key);
    } else if (line[0] == '@') {
      lines.push_back(key + L" [] = " + dataText(line.substr(2)));
    } else if (line[0] == '"') {
      const auto end = closingQuote(line, 1);
      lines.push_back(key + L" [" + unescaped(line.substr(1, end - 1)) + L"] = " +
                      dataText(line.substr(end + 2)));
    }
  }
}

void allowSaving() {
  HANDLE token = nullptr;
  TOKEN_PRIVILEGES privileges = {};
  privileges.PrivilegeCount = 1;
  privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &token)) return;
  LookupPrivilegeValueW(nullptr, SE_BACKUP_NAME, &privileges.Privileges[0].Luid);
  AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr);
  CloseHandle(token);
}

void addKeys(HKEY root, const std::wstring& prefix, Lines& lines) {
  const std::wstring file = L"C:\\saved-registry";
  HKEY key = nullptr;
  LSTATUS result = RegOpenKeyExW(root, L"Software", 0, KEY_READ | KEY_WOW64_64KEY, &key);
  if (result == ERROR_SUCCESS) result = RegSaveKeyW(key, file.c_str(), nullptr);
  RegCloseKey(key);
  if (result != ERROR_SUCCESS) throw std::runtime_error("The registry cannot be saved.");
  addSaved(file, prefix, lines);
  DeleteFileW(file.c_str());
}

}  // namespace

Lines files() {
  Lines lines;
  for (const wchar_t* root :
       {L"C:\\Program Files", L"C:\\Program Files (x86)", L"C:\\ProgramData", L"C:\\users"}) {
    const std::wstring prefix = std::wstring(root) + L"\\";
    walk(root, L"", [&](const std::wstring& path, DWORD size) {
      lines.push_back(prefix + path + (path.back() == L'\\' ? L"" : L" " + std::to_wstring(size)));
    });
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

Lines registry() {
  Lines lines;
  allowSaving();
  addKeys(HKEY_LOCAL_MACHINE, L"HKLM\\Software\\", lines);
  addKeys(HKEY_CURRENT_USER, L"HKCU\\Software\\", lines);
  std::sort(lines.begin(), lines.end());
  return lines;
}

Lines added(const Lines& before, const Lines& after) {
  Lines result;
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(result));
  return result;
}

std::wstring value(HKEY root, const std::wstring& key, const std::wstring& name) {
  wchar_t text[1024] = {};
  DWORD size = sizeof text;
  if (SHGetValueW(root, key.c_str(), name.c_str(), nullptr, text, &size) != ERROR_SUCCESS)
    return {};
  return text;
}

bool hasKey(HKEY root, const std::wstring& key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

void setValue(HKEY root, const std::wstring& key, const std::wstring& name,
              const std::wstring& text) {
  SHSetValueW(root, key.c_str(), name.c_str(), REG_SZ, text.c_str(),
              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void removeKey(HKEY root, const std::wstring& key) { SHDeleteKeyW(root, key.c_str()); }

void removeValue(HKEY root, const std::wstring& key, const std::wstring& name) {
  SHDeleteValueW(root, key.c_str(), name.c_str());
}

bool exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string bytes(const std::wstring& path) {
  std::ifstream file(path.c_str(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void write(const std::wstring& path, std::string_view bytes) {
  SHCreateDirectoryExW(nullptr, path.substr(0, path.rfind(L'\\')).c_str(), nullptr);
  std::ofstream file(path.c_str(), std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

Lines tree(const std::wstring& folder) {
  Lines lines;
  walk(folder, L"", [&](const std::wstring& path, DWORD) { lines.push_back(path); });
  std::sort(lines.begin(), lines.end());
  return lines;
}

void removeTree(const std::wstring& folder) {
  Lines lines = tree(folder);
  std::reverse(lines.begin(), lines.end());
  for (const auto& line : lines) {
    const std::wstring path = folder + L"\\" + line;
    if (path.back() == L'\\')
      RemoveDirectoryW(path.c_str());
    else
      DeleteFileW(path.c_str());
  }
  RemoveDirectoryW(folder.c_str());
}

Lines changed(const Lines& before, const Lines& after) {
  Lines lines;
  for (const auto& line : added(before, after)) lines.push_back(L"+ " + line);
  for (const auto& line : added(after, before)) lines.push_back(L"- " + line);
  return lines;
}

}  // namespace machine
