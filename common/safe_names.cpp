#include "common/safe_names.h"

#include <algorithm>
#include <array>

namespace names {
namespace {

constexpr std::wstring_view separators = L"/\\";

constexpr std::array<std::wstring_view, 7> devices = {L"CON",    L"PRN",     L"AUX",   L"NUL",
                                                      L"CONIN$", L"CONOUT$", L"CLOCK$"};

wchar_t upper(wchar_t letter) {
  return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
}

bool equalsDevice(std::wstring_view name, std::wstring_view device) {
  return std::equal(name.begin(), name.end(), device.begin(), device.end(),
                    [](wchar_t left, wchar_t right) { return upper(left) == right; });
}

// COM1 to COM9 and LPT1 to LPT9; the system takes the raised digits 1 to 3 for digits, too.
bool isPort(std::wstring_view name) {
  constexpr std::wstring_view digits = L"0123456789\u00B9\u00B2\u00B3";
  return name.size() == 4 && digits.find(name[3]) != digits.npos &&
         (equalsDevice(name.substr(0, 3), L"COM") || equalsDevice(name.substr(0, 3), L"LPT"));
}

// A device is one with any ending and with blanks before it ("nul .txt").
bool isReserved(std::wstring_view part) {
  std::wstring_view stem = part.substr(0, part.find(L'.'));
  while (!stem.empty() && stem.back() == L' ') stem.remove_suffix(1);
  return isPort(stem) || std::any_of(devices.begin(), devices.end(),
                                     [stem](auto device) { return equalsDevice(stem, device); });
}

Fault faultOfPart(std::wstring_view part) {
  if (part.empty() || part == L".") return Fault::none;
  if (part == L"..") return Fault::climbsOut;
  if (part.find(L':') != part.npos) return Fault::colon;
  if (part.back() == L'.' || part.back() == L' ') return Fault::trailing;
  if (isReserved(part)) return Fault::reserved;
  return Fault::none;
}

}  // namespace

Fault faultOf(std::wstring_view name) {
  if (!name.empty() && separators.find(name.front()) != separators.npos) return Fault::absolute;
  while (!name.empty()) {
    const auto end = std::min(name.find_first_of(separators), name.size());
    if (const Fault fault = faultOfPart(name.substr(0, end)); fault != Fault::none) return fault;
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return Fault::none;
}

}  // namespace names
