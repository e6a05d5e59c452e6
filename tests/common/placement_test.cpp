#include "common/placement.h"

#include <cstring>
#include <optional>
#include <vector>

#include "common/settings.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t key[] = L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";
constexpr wchar_t application[] = L"Quillet Viewer";

class TestWindow {
 public:
  TestWindow()
      : window_(CreateWindowW(L"STATIC", L"placed", WS_OVERLAPPEDWINDOW, 60, 50, 400, 300, nullptr,
                              nullptr, nullptr, nullptr)) {}
  ~TestWindow() { DestroyWindow(window_); }
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;
  HWND get() const { return window_; }

  RECT rectangle() const {
    RECT result = {};
    GetWindowRect(window_, &result);
    return result;
  }
  WINDOWPLACEMENT placement() const {
    WINDOWPLACEMENT result = {};
    result.length = sizeof result;
    GetWindowPlacement(window_, &result);
    return result;
  }

 private:
  HWND window_;
};

bool save(const TestWindow& window) {
  return SaveWindowPlacementSetting(window.get(), application, settings::general,
                                    settings::placement);
}

bool restore(const TestWindow& window) {
  return RestoreWindowPlacementSetting(window.get(), application, settings::general,
                                       settings::placement);
}

LONG resolution() {
  const HDC screen = GetDC(nullptr);
  const LONG result = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return result;
}

// The twelve fields of a record in their order.
std::vector<BYTE> record(RECT normal, LONG pixelsPerInch, LONG showCommand = SW_SHOWNORMAL,
                         LONG flags = 0) {
  const LONG fields[] = {
      44,         flags,        showCommand,   -1,           -1, -1, -1, normal.left,
      normal.top, normal.right, normal.bottom, pixelsPerInch};
  std::vector<BYTE> bytes(sizeof fields);
  std::memcpy(bytes.data(), fields, sizeof fields);
  return bytes;
}

LONG field(const std::vector<BYTE>& bytes, std::size_t offset) {
  LONG value = 0;
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

void store(ScratchRegistry& registry, const std::vector<BYTE>& bytes) {
  registry.setBinary(HKEY_CURRENT_USER, key, L"DWTPlacement", bytes);
}

RECT workArea() {
  RECT area = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  return area;
}

bool lies(const RECT& inner, const RECT& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

int WINAPI fixedResolution(HDC, int) { return 120; }

BOOL WINAPI taskBarAtTheTop(HMONITOR, LPMONITORINFO info) {
  info->rcMonitor = {0, 0, 1024, 768};
  info->rcWork = {0, 40, 1024, 768};
  return TRUE;
}

// Where the product itself wants a window: the system brings into view what is not.
class Wanted {
 public:
  Wanted() {
    current_ = this;
    place_ = {};
  }
  static const RECT& place() { return place_; }

 private:
  static BOOL WINAPI set(HWND window, const WINDOWPLACEMENT* placement) {
    place_ = placement->rcNormalPosition;
    return current_->patch_.original<decltype(set)>()(window, placement);
  }
  static inline Wanted* current_ = nullptr;
  static inline RECT place_ = {};
  ImportPatch patch_{nullptr, "user32.dll", "SetWindowPlacement", set};
};

}  // namespace

namespace doctest {
template <>
struct StringMaker<RECT> {
  static String convert(const RECT& r) {
    return toString(r.left) + " " + toString(r.top) + " " + toString(r.right) + " " +
           toString(r.bottom);
  }
};
}  // namespace doctest

static bool operator==(const RECT& left, const RECT& right) { return EqualRect(&left, &right); }

TEST_CASE("at the first start a window keeps its designed position and closing makes the record") {
  ScratchRegistry registry;
  TestWindow window;
  const RECT designed = window.rectangle();
  CHECK_FALSE(restore(window));
  CHECK(window.rectangle() == designed);
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, key));
  CHECK(save(window));
  CHECK(SaveWindowPlacementSetting(window.get(), application, settings::general,
                                   settings::onlinePlacement));
  CHECK(registry.valueNames(HKEY_CURRENT_USER, key).size() == 2);
  CHECK(registry.binary(HKEY_CURRENT_USER, key, L"DWTPlacement").has_value());
  CHECK(registry.binary(HKEY_CURRENT_USER, key, L"DWTOnlinePlacement").has_value());
}

