// The template browser and the host behind it: one that refuses, and one that is left as it was.
#include <windows.h>

#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/activation_context.h"
#include "tests/support/machine.h"
#include "webcopy/resource.h"

namespace {

constexpr wchar_t pickerCaption[] = L"Select a web folder";
constexpr wchar_t foldersCaption[] = L"Manage Dynamic Web Template Folders";

// How a host may fail in one of its members.
enum class Failure { refuses, givesNull, givesEmpty };

void fail(standin::Host& host, const wchar_t* member, Failure failure) {
  host.options().nothingIsEmpty = failure == Failure::givesEmpty;
  if (failure == Failure::refuses)
    host.faults().refuse(member, L"The host refuses.");
  else
    host.faults().returnNothing(member);
}

// Presses the buttons that need the host, with every dialog cancelled and `copyAnswer` to the
// question about the destination.
void pressAll(BrowserWindow& browser, int copyAnswer) {
  const auto cancel = [](HWND dialog) { press(dialog, IDCANCEL); };
  browser.driver.onDialog(pickerCaption, cancel);
  press(browser.dialog, IDC_QUILLET_DESTFOLDER);
  browser.driver.answer(copyAnswer);
  press(browser.dialog, IDOK);
  browser.driver.onDialog(foldersCaption, cancel);
  press(browser.dialog, IDC_QUILLET_SELECT);
}

void checkUsable(const BrowserWindow& browser) {
  CHECK(IsWindowVisible(browser.dialog));
  CHECK(IsWindowEnabled(browser.dialog));
  CHECK(browser.enabled(IDC_QUILLET_SELECT));
  CHECK(browser.driver.dialogs().back() == foldersCaption);
}

}  // namespace

TEST_CASE("a host that fails in any one member leaves a browser that works and a web as it was") {
  for (const wchar_t* member :
       {L"Application.ActiveWeb", L"Application.Version", L"Web.Url", L"Web.RootFolder",
        L"Web.LocateFolder", L"WebFolder.Url", L"WebFolder.Folders", L"WebFolders.Add"}) {
    for (const Failure failure : {Failure::refuses, Failure::givesNull, Failure::givesEmpty}) {
      CAPTURE(std::wstring(member));
      CAPTURE(static_cast<int>(failure));
      BrowserWindow browser;
      browser.addTemplate(L"home");
      browser.web.writeFile(L"index.htm", "a page");
      browser.show([&] {
        fail(browser.host, member, failure);
        pressAll(browser, IDNO);
        checkUsable(browser);
      });
      CHECK_FALSE(IsWindow(browser.dialog));
      CHECK(browser.web.tree() == Lines{L"index.htm"});
    }
  }
}

TEST_CASE("a host that will not make or tell the destination gets no file of a template") {
  for (const wchar_t* member : {L"Application.ActiveWeb", L"Web.RootFolder", L"WebFolder.Url",
                                L"WebFolder.Folders", L"WebFolders.Add"}) {
    for (const Failure failure : {Failure::refuses, Failure::givesNull, Failure::givesEmpty}) {
      CAPTURE(std::wstring(member));
      CAPTURE(static_cast<int>(failure));
      BrowserWindow browser;
      browser.addTemplate(L"home");
      browser.web.writeFile(L"index.htm", "a page");
      browser.show([&] {
        fail(browser.host, member, failure);
        pressAll(browser, IDYES);
        checkUsable(browser);
      });
      CHECK_FALSE(IsWindow(browser.dialog));
      Lines files = browser.web.tree();
      std::erase_if(files, [](const std::wstring& name) { return name.ends_with(L"\\"); });
      CHECK(files == Lines{L"index.htm"});
      CHECK(browser.disk.exists(L"home\\home.dwt"));
    }
  }
}

TEST_CASE("the button for the folders brings the host to the front once by its version's name") {
  machine::mayChange();
  standin::HostOptions options;
  options.explorerObject = true;
  options.version = L"11.0.8173";
  BrowserWindow browser(options);
  int raised = 0;
  browser.host.session().activated = [&] { ++raised; };
  browser.show([&] {
    CHECK(raised == 0);
    browser.driver.onDialog(foldersCaption, [&](HWND dialog) {
      CHECK(raised == 1);
      press(dialog, IDCANCEL);
    });
    press(browser.dialog, IDC_QUILLET_SELECT);
  });
  CHECK(raised == 1);
}

