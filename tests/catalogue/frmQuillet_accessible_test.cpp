// The browser and the dialogs over it as a screen reader meets them: by name and by role.
#include <algorithm>

#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/accessible.h"
#include "webcopy/resource.h"

namespace {

std::wstring classOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

bool isOneOf(const std::wstring& kind, std::initializer_list<const wchar_t*> kinds) {
  return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

// What the system calls a control. For a list or a tree or a bar that is the label before it, which
// Wine leaves out.
std::wstring nameOf(HWND control) {
  if (!isOneOf(classOf(control),
               {WC_LISTVIEWW, WC_TREEVIEWW, L"ComboBox", PROGRESS_CLASSW, L"Edit"}))
    return accessibleOf(control).name;
  const HWND label = GetWindow(control, GW_HWNDPREV);
  const std::wstring text = label && classOf(label) == L"Static" ? windowText(label) : L"";
  if (classOf(control) == L"Edit") CHECK(accessibleOf(control).name == text);
  return text;
}

// The names of everything that is shown, in the order of the Tab key.
Lines namesIn(HWND dialog) {
  Lines names;
  for (HWND each = GetWindow(dialog, GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT)) {
    const bool shown = (GetWindowLongW(each, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown && classOf(each) != L"Static") names.push_back(nameOf(each));
  }
  return names;
}

}  // namespace

TEST_CASE("everything in the browser has a name for screen readers") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nPreview=a.gif\r\n");
  browser.addTemplate(L"b");
  browser.disk.writeFile(L"a\\a.gif", pictures::bytes(pictures::blueGif));
  const Lines expected = {L"Dynamic Web Templates:",
                          L"List width",
                          L"DWT Preview",
                          L"Zoom:",
                          L"Description:",
                          L"Copy to Web",
                          L"Destination...",
                          L"Notes...",
                          L"How to Apply...",
                          L"Folders...",
                          L"DWT Online...",
                          L"Help",
                          L"About...",
                          L"Cancel"};
  browser.show([&] {
    CHECK(namesIn(browser.dialog) == expected);
    browser.showRow(1);
    CHECK(namesIn(browser.dialog) == expected);
  });
}

TEST_CASE("the kind of preview is told to screen readers as is an error in it") {
  BrowserWindow browser;
  browser.addTemplate(L"a", "[a]\r\nPreview=a.gif\r\n");
  browser.addTemplate(L"b");
  browser.addTemplate(L"c", "[c]\r\nPreview=c.gif\r\n");
  browser.disk.writeFile(L"a\\a.gif", pictures::bytes(pictures::blueGif));
  browser.disk.writeFile(L"c\\c.gif", "no picture");
  browser.show([&] {
    const Accessible picture = accessibleOf(browser.control(IDC_QUILLET_PICTURE));
    CHECK(picture.name == L"DWT Preview");
    CHECK(picture.role == ROLE_SYSTEM_GRAPHIC);
    browser.showRow(1);
    CHECK(accessibleOf(browser.control(IDC_QUILLET_PAGE)).name == L"DWT Preview");
    CHECK(accessibleOf(browser.control(IDC_QUILLET_PAGE)).role == ROLE_SYSTEM_CLIENT);
    browser.showRow(2);
    CHECK(accessibleOf(browser.control(IDC_QUILLET_PAGE)).name == L"Error in preview");
    CHECK(accessibleOf(browser.control(IDC_QUILLET_PAGE)).role == ROLE_SYSTEM_ALERT);
  });
}

TEST_CASE("everything in the dialogs over the browser has a name for screen readers") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.driver.answer(IDYES);
  Lines seen;
  const auto look = [&](HWND dialog) {
    for (const std::wstring& name : namesIn(dialog)) seen.push_back(name);
  };
  const auto lookAndLeave = [&](const wchar_t* caption) {
    browser.driver.onDialog(caption, [&](HWND dialog) {
      look(dialog);
      press(dialog, IDCANCEL);
      press(dialog, IDOK);
    });
  };
  lookAndLeave(L"About Quillet");
  lookAndLeave(L"Manage Dynamic Web Template Folders");
  browser.driver.onDialog(L"Select a web folder", [&](HWND dialog) {
    look(dialog);
    press(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER);
    press(dialog, IDCANCEL);
  });
  lookAndLeave(L"Create New Folder");
  browser.driver.onDialog(L"Copying Files To Web...", look);
  browser.show([&] {
    for (const int id : {IDC_QUILLET_ABOUT, IDC_QUILLET_SELECT, IDC_QUILLET_DESTFOLDER, IDOK})
      press(browser.dialog, id);
  });
  CHECK(seen == Lines{// the about box
                      L"Write a diagnostic log", L"OK",
                      // the folders
                      L"Folders to scan for Dynamic Web Template :", L"Add...", L"Edit...",
                      L"Remove", L"Remove All", L"OK", L"Cancel",
                      // the folder of the web, and a new one
                      L"Web:", L"Web folder structure", L"New...", L"OK", L"Cancel", L"Name:",
                      L"OK", L"Cancel",
                      // the copy
                      L"To Web :", L"Overall progress:", L"Current process:", L"Cancel"});
}
