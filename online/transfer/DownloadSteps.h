// What checking and transferring files have in common: steps that a cancel ends, failures that are
// shown before they end the run, and files that are opened by their addresses.
#pragma once

#include <string>

#include "common/errors.h"
#include "online/transfer/DownloadView.h"
#include "online/transfer/InternetSession.h"
#include "online/transfer/modWINInetURL.h"

// An error on purpose (512) that needs no message any more: the user has seen one, or has
// cancelled.
class HandledError : public Error {
 public:
  explicit HandledError(std::wstring_view description) : Error(errors::cancelled, description) {}
};

class DownloadSteps {
 public:
  DownloadSteps(InternetSession& session, DownloadView& view) : session_(session), view_(view) {}

 protected:
  // Lets pending events run; raises 512 when the run was cancelled.
  void check() const;

  // The caption and the line about the file at hand, remembered for messages.
  void showCaption(const std::wstring& text);
  void showCurrent(const std::wstring& text);
  const std::wstring& current() const noexcept { return current_; }
  // Shows the file's address, as far as its scheme is known.
  void showAddress(const modWINInetURL::CrackedUrl& parts);

  // Opens a file by its address, or by its path on its FTP server. What keeps it from being opened
  // is shown and raised.
  handles::Internet openUrl(const std::wstring& address);
  handles::Internet openFtpFile(const std::wstring& path);
  // A file that the server does not have is closed, shown and raised.
  void refuseMissing(handles::Internet& file);

  // Show a message, then raise 512 with the same text or with the description given.
  [[noreturn]] void failWith(const std::wstring& text);
  [[noreturn]] void failWith(const std::wstring& text, const std::wstring& description);
  [[noreturn]] void failToConnect();
  [[noreturn]] void failToFind();

  InternetSession& session_;
  DownloadView& view_;

 private:
  std::wstring caption_;
  std::wstring current_;
};

// What the system says about an error, behind a message.
std::wstring withErrorText(const std::wstring& message, unsigned long code);

// What the log calls the window of a download.
inline constexpr wchar_t downloadForm[] = L"frmDownloadProgress";