TEST_CASE("a window that is closed while the host answers opens none of the others") {
  struct Opening {
    const wchar_t* member;  // that is asked meanwhile
    int button;
    const wchar_t* caption;
  };
  constexpr Opening openings[] = {
      {L"Application.ActiveWeb", IDC_QUILLET_DESTFOLDER, pickerCaption},
      {L"Web.Url", IDC_QUILLET_DESTFOLDER, pickerCaption},
      {L"Application.Version", IDC_QUILLET_SELECT, foldersCaption},
  };
  for (const Opening& opening : openings) {
    CAPTURE(std::wstring(opening.member));
    BrowserWindow browser;
    browser.addTemplate(L"home");
    browser.driver.onDialog(opening.caption, [](HWND dialog) { press(dialog, IDCANCEL); });
    browser.show([&] {
      browser.host.faults().before(opening.member,
                                   [&] { SendMessageW(browser.dialog, WM_CLOSE, 0, 0); });
      press(browser.dialog, opening.button);
      CHECK_FALSE(IsWindowVisible(browser.dialog));
    });
    CHECK(browser.driver.dialogs() == Lines{browserCaption});
  }
}

TEST_CASE("a window that is closed while the host answers copies nothing") {
  struct Close {
    const wchar_t* member;  // that is asked meanwhile
    std::size_t boxes;      // that have been shown by then
  };
  constexpr Close closes[] = {
      {L"Application.ActiveWeb", 0},
      {L"Web.Url", 0},
      {L"Web.LocateFolder", 1},
      {L"WebFolder.Url", 1},
  };
  for (const Close& close : closes) {
    CAPTURE(std::wstring(close.member));
    BrowserWindow browser;
    browser.addTemplate(L"home");
    browser.web.writeFile(L"index.htm", "a page");
    browser.show([&] {
      browser.host.faults().before(close.member,
                                   [&] { SendMessageW(browser.dialog, WM_CLOSE, 0, 0); });
      browser.driver.answer(IDYES);
      press(browser.dialog, IDOK);
      CHECK_FALSE(IsWindowVisible(browser.dialog));
    });
    CHECK(browser.driver.dialogs() == Lines{browserCaption});
    CHECK(browser.driver.boxes().size() == close.boxes);
    CHECK_FALSE(browser.web.exists(L"dwts\\home\\home.dwt"));
  }
}

TEST_CASE(
    "a window that is closed while the host looks for the folder for templates asks nothing") {
  for (const wchar_t* member : {L"Application.ActiveWeb", L"Web.Url", L"Web.LocateFolder"}) {
    CAPTURE(std::wstring(member));
    BrowserWindow browser;
    browser.addTemplate(L"home");
    browser.web.makeFolder(L"dwts");
    browser.driver.onDialog(pickerCaption, [](HWND dialog) {
      const HWND tree = GetDlgItem(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS);
      TreeView_SelectItem(tree, TreeView_GetChild(tree, TreeView_GetRoot(tree)));
      press(dialog, IDOK);
    });
    browser.show([&] {
      press(browser.dialog, IDC_QUILLET_DESTFOLDER);
      RemoveDirectoryW((browser.web / L"dwts").c_str());
      browser.host.faults().before(member, [&] { SendMessageW(browser.dialog, WM_CLOSE, 0, 0); });
      press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    });
    CHECK(browser.driver.boxes().empty());
  }
}

TEST_CASE("the browser's window has the visual styles and the host's calls do without them") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  const HANDLE before = activeContext();
  HANDLE inWindow = nullptr;
  std::vector<HANDLE> inCalls;
  for (const wchar_t* member : {L"Application.ActiveWeb", L"WebFolders.Add", L"WebFiles.Add"})
    browser.host.faults().before(member, [&] { inCalls.push_back(activeContext()); });
  browser.show([&] {
    inWindow = activeContext();
    browser.driver.answer(IDYES);
    press(browser.dialog, IDOK);
  });
  CHECK(browser.web.exists(L"dwts\\home\\home.dwt"));
  CHECK(before == nullptr);
  CHECK(inWindow != nullptr);
  CHECK(inCalls.size() > 3);
  for (const HANDLE context : inCalls) CHECK(context == nullptr);
  CHECK(activeContext() == before);
}

TEST_CASE("a refused call leaves the visual styles of the window as they were") {
  BrowserWindow browser;
  browser.show([&] {
    const HANDLE before = activeContext();
    browser.host.faults().refuse(L"Web.Url", L"Not now.");
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(activeContext() == before);
  });
  CHECK(activeContext() == nullptr);
}

TEST_CASE("the browser's list is of the common controls' version 6") {
  BrowserWindow browser;
  browser.show([&] {
    HMODULE library = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const wchar_t*>(
            GetClassLongPtrW(browser.control(IDC_QUILLET_LIST), GCLP_WNDPROC)),
        &library);
    // The library itself does not tell: Wine's says 5 in both places.
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(library, path, MAX_PATH);
    CharLowerW(path);
    const std::wstring version6 =
        L"\\winsxs\\x86_microsoft.windows.common-controls_6595b64144ccf1df_6.0.";
    CHECK(std::wstring(path).find(version6) != std::wstring::npos);
  });
}
