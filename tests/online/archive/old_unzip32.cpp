// A library with the interface of unzip32.dll before its version 6, as far as the add-in uses it.
// It "unpacks" one file, page.htm. It reads the caller's records by position, on purpose not by the
// declarations that the add-in uses. The environment can give it another version.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

using Print = int(WINAPI*)(char*, unsigned long);
using Replace = int(WINAPI*)(char*);
using Message = void(WINAPI*)(unsigned long, unsigned long, unsigned, unsigned, unsigned, unsigned,
                              unsigned, unsigned, char, const char*, const char*, unsigned long,
                              char);
using Service = int(WINAPI*)(const char*, unsigned long);

}  // namespace

extern "C" __declspec(dllexport) unsigned WINAPI UzpVersion2(unsigned char* record) {
  constexpr unsigned length = 64;
  if (*reinterpret_cast<unsigned long*>(record) != length) return length;
  char version[4] = "5";
  GetEnvironmentVariableA("OLD_UNZIP_VERSION", version, sizeof version);
  record[48] = static_cast<unsigned char>(version[0] - '0');  // unzip, major
  record[49] = 52;                                            // minor
  return 0;
}

extern "C" __declspec(dllexport) int WINAPI
    Wiz_SingleEntryUnzip(int, char**, int, char**, const int* options, void** callbacks) {
  const auto print = reinterpret_cast<Print>(callbacks[0]);
  const auto replace = reinterpret_cast<Replace>(callbacks[2]);
  const auto message = reinterpret_cast<Message>(callbacks[4]);
  const auto service = reinterpret_cast<Service>(callbacks[5]);
  if (options[6]) {
    message(7, 5, 28, 12, 31, 99, 23, 59, ' ', "page.htm", "Defl:N", 0, ' ');
    return 0;
  }
  std::string words;
  for (int i = 0; i < 15; ++i) words += std::to_string(options[i]) + " ";
  words += reinterpret_cast<const char*>(options[15]);
  words += " ";
  words += reinterpret_cast<const char*>(options[16]);
  print(words.data(), static_cast<unsigned long>(words.size()));

  std::string path = std::string(reinterpret_cast<const char*>(options[16])) + "\\page.htm";
  if (options[2] && GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES &&
      replace(path.data()) != 102)
    return 0;
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) return 50;
  std::fputs("old one", file);
  std::fclose(file);
  service("page.htm", 7);
  return 0;
}
