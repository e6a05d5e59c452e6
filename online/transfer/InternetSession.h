// The connection to the internet that one download uses. Calls block until they are answered.
#pragma once

#include <optional>
#include <string>

#include "online/transfer/internet_functions.h"

class InternetSession {
 public:
  // The system's proxy setting, by its numbers.
  enum Access : DWORD { direct = 1, throughProxy = 3 };

  // What it tells servers that it is.
  static constexpr wchar_t agent[] = L"Vessari Systems Pvt. Ltd";

  // Opens the session, whose calls give up after 30 seconds without an answer. False when the
  // system refuses.
  bool open();
  void close() noexcept;

  // Reads the proxy setting.
  void readProxy();
  DWORD access() const noexcept { return access_; }

  // The system's code of the call that failed last.
  DWORD lastError() const noexcept { return lastError_; }
  bool timedOut() const noexcept { return lastError_ == ERROR_INTERNET_TIMEOUT; }

  // A connection to an FTP server at the protocol's port, kept until the next one or the end of the
  // session. 0 when there is none.
  HINTERNET GetInternetConnectHandle(const std::wstring& server, const std::wstring& user,
                                     const std::wstring& password);

  // An open file: by its address, or by its path on the FTP server that is connected. Empty when it
  // cannot be opened.
  handles::Internet openUrl(const std::wstring& address);
  handles::Internet openFtpFile(const std::wstring& path);

  // The answer's status; 0 when it has none, as over FTP.
  int status(const handles::Internet& file) const;
  // Sizes in bytes; nothing when the server does not tell.
  std::optional<unsigned long long> contentLength(const handles::Internet& file) const;
  std::optional<unsigned long long> ftpFileSize(const handles::Internet& file) const;

  // Up to `size` bytes of the file that was opened last into `buffer`; how many they were, or
  // nothing on a failure. Waits for one byte, not for all of them.
  std::optional<DWORD> read(const handles::Internet& file, char* buffer, DWORD size);

 private:
  handles::Internet taken(HINTERNET handle);
  void limitWaiting() const noexcept;
  DWORD countToRead(const handles::Internet& file, DWORD size);
  std::optional<std::wstring> query(const handles::Internet& file, DWORD level) const;

  std::optional<wininet::Functions> functions_;
  handles::Internet session_;
  handles::Internet ftpConnection_;
  DWORD arrived_ = 0;  // bytes that can be read without waiting, as far as is known
  DWORD access_ = 0;
  DWORD lastError_ = 0;
};
