// The system's internet functions, reached only when they are needed: loading the add-in must not
// load them.
#pragma once

#include <windows.h>
#include <wininet.h>

#include "common/handles.h"

namespace wininet {

// The functions, found when an object is made. The library stays loaded from then on; it does not
// like to be unloaded from a running process. Raises an Error (53) when it cannot be loaded.
struct Functions {
  Functions();

  decltype(&InternetOpenA) open;
  decltype(&InternetQueryOptionA) queryOption;
  decltype(&InternetSetOptionA) setOption;
  decltype(&InternetConnectA) connect;
  decltype(&InternetOpenUrlA) openUrl;
  decltype(&HttpQueryInfoA) queryInfo;
  decltype(&FtpOpenFileA) ftpOpenFile;
  decltype(&FtpGetFileSize) ftpGetFileSize;
  decltype(&InternetQueryDataAvailable) queryDataAvailable;
  decltype(&InternetReadFile) readFile;
  decltype(&InternetCrackUrlA) crackUrl;
};

void closeHandle(HINTERNET handle) noexcept;

}  // namespace wininet

namespace handles {
struct InternetTraits {
  using type = HINTERNET;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { wininet::closeHandle(handle); }
};
using Internet = Unique<InternetTraits>;
}  // namespace handles
