// A library with the interface of unzip32.dll, as far as the add-in uses it: it tells what it was
// asked, and "unpacks" one file, page.htm. It reads the caller's records by position, on purpose
// not by the declarations that the add-in uses. The environment can give it another version.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

using Print = int(WINAPI*)(char*, unsigned long);
using Service = int(WINAPI*)(const char*, unsigned long long);

}  // namespace

extern "C" __declspec(dllexport) unsigned WINAPI UzpVersion2(unsigned char* record) {
  char version[4] = "6";
  GetEnvironmentVariableA("STANDIN_UNZIP_VERSION", version, sizeof version);
  const auto major = static_cast<unsigned char>(version[0] - '0');
  // The last four bytes came with version 6.
  const unsigned length = major < 6 ? 64 : 68;
  if (*reinterpret_cast<unsigned long*>(record) != length) return length;
  record[48] = major;                  // unzip
  if (major >= 6) record[64] = major;  // the last change of the interface
  return 0;
}

extern "C" __declspec(dllexport) int WINAPI
    Wiz_SingleEntryUnzip(int, char**, int, char**, const int* options, void** callbacks) {
  const auto print = reinterpret_cast<Print>(callbacks[0]);
  const auto service = reinterpret_cast<Service>(callbacks[5]);
  const std::string archive = reinterpret_cast<const char*>(options[19]);
  const std::string folder = reinterpret_cast<const char*>(options[20]);
  std::string words;
  for (int i = 0; i < 19; ++i) words += std::to_string(options[i]) + " ";
  words += archive + " " + folder;
  print(words.data(), static_cast<unsigned long>(words.size()));

  std::FILE* file = std::fopen((folder + "\\page.htm").c_str(), "wb");
  if (!file) return 50;
  std::fputs("the stand-in's", file);
  std::fclose(file);
  service("page.htm", 14);
  return 0;
}
