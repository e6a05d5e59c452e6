#include "tests/online/transfer/Internet.h"

#include <wininet.h>

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace {

struct Changes {
  std::optional<unsigned short> ftpPort;
  std::optional<unsigned long> ftpFileSize;
  bool ftpFileSizeUnknown = false;
  std::optional<unsigned long> accessType;
  std::string openUrlAt;
  std::string openUrlInstead;
  std::optional<unsigned long> noSession;
  std::optional<unsigned long> noUrl;
  std::optional<unsigned long> noRead;
  bool readsWhole = false;
  std::optional<unsigned long> nothingTold;
  std::optional<unsigned long> noFtpFile;
  bool noOptions = false;
  std::string missing;
  HINTERNET session = nullptr;
  unsigned long flags = 0;
  InternetPatch::Options ofSession;
  InternetPatch::Options elsewhere;
  int questions = 0;
  int reads = 0;
  int staleCloses = 0;
};

Changes changes;

using Lookup = decltype(&GetProcAddress);
Lookup realLookup = nullptr;

template <class Function>
Function real(Function, const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(realLookup(GetModuleHandleW(L"wininet.dll"), name)));
}

HINTERNET WINAPI openSession(LPCSTR agent, DWORD access, LPCSTR proxy, LPCSTR bypass, DWORD flags) {
  if (changes.noSession) {
    SetLastError(*changes.noSession);
    return nullptr;
  }
  changes.flags = flags;
  changes.session = real(static_cast<decltype(&InternetOpenA)>(nullptr), "InternetOpenA")(
      agent, access, proxy, bypass, flags);
  return changes.session;
}

BOOL WINAPI setOption(HINTERNET handle, DWORD option, LPVOID value, DWORD size) {
  const DWORD number = size == sizeof(DWORD) ? *static_cast<DWORD*>(value) : 0;
  (handle && handle == changes.session ? changes.ofSession : changes.elsewhere)
      .emplace_back(option, number);
  if (!changes.noOptions)
    return real(static_cast<decltype(&InternetSetOptionA)>(nullptr), "InternetSetOptionA")(
        handle, option, value, size);
  SetLastError(ERROR_INTERNET_INVALID_OPTION);
  return FALSE;
}

HINTERNET WINAPI openFtpFile(HINTERNET connection, LPCSTR path, DWORD access, DWORD flags,
                             DWORD_PTR context) {
  if (!changes.noFtpFile)
    return real(static_cast<decltype(&FtpOpenFileA)>(nullptr), "FtpOpenFileA")(
        connection, path, access, flags, context);
  SetLastError(*changes.noFtpFile);
  return nullptr;
}

HINTERNET WINAPI connect(HINTERNET session, LPCSTR server, INTERNET_PORT port, LPCSTR user,
                         LPCSTR password, DWORD service, DWORD flags, DWORD_PTR context) {
  if (port == INTERNET_INVALID_PORT_NUMBER && changes.ftpPort) port = *changes.ftpPort;
  return real(static_cast<decltype(&InternetConnectA)>(nullptr), "InternetConnectA")(
      session, server, port, user, password, service, flags, context);
}

DWORD WINAPI fileSize(HINTERNET file, LPDWORD high) {
  if (changes.ftpFileSizeUnknown) {
    SetLastError(ERROR_INTERNET_INCORRECT_HANDLE_TYPE);
    return INVALID_FILE_SIZE;
  }
  if (!changes.ftpFileSize)
    return real(static_cast<decltype(&FtpGetFileSize)>(nullptr), "FtpGetFileSize")(file, high);
  *high = 0;
  return *changes.ftpFileSize;
}

BOOL WINAPI queryOption(HINTERNET handle, DWORD option, LPVOID buffer, LPDWORD length) {
  if (option != INTERNET_OPTION_PROXY || !changes.accessType)
    return real(static_cast<decltype(&InternetQueryOptionA)>(nullptr), "InternetQueryOptionA")(
        handle, option, buffer, length);
  *static_cast<DWORD*>(buffer) = *changes.accessType;
  return TRUE;
}

HINTERNET WINAPI openUrl(HINTERNET session, LPCSTR address, LPCSTR headers, DWORD headersLength,
                         DWORD flags, DWORD_PTR context) {
  if (changes.noUrl) {
    SetLastError(*changes.noUrl);
    return nullptr;
  }
  if (address == changes.openUrlAt) address = changes.openUrlInstead.c_str();
  return real(static_cast<decltype(&InternetOpenUrlA)>(nullptr), "InternetOpenUrlA")(
      session, address, headers, headersLength, flags, context);
}

