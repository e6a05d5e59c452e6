#include "online/transfer/modWINInetURL.h"

#include <algorithm>
#include <memory>

#include "common/ansi.h"
#include "common/letter_case.h"
#include "online/transfer/internet_functions.h"

namespace modWINInetURL {
namespace {

constexpr DWORD partSize = 1024;
constexpr DWORD schemeSize = 32;

static_assert(sizeof(URL_COMPONENTSA) == 60);

struct Buffers {
  char host[partSize];
  char user[partSize];
  char password[partSize];
  char path[partSize];
  char extraInfo[partSize];
  char scheme[schemeSize];
};

URL_COMPONENTSA componentsOver(Buffers& buffers) {
  URL_COMPONENTSA components = {};
  components.dwStructSize = sizeof components;
  components.lpszHostName = buffers.host;
  components.dwHostNameLength = partSize;
  components.lpszUserName = buffers.user;
  components.dwUserNameLength = partSize;
  components.lpszPassword = buffers.password;
  components.dwPasswordLength = partSize;
  components.lpszUrlPath = buffers.path;
  components.dwUrlPathLength = partSize;
  components.lpszExtraInfo = buffers.extraInfo;
  components.dwExtraInfoLength = partSize;
  components.lpszScheme = buffers.scheme;
  components.dwSchemeLength = schemeSize;
  return components;
}

// As long as the system reports, never past the buffer.
std::wstring part(const char* buffer, DWORD length, DWORD size) {
  return text::fromAnsi({buffer, std::min(length, size)});
}

}  // namespace

std::optional<CrackedUrl> CrackUrl(std::wstring_view url) {
  // A "?" in place of a character would begin a query; in the query it does no harm.
  if (url.empty() || !text::fitsAnsi(url.substr(0, url.find(L'?')))) return std::nullopt;
  const std::string ansi = text::toAnsi(url);
  // Together they are larger than a frame of the stack should be.
  const auto made = std::make_unique<Buffers>();
  Buffers& buffers = *made;
  URL_COMPONENTSA components = componentsOver(buffers);
  const wininet::Functions functions;
  if (!functions.crackUrl(ansi.c_str(), 0, 0, &components)) return std::nullopt;

  CrackedUrl result;
  result.host = part(buffers.host, components.dwHostNameLength, partSize);
  result.user = part(buffers.user, components.dwUserNameLength, partSize);
  result.password = part(buffers.password, components.dwPasswordLength, partSize);
  result.path = part(buffers.path, components.dwUrlPathLength, partSize);
  result.extraInfo = part(buffers.extraInfo, components.dwExtraInfoLength, partSize);
  result.scheme = static_cast<int>(components.nScheme);
  result.port = components.nPort;
  result.schemeName = part(buffers.scheme, components.dwSchemeLength, schemeSize);
  return result;
}

std::wstring ErrorText(unsigned long code) {
  constexpr unsigned long badArgument = 87;
  constexpr DWORD longest = 256;
  if ((code > 12000 && code < 12172) || code == badArgument) return {};
  char buffer[2048];
  const DWORD length =
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, buffer, longest, nullptr);
  std::wstring text = text::fromAnsi({buffer, length});
  if (const auto end = text.find(L"\r\n"); end != text.npos) text.resize(end);
  if (text::equalIgnoringCase(text, L"The operation completed successfully.")) return {};
  return text;
}

}  // namespace modWINInetURL
