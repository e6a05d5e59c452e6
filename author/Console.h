// Where the program writes to: a console in its own letters, a file or pipe in UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "author/Work.h"

namespace author {

class Console : public Work {
 public:
  virtual void print(std::wstring_view text) = 0;     // what was asked for
  virtual void complain(std::wstring_view text) = 0;  // why it is not had

 protected:
  ~Console() = default;
};

// The process' own. Steps are shown in one line of a console and nowhere else. Ctrl+C ends the run
// at its next check.
class SystemConsole final : public Console {
 public:
  SystemConsole() noexcept;
  ~SystemConsole();
  SystemConsole(const SystemConsole&) = delete;
  SystemConsole& operator=(const SystemConsole&) = delete;

  void print(std::wstring_view text) override;
  void complain(std::wstring_view text) override;
  void show(const std::wstring& step) override;
  bool keepGoing() override;

  // True when something that was printed got lost: a full disk, a closed pipe.
  bool hasLost() const noexcept { return hasLost_; }

 private:
  struct Stream {
    HANDLE handle;
    bool isConsole;
  };
  static Stream stream(DWORD number) noexcept;
  static bool write(const Stream& stream, std::wstring_view text) noexcept;
  void clearStep();

  Stream out_;
  Stream errors_;
  std::size_t stepLength_ = 0;
  DWORD shownAt_ = 0;
  bool hasLost_ = false;
};

std::string toUtf8(std::wstring_view text);

}  // namespace author
