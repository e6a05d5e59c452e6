// The template browser as a window of the host's: where it opens and what it does to the frame.
#include <cstring>
#include <optional>
#include <vector>

#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/Frame.h"

namespace {

RECT placeOf(HWND window) {
  RECT place = {};
  GetWindowRect(window, &place);
  return place;
}

std::optional<std::vector<BYTE>> placementRecord(const BrowserWindow& browser) {
  return browser.registry.binary(HKEY_CURRENT_USER, browserSettings, L"DWTPlacement");
}

}  // namespace

TEST_CASE("the browser first opens centred on the frame and leaves its place when it closes") {
  const Frame frame(30, 20, 900, 700);
  BrowserWindow browser;
  browser.owner = frame.get();
  RECT place = {};
  browser.show([&] {
    place = placeOf(browser.dialog);
    CHECK_FALSE(placementRecord(browser));
  });
  const RECT outer = placeOf(frame.get());
  CHECK(std::abs(place.left + place.right - outer.left - outer.right) <= 1);
  CHECK(std::abs(place.top + place.bottom - outer.top - outer.bottom) <= 1);
  const auto record = placementRecord(browser);
  REQUIRE(record);
  REQUIRE(record->size() == 48);
  WINDOWPLACEMENT kept = {};
  std::memcpy(&kept, record->data(), sizeof kept);
  CHECK(kept.length == sizeof kept);
  CHECK(EqualRect(&kept.rcNormalPosition, &place));
  LONG pixelsPerInch = 0;
  std::memcpy(&pixelsPerInch, record->data() + 44, sizeof pixelsPerInch);
  CHECK(pixelsPerInch == GetDeviceCaps(handles::ScreenContext().get(), LOGPIXELSX));
}

TEST_CASE("the browser comes back where it was left") {
  BrowserWindow browser;
  RECT left = {};
  browser.show([&] {
    RECT now;
    GetWindowRect(browser.dialog, &now);
    MoveWindow(browser.dialog, 40, 30, now.right - now.left + 50, now.bottom - now.top + 20, TRUE);
    GetWindowRect(browser.dialog, &left);
  });
  const auto record = browser.registry.binary(HKEY_CURRENT_USER, browserSettings, L"DWTPlacement");
  REQUIRE(record);
  CHECK(record->size() == 48);
  RECT again = {};
  browser.show([&] { GetWindowRect(browser.dialog, &again); });
  CHECK(EqualRect(&left, &again));
}

TEST_CASE("a browser that was closed while minimised comes back in its normal size") {
  BrowserWindow browser;
  RECT normal = {};
  browser.show([&] {
    MoveWindow(browser.dialog, 40, 30, 800, 600, TRUE);
    normal = placeOf(browser.dialog);
    ShowWindow(browser.dialog, SW_SHOWMINIMIZED);
    CHECK(IsIconic(browser.dialog));
  });
  browser.show([&] {
    CHECK(IsWindowVisible(browser.dialog));
    CHECK_FALSE(IsIconic(browser.dialog));
    const RECT again = placeOf(browser.dialog);
    CHECK(EqualRect(&again, &normal));
    const RECT list = placeOf(browser.control(IDC_QUILLET_LIST));
    const RECT cancel = placeOf(browser.control(IDCANCEL));
    CHECK(list.right < cancel.left);
    CHECK(cancel.right <= again.right);
    CHECK(cancel.bottom <= again.bottom);
  });
}

TEST_CASE("a browser that was left on a monitor that has gone opens in view") {
  BrowserWindow browser;
  browser.show();
  auto record = placementRecord(browser);
  REQUIRE(record);
  WINDOWPLACEMENT placement = {};
  std::memcpy(&placement, record->data(), sizeof placement);
  OffsetRect(&placement.rcNormalPosition, 9000, -9000);
  std::memcpy(record->data(), &placement, sizeof placement);
  browser.registry.setBinary(HKEY_CURRENT_USER, browserSettings, L"DWTPlacement", *record);
  browser.show([&] {
    const RECT place = placeOf(browser.dialog);
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    CHECK(place.left >= work.left);
    CHECK(place.top >= work.top);
    CHECK(place.right <= work.right);
    CHECK(place.bottom <= work.bottom);
  });
}

TEST_CASE("the frame owns the browser and is disabled under it and active after it") {
  const Frame frame(30, 20, 900, 700);
  SetActiveWindow(frame.get());
  BrowserWindow browser;
  browser.owner = frame.get();
  browser.show([&] {
    CHECK(GetWindow(browser.dialog, GW_OWNER) == frame.get());
    CHECK_FALSE(IsWindowEnabled(frame.get()));
  });
  CHECK(IsWindowEnabled(frame.get()));
  CHECK(GetActiveWindow() == frame.get());
}

TEST_CASE("the frame is active again after a copy") {
  const Frame frame(30, 20, 900, 700);
  SetActiveWindow(frame.get());
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.owner = frame.get();
  browser.driver.answer(IDYES);
  browser.show([&] { press(browser.dialog, IDOK); });
  CHECK(browser.web.exists(L"dwts\\home\\home.dwt"));
  CHECK(IsWindowEnabled(frame.get()));
  CHECK(GetActiveWindow() == frame.get());
  CHECK(GetForegroundWindow() == frame.get());
}

TEST_CASE("the browser shows the wait cursor while the templates are listed and not after") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  const auto waits = [&] {
    SendMessageW(browser.dialog, WM_SETCURSOR, reinterpret_cast<WPARAM>(browser.dialog),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor() == LoadCursorW(nullptr, IDC_WAIT);
  };
  bool during = false;
  bool after = true;
  browser.showAtOnce([&] {
    during = waits();
    browser.whenListed([&] {
      after = waits();
      press(browser.dialog, IDCANCEL);
    });
  });
  CHECK(during);
  CHECK_FALSE(after);
}

TEST_CASE("Enter in the list of templates copies and Escape there closes the browser") {
  for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
    CAPTURE(key);
    BrowserWindow browser;
    browser.addTemplate(L"home");
    browser.driver.answer(IDYES);
    browser.show([&] {
      CHECK(GetFocus() == browser.control(IDC_QUILLET_LIST));
      PostMessageW(browser.control(IDC_QUILLET_LIST), WM_KEYDOWN, key, 1);
      forms::yieldToMessages();
    });
    CHECK_FALSE(IsWindow(browser.dialog));
    CHECK(browser.driver.boxes().size() == (key == VK_RETURN ? 1U : 0U));
    CHECK(browser.web.exists(L"dwts\\home\\home.dwt") == (key == VK_RETURN));
  }
}

TEST_CASE("a text that is cut off is told in full by its tip") {
  BrowserWindow browser;
  const std::string title(300, 'w');
  browser.addTemplate(L"home", "[home]\r\nTitle=" + title + "\r\n");
  browser.addTemplate(L"short");
  browser.show([&] {
    CHECK(browser.tip(IDC_QUILLET_TITLE) == browser.text(IDC_QUILLET_TITLE));
    browser.selectRow(1);
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : short     [HTML Preview]");
    CHECK(browser.tip(IDC_QUILLET_TITLE).empty());
    CHECK(browser.tip(IDOK) == L"Copy the selected DWT to the web");
    CHECK(browser.tip(IDCANCEL) == L"Close Quillet");
    CHECK(browser.tip(IDC_QUILLET_ZOOM) == L"Increase or decrease the size of the picture");
    CHECK(browser.tip(IDC_QUILLET_NOTES) == L"View notes for selected DWT");
    CHECK(browser.tip(IDC_QUILLET_HELP) == L"How to use Quillet Viewer");
  });
}
