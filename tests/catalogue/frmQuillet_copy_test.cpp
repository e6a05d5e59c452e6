// The template browser: destination, copy and the windows it opens.
#include <algorithm>

#include "catalogue/destination.h"
#include "tests/catalogue/frmQuillet_support.h"
#include "tests/support/Launches.h"
#include "webcopy/resource.h"

namespace {

constexpr wchar_t applicationTitle[] = L"Quillet Viewer";
constexpr wchar_t pickerCaption[] = L"Select a web folder";

std::wstring defaultQuestion(const BrowserWindow& browser) {
  return L"Destination folder is not specified. Do you wish to copy the DWT's to the default "
         L"destination? \r\n " +
         browser.webUrl() + L"/dwts";
}

// Presses the picker's OK on the initial selection.
void acceptPicker(BrowserWindow& browser) {
  browser.driver.onDialog(pickerCaption, [](HWND dialog) { press(dialog, IDOK); });
}

void cancelPicker(BrowserWindow& browser) {
  browser.driver.onDialog(pickerCaption, [](HWND dialog) { press(dialog, IDCANCEL); });
}

// Selects the root's sub-folder of that name, then OK.
void pickFolder(BrowserWindow& browser, std::wstring name) {
  browser.driver.onDialog(pickerCaption, [name](HWND dialog) {
    const HWND tree = GetDlgItem(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS);
    const auto root = TreeView_GetRoot(tree);
    TreeView_Expand(tree, root, TVE_EXPAND);
    for (auto item = TreeView_GetChild(tree, root); item;
         item = TreeView_GetNextSibling(tree, item)) {
      wchar_t text[260] = {};
      TVITEMW wanted = {};
      wanted.mask = TVIF_TEXT;
      wanted.hItem = item;
      wanted.pszText = text;
      wanted.cchTextMax = 260;
      SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
      if (text == name) TreeView_SelectItem(tree, item);
    }
    press(dialog, IDOK);
  });
}

}  // namespace

TEST_CASE("copying with no templates says so") {
  BrowserWindow browser;
  browser.show([&] {
    SendMessageW(browser.dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                 reinterpret_cast<LPARAM>(browser.control(IDOK)));
    CHECK(IsWindowVisible(browser.dialog));
  });
  REQUIRE(browser.driver.boxes().size() == 1);
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text == L"There are no DWT's to copy.");
  CHECK(box.title == browserCaption);
  CHECK(box.icon == MB_ICONASTERISK);
  CHECK(box.buttons == Lines{L"OK"});
}

TEST_CASE("copying with no destination and answered No copies nothing and keeps it empty") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.driver.answer(IDNO);
  browser.driver.answer(IDNO);
  browser.show([&] {
    press(browser.dialog, IDOK);
    CHECK(IsWindowVisible(browser.dialog));
    CHECK(browser.text(IDC_QUILLET_DEST).empty());
    press(browser.dialog, IDOK);
  });
  CHECK(browser.web.tree().empty());
  REQUIRE(browser.driver.boxes().size() == 2);  // asked again: the destination stayed empty
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text == defaultQuestion(browser));
  CHECK(box.title == browserCaption);
  CHECK(box.icon == MB_ICONQUESTION);
  CHECK(box.buttons == Lines{L"Yes", L"No"});
  CHECK(browser.driver.boxes()[1].text == defaultQuestion(browser));
}

TEST_CASE("copying with no destination and answered Yes copies below dwts and closes") {
  BrowserWindow browser;
  browser.addTemplate(L"home", "[home]\r\nTitle=Home\r\n");
  browser.disk.writeFile(L"home\\images\\a.gif", pictures::bytes(pictures::blueGif));
  browser.driver.answer(IDYES);
  bool closed = false;
  browser.show([&] {
    press(browser.dialog, IDOK);
    closed = !IsWindowVisible(browser.dialog);
  });
  CHECK(closed);
  CHECK(browser.web.tree() == Lines{L"dwts\\", L"dwts\\home\\", L"dwts\\home\\home.dwt",
                                    L"dwts\\home\\images\\", L"dwts\\home\\images\\a.gif"});
  CHECK(browser.log.has(L"Copying folder to the following path : " + browser.webUrl() + L"/dwts"));
  CHECK(browser.driver.boxes().size() == 1);
}

TEST_CASE("the selected template is the one that is copied") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.addTemplate(L"b");
  browser.driver.answer(IDYES);
  browser.show([&] {
    browser.selectRow(1);
    press(browser.dialog, IDOK);
  });
  CHECK(browser.web.exists(L"dwts\\b\\b.dwt"));
  CHECK_FALSE(browser.web.exists(L"dwts\\a"));
}

