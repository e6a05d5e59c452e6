// Where the online catalogue's window opens.
#include <cstdlib>
#include <cstring>

#include "tests/online/OnlineWindow.h"

namespace {

constexpr wchar_t placementValue[] = L"DWTOnlinePlacement";

RECT placeOf(HWND window) {
  RECT place = {};
  GetWindowRect(window, &place);
  return place;
}

}  // namespace

TEST_CASE("the online window first opens centred on the screen and leaves its place") {
  OnlineWindow online;
  RECT place = {};
  online.show([&] {
    place = placeOf(online.dialog);
    CHECK_FALSE(online.registry.binary(HKEY_CURRENT_USER, userSettings, placementValue));
  });
  RECT screen = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
  CHECK(std::abs(place.left + place.right - screen.left - screen.right) <= 1);
  CHECK(std::abs(place.top + place.bottom - screen.top - screen.bottom) <= 1);
  const auto record = online.registry.binary(HKEY_CURRENT_USER, userSettings, placementValue);
  REQUIRE(record);
  REQUIRE(record->size() == 48);
  WINDOWPLACEMENT kept = {};
  std::memcpy(&kept, record->data(), sizeof kept);
  CHECK(kept.length == sizeof kept);
  CHECK(EqualRect(&kept.rcNormalPosition, &place));
}
