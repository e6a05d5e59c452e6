#include "catalogue/Destination.h"

#include <windows.h>
#include <shlwapi.h>

#include "common/letter_case.h"
#include "common/text.h"

namespace {

// Empty for an address that is no file URL, or whose path is too long for the system.
std::wstring localPathOf(const std::wstring& address) {
  wchar_t path[MAX_PATH] = {};
  DWORD length = MAX_PATH;
  if (FAILED(PathCreateFromUrlW(address.c_str(), path, &length, 0))) return {};
  return text::trimBlanks(text::cutAtNul({path, MAX_PATH}));
}

}  // namespace

std::wstring defaultDestination(const std::wstring& webUrl) { return webUrl + defaultWebFolder; }

bool isSamePlace(std::wstring_view templateFolder, const std::wstring& destination) {
  const std::wstring name = text::withEnding(text::afterLast(templateFolder, L'\\'), L'/');
  return text::equalIgnoringCase(localPathOf(destination + name), templateFolder);
}

std::wstring samePlaceMessage(std::wstring_view templateFolder) {
  return text::message(
      L"Cannot copy \" %s \". | The destination folder is the same as the source folder.",
      templateFolder);
}

std::wstring copyToDefaultQuestion(const std::wstring& webUrl) {
  return text::message(
      L"Destination folder is not specified. Do you wish to copy the DWT's to the default "
      L"destination? | %s",
      defaultDestination(webUrl));
}