TEST_CASE("copying without a selected template copies nothing and is logged") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.driver.answer(IDYES);
  browser.driver.answer(IDYES);
  browser.driver.onDialog(L"Copying Files To Web...",
                          [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
  browser.show([&] {
    ListView_SetItemState(browser.control(IDC_QUILLET_LIST), -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    press(browser.dialog, IDOK);
    CHECK(IsWindowVisible(browser.dialog));
  });
  CHECK(browser.driver.boxes().empty());
  CHECK(browser.web.tree().empty());
  CHECK(
      browser.log.has(L"ERROR in procedure cmdCopytoWeb_Click of Form frmQuillet. Error : "
                      L"91\tObject variable or With block variable not set"));
}

TEST_CASE("a copy into an existing folder adds no second one") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.writeFile(L"dwts\\other.htm", "x");
  browser.driver.answer(IDYES);
  browser.show([&] { press(browser.dialog, IDOK); });
  CHECK(browser.web.tree() ==
        Lines{L"dwts\\", L"dwts\\home\\", L"dwts\\home\\home.dwt", L"dwts\\other.htm"});
}

TEST_CASE("a copy that is declined leaves the window open") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.writeFile(L"dwts\\home\\home.dwt", "older");
  browser.driver.answer(IDYES);  // to the default destination
  browser.driver.answer(IDNO);   // do not overwrite
  browser.show([&] {
    press(browser.dialog, IDOK);
    CHECK(IsWindowVisible(browser.dialog));
    CHECK(IsWindowEnabled(browser.dialog));
  });
  CHECK(browser.web.readFile(L"dwts\\home\\home.dwt") == "older");
  CHECK(browser.driver.boxes().size() == 2);
}

TEST_CASE("a host that refuses the destination folder is logged and the window stays") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.host.faults().refuse(L"WebFolders.Add", L"No room.", 1234);
  browser.driver.answer(IDYES);
  browser.show([&] {
    press(browser.dialog, IDOK);
    CHECK(IsWindowVisible(browser.dialog));
  });
  CHECK(browser.log.has(
      L"ERROR in procedure cmdCopytoWeb_Click of Form frmQuillet. Error : 1234\tNo room."));
  CHECK(browser.web.tree().empty());
  CHECK(browser.driver.boxes().size() == 1);
}

TEST_CASE("without an open web neither copying nor choosing a destination does anything") {
  for (const bool isError : {false, true}) {
    CAPTURE(isError);
    standin::HostOptions options;
    options.noWebIsError = isError;
    BrowserWindow browser(options);
    browser.addTemplate(L"home");
    browser.show([&] {
      browser.host.closeWeb();
      press(browser.dialog, IDOK);
      press(browser.dialog, IDC_QUILLET_DESTFOLDER);
      CHECK(IsWindowVisible(browser.dialog));
    });
    CHECK(browser.driver.boxes().empty());
    CHECK_FALSE(browser.log.has(L"Setting destination folder..."));
  }
}

TEST_CASE("a template folder with a backslash at its end is found to be its own destination") {
  CHECK(isSamePlace(L"C:\\My Webs\\site\\", L"file:///C:/My Webs/SITE"));
}

TEST_CASE("two paths that differ in the last backslash only are not found to be the same place") {
  CHECK_FALSE(isSamePlace(L"C:\\templates\\home", L"file:///C:/templates/"));
  CHECK_FALSE(isSamePlace(L"C:\\templates\\home", L"http://server/templates/"));
  CHECK_FALSE(isSamePlace(L"C:\\templates\\home", L""));
  CHECK_FALSE(isSamePlace(L"C:\\templates\\home", L"file:///C:/" + std::wstring(400, L'x')));
}

TEST_CASE("choosing a destination shows it as the host names it") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.makeFolder(L"My pages");
  pickFolder(browser, L"My pages");
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(browser.text(IDC_QUILLET_DEST) == browser.webUrl() + L"/My pages");
    press(browser.dialog, IDOK);
  });
  CHECK(browser.log.has(L"Setting destination folder..."));
  CHECK(browser.log.has(L"Destination folder set to: " + browser.webUrl() + L"/My pages"));
  CHECK(browser.web.exists(L"My pages\\home\\home.dwt"));
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("the root of the web can be the destination") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  acceptPicker(browser);
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(browser.text(IDC_QUILLET_DEST) == browser.webUrl());
    press(browser.dialog, IDOK);
  });
  CHECK(browser.web.exists(L"home\\home.dwt"));
}

