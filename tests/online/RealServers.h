// The distribution's own HTTP and FTP servers, serving one folder on 127.0.0.1 while this lives.
// They end with the test's process too, however that ends.
#pragma once

#include <winsock2.h>

#include <string>

#include "tests/support/ScratchFolder.h"

class RealServers {
 public:
  // Throws std::runtime_error when they cannot be started.
  RealServers();
  ~RealServers();
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
  void start(unsigned short port) const;
  void readPorts();

  ScratchFolder folder_;
  SOCKET connection_ = INVALID_SOCKET;
  unsigned short httpPort_ = 0;
  unsigned short ftpPort_ = 0;
};
