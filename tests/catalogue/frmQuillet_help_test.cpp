// The help key in the template browser and in the dialogs over it.
#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/Launches.h"
#include "webcopy/resource.h"

TEST_CASE("F1 opens the browser's topic wherever the focus is") {
  const Launches launches;
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.addTemplate(L"b", "[b]\r\nPreview=b.gif\r\n");
  browser.disk.writeFile(L"b\\b.gif", pictures::blueGifOf(20, 10));
  Lines expected;
  const auto press = [&](HWND focus) {
    SetFocus(focus);
    browser.type(VK_F1);
    expected.push_back(L"Browser");
    CHECK(launches.topics() == expected);
  };
  browser.show([&] {
    for (const int id : {IDC_QUILLET_LIST, IDOK, IDCANCEL}) press(browser.control(id));
    press(browser.control(IDC_QUILLET_PAGE));
    CHECK(GetFocus() == browser.page.window());
    browser.selectRow(1);
    for (const int id : {IDC_QUILLET_PICTURE, IDC_QUILLET_ZOOM}) press(browser.control(id));
    CHECK(browser.page.keys().empty());
  });
}

TEST_CASE("F1 that is held down opens one help window") {
  const Launches launches;
  BrowserWindow browser;
  browser.show([&] {
    PostMessageW(browser.control(IDC_QUILLET_LIST), WM_KEYDOWN, VK_F1, 1 | (KF_REPEAT << 16));
    forms::yieldToMessages();
    CHECK(launches.topics().empty());
  });
}

TEST_CASE("F1 opens the topic of each dialog over the browser") {
  const Launches launches;
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.driver.answer(IDYES);
  const auto help = [&](const wchar_t* caption) {
    browser.driver.onDialog(caption, [&](HWND dialog) {
      browser.type(VK_F1);
      press(dialog, IDCANCEL);
      press(dialog, IDOK);
    });
  };
  help(L"About Quillet");
  help(L"Manage Dynamic Web Template Folders");
  browser.driver.onDialog(L"Select a web folder", [&](HWND dialog) {
    browser.type(VK_F1);
    press(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER);
    press(dialog, IDCANCEL);
  });
  help(L"Create New Folder");
  browser.driver.onDialog(L"Copying Files To Web...", [&](HWND) { browser.type(VK_F1); });
  browser.show([&] {
    for (const int id : {IDC_QUILLET_ABOUT, IDC_QUILLET_SELECT, IDC_QUILLET_DESTFOLDER, IDOK})
      press(browser.dialog, id);
  });
  CHECK(launches.topics() == Lines{L"About", L"Folders", L"Destination", L"NewFolder", L"Copying"});
}
