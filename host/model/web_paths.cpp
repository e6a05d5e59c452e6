#include "host/model/web_paths.h"

#include <windows.h>

#include <algorithm>

#include "common/escapes.h"
#include "common/text.h"
#include "host/model/AutomationObject.h"
#include "host/model/disk.h"

namespace standin {
namespace {

bool startsWith(std::wstring_view value, std::wstring_view start) {
  return value.size() >= start.size() && sameName(value.substr(0, start.size()), start);
}

// "http://server" of "http://server/sub", "file:///C:" of "file:///C:/My Webs".
std::wstring_view serverOf(std::wstring_view url) {
  const auto scheme = url.find(L"://");
  if (scheme == url.npos) return url;
  const std::size_t host = startsWith(url, L"file:///") ? 8 : scheme + 3;
  return url.substr(0, std::min(url.find(L'/', host), url.size()));
}

std::wstring plainWebUrl(const Session& session) {
  return session.options.webUrl.empty() ? fileUrl(session.webFolder) : session.options.webUrl;
}

std::string utf8(std::wstring_view value) {
  const int length = static_cast<int>(value.size());
  std::string bytes(3 * value.size(), '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, value.data(), length, bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

bool isUnescaped(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9') || std::string_view("-._~:/").find(byte) != std::string::npos;
}

std::wstring escaped(std::wstring_view url) {
  constexpr wchar_t digits[] = L"0123456789ABCDEF";
  std::wstring result;
  for (const char byte : utf8(url)) {
    const auto code = static_cast<unsigned char>(byte);
    if (isUnescaped(byte))
      result += static_cast<wchar_t>(code);
    else
      result.append({L'%', digits[code / 16], digits[code % 16]});
  }
  return result;
}

// "a/b" of "a/c/../b".
std::wstring withoutDots(std::wstring_view address) {
  std::vector<std::wstring> kept;
  for (auto& level : text::split(address, L'/')) {
    if (level == L".." && !kept.empty())
      kept.pop_back();
    else if (level != L"." && level != L"..")
      kept.push_back(std::move(level));
  }
  std::wstring result;
  for (std::size_t i = 0; i < kept.size(); ++i) result += (i > 0 ? L"/" : L"") + kept[i];
  return result;
}

std::optional<std::wstring> pathBelow(const Session& session, std::wstring_view web,
                                      std::wstring_view address) {
  if (isAbsoluteUrl(address)) {
    if (!startsWith(address, web)) return std::nullopt;
    address.remove_prefix(web.size());
    if (!address.empty() && address.front() != L'/') return std::nullopt;
    if (!address.empty()) address.remove_prefix(1);
  } else if (!address.empty() && address.front() == L'/') {
    if (!session.options.leadingSlashTaken) return std::nullopt;
    address.remove_prefix(1);
  }
  if (!address.empty() && address.back() == L'/') {
    if (!session.options.trailingSlashTaken) return std::nullopt;
    address.remove_suffix(1);
  }
  if (address.empty()) return std::wstring();
  for (const std::wstring& level : text::split(address, L'/'))
    if (!disk::isValidName(level)) return std::nullopt;
  return std::wstring(address);
}

}  // namespace

std::wstring fileUrl(std::wstring_view path) {
  std::wstring url = startsWith(path, L"\\\\") ? L"file:" : L"file:///";
  url += path;
  std::replace(url.begin(), url.end(), L'\\', L'/');
  return url;
}

std::wstring webUrl(const Session& session) {
  const std::wstring url = plainWebUrl(session);
  return session.options.webUrlEscaped ? escaped(url) : url;
}

bool isAbsoluteUrl(std::wstring_view address) { return address.find(L"://") != address.npos; }

std::wstring joined(const std::wstring& folder, const std::wstring& name) {
  return folder.empty() ? name : folder + L"/" + name;
}

std::wstring urlOf(const Session& session, const std::wstring& relative) {
  const std::wstring web = plainWebUrl(session);
  const std::wstring url = relative.empty() ? web : joined(web, relative);
  return session.options.itemUrlsEscaped ? escaped(url) : url;
}

std::wstring diskPathOf(const Session& session, const std::wstring& relative) {
  if (relative.empty()) return session.webFolder;
  std::wstring path = session.webFolder + L"\\" + relative;
  std::replace(path.begin(), path.end(), L'/', L'\\');
  return path;
}

std::optional<std::wstring> relativePath(const Session& session, std::wstring_view address) {
  return pathBelow(session, webUrl(session), address);
}

std::wstring unescapedAddress(std::wstring_view address) {
  address = address.substr(0, address.find(L'#'));
  return text::unescaped(address, CP_UTF8).value_or(std::wstring(address));
}

std::optional<std::wstring> locatedPath(const Session& session, std::wstring_view address) {
  if (!session.options.locateUnescapes) return relativePath(session, address);
  return pathBelow(session, unescapedAddress(webUrl(session)),
                   withoutDots(unescapedAddress(address)));
}

std::wstring absoluteUrl(const Session& session, std::wstring_view base, std::wstring_view url) {
  if (isAbsoluteUrl(url)) return std::wstring(url);
  std::wstring result(base);
  if (!isAbsoluteUrl(base)) result = fileUrl(base);
  if (!url.empty() && url.front() == L'/') {
    url.remove_prefix(1);
    if (session.options.makeAbsFromServer) result = serverOf(result);
  }
  while (!result.empty() && result.back() == L'/') result.pop_back();
  for (const std::wstring& level : text::split(url, L'/')) {
    if (level == L"..") {
      if (result.size() > serverOf(result).size()) result = text::beforeLast(result, L'/');
    } else if (level != L"." && !level.empty()) {
      result += L"/" + level;
    }
  }
  return result;
}

bool isSubWeb(const std::wstring& diskPath) { return disk::isFolder(diskPath + L"\\_vti_pvt"); }

}  // namespace standin
