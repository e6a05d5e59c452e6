#include "tests/online/LoopbackServer.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tests/online/loopback.h"

namespace {

constexpr std::string_view agentHeader = "User-Agent: ";

constexpr DWORD threadLimit = 20000;  // milliseconds
constexpr long pollTime = 20;         // milliseconds
constexpr DWORD betweenPieces = 1;    // milliseconds
constexpr DWORD betweenDrops = 10;    // milliseconds

void resetWhenClosed(SOCKET client) {
  const linger atOnce = {1, 0};
  setsockopt(client, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof atOnce);
}

}  // namespace

LoopbackServer::LoopbackServer() {
  InitializeCriticalSection(&lock_);
  stop_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  listener_ = loopback::listen(port_);
}

LoopbackServer::~LoopbackServer() {
  CloseHandle(stop_);
  closesocket(listener_);
  DeleteCriticalSection(&lock_);
}

void LoopbackServer::start() {
  thread_ = CreateThread(nullptr, 0, threadProcedure, this, 0, nullptr);
}

void LoopbackServer::stop() {
  SetEvent(stop_);
  WaitForSingleObject(thread_, threadLimit);
  CloseHandle(thread_);
}

bool LoopbackServer::readable(SOCKET socket) const {
  while (!stopping())
    if (loopback::readable(socket, pollTime)) return true;
  return false;
}

SOCKET LoopbackServer::accept(SOCKET listener) const {
  return readable(listener) ? ::accept(listener, nullptr, nullptr) : INVALID_SOCKET;
}

bool LoopbackServer::readLine(SOCKET client, std::string& line) const {
  line.clear();
  char piece[512];
  while (!line.ends_with('\n')) {
    const int there = readable(client) ? recv(client, piece, sizeof piece, MSG_PEEK) : 0;
    if (there <= 0) return false;
    const char* const end = std::find(piece, piece + there, '\n');
    const auto wanted = static_cast<int>(end - piece) + (end == piece + there ? 0 : 1);
    const int taken = recv(client, piece, wanted, 0);
    if (taken <= 0) return false;
    line.append(piece, static_cast<std::size_t>(taken));
  }
  std::erase_if(line, [](char letter) { return letter == '\r' || letter == '\n'; });
  return true;
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

void LoopbackServer::rest() const { WaitForSingleObject(stop_, betweenPieces); }

void LoopbackServer::drip(SOCKET client) {
  while (send(client, "d")) {
    InterlockedIncrement(&drops_);
    WaitForSingleObject(stop_, betweenDrops);
  }
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
  for (std::string header = "x"; !header.empty();) {
    if (!readLine(client, header)) return;
    if (header.starts_with(agentHeader)) agent_ = header.substr(agentHeader.size());
  }
  const auto start = request.find(' ') + 1;
  const std::string path = request.substr(start, request.find(' ', start) - start);
  const Answer answer = answerTo(path);
  if (!send(client, answer.bytes)) return;
  // Whoever closes such a file may first want to have what has come in already: at the pace of a
  // network that has an end.
  while (answer.endless && send(client, std::string(4096, 'e'))) rest();
  if (answer.drips) drip(client);
  if (answer.reset)
    resetWhenClosed(client);
  else
    shutdown(client, SD_SEND);
}

HttpServer::Answer HttpServer::answerTo(const std::string& path) const {
  EnterCriticalSection(&lock_);
  const auto found = answers_.find(path);
  const Answer answer =
      found == answers_.end()
          ? raw("HTTP/1.0 404 Not Found\r\nContent-Length: 5\r\nConnection: close\r\n\r\nnone\n")
          : found->second;
  LeaveCriticalSection(&lock_);
  return answer;
}

void HttpServer::change(const std::string& path, const Answer& answer) {
  EnterCriticalSection(&lock_);
  answers_[path] = answer;
  LeaveCriticalSection(&lock_);
}

FtpServer::FtpServer(std::string greeting, std::string pieceOfFile, Ending ending)
    : greeting_(std::move(greeting)), pieceOfFile_(std::move(pieceOfFile)), ending_(ending) {
  start();
}

FtpServer::~FtpServer() { stop(); }

void FtpServer::serve(SOCKET client) {
  send(client, greeting_ + "\r\n");
  std::string line;
  while (greeting_.starts_with("220") && readLine(client, line)) {
    remember(line);
    if (!answer(client, line.substr(0, line.find(' ')))) break;
  }
  if (passive_ != INVALID_SOCKET) closesocket(passive_);
  passive_ = INVALID_SOCKET;
}

bool FtpServer::answer(SOCKET client, const std::string& command) {
  if (command == "USER") return send(client, "331 password please\r\n");
  if (command == "PASS") return send(client, "230 welcome\r\n");
  if (command == "TYPE") return send(client, "200 ok\r\n");
  if (command == "PASV") {
    unsigned short port = 0;
    if (passive_ != INVALID_SOCKET) closesocket(passive_);
    passive_ = loopback::listen(port);
    return send(client, "227 entering passive mode (127,0,0,1," + std::to_string(port / 256) + "," +
                            std::to_string(port % 256) + ")\r\n");
  }
  if (command != "RETR") return send(client, "502 what\r\n");
  send(client, "150 here it comes\r\n");
  sendFile();
  return false;
}

void FtpServer::sendFile() {
  const SOCKET data = accept(passive_);
  send(data, pieceOfFile_);
  if (ending_ == Ending::drips) drip(data);
  resetWhenClosed(data);
  closesocket(data);
}
