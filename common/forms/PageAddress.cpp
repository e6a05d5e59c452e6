#include "common/forms/PageAddress.h"

#include <windows.h>
#include <shlwapi.h>

#include <vector>

#include "common/letter_case.h"

namespace forms {
namespace {

// A file URL as the local path it stands for, everything else as it is.
std::wstring plain(const std::wstring& address) {
  if (!text::beginsIgnoringCase(address, L"file:")) return address;
  DWORD length = static_cast<DWORD>(address.size()) + 1;
  std::vector<wchar_t> path(length + MAX_PATH);
  length = static_cast<DWORD>(path.size());
  if (FAILED(PathCreateFromUrlW(address.c_str(), path.data(), &length, 0))) return address;
  return path.data();
}

}  // namespace

bool isSamePage(const std::wstring& reached, const std::wstring& wanted) {
  if (text::equalIgnoringCase(plain(reached), plain(wanted))) return true;
  const auto place = reached.rfind(L'#');
  return place != std::wstring::npos &&
         text::equalIgnoringCase(plain(reached.substr(0, place)), plain(wanted));
}

}  // namespace forms
