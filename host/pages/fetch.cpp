#include "host/pages/fetch.h"

#include <windows.h>
#include <shlwapi.h>
#include <wininet.h>

#include "common/handles.h"
#include "host/model/Faults.h"
#include "host/model/disk.h"

namespace standin::pages {
namespace {

constexpr DWORD longestAddress = 8192;

struct InternetTraits {
  using type = HINTERNET;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { InternetCloseHandle(handle); }
};
using Internet = handles::Unique<InternetTraits>;

bool readFile(const std::wstring& address, std::string& bytes) {
  wchar_t path[MAX_PATH] = {};
  DWORD length = MAX_PATH;
  if (FAILED(PathCreateFromUrlW(address.c_str(), path, &length, 0)) || !disk::isFile(path))
    return false;
  bytes = disk::readBytes(path);
  return true;
}

bool isThere(const Internet& answer) {
  DWORD status = 0;
  DWORD size = sizeof status;
  return HttpQueryInfoW(answer.get(), HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status,
                        &size, nullptr) &&
         status == HTTP_STATUS_OK;
}

bool readHttp(const std::wstring& address, std::string& bytes) {
  const Internet session(
      InternetOpenW(L"Stand-in host", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  const Internet answer(InternetOpenUrlW(session.get(), address.c_str(), nullptr, 0,
                                         INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, 0));
  if (!answer || !isThere(answer)) return false;
  char buffer[4096];
  DWORD read = 0;
  while (InternetReadFile(answer.get(), buffer, sizeof buffer, &read) && read > 0)
    bytes.append(buffer, read);
  return true;
}

}  // namespace

std::wstring resolved(const std::wstring& base, const std::wstring& address) {
  const std::wstring path = address.substr(0, address.find(L'?'));
  const std::wstring rest = address.substr(path.size());
  wchar_t whole[longestAddress] = {};
  DWORD length = longestAddress;
  if (FAILED(UrlCombineW(base.c_str(), path.c_str(), whole, &length, URL_DONT_ESCAPE_EXTRA_INFO)))
    return address;
  return whole + rest;
}

bool fetch(const std::wstring& address, std::string& bytes) {
  try {
    bytes.clear();
    return address.starts_with(L"file:") ? readFile(address, bytes) : readHttp(address, bytes);
  } catch (const Refusal&) {
    return false;
  }
}

}  // namespace standin::pages
