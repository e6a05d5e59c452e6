#include "online/transfer/DownloadSteps.h"

#include "common/text.h"

void DownloadSteps::check() const {
  if (!view_.keepGoing()) throw HandledError(errors::descriptionOf(errors::cancelled));
}

void DownloadSteps::showCaption(const std::wstring& text) {
  caption_ = text;
  view_.showCaption(text);
}

void DownloadSteps::showCurrent(const std::wstring& text) {
  current_ = text;
  view_.showCurrent(text);
}

void DownloadSteps::showAddress(const modWINInetURL::CrackedUrl& parts) {
  const bool ftp = parts.scheme == modWINInetURL::schemeFtp;
  if (ftp || parts.scheme == modWINInetURL::schemeHttp)
    showCurrent(text::join({ftp ? L"ftp://" : L"http://", parts.host, parts.path}));
}

// Whoever cancelled during a wait does not want to hear what came of it.
handles::Internet DownloadSteps::openUrl(const std::wstring& address) {
  handles::Internet file = session_.openUrl(address);
  if (!file) check();
  if (!file) failToConnect();
  return file;
}

handles::Internet DownloadSteps::openFtpFile(const std::wstring& path) {
  handles::Internet file = session_.openFtpFile(path);
  if (!file) check();
  if (!file && session_.timedOut()) failToConnect();
  if (!file) failToFind();
  return file;
}

// An open succeeds for whatever the server answers.
void DownloadSteps::refuseMissing(handles::Internet& file) {
  constexpr int notFound = 404;
  if (session_.status(file) != notFound) return;
  file.reset();
  failToFind();
}

void DownloadSteps::failWith(const std::wstring& text) { failWith(text, text); }

void DownloadSteps::failWith(const std::wstring& text, const std::wstring& description) {
  view_.fail(text);
  throw HandledError(description);
}

void DownloadSteps::failToConnect() {
  const std::wstring text = L"The attempt to connect to the server failed.";
  failWith(withErrorText(text, session_.lastError()), text);
}

void DownloadSteps::failToFind() {
  const std::wstring text = text::replaceAll(
      L"Unable to locate file \" %s \". The file does not exist or the URL may be invalid.", L"%s",
      current_);
  view_.fail(text, caption_);
  throw HandledError(text);
}

std::wstring withErrorText(const std::wstring& message, unsigned long code) {
  // Not every system calls its success what ErrorText knows it by.
  const std::wstring errorText =
      code == ERROR_SUCCESS ? std::wstring() : modWINInetURL::ErrorText(code);
  return errorText.empty() ? message : text::join({message, L" ", errorText});
}
