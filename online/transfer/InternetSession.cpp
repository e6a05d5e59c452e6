#include "online/transfer/InternetSession.h"

#include <algorithm>
#include <utility>

#include "common/ansi.h"
#include "common/log.h"

using modCommon::WriteLog;

namespace {

constexpr DWORD connectFlags = INTERNET_FLAG_EXISTING_CONNECT | INTERNET_FLAG_PASSIVE;
constexpr DWORD urlFlags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_RAW_DATA |
                           INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_TRANSFER_BINARY;
static_assert(connectFlags == 0x28000000 && urlFlags == 0xC4000002);

constexpr DWORD queryLength = HTTP_QUERY_CONTENT_LENGTH;
constexpr DWORD queryStatus = HTTP_QUERY_STATUS_CODE;
static_assert(queryLength == 5 && queryStatus == 19);

constexpr DWORD proxyRecordSize = 516;

constexpr DWORD longestWait = 30000;  // milliseconds

// Calls block the host's only thread, so none may wait for ever. The system would try to connect to
// each of a host's addresses several times over; its number for answers is that of an FTP server's
// answers to commands, too.
constexpr std::pair<DWORD, DWORD> limits[] = {
    {INTERNET_OPTION_CONNECT_TIMEOUT, longestWait},
    {INTERNET_OPTION_CONNECT_RETRIES, 1},
    {INTERNET_OPTION_RECEIVE_TIMEOUT, longestWait},
    {INTERNET_OPTION_DATA_RECEIVE_TIMEOUT, longestWait},
};
static_assert(INTERNET_OPTION_CONTROL_RECEIVE_TIMEOUT == INTERNET_OPTION_RECEIVE_TIMEOUT);

}  // namespace

// To be called before anything else can change the system's last error.
handles::Internet InternetSession::taken(HINTERNET handle) {
  if (!handle) lastError_ = GetLastError();
  arrived_ = 0;
  return handles::Internet(handle);
}

bool InternetSession::open() {
  functions_.emplace();
  const std::string name = text::toAnsi(agent);
  session_ =
      taken(functions_->open(name.c_str(), INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  if (!session_) return false;
  limitWaiting();
  return true;
}

// A system that does not know one of them waits as long as it always did.
void InternetSession::limitWaiting() const noexcept {
  for (auto [option, value] : limits)
    functions_->setOption(session_.get(), option, &value, sizeof value);
}

// The system's functions must not be called with the handles the other way round.
void InternetSession::close() noexcept {
  ftpConnection_.reset();
  session_.reset();
}

void InternetSession::readProxy() {
  // The access type, then two texts.
  DWORD record[proxyRecordSize / sizeof(DWORD)] = {};
  DWORD length = proxyRecordSize;
  // A system that does not know of a proxy has none.
  const bool known = functions_->queryOption(nullptr, INTERNET_OPTION_PROXY, record, &length);
  access_ = known ? record[0] : direct;
}

HINTERNET InternetSession::GetInternetConnectHandle(const std::wstring& server,
                                                    const std::wstring& user,
                                                    const std::wstring& password) {
  if (!session_) return nullptr;
  WriteLog(L"Entering GetInternetConnectHandle()");
  ftpConnection_.reset();
  const std::string host = text::toAnsi(server);
  const std::string name = text::toAnsi(user);
  const std::string secret = text::toAnsi(password);
  ftpConnection_ = taken(
      functions_->connect(session_.get(), host.c_str(), INTERNET_INVALID_PORT_NUMBER, name.c_str(),
                          secret.c_str(), INTERNET_SERVICE_FTP, connectFlags, 0));
  if (!ftpConnection_) WriteLog(L"Could not create a valid FTP Session handle.");
  WriteLog(L"Exiting GetInternetConnectHandle()");
  return ftpConnection_.get();
}

handles::Internet InternetSession::openUrl(const std::wstring& address) {
  const std::string ansi = text::toAnsi(address);
  return taken(functions_->openUrl(session_.get(), ansi.c_str(), nullptr, 0, urlFlags, 0));
}

handles::Internet InternetSession::openFtpFile(const std::wstring& path) {
  const std::string ansi = text::toAnsi(path);
  return taken(functions_->ftpOpenFile(ftpConnection_.get(), ansi.c_str(), GENERIC_READ,
                                       INTERNET_FLAG_RELOAD, 0));
}

std::optional<std::wstring> InternetSession::query(const handles::Internet& file,
                                                   DWORD level) const {
  char buffer[100] = {};
  DWORD length = sizeof buffer;
  if (!functions_->queryInfo(file.get(), level, buffer, &length, nullptr)) return std::nullopt;
  return text::fromAnsi({buffer, length});
}

int InternetSession::status(const handles::Internet& file) const {
  return static_cast<int>(std::wcstol(query(file, queryStatus).value_or(L"").c_str(), nullptr, 10));
}

// A header that is no number tells nothing.
std::optional<unsigned long long> InternetSession::contentLength(
    const handles::Internet& file) const {
  const std::wstring header = query(file, queryLength).value_or(L"");
  if (header.empty() || header.size() > 18 ||
      header.find_first_not_of(L"0123456789") != header.npos)
    return std::nullopt;
  return std::wcstoull(header.c_str(), nullptr, 10);
}

std::optional<unsigned long long> InternetSession::ftpFileSize(
    const handles::Internet& file) const {
  DWORD high = 0;
  SetLastError(ERROR_SUCCESS);
  const DWORD low = functions_->ftpGetFileSize(file.get(), &high);
  if (low == INVALID_FILE_SIZE && GetLastError() != ERROR_SUCCESS) return std::nullopt;
  return static_cast<unsigned long long>(high) << 32 | low;
}

// 0 when nothing came in time. A system that has nothing to tell before it has waited is given one
// byte to wait for; whatever else keeps it from telling, the read will meet.
DWORD InternetSession::countToRead(const handles::Internet& file, DWORD size) {
  if (arrived_ == 0 && !functions_->queryDataAvailable(file.get(), &arrived_, 0, 0)) {
    const DWORD error = GetLastError();
    if (error == ERROR_INTERNET_TIMEOUT) return 0;
    if (error != ERROR_IO_PENDING) return size;
  }
  return std::clamp(arrived_, DWORD{1}, size);
}

// A read comes back when it has all that it wants, and waits anew for every byte: a server that
// sends one now and then would hold the caller for hours.
std::optional<DWORD> InternetSession::read(const handles::Internet& file, char* buffer,
                                           DWORD size) {
  const DWORD wanted = countToRead(file, size);
  DWORD received = 0;
  if (wanted == 0 || !functions_->readFile(file.get(), buffer, wanted, &received)) {
    lastError_ = GetLastError();
    return std::nullopt;
  }
  arrived_ -= std::min(arrived_, received);
  return received;
}
