#include "webcopy/same_place.h"

#include "common/text.h"

std::wstring samePlaceMessage(std::wstring_view templateFolder) {
  return text::message(
      L"Cannot copy \" %s \". | The destination folder is the same as the source folder.",
      templateFolder);
}
