#include "online/transfer/internet_functions.h"

#include "common/errors.h"

namespace wininet {
namespace {

constexpr wchar_t libraryName[] = L"wininet.dll";

// Found before there is a handle that has to be closed.
decltype(&InternetCloseHandle) close = nullptr;

HMODULE library() {
  if (const HMODULE loaded = GetModuleHandleW(libraryName)) return loaded;
  const HMODULE loaded = LoadLibraryW(libraryName);
  if (!loaded) throw Error(errors::fileNotFound);
  return loaded;
}

template <class Function>
void find(Function& function, HMODULE module, const char* name) {
  const auto address = reinterpret_cast<void*>(GetProcAddress(module, name));
  if (!address) throw Error(errors::fileNotFound);
  function = reinterpret_cast<Function>(address);
}

}  // namespace

Functions::Functions() {
  const HMODULE module = library();
  find(close, module, "InternetCloseHandle");
  find(open, module, "InternetOpenA");
  find(queryOption, module, "InternetQueryOptionA");
  find(setOption, module, "InternetSetOptionA");
  find(connect, module, "InternetConnectA");
  find(openUrl, module, "InternetOpenUrlA");
  find(queryInfo, module, "HttpQueryInfoA");
  find(ftpOpenFile, module, "FtpOpenFileA");
  find(ftpGetFileSize, module, "FtpGetFileSize");
  find(queryDataAvailable, module, "InternetQueryDataAvailable");
  find(readFile, module, "InternetReadFile");
  find(crackUrl, module, "InternetCrackUrlA");
}

void closeHandle(HINTERNET handle) noexcept { close(handle); }

}  // namespace wininet
