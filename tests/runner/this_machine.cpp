#include "tests/runner/this_machine.h"

#include <windows.h>
#include <shlobj.h>

namespace machine {
namespace {

template <class Function>
Function* systemFunction(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

std::string decimal(unsigned long number) { return std::to_string(number); }

// The system's own word for it: GetVersionEx tells a program without a manifest of an older one.
std::string windows() {
  OSVERSIONINFOEXW version = {};
  version.dwOSVersionInfoSize = sizeof version;
  using GetVersion = LONG WINAPI(OSVERSIONINFOEXW*);
  if (auto* const get = systemFunction<GetVersion>(L"ntdll.dll", "RtlGetVersion")) get(&version);
  std::string text = decimal(version.dwMajorVersion) + "." + decimal(version.dwMinorVersion) + "." +
                     decimal(version.dwBuildNumber);
  if (version.wServicePackMajor != 0)
    text += ", service pack " + decimal(version.wServicePackMajor);
  BOOL isWow = FALSE;
  using IsWow = BOOL WINAPI(HANDLE, PBOOL);
  if (auto* const ask = systemFunction<IsWow>(L"kernel32.dll", "IsWow64Process"))
    ask(GetCurrentProcess(), &isWow);
  text += isWow ? ", 64 bits" : ", 32 bits";
  using WineVersion = const char* CDECL();
  if (auto* const wine = systemFunction<WineVersion>(L"ntdll.dll", "wine_get_version"))
    text += std::string(", which is Wine ") + wine();
  return text;
}

std::string language() {
  char name[128] = {};
  GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SENGLANGUAGE, name, sizeof name);
  return name;
}

std::string screen() {
  const HDC context = GetDC(nullptr);
  const int dots = GetDeviceCaps(context, LOGPIXELSX);
  ReleaseDC(nullptr, context);
  return std::to_string(GetSystemMetrics(SM_CXSCREEN)) + " x " +
         std::to_string(GetSystemMetrics(SM_CYSCREEN)) + ", " + std::to_string(dots) +
         " dots to the inch";
}

}  // namespace

std::vector<std::string> description() {
  return {
      "Windows:     " + windows(),
      "Code pages:  " + decimal(GetACP()) + " and " + decimal(GetOEMCP()),
      "Language:    " + language(),
      "Screen:      " + screen(),
      std::string("User:        ") + (IsUserAnAdmin() ? "an administrator" : "no administrator"),
  };
}

std::string timeNow() {
  SYSTEMTIME now = {};
  GetLocalTime(&now);
  const auto twoDigits = [](WORD number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  return std::to_string(now.wYear) + "-" + twoDigits(now.wMonth) + "-" + twoDigits(now.wDay) + " " +
         twoDigits(now.wHour) + ":" + twoDigits(now.wMinute);
}

}  // namespace machine