TEST_CASE("a record holds the placement and behind it the resolution in 48 bytes") {
  ScratchRegistry registry;
  TestWindow window;
  REQUIRE(save(window));
  const auto bytes = registry.binary(HKEY_CURRENT_USER, key, L"DWTPlacement");
  REQUIRE(bytes.has_value());
  REQUIRE(bytes->size() == 48);
  const WINDOWPLACEMENT placement = window.placement();
  CHECK(field(*bytes, 0) == 44);
  CHECK(std::memcmp(bytes->data(), &placement, 44) == 0);
  CHECK(field(*bytes, 28) == placement.rcNormalPosition.left);
  CHECK(field(*bytes, 40) == placement.rcNormalPosition.bottom);
  CHECK(field(*bytes, 44) == resolution());
}

TEST_CASE("a saved placement comes back in another window") {
  ScratchRegistry registry;
  TestWindow first;
  MoveWindow(first.get(), 111, 122, 333, 244, FALSE);
  REQUIRE(save(first));
  TestWindow second;
  CHECK(restore(second));
  CHECK(second.rectangle() == RECT{111, 122, 444, 366});
}

TEST_CASE("a record of 96 pixels per inch is ignored after a switch to 120") {
  ScratchRegistry registry;
  TestWindow window;
  const RECT designed = window.rectangle();
  store(registry, record({100, 100, 300, 300}, 96));
  ImportPatch patch(nullptr, "gdi32.dll", "GetDeviceCaps", fixedResolution);
  CHECK_FALSE(restore(window));
  CHECK(window.rectangle() == designed);
  store(registry, record({100, 100, 300, 300}, 120));
  CHECK(restore(window));
}

TEST_CASE("a window closed while minimised comes back at its normal rectangle") {
  ScratchRegistry registry;
  TestWindow first;
  MoveWindow(first.get(), 100, 110, 300, 200, FALSE);
  ShowWindow(first.get(), SW_SHOWNORMAL);
  ShowWindow(first.get(), SW_SHOWMINIMIZED);
  REQUIRE(save(first));
  TestWindow second;
  CHECK(restore(second));
  CHECK_FALSE(IsWindowVisible(second.get()));
  ShowWindow(second.get(), SW_SHOW);
  CHECK_FALSE(IsIconic(second.get()));
  CHECK_FALSE(IsZoomed(second.get()));
  CHECK(second.rectangle() == RECT{100, 110, 400, 310});
}

TEST_CASE("a window closed while maximised comes back at its normal rectangle") {
  ScratchRegistry registry;
  TestWindow first;
  MoveWindow(first.get(), 100, 110, 300, 200, FALSE);
  ShowWindow(first.get(), SW_SHOWNORMAL);
  ShowWindow(first.get(), SW_SHOWMAXIMIZED);
  REQUIRE(save(first));
  TestWindow second;
  CHECK(restore(second));
  CHECK_FALSE(IsWindowVisible(second.get()));
  ShowWindow(second.get(), SW_SHOW);
  CHECK_FALSE(IsZoomed(second.get()));
  CHECK(second.rectangle() == RECT{100, 110, 400, 310});
}

TEST_CASE("a record one byte too short or too long is ignored") {
  ScratchRegistry registry;
  TestWindow window;
  const RECT designed = window.rectangle();
  auto bytes = record({100, 100, 300, 300}, resolution());
  bytes.push_back(0);
  store(registry, bytes);
  CHECK_FALSE(restore(window));
  bytes.resize(47);
  bytes[44] = 0;
  store(registry, bytes);
  CHECK_FALSE(restore(window));
  bytes.resize(44);
  store(registry, bytes);
  CHECK_FALSE(restore(window));
  store(registry, {});
  CHECK_FALSE(restore(window));
  CHECK(window.rectangle() == designed);
}

TEST_CASE("a string or a number in the place of a record is ignored") {
  ScratchRegistry registry;
  TestWindow window;
  const RECT designed = window.rectangle();
  registry.setString(HKEY_CURRENT_USER, key, L"DWTPlacement", std::wstring(47, L'x'));
  CHECK_FALSE(restore(window));
  registry.setNumber(HKEY_CURRENT_USER, key, L"DWTPlacement", 44);
  CHECK_FALSE(restore(window));
  CHECK(window.rectangle() == designed);
}

