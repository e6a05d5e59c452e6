#include "common/forms/page_address.h"

#include <windows.h>
#include <shlwapi.h>

#include <algorithm>
#include <vector>

#include "common/FileIdentity.h"
#include "common/NoSystemBoxes.h"
#include "common/escapes.h"
#include "common/letter_case.h"

namespace forms {
namespace {

constexpr std::wstring_view fileScheme = L"file:";
constexpr std::wstring_view thisComputer = L"localhost\\";

bool isLetter(wchar_t c) noexcept { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

bool startsWithDrive(std::wstring_view path) noexcept {
  return path.size() > 2 && isLetter(path[0]) && (path[1] == L':' || path[1] == L'|') &&
         path[2] == L'\\';
}

// The path that a file URL stands for, given what follows "file:" without its escapes.
std::optional<std::wstring> pathOfUrl(std::wstring rest) {
  std::replace(rest.begin(), rest.end(), L'/', L'\\');
  const std::size_t slashes = std::min(rest.find_first_not_of(L'\\'), rest.size());
  std::wstring path = rest.substr(slashes);
  if (text::beginsIgnoringCase(path, thisComputer) &&
      startsWithDrive(std::wstring_view(path).substr(thisComputer.size())))
    path.erase(0, thisComputer.size());
  if (startsWithDrive(path)) {
    path[1] = L':';
    return path;
  }
  if (slashes < 2 || slashes == 3 || path.empty()) return std::nullopt;
  return L"\\\\" + path;
}

bool isPath(const std::wstring& address) {
  std::wstring path = address.substr(0, 3);
  std::replace(path.begin(), path.end(), L'/', L'\\');
  return (startsWithDrive(path) && path[1] == L':') || path.starts_with(L"\\\\");
}

std::wstring fullPath(const std::wstring& path) {
  std::wstring full(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    const bool fits = length < full.size();
    full.resize(length);
    if (fits) return full;
  }
}

// Every full path that the address may mean: what escapes stand for and where the path ends is not
// told by the address itself.
std::vector<std::wstring> filesOf(const std::wstring& address) {
  std::vector<std::wstring> files;
  const auto add = [&](const std::optional<std::wstring>& path) {
    if (!path) return;
    std::wstring full = fullPath(*path);
    if (std::find(files.begin(), files.end(), full) == files.end())
      files.push_back(std::move(full));
  };
  const bool path = isPath(address);
  if (!path && !text::beginsIgnoringCase(address, fileScheme)) return files;
  for (const wchar_t* const ends : {L"", L"#", L"#?"}) {
    const std::wstring part = address.substr(0, address.find_first_of(ends));
    if (path) {
      add(part);
      continue;
    }
    const std::wstring rest = part.substr(fileScheme.size());
    add(pathOfUrl(rest));
    for (const UINT codePage : {static_cast<UINT>(CP_UTF8), static_cast<UINT>(CP_ACP)})
      if (const auto plain = text::unescaped(rest, codePage)) add(pathOfUrl(*plain));
  }
  return files;
}

// The drive or the server's share of a full path; empty when there is none.
std::wstring_view rootOf(std::wstring_view full) noexcept {
  if (startsWithDrive(full)) return full.substr(0, 2);
  if (!full.starts_with(L"\\\\")) return {};
  const std::size_t server = full.find(L'\\', 2);
  return server == full.npos ? std::wstring_view() : full.substr(0, full.find(L'\\', server + 1));
}

bool haveSameRoot(std::wstring_view one, std::wstring_view other) {
  const std::wstring_view root = rootOf(one);
  return !root.empty() && text::equalIgnoringCase(root, rootOf(other));
}

// As the disk writes it; a path that it does not know, or that is too long for the engine, stays as
// it is.
std::wstring longPath(const std::wstring& full) {
  if (full.size() >= MAX_PATH) return full;
  const NoSystemBoxes quiet;
  std::wstring path(GetLongPathNameW(full.c_str(), nullptr, 0), L'\0');
  path.resize(GetLongPathNameW(full.c_str(), path.data(), static_cast<DWORD>(path.size())));
  return path.empty() ? full : path;
}

bool isSameFile(const std::wstring& one, const std::wstring& other) {
  // A page may name any server: nobody is asked there.
  if (!haveSameRoot(one, other)) return false;
  if (text::equalIgnoringCase(one, other)) return true;
  if (text::equalIgnoringCase(longPath(one), longPath(other))) return true;
  const auto identity = modCommon::identityOf(one);
  return identity && identity == modCommon::identityOf(other);
}

std::wstring canonical(const std::wstring& url) {
  std::wstring result(url.size() * 3 + 16, L'\0');
  auto length = static_cast<DWORD>(result.size());
  if (FAILED(UrlCanonicalizeW(url.c_str(), result.data(), &length, URL_ESCAPE_UNSAFE))) return url;
  result.resize(length);
  return result;
}

bool isSameUrl(const std::wstring& reached, const std::wstring& wanted) {
  return text::equalIgnoringCase(canonical(reached), canonical(wanted));
}

}  // namespace

bool isSamePage(const std::wstring& reached, const std::wstring& wanted) {
  const auto wantedFiles = filesOf(wanted);
  if (wantedFiles.empty())
    return isSameUrl(reached, wanted) || isSameUrl(reached.substr(0, reached.rfind(L'#')), wanted);
  const auto reachedFiles = filesOf(reached);
  return std::any_of(reachedFiles.begin(), reachedFiles.end(), [&](const std::wstring& one) {
    return std::any_of(wantedFiles.begin(), wantedFiles.end(),
                       [&](const std::wstring& other) { return isSameFile(one, other); });
  });
}

std::optional<std::wstring> fileBeside(const std::wstring& address, const std::wstring& page) {
  // Where the address can be read in several ways, the one that ends first is what the engine may
  // open.
  const auto files = filesOf(address.substr(0, address.find_first_of(L"#?")));
  const std::wstring place = fullPath(page);
  if (files.empty() || !std::all_of(files.begin(), files.end(), [&](const std::wstring& each) {
        return haveSameRoot(each, place);
      }))
    return std::nullopt;
  return files.back();
}

}  // namespace forms
