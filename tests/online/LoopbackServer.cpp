#include "tests/online/LoopbackServer.h"

#include <stdexcept>

namespace {

struct Winsock {
  Winsock() {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
  }
};

constexpr DWORD threadLimit = 20000;  // milliseconds

}  // namespace

LoopbackServer::LoopbackServer() {
  static const Winsock winsock;
  InitializeCriticalSection(&lock_);
  stop_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  listener_ = listenOnLoopback(port_);
}

void LoopbackServer::start() {
  thread_ = CreateThread(nullptr, 0, threadProcedure, this, 0, nullptr);
}

void LoopbackServer::stop() {
  SetEvent(stop_);
  WaitForSingleObject(thread_, threadLimit);
  CloseHandle(thread_);
  CloseHandle(stop_);
  closesocket(listener_);
  DeleteCriticalSection(&lock_);
}

SOCKET LoopbackServer::listenOnLoopback(unsigned short& port) {
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int length = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      listen(listener, 5) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
    throw std::runtime_error("no loopback socket");
  port = ntohs(address.sin_port);
  return listener;
}

bool LoopbackServer::readable(SOCKET socket) const {
  while (!stopping()) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(socket, &set);
    timeval wait = {0, 20000};
    if (select(0, &set, nullptr, nullptr, &wait) > 0) return true;
  }
  return false;
}

SOCKET LoopbackServer::accept(SOCKET listener) const {
  return readable(listener) ? ::accept(listener, nullptr, nullptr) : INVALID_SOCKET;
}

bool LoopbackServer::readLine(SOCKET client, std::string& line) const {
  line.clear();
  for (;;) {
    char letter;
    if (!readable(client) || recv(client, &letter, 1, 0) != 1) return false;
    if (letter == '\n') return true;
    if (letter != '\r') line += letter;
  }
}

bool LoopbackServer::send(SOCKET client, const std::string& bytes) const {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(client, &set);
    timeval wait = {0, 20000};
    if (stopping()) return false;
    if (select(0, nullptr, &set, nullptr, &wait) <= 0) continue;
    const auto chunk = static_cast<int>(std::min<std::size_t>(bytes.size() - sent, 4096));
    const int count = ::send(client, bytes.data() + sent, chunk, 0);
    if (count <= 0) return false;
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

void LoopbackServer::remember(const std::string& line) {
  EnterCriticalSection(&lock_);
  lines_.push_back(line);
  LeaveCriticalSection(&lock_);
}

std::vector<std::string> LoopbackServer::requests() const {
  EnterCriticalSection(&lock_);
  const auto copy = lines_;
  LeaveCriticalSection(&lock_);
  return copy;
}

DWORD WINAPI LoopbackServer::threadProcedure(void* self) {
  auto& server = *static_cast<LoopbackServer*>(self);
  while (!server.stopping()) {
    const SOCKET client = server.accept(server.listener_);
    if (client == INVALID_SOCKET) continue;
    server.serve(client);
    closesocket(client);
  }
  return 0;
}

HttpServer::HttpServer(std::map<std::string, Answer> answers) : answers_(std::move(answers)) {
  start();
}

HttpServer::~HttpServer() { stop(); }

std::wstring HttpServer::url(const std::wstring& path) const {
  return L"http://127.0.0.1:" + std::to_wstring(port()) + path;
}

std::string HttpServer::head(std::size_t length) {
  return "HTTP/1.0 200 OK\r\nContent-Type: application/zip\r\nContent-Length: " +
         std::to_string(length) + "\r\nConnection: close\r\n\r\n";
}

void HttpServer::serve(SOCKET client) {
  std::string request;
  if (!readLine(client, request)) return;
  remember(request);
  for (std::string header = "x"; !header.empty();)
    if (!readLine(client, header)) return;
  const auto start = request.find(' ') + 1;
  const std::string path = request.substr(start, request.find(' ', start) - start);
  const auto found = answers_.find(path);
  if (found == answers_.end()) {
    send(client, "HTTP/1.0 404 Not Found\r\nContent-Length: 5\r\nConnection: close\r\n\r\nnone\n");
    return;
  }
  const Answer& answer = found->second;
  if (!send(client, answer.bytes)) return;
  while (answer.endless && send(client, std::string(4096, 'e'))) {
  }
  if (answer.reset) {
    const linger atOnce = {1, 0};
    setsockopt(client, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce),
               sizeof atOnce);
  } else {
    shutdown(client, SD_SEND);
  }
}

FtpServer::FtpServer(std::map<std::string, std::string> files) : files_(std::move(files)) {
  start();
}

FtpServer::~FtpServer() { stop(); }

void FtpServer::serve(SOCKET client) {
  send(client, "220 ready\r\n");
  std::string line;
  while (readLine(client, line)) {
    remember(line);
    const auto blank = line.find(' ');
    const std::string argument = blank == line.npos ? "" : line.substr(blank + 1);
    if (!answer(client, line.substr(0, blank), argument)) break;
  }
  if (passive_ != INVALID_SOCKET) closesocket(passive_);
  passive_ = INVALID_SOCKET;
}

bool FtpServer::answer(SOCKET client, const std::string& command, const std::string& argument) {
  if (command == "USER") return send(client, "331 password please\r\n");
  if (command == "PASS") {
    if (argument == "wrong") return send(client, "530 no\r\n");
    return send(client, "230 welcome\r\n");
  }
  if (command == "TYPE") return send(client, "200 ok\r\n");
  if (command == "PASV") {
    unsigned short port = 0;
    if (passive_ != INVALID_SOCKET) closesocket(passive_);
    passive_ = listenOnLoopback(port);
    return send(client, "227 entering passive mode (127,0,0,1," + std::to_string(port / 256) + "," +
                            std::to_string(port % 256) + ")\r\n");
  }
  if (command == "RETR") {
    sendFile(client, argument);
    return true;
  }
  if (command == "QUIT") {
    send(client, "221 bye\r\n");
    return false;
  }
  return send(client, "502 what\r\n");
}

void FtpServer::sendFile(SOCKET client, const std::string& path) {
  const auto file = files_.find(path);
  if (file == files_.end()) {
    send(client, "550 no such file\r\n");
    return;
  }
  send(client, "150 here it comes\r\n");
  const SOCKET data = accept(passive_);
  send(data, file->second);
  closesocket(data);
  send(client, "226 done\r\n");
}
