#include "common/file_names.h"

#include "common/text.h"

namespace modCommon {

bool IsValidFileName(std::wstring_view name) {
  const std::wstring trimmed = text::trimBlanks(name);
  return !trimmed.empty() && trimmed.find_first_of(L"\\/:*?<>|\"") == trimmed.npos;
}

}  // namespace modCommon
