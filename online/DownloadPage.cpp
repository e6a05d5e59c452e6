#include "online/DownloadPage.h"

#include "common/letter_case.h"
#include "common/text.h"

namespace {

constexpr std::wstring_view pageName = L"DWTOnlineDownload.htm";
constexpr std::wstring_view successName = L"success";

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
