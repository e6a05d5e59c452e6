#include "catalogue/destination.h"

#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"

std::wstring defaultDestination(const std::wstring& webUrl) { return webUrl + defaultWebFolder; }

bool isSamePlace(std::wstring_view templateFolder, const std::wstring& destination) {
  const std::wstring name = text::withEnding(text::afterLast(templateFolder, L'\\'), L'/');
  return text::equalIgnoringCase(modCommon::localPathOf(destination + name), templateFolder);
}

std::wstring copyToDefaultQuestion(const std::wstring& webUrl) {
  return text::message(
      L"Destination folder is not specified. Do you wish to copy the DWT's to the default "
      L"destination? | %s",
      defaultDestination(webUrl));
}
