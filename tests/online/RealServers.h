// The distribution's own HTTP and FTP servers, serving one folder on 127.0.0.1 while this lives.
// They end with the test's process too, however that ends.
#pragma once

#include <winsock2.h>

#include <string>

#include "common/handles.h"
#include "tests/support/ScratchFolder.h"

class RealServers {
 public:
  // Throws std::runtime_error when they cannot be started.
  RealServers();
  RealServers(const RealServers&) = delete;
  RealServers& operator=(const RealServers&) = delete;

  // What is served. By FTP the user "ann" with the password "sec" is given all of it, whoever logs
  // on without a name the folder "public" in it.
  const ScratchFolder& folder() const noexcept { return folder_; }
  // "http://127.0.0.1:<port>" and the path.
  std::wstring url(const std::wstring& path) const;
  unsigned short httpPort() const noexcept { return httpPort_; }
  unsigned short ftpPort() const noexcept { return ftpPort_; }

 private:
  struct SocketTraits {
    using type = SOCKET;
    static type none() noexcept { return INVALID_SOCKET; }
    static void close(type handle) noexcept { closesocket(handle); }
  };
  using Socket = handles::Unique<SocketTraits>;

  void start() const;
  void readPorts();

  ScratchFolder folder_;
  unsigned short port_ = 0;
  Socket listener_;
  Socket connection_;
  unsigned short httpPort_ = 0;
  unsigned short ftpPort_ = 0;
};
