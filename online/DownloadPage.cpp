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
