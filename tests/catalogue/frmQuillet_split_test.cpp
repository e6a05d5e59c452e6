// The bar between the browser's list and its preview.
#include <optional>

#include "tests/catalogue/frmQuillet_support.h"

namespace {

int listWidth(const BrowserWindow& browser) {
  RECT place;
  GetWindowRect(browser.control(IDC_QUILLET_LIST), &place);
  return place.right - place.left;
}

int edgeOf(const BrowserWindow& browser, int id) {
  RECT place;
  GetWindowRect(browser.control(id), &place);
  return place.left;
}

void widenList(const BrowserWindow& browser, int steps) {
  for (int i = 0; i < steps; ++i)
    SendMessageW(browser.control(IDC_QUILLET_SPLITTER), WM_KEYDOWN, VK_RIGHT, 1);
}

std::optional<std::wstring> stored(const BrowserWindow& browser) {
  return browser.registry.string(HKEY_CURRENT_USER, browserSettings, L"DWTSplit");
}

}  // namespace

TEST_CASE("the bar between list and preview is remembered apart from the window's place") {
  BrowserWindow browser;
  int designed = 0;
  browser.show([&] { designed = listWidth(browser); });
  CHECK_FALSE(stored(browser));
  browser.show([&] {
    widenList(browser, 5);
    CHECK(listWidth(browser) == designed + 40);
  });
  CHECK(stored(browser) ==
        std::to_wstring(MulDiv(40, 96, GetDeviceCaps(handles::ScreenContext().get(), LOGPIXELSX))));
  const auto record = browser.registry.binary(HKEY_CURRENT_USER, browserSettings, L"DWTPlacement");
  REQUIRE(record);
  CHECK(record->size() == 48);
  browser.show([&] { CHECK(listWidth(browser) == designed + 40); });
}

TEST_CASE("everything below and above the preview goes with the bar") {
  BrowserWindow browser;
  browser.show([&] {
    std::vector<int> before;
    const int after[] = {IDC_QUILLET_SPLITTER,   IDC_QUILLET_TITLE,      IDC_QUILLET_PICTURE,
                         IDC_QUILLET_PAGE,       IDC_QUILLET_ZOOM_LABEL, IDC_QUILLET_ZOOM,
                         IDC_QUILLET_DESC_LABEL, IDC_QUILLET_DESC,       IDC_QUILLET_PATH_LABEL,
                         IDC_QUILLET_PATH,       IDC_QUILLET_DEST_LABEL, IDC_QUILLET_DEST};
    for (const int id : after) before.push_back(edgeOf(browser, id) + 16);
    widenList(browser, 2);
    std::vector<int> now;
    for (const int id : after) now.push_back(edgeOf(browser, id));
    CHECK(now == before);
    for (const int id : {IDC_QUILLET_LIST, IDC_QUILLET_STATUS})
      CHECK(edgeOf(browser, id) == edgeOf(browser, IDC_QUILLET_LIST_LABEL));
  });
}

TEST_CASE("a remembered bar that is out of reach or no number leaves room for both sides") {
  for (const wchar_t* value : {L"99999999999", L"-40000", L"wide", L""}) {
    CAPTURE(value);
    BrowserWindow browser;
    browser.registry.setString(HKEY_CURRENT_USER, browserSettings, L"DWTSplit", value);
    browser.show([&] {
      CHECK(listWidth(browser) > 50);
      CHECK(edgeOf(browser, IDC_QUILLET_PICTURE) + 100 < edgeOf(browser, IDOK));
    });
  }
}