TEST_CASE("a destination that is not chosen stays what was shown") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.makeFolder(L"pages");
  pickFolder(browser, L"pages");
  cancelPicker(browser);
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(browser.text(IDC_QUILLET_DEST) == browser.webUrl() + L"/pages");
    press(browser.dialog, IDOK);
  });
  CHECK(browser.log.has(L"Setting destination folder operation cancelled."));
  CHECK(browser.web.exists(L"pages\\home\\home.dwt"));
}

TEST_CASE("cancelling the first choice of a destination leaves it empty") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  cancelPicker(browser);
  browser.driver.answer(IDNO);
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(browser.text(IDC_QUILLET_DEST).empty());
    press(browser.dialog, IDOK);
  });
  REQUIRE(browser.driver.boxes().size() == 1);
  CHECK(browser.driver.boxes()[0].text == defaultQuestion(browser));
}

TEST_CASE("cancelling the choice gives up a default destination that was never shown") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.writeFile(L"dwts\\home\\home.dwt", "older");
  cancelPicker(browser);
  browser.driver.answer(IDYES);  // to the default destination
  browser.driver.answer(IDNO);   // do not overwrite
  browser.driver.answer(IDNO);
  browser.show([&] {
    press(browser.dialog, IDOK);
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    press(browser.dialog, IDOK);
  });
  REQUIRE(browser.driver.boxes().size() == 3);
  CHECK(browser.driver.boxes()[2].text == defaultQuestion(browser));
}

TEST_CASE("a default folder that is missing is made when the user wants it") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.makeFolder(L"dwts");
  pickFolder(browser, L"dwts");
  cancelPicker(browser);
  browser.driver.answer(IDYES);
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    RemoveDirectoryW((browser.web / L"dwts").c_str());
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(browser.text(IDC_QUILLET_DEST) == browser.webUrl() + L"/dwts");
  });
  REQUIRE(browser.driver.boxes().size() == 1);
  const ShownBox& box = browser.driver.boxes()[0];
  CHECK(box.text ==
        L"Default DWT directory does not exist.\r\nDo you want to create the default DWT "
        L"directory?");
  CHECK(box.title == applicationTitle);
  CHECK(box.icon == MB_ICONQUESTION);
  CHECK(box.buttons == Lines{L"Yes", L"No"});
  CHECK(browser.web.tree() == Lines{L"dwts\\"});
}

TEST_CASE("a default folder that is missing and unwanted is no destination") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.web.makeFolder(L"dwts");
  pickFolder(browser, L"dwts");
  acceptPicker(browser);
  browser.driver.answer(IDNO);
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    RemoveDirectoryW((browser.web / L"dwts").c_str());
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(browser.text(IDC_QUILLET_DEST) == browser.webUrl());  // the picker began at the root
  });
  CHECK(browser.web.tree().empty());
}

TEST_CASE("leaving the folder dialog with OK lists the templates again") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders", [&](HWND dialog) {
    browser.addTemplate(L"b");
    press(dialog, IDOK);
  });
  browser.show([&] {
    browser.selectRow(0);
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(browser.rows() == Lines{L"a", L"b"});
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : a     [HTML Preview]");
  });
}

TEST_CASE("the focus is back on the folders button when the templates are listed again") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders",
                          [](HWND dialog) { press(dialog, IDOK); });
  browser.show([&] {
    const HWND folders = browser.control(IDC_QUILLET_SELECT);
    SendMessageW(browser.dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(folders), TRUE);
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(GetFocus() == folders);
    // With the focus in the list, Enter copies again.
    SendMessageW(browser.dialog, WM_NEXTDLGCTL,
                 reinterpret_cast<WPARAM>(browser.control(IDC_QUILLET_LIST)), TRUE);
    const auto isDefault = [&](int id) {
      return (SendMessageW(browser.control(id), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
    };
    CHECK(isDefault(IDOK));
    CHECK_FALSE(isDefault(IDC_QUILLET_SELECT));
    CHECK_FALSE(isDefault(IDC_QUILLET_HELP));
  });
}

TEST_CASE("leaving the folder dialog with Cancel keeps the list") {
  BrowserWindow browser;
  browser.addTemplate(L"a");
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders", [&](HWND dialog) {
    browser.addTemplate(L"b");
    press(dialog, IDCANCEL);
  });
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(browser.rows() == Lines{L"a"});
    CHECK(browser.enabled(IDOK));
  });
}

