#include "webcopy/web_folder_path.h"

#include <algorithm>
#include <limits>

#include "addin/host/web_path.h"
#include "common/NameSet.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"

namespace webfolder {
namespace {

// What follows the web's URL in a folder's, as it is read.
std::wstring behind(std::wstring_view folderUrl, std::wstring_view webUrl) {
  const auto below = webpath::below(folderUrl, webUrl);
  if (!below) return std::wstring(folderUrl.substr(std::min(webUrl.size(), folderUrl.size())));
  const bool escaped = below->spelling == webpath::Spelling::escaped;
  return escaped ? webpath::unescaped(below->path) : below->path;
}

}  // namespace

std::wstring rootName(std::wstring_view address) {
  return std::wstring(text::afterLast(address, L'/'));
}

std::wstring initialPath(std::wstring_view path, std::wstring_view webUrl) {
  if (webUrl.empty()) return std::wstring(path);
  if (!text::beginsIgnoringCase(path, webUrl)) {
    const auto below = webpath::below(path, webUrl);
    return below ? below->path : std::wstring(path);
  }
  // For a URL that ends in "/" this leaves a path that begins with one. For any other, what is left
  // of the URL stands before the first "/", where foldersOf looks for no folder.
  return std::wstring(path.substr(webUrl.size() - 1));
}

std::vector<std::wstring> foldersOf(std::wstring_view path) {
  if (path == L"/") return {};
  std::vector<std::wstring> parts = text::split(path, L'/');
  parts.erase(parts.begin());
  return parts;
}

std::wstring belowRoot(std::wstring_view fullPath) {
  return std::wstring(fullPath.substr(fullPath.find(L'/') + 1));
}

std::wstring chosenPath(std::wstring_view fullPath, std::wstring_view webUrl, bool absolute) {
  const bool isRoot = fullPath.find(L'/') == fullPath.npos;
  const std::wstring path = isRoot ? std::wstring() : belowRoot(fullPath);
  return absolute ? std::wstring(webUrl) + L"/" + path : path;
}

std::wstring displayPath(std::wstring_view folderUrl, std::wstring_view webUrl) {
  const std::wstring path = behind(folderUrl, webUrl);
  // A root's URL may end in "/" where the web's does not.
  return path.empty() || path == L"/" ? L"<web root>" : path;
}

bool contains(const std::vector<std::wstring>& names, std::wstring_view name) {
  return std::any_of(names.begin(), names.end(), [name](const std::wstring& each) {
    return text::equalIgnoringCase(each, name);
  });
}

std::wstring freeFolderName(const std::vector<std::wstring>& names) {
  const text::NameSet taken(names);
  for (int counter = 0; counter <= std::numeric_limits<short>::max(); ++counter) {
    std::wstring name = L"New_Folder";
    if (counter > 0) name += text::decimal(counter);
    if (!taken.has(name)) return name;
  }
  throw Error(errors::overflow);
}

}  // namespace webfolder
