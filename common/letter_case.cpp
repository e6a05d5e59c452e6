#include "common/letter_case.h"

#include <windows.h>

namespace text {

std::wstring toLower(std::wstring_view value) {
  std::wstring result(value);
  CharLowerBuffW(result.data(), static_cast<DWORD>(result.size()));
  return result;
}

std::wstring toUpper(std::wstring_view value) {
  std::wstring result(value);
  CharUpperBuffW(result.data(), static_cast<DWORD>(result.size()));
  return result;
}

bool equalIgnoringCase(std::wstring_view left, std::wstring_view right) {
  return left.size() == right.size() && toLower(left) == toLower(right);
}

bool containsIgnoringCase(std::wstring_view value, std::wstring_view what) {
  return toLower(value).find(toLower(what)) != std::wstring::npos;
}

bool beginsIgnoringCase(std::wstring_view value, std::wstring_view beginning) {
  return equalIgnoringCase(value.substr(0, beginning.size()), beginning);
}

std::wstring replaceIgnoringCase(std::wstring_view value, std::wstring_view what,
                                 std::wstring_view with) {
  if (what.empty()) return std::wstring(value);
  const std::wstring lowered = toLower(value);
  const std::wstring wanted = toLower(what);
  std::wstring result;
  std::size_t done = 0;
  for (auto hit = lowered.find(wanted); hit != lowered.npos; hit = lowered.find(wanted, done)) {
    result.append(value.substr(done, hit - done)).append(with);
    done = hit + wanted.size();
  }
  return result.append(value.substr(done));
}

}  // namespace text