BOOL WINAPI available(HINTERNET file, LPDWORD bytes, DWORD flags, DWORD_PTR context) {
  ++changes.questions;
  if (changes.nothingTold) {
    SetLastError(*changes.nothingTold);
    return FALSE;
  }
  return real(static_cast<decltype(&InternetQueryDataAvailable)>(nullptr),
              "InternetQueryDataAvailable")(file, bytes, flags, context);
}

BOOL WINAPI read(HINTERNET file, LPVOID buffer, DWORD size, LPDWORD received) {
  ++changes.reads;
  if (changes.noRead) {
    SetLastError(*changes.noRead);
    return FALSE;
  }
  const auto readFile = real(static_cast<decltype(&InternetReadFile)>(nullptr), "InternetReadFile");
  BOOL good = readFile(file, buffer, size, received);
  DWORD more = *received;
  while (changes.readsWhole && good && more > 0 && *received < size) {
    good = readFile(file, static_cast<char*>(buffer) + *received, size - *received, &more);
    *received += more;
  }
  return good;
}

BOOL WINAPI closeHandle(HINTERNET handle) {
  const BOOL closed =
      real(static_cast<decltype(&InternetCloseHandle)>(nullptr), "InternetCloseHandle")(handle);
  if (!closed) ++changes.staleCloses;
  return closed;
}

FARPROC WINAPI lookUp(HMODULE module, LPCSTR name) {
  const std::pair<const char*, void*> replacements[] = {
      {"InternetOpenA", reinterpret_cast<void*>(openSession)},
      {"InternetConnectA", reinterpret_cast<void*>(connect)},
      {"InternetSetOptionA", reinterpret_cast<void*>(setOption)},
      {"FtpOpenFileA", reinterpret_cast<void*>(openFtpFile)},
      {"FtpGetFileSize", reinterpret_cast<void*>(fileSize)},
      {"InternetQueryOptionA", reinterpret_cast<void*>(queryOption)},
      {"InternetOpenUrlA", reinterpret_cast<void*>(openUrl)},
      {"InternetQueryDataAvailable", reinterpret_cast<void*>(available)},
      {"InternetReadFile", reinterpret_cast<void*>(read)},
      {"InternetCloseHandle", reinterpret_cast<void*>(closeHandle)},
  };
  if (name == changes.missing) return nullptr;
  if (module == GetModuleHandleW(L"wininet.dll"))
    for (const auto& [known, replacement] : replacements)
      if (std::string(name) == known) return reinterpret_cast<FARPROC>(replacement);
  return realLookup(module, name);
}

}  // namespace

InternetPatch::InternetPatch() : patch_(nullptr, "KERNEL32.dll", "GetProcAddress", lookUp) {
  realLookup = patch_.original<std::remove_pointer_t<Lookup>>();
}

InternetPatch::~InternetPatch() { changes = {}; }

void InternetPatch::ftpPort(unsigned short port) { changes.ftpPort = port; }
void InternetPatch::ftpFileSize(unsigned long size) { changes.ftpFileSize = size; }
void InternetPatch::ftpFileSizeUnknown() { changes.ftpFileSizeUnknown = true; }
void InternetPatch::accessType(unsigned long type) { changes.accessType = type; }
void InternetPatch::openUrlAt(const char* address, const char* instead) {
  changes.openUrlAt = address;
  changes.openUrlInstead = instead;
}
void InternetPatch::noSession(unsigned long code) { changes.noSession = code; }
void InternetPatch::noUrl(unsigned long code) { changes.noUrl = code; }
void InternetPatch::noRead(unsigned long code) { changes.noRead = code; }
void InternetPatch::readsWhole() { changes.readsWhole = true; }
void InternetPatch::nothingTold(unsigned long code) { changes.nothingTold = code; }
void InternetPatch::noFtpFile(unsigned long code) { changes.noFtpFile = code; }
void InternetPatch::noOptions() { changes.noOptions = true; }
unsigned long InternetPatch::flagsOfSession() { return changes.flags; }

const InternetPatch::Options& InternetPatch::optionsOfSession() { return changes.ofSession; }
const InternetPatch::Options& InternetPatch::optionsElsewhere() { return changes.elsewhere; }
void InternetPatch::missing(const char* function) { changes.missing = function; }
int InternetPatch::questions() const noexcept { return changes.questions; }
int InternetPatch::reads() const noexcept { return changes.reads; }
int InternetPatch::staleCloses() const noexcept { return changes.staleCloses; }
