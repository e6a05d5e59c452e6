#include "tests/online/loopback.h"

#include <stdexcept>

namespace {

struct Winsock {
  Winsock() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
  }
};

}  // namespace

SOCKET loopback::listen(unsigned short& port) {
  static const Winsock winsock;
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int length = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      ::listen(listener, 5) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    closesocket(listener);
    throw std::runtime_error("no loopback socket");
  }
  port = ntohs(address.sin_port);
  return listener;
}

bool loopback::readable(SOCKET socket, long milliseconds) {
  fd_set set;
  FD_ZERO(&set);
  FD_SET(socket, &set);
  timeval wait = {milliseconds / 1000, milliseconds % 1000 * 1000};
  return select(0, &set, nullptr, nullptr, &wait) > 0;
}
