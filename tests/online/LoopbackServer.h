// Small servers of the tests' own, for what the real ones (RealServers.h) never do, on 127.0.0.1
// and on a thread of their own while they live. They
// answer one connection after another; whatever they wait for is over when they are.
#pragma once

#include <winsock2.h>

#include <map>
#include <string>
#include <vector>

class LoopbackServer {
 public:
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  unsigned short port() const noexcept { return port_; }
  // How many single bytes it has sent where it drips.
  long drops() const noexcept { return drops_; }

 protected:
  LoopbackServer();
  virtual ~LoopbackServer();

  // To be called by the constructor and the destructor of the last class.
  void start();
  void stop();

  virtual void serve(SOCKET client) = 0;

  // Nothing when the client is gone or the server is to stop.
  SOCKET accept(SOCKET listener) const;
  bool readable(SOCKET socket) const;
  bool readLine(SOCKET client, std::string& line) const;
  bool send(SOCKET client, const std::string& bytes) const;
  bool stopping() const noexcept { return WaitForSingleObject(stop_, 0) == WAIT_OBJECT_0; }
  void rest() const;
  // A byte now and then, for as long as the client takes them.
  void drip(SOCKET client);
  void remember(const std::string& line);

  // Holds what the test and the server's thread share.
  mutable CRITICAL_SECTION lock_;

 private:
  static DWORD WINAPI threadProcedure(void* self);

  SOCKET listener_ = INVALID_SOCKET;
  unsigned short port_ = 0;
  HANDLE thread_ = nullptr;
  HANDLE stop_ = nullptr;
  LONG drops_ = 0;
  std::vector<std::string> lines_;

 public:
  // The requests so far: the first line of each, or each command.
  std::vector<std::string> requests() const;
};

class HttpServer final : public LoopbackServer {
 public:
  struct Answer {
    std::string bytes;     // status line, headers and body
    bool reset = false;    // then breaks the connection instead of closing it
    bool endless = false;  // then sends more for as long as the client takes it
    bool drips = false;    // the same, a byte now and then
  };

  explicit HttpServer(std::map<std::string, Answer> answers);
  ~HttpServer() override;

  // "http://127.0.0.1:<port>" and the path.
  std::wstring url(const std::wstring& path) const;

  // From now on it answers otherwise.
  void change(const std::string& path, const Answer& answer);

  // What the last client called itself; to be asked when it has had its answer.
  const std::string& agent() const noexcept { return agent_; }

  // A file that is there.
  static Answer ok(const std::string& body) { return {head(body.size()) + body}; }
  // Whatever a test wants to be sent.
  static Answer raw(const std::string& bytes) { return {bytes}; }
  // The status line and headers of a file that is there.
  static std::string head(std::size_t length);

 private:
  void serve(SOCKET client) override;
  Answer answerTo(const std::string& path) const;

  std::map<std::string, Answer> answers_;  // by path
  std::string agent_;
};

// Greets, lets everybody in and breaks off in the middle of the first file that is asked for, or
// lets it drip.
class FtpServer final : public LoopbackServer {
 public:
  enum class Ending { breaksOff, drips };
  explicit FtpServer(std::string greeting, std::string pieceOfFile = {},
                     Ending ending = Ending::breaksOff);
  ~FtpServer() override;

 private:
  void serve(SOCKET client) override;
  bool answer(SOCKET client, const std::string& command);
  void sendFile();

  std::string greeting_;
  std::string pieceOfFile_;
  Ending ending_;
  SOCKET passive_ = INVALID_SOCKET;
};