TEST_CASE("a record with a rectangle outside every monitor opens in the nearest work area") {
  ScratchRegistry registry;
  const RECT area = workArea();
  for (const RECT& outside : {RECT{5000, 5000, 5400, 5300}, RECT{-4000, -3000, -3600, -2700},
                              RECT{20, 9000, 420, 9300}}) {
    TestWindow window;
    store(registry, record(outside, resolution()));
    CHECK(restore(window));
    const RECT shown = window.rectangle();
    CHECK(lies(shown, area));
    CHECK(shown.right - shown.left == 400);
    CHECK(shown.bottom - shown.top == 300);
  }
}

TEST_CASE("a rectangle that is partly in view stays where it is") {
  ScratchRegistry registry;
  TestWindow window;
  store(registry, record({-100, 50, 300, 350}, resolution()));
  CHECK(restore(window));
  CHECK(window.rectangle() == RECT{-100, 50, 300, 350});
}

TEST_CASE("a rectangle larger than all screens is cut to the work area") {
  ScratchRegistry registry;
  TestWindow window;
  store(registry, record({-9000, -9000, 20000, 20000}, resolution()));
  const Wanted wanted;
  CHECK(restore(window));
  CHECK(lies(wanted.place(), workArea()));
  CHECK(lies(window.placement().rcNormalPosition, workArea()));
}

TEST_CASE("a task bar at the top is taken into account when a window is brought into view") {
  ScratchRegistry registry;
  TestWindow window;
  store(registry, record({100, 5000, 500, 5300}, resolution()));
  {
    ImportPatch patch(nullptr, "user32.dll", "GetMonitorInfoW", taskBarAtTheTop);
    CHECK(restore(window));
  }
  CHECK(window.placement().rcNormalPosition == RECT{100, 428, 500, 728});
}

TEST_CASE("a rectangle in view stays where it is below a task bar at the top") {
  ScratchRegistry registry;
  TestWindow window;
  store(registry, record({100, 50, 500, 350}, resolution()));
  {
    ImportPatch patch(nullptr, "user32.dll", "GetMonitorInfoW", taskBarAtTheTop);
    CHECK(restore(window));
  }
  CHECK(window.placement().rcNormalPosition == RECT{100, 50, 500, 350});
}

TEST_CASE("a garbage record does no harm") {
  ScratchRegistry registry;
  TestWindow window;
  const RECT designed = window.rectangle();
  const LONG most = 0x7FFFFFFF;
  const LONG least = -most - 1;
  for (const RECT& garbage :
       {RECT{least, least, most, most}, RECT{most, most, least, least}, RECT{0, 0, 0, 0},
        RECT{300, 300, 100, 100}, RECT{0, 0, most, 100}, RECT{40000, 0, 40400, 300}}) {
    store(registry, record(garbage, resolution(), 99, -1));
    CHECK_FALSE(restore(window));
    CHECK(window.rectangle() == designed);
  }
}

TEST_CASE("a record with a wrong length field and odd flags still only moves the window") {
  ScratchRegistry registry;
  TestWindow window;
  auto bytes = record({100, 100, 300, 300}, resolution(), SW_SHOWMAXIMIZED, WPF_RESTORETOMAXIMIZED);
  bytes[0] = 7;
  store(registry, bytes);
  CHECK(restore(window));
  CHECK_FALSE(IsWindowVisible(window.get()));
  ShowWindow(window.get(), SW_SHOW);
  CHECK_FALSE(IsZoomed(window.get()));
  CHECK(window.rectangle() == RECT{100, 100, 300, 300});
}

TEST_CASE("the placement of a window that is gone is neither saved nor restored") {
  ScratchRegistry registry;
  HWND gone = nullptr;
  {
    TestWindow window;
    gone = window.get();
  }
  CHECK_FALSE(SaveWindowPlacementSetting(gone, application, settings::general, L"P"));
  CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, key));
  registry.setBinary(HKEY_CURRENT_USER, key, L"P", record({100, 100, 300, 300}, resolution()));
  CHECK_FALSE(RestoreWindowPlacementSetting(gone, application, settings::general, L"P"));
}
