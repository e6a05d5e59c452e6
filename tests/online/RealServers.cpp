#include "tests/online/RealServers.h"

#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "common/module.h"
#include "tests/online/loopback.h"
#include "tests/support/Skipped.h"

namespace {

constexpr long startLimit = 30000;  // milliseconds

// The path that programs outside of Wine know a file by.
std::string outsidePath(const std::wstring& path) {
  using Convert = char*(CDECL*)(const wchar_t*);
  const auto convert = reinterpret_cast<Convert>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  char* const name = convert ? convert(path.c_str()) : nullptr;
  if (!name) throw std::runtime_error("no path outside of Wine");
  const std::string result = name;
  HeapFree(GetProcessHeap(), 0, name);
  return result;
}

std::wstring wide(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

RealServers::RealServers() : listener_(loopback::listen(port_)) {
  start();
  if (loopback::readable(listener_.get(), startLimit))
    connection_ = Socket(accept(listener_.get(), nullptr, nullptr));
  readPorts();
}

std::wstring RealServers::url(const std::wstring& path) const {
  return L"http://127.0.0.1:" + std::to_wstring(httpPort_) + path;
}

// Wine starts a program of the system around it as it starts one of its own. The command line names
// this Python wholly too: from a mere name it would take the first one in the path for itself.
void RealServers::start() const {
  const std::wstring servers = module::folder() + L"real_servers.py";
  if (GetFileAttributesW(servers.c_str()) == INVALID_FILE_ATTRIBUTES)
    throw Skipped("it needs the HTTP and FTP servers of the machine of the build");
  std::wstring program = L"\\\\?\\unix" QUILLET_PYTHON;
  for (wchar_t& letter : program)
    if (letter == L'/') letter = L'\\';
  std::wstring command = L"\"" QUILLET_PYTHON L"\" \"" + wide(outsidePath(servers)) + L"\" " +
                         std::to_wstring(port_) + L" \"" + wide(outsidePath(folder_.path())) +
                         L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &process))
    throw std::runtime_error("the real servers cannot be started");
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

void RealServers::readPorts() {
  char line[32] = {};
  for (int length = 0; length < 31 && !std::strchr(line, '\n');) {
    const int count = loopback::readable(connection_.get(), startLimit)
                          ? recv(connection_.get(), line + length, 31 - length, 0)
                          : 0;
    if (count <= 0) throw std::runtime_error("the real servers did not start");
    length += count;
  }
  if (std::sscanf(line, "%hu %hu", &httpPort_, &ftpPort_) != 2)
    throw std::runtime_error("the real servers did not tell their ports");
}
