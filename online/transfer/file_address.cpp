#include "online/transfer/file_address.h"

#include "common/file_names.h"
#include "common/safe_names.h"
#include "common/text.h"

namespace online {
namespace {

// Looks for the whole set in each of its characters, so it never finds it and every name passes.
// Catalogues rely on that; what cannot be a file's name fails when the file is written.
bool hasForbiddenCharacter(std::wstring_view name) {
  constexpr std::wstring_view forbidden = L"\\/:*?\"<>|";
  for (std::size_t i = 0; i < forbidden.size(); ++i)
    if (forbidden.substr(i, 1).find(forbidden) != forbidden.npos)
      return name.find(forbidden[i]) != name.npos;  // Not run by tests: see above.
  return false;
}

}  // namespace

bool isFileAddress(const std::optional<modWINInetURL::CrackedUrl>& parts) {
  if (!parts) return true;
  if (parts->host.empty() || parts->path.empty() || !parts->extraInfo.empty()) return false;
  const std::wstring_view name = text::afterLast(parts->path, L'/');
  if (name.empty() || name.front() == L'.' || name.front() == L' ') return false;
  return !hasForbiddenCharacter(name);
}

std::optional<std::wstring> fileNameOf(std::wstring_view address) {
  std::wstring name = text::replaceAll(text::afterLast(address, L'/'), L"%20", L" ");
  if (name == L"." || !modCommon::IsValidFileName(name) ||
      names::faultOf(name) != names::Fault::none)
    return std::nullopt;
  return name;
}

std::wstring numbered(std::wstring_view path, int number) {
  const auto name = path.rfind(L'\\') + 1;
  const auto point = path.rfind(L'.');
  const auto end = point == path.npos || point <= name ? path.size() : point;
  return text::join({path.substr(0, end), L" (", text::decimal(number), L")", path.substr(end)});
}

}  // namespace online
