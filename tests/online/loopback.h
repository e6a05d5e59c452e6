// Sockets on 127.0.0.1.
#pragma once

#include <winsock2.h>

namespace loopback {

// A listening socket at a port of the system's choice. Throws std::runtime_error when there is
// none.
SOCKET listen(unsigned short& port);
// Whether there is something to accept or to read before that many milliseconds have passed.
bool readable(SOCKET socket, long milliseconds);

}  // namespace loopback
