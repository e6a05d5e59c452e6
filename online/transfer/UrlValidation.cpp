#include "online/transfer/UrlValidation.h"

#include "common/log.h"
#include "common/report.h"
#include "common/text.h"
#include "online/transfer/file_address.h"

using modCommon::WriteLog;
using modWINInetURL::CrackedUrl;
using Row = DownloadTable::Row;

namespace {

// Opening, asking and closing.
constexpr short stepsPerFile = 3;

}  // namespace

bool UrlValidation::ValidateURLs() noexcept {
  try {
    GetTotalDownloadSize();
    return true;
  } catch (...) {
    const Error error = errors::current();
    modCommon::reportErrorOfForm(L"GetTotalDownloadSize", downloadForm, error);
    if (error.number() != errors::cancelled) view_.fail(error.description());
    return false;
  }
}

void UrlValidation::GetTotalDownloadSize() {
  WriteLog(L"ENTERING ValidateURLs().");
  begin();
  for (std::size_t column = 0; column < table_.columns(); ++column) {
    if (table_.text(column, Row::itemNumber).empty()) break;
    measureItem(column);
  }
  WriteLog(L"EXITING GetTotalDownloadSize() successfully.");
  showCurrent(L"Current Download :");
  showCaption(L"Downloading...");
}

void UrlValidation::begin() {
  totalSize_ = 0;
  view_.resetOverall(static_cast<short>(3 * table_.itemCount() + 2 * table_.addressCount()));
  addressCount_ = 0;
  showCaption(L"Validating URLs...");
  showCurrent(L"Current URL :");
  check();
}

void UrlValidation::measureItem(std::size_t column) {
  for (const Row kind : DownloadTable::kinds) {
    view_.resetCurrent(stepsPerFile);
    if (!table_.address(column, kind).empty()) measure(column, kind);
    check();
  }
  view_.stepOverall();
  check();
}

void UrlValidation::measure(std::size_t column, Row kind) {
  const std::wstring& address = table_.address(column, kind);
  table_.setParts(column, kind, modWINInetURL::CrackUrl(address));
  const auto& parts = table_.parts(column, kind);
  if (parts) showAddress(*parts);
  check();
  if (!online::isFileAddress(parts)) failToFind();
  if (!parts)
    failWith(L"Invalid URL. The URL scheme could not be recognized, or is not supported.");
  if (parts->scheme == modWINInetURL::schemeHttp) return measureHttp(column, kind, address);
  if (parts->scheme == modWINInetURL::schemeFtp) return measureFtp(column, kind, address, *parts);
  const std::wstring text = L"Internet protocol scheme specified is not valid or is not supported.";
  failWith(text, ::text::join({text, L" URL : ", address}));
}

void UrlValidation::measureHttp(std::size_t column, Row kind, const std::wstring& address) {
  WriteLog({L"URL = ", address});
  WriteLog(L"Locating file....");
  table_.setSize(column, kind, 0);
  handles::Internet file = session_.openUrl(address);
  view_.stepCurrent(1);
  check();
  if (!file) failToConnect();
  refuseMissing(file);
  if (const auto bytes = session_.contentLength(file))
    take(column, kind, *bytes);
  else
    WriteLog(L"File size could not be retrieved.");
  view_.stepCurrent(1);
}

// The servers take paths as they are, not as addresses write them.
void UrlValidation::measureFtp(std::size_t column, Row kind, const std::wstring& address,
                               CrackedUrl parts) {
  parts.path = text::replaceAll(parts.path, L"%20", L" ");
  const std::wstring plain = text::replaceAll(address, L"%20", L" ");
  WriteLog({L"URL = ", plain});
  WriteLog(L"Locating FTP directory... ");
  table_.setSize(column, kind, 0);
  if (session_.access() == InternetSession::direct)
    measureDirectFtp(column, kind, parts);
  else if (session_.access() == InternetSession::throughProxy)
    measureProxiedFtp(column, kind, plain);
}

void UrlValidation::measureDirectFtp(std::size_t column, Row kind, const CrackedUrl& parts) {
  const bool connected = session_.GetInternetConnectHandle(parts.host, parts.user, parts.password);
  WriteLog({L"Opening an FTP Session handle for FTP Server named : ", parts.host});
  check();
  if (!connected) failToConnect();
  WriteLog(L"FTP Session handle opened successfully");
  const handles::Internet file = openFtpFile(parts.path);
  check();
  take(column, kind, session_.ftpFileSize(file).value_or(0));
  view_.stepCurrent(1);
}

void UrlValidation::measureProxiedFtp(std::size_t column, Row kind, const std::wstring& address) {
  WriteLog(L"Calling InternetOpenURL() to log on to the FTP server.");
  handles::Internet file = openUrl(address);
  view_.stepCurrent(1);
  check();
  refuseMissing(file);
  auto bytes = session_.contentLength(file);
  if (!bytes) bytes = session_.ftpFileSize(file);
  if (!bytes) failWith(L"Invalid URL or the URL scheme could not be recognized.");
  take(column, kind, *bytes);
  view_.stepCurrent(1);
  WriteLog(L"Connected to the FTP server.");
}

void UrlValidation::take(std::size_t column, Row kind, unsigned long long bytes) {
  table_.setSize(column, kind, bytes);
  totalSize_ += static_cast<double>(bytes);
  ++addressCount_;
  WriteLog({L"File size = ", table_.sizeText(column, kind), L" bytes"});
}
