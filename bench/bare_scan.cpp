#include "bench/bare_scan.h"

#include <windows.h>

#include <cstring>

namespace bench {
namespace {

std::string readValue(const std::string& file, const std::string& section, const char* key) {
  char value[512];
  GetPrivateProfileStringA(section.c_str(), key, "", value, sizeof value, file.c_str());
  return value;
}

void scanFiles(const std::string& folder, const std::function<void(const BareTemplate&)>& found) {
  WIN32_FIND_DATAA entry;
  const HANDLE search = FindFirstFileA((folder + "*.dwt").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    pumpQueue();
    if (entry.dwFileAttributes & FILE_ATTRIBUTE_ARCHIVE) found(describe(folder, entry.cFileName));
  } while (FindNextFileA(search, &entry));
  FindClose(search);
}

}  // namespace

void pumpQueue() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

BareTemplate describe(const std::string& folder, const std::string& fileName) {
  const std::string section = fileName.substr(0, fileName.rfind('.'));
  const std::string file = folder + "quillet.ini";
  BareTemplate result;
  result.file = folder + fileName;
  result.folder = folder;
  result.title = readValue(file, section, "Title");
  result.description = readValue(file, section, "Description");
  result.preview = folder + readValue(file, section, "Preview");
  GetFileAttributesA(result.preview.c_str());
  readValue(file, section, "Readme");
  GetFileAttributesA((folder + "readme.htm").c_str());
  return result;
}

void scan(const std::string& folder, const std::function<void(const BareTemplate&)>& found) {
  WIN32_FIND_DATAA entry;
  const HANDLE search = FindFirstFileA((folder + "\\*.*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    pumpQueue();
    const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!isFolder || std::strcmp(entry.cFileName, ".") == 0 ||
        std::strcmp(entry.cFileName, "..") == 0)
      continue;
    pumpQueue();
    scanFiles(folder + "\\" + entry.cFileName + "\\", found);
  } while (FindNextFileA(search, &entry));
  FindClose(search);
}

}  // namespace bench
