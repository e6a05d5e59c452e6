#include "online/download_page.h"

#include <algorithm>

#include "common/letter_case.h"
#include "common/text.h"

namespace {

constexpr std::wstring_view pageName = L"DWTOnlineDownload.htm";
constexpr std::wstring_view successName = L"success";
constexpr std::wstring_view blankPage = L"about:blank";
constexpr std::wstring_view showableSchemes[] = {L"http://", L"https://", L"ftp://"};

bool isControl(wchar_t letter) { return letter < L' ' || letter == L'\x7F'; }

}  // namespace

bool isDownloadPage(std::wstring_view urlPath) {
  if (urlPath.find(L'/') == urlPath.npos) return false;
  return text::beginsIgnoringCase(text::afterLast(urlPath, L'/'), pageName);
}

bool isDownloadAddress(std::wstring_view address) {
  address = address.substr(0, address.find_first_of(L"?#"));
  constexpr std::wstring_view schemeEnd = L"://";
  if (const auto scheme = address.find(schemeEnd); scheme != address.npos)
    address.remove_prefix(scheme + schemeEnd.size());
  return isDownloadPage(address);
}

std::optional<std::wstring> successAddress(std::wstring_view extraInformation) {
  const auto mark = extraInformation.find(L'?');
  if (mark != extraInformation.npos) extraInformation.remove_prefix(mark + 1);
  for (const std::wstring& each : text::split(extraInformation, L'&')) {
    const std::wstring part = text::trimBlanks(each);
    const auto equals = part.find(L'=');
    if (equals != part.npos && text::equalIgnoringCase(part.substr(0, equals), successName))
      return part.substr(equals + 1);
  }
  return std::nullopt;
}

bool isShowable(std::wstring_view address) {
  if (std::any_of(address.begin(), address.end(), isControl)) return false;
  if (text::equalIgnoringCase(address, blankPage)) return true;
  for (const std::wstring_view scheme : showableSchemes) {
    if (!text::beginsIgnoringCase(address, scheme)) continue;
    constexpr std::wstring_view noHost = L" /\\?#";
    address.remove_prefix(scheme.size());
    return !address.empty() && noHost.find(address.front()) == noHost.npos;
  }
  return false;
}
