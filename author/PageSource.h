// Pages of a server.
#pragma once

#include <cstddef>
#include <string>

#include "online/transfer/InternetSession.h"

namespace author {

class PageSource {
 public:
  // Raises an Error when there is no way to the internet.
  PageSource();

  struct Page {
    bool isReached = false;  // a server answered
    int status = 0;
    std::string bytes;
    bool isWhole = true;  // false for one of more than `largestPage` bytes, or cut off

    bool isThere() const noexcept { return isReached && status < 400; }
  };
  static constexpr std::size_t largestPage = 4u << 20;
  Page read(const std::wstring& address);
  // The same without what it holds.
  Page ask(const std::wstring& address);

  InternetSession& session() noexcept { return session_; }

 private:
  InternetSession session_;
};

}  // namespace author