TEST_CASE("when the last template went the buttons that need one are off") {
  BrowserWindow browser;
  const std::wstring file = browser.addTemplate(L"a");
  browser.driver.onDialog(L"Manage Dynamic Web Template Folders", [&](HWND dialog) {
    DeleteFileW(file.c_str());
    press(dialog, IDOK);
  });
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_SELECT);
    CHECK(browser.rows().empty());
    CHECK(browser.text(IDC_QUILLET_TITLE) == L"Preview : ");
    for (const int id : {IDOK, IDC_QUILLET_DESTFOLDER, IDC_QUILLET_INSTRUCTIONS, IDC_QUILLET_NOTES})
      CHECK_FALSE(browser.enabled(id));
    CHECK(browser.enabled(IDC_QUILLET_SELECT));
  });
}

TEST_CASE("an error behind a button is logged under its name and the window stays") {
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    {
      const NoDialogs noDialogs;
      press(browser.dialog, IDC_QUILLET_ABOUT);
      press(browser.dialog, IDC_QUILLET_SELECT);
    }
    browser.host.faults().refuse(L"Web.Url", L"Not now.", 1234);
    press(browser.dialog, IDC_QUILLET_DESTFOLDER);
    CHECK(IsWindowVisible(browser.dialog));
    CHECK(IsWindowEnabled(browser.dialog));
  });
  const std::wstring missing = L" of Form frmQuillet. Error : 429\t";
  const Lines lines = browser.log.messages();
  const auto logged = [&](const std::wstring& start) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::wstring& line) { return line.starts_with(start); });
  };
  CHECK(logged(L"ERROR in procedure cmdAbout_Click_Error" + missing));
  CHECK(logged(L"ERROR in procedure cmdSelect_Click" + missing));
  CHECK(browser.log.has(
      L"ERROR in procedure cmdDestFolder_Click of Form frmQuillet. Error : 1234\tNot now."));
  CHECK(browser.driver.boxes().empty());
}

TEST_CASE("the notes of the selected template open in the quick help viewer") {
  const Launches launches;
  BrowserWindow browser;
  browser.addTemplate(L"home");
  const std::wstring notes = browser.disk.writeFile(L"home\\readme.htm", "notes");
  browser.show([&] { press(browser.dialog, IDC_QUILLET_NOTES); });
  REQUIRE(launches.noted().size() == 1);
  CHECK(launches.noted()[0].file.ends_with(L"\\KorvelQuickHelp.exe"));
  CHECK(launches.noted()[0].parameters == L"\"" + notes + L"\" \"DWTNotes\"");
}

TEST_CASE("a template without notes shows its page as notes") {
  const Launches launches;
  BrowserWindow browser;
  const std::wstring file = browser.addTemplate(L"home");
  browser.show([&] { press(browser.dialog, IDC_QUILLET_NOTES); });
  REQUIRE(launches.noted().size() == 1);
  CHECK(launches.noted()[0].parameters == L"\"" + file + L"\" \"DWTNotes\"");
}

TEST_CASE("help and instructions open their topics") {
  const Launches launches;
  BrowserWindow browser;
  browser.addTemplate(L"home");
  browser.show([&] {
    press(browser.dialog, IDC_QUILLET_HELP);
    press(browser.dialog, IDC_QUILLET_INSTRUCTIONS);
  });
  REQUIRE(launches.noted().size() == 2);
  CHECK(launches.noted()[0].parameters.ends_with(L"\" /cQuillet"));
  CHECK(launches.noted()[1].parameters.ends_with(L"\" /cHowToApply"));
}

TEST_CASE("the about button opens the about box over the browser") {
  BrowserWindow browser;
  bool disabled = false;
  browser.driver.onDialog(L"About Quillet", [&](HWND dialog) {
    disabled = !IsWindowEnabled(browser.dialog);
    press(dialog, IDOK);
  });
  browser.show([&] { press(browser.dialog, IDC_QUILLET_ABOUT); });
  CHECK(disabled);
  CHECK(browser.driver.dialogs() == Lines{browserCaption, L"About Quillet"});
}

TEST_CASE("the close box presses cancel") {
  BrowserWindow browser;
  bool closed = false;
  browser.show([&] {
    SendMessageW(browser.dialog, WM_CLOSE, 0, 0);
    closed = !IsWindowVisible(browser.dialog);
  });
  CHECK(closed);
  CHECK(browser.log.has(L"Quillet unloaded successfully."));
}
