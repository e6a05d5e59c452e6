#include "webcopy/frmNewFolder.h"

#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"
#include "webcopy/resource.h"

using Lines = std::vector<std::wstring>;

namespace {

constexpr wchar_t dialogCaption[] = L"Create New Folder";
constexpr wchar_t boxTitle[] = L"Create Web Folder";

std::wstring offered(HWND dialog) { return windowText(dialog, IDC_NEWFOLDER_TXTFOLDERNAME); }

void type(HWND dialog, const std::wstring& name) {
  SetDlgItemTextW(dialog, IDC_NEWFOLDER_TXTFOLDERNAME, name.c_str());
}

// The dialog over a folder of the fixture's web; `script` works it.
struct NewFolderSession {
  bool ask(const std::wstring& folder, std::function<void(HWND)> script) {
    driver.onDialog(dialogCaption, std::move(script));
    const auto web = fixture.application().activeWeb();
    REQUIRE(web.has_value());
    const auto parent = web->locateFolder(folder);
    REQUIRE(parent.has_value());
    return AskNewFolderName(*parent, name, nullptr);
  }
  // Types the names one after another, each confirmed with OK; leaves with Cancel at the end.
  bool tryNames(const Lines& names) {
    return ask(L"", [&](HWND dialog) {
      for (const auto& each : names) {
        type(dialog, each);
        press(dialog, IDOK);
        if (!driver.boxes().empty()) CHECK(driver.boxes().back().owner == dialog);
        focused = GetFocus() == GetDlgItem(dialog, IDC_NEWFOLDER_TXTFOLDERNAME);
        open = IsWindowVisible(dialog) != FALSE;
      }
      press(dialog, IDCANCEL);
    });
  }

  CopyFixture fixture;
  ModalDriver driver;
  std::wstring name = L"untouched";
  bool focused = false;
  bool open = false;
};

void checkBox(const ShownBox& box, const wchar_t* text) {
  CHECK(box.text == text);
  CHECK(box.title == boxTitle);
  CHECK(box.icon == MB_ICONHAND);
  CHECK(box.buttons == Lines{L"OK"});
}

}  // namespace

TEST_CASE("the new-folder dialog's texts and tips are all there") {
  NewFolderSession session;
  bool seen = false;
  session.ask(L"", [&](HWND dialog) {
    seen = true;
    CHECK(windowText(dialog, IDC_NEWFOLDER_LBLMSG1) == L"Create new folder in");
    CHECK(windowText(dialog, IDC_NEWFOLDER_LBLFOLDERNAME) == L"Name:");
    CHECK(windowText(dialog, IDOK) == L"OK");
    CHECK(windowText(dialog, IDCANCEL) == L"Cancel");
    CHECK(toolTip(dialog, IDC_NEWFOLDER_LBLPARENTFOLDER) == L"Parent folder for the new folder");
    CHECK(toolTip(dialog, IDC_NEWFOLDER_TXTFOLDERNAME) == L"Name of the new folder");
    CHECK(toolTip(dialog, IDOK) == L"Create new folder");
    CHECK(toolTip(dialog, IDCANCEL) == L"Cancel creation of new folder");
    press(dialog, IDCANCEL);
  });
  CHECK(seen);
}

TEST_CASE("the new-folder dialog offers a free name with all of it selected") {
  NewFolderSession session;
  session.fixture.disk.makeFolder(L"webs\\site\\New_Folder");
  session.fixture.disk.makeFolder(L"webs\\site\\new_folder1");
  CHECK(session.ask(L"", [&](HWND dialog) {
    CHECK(offered(dialog) == L"New_Folder2");
    const HWND box = GetDlgItem(dialog, IDC_NEWFOLDER_TXTFOLDERNAME);
    CHECK(GetFocus() == box);
    CHECK(SendMessageW(box, EM_GETSEL, 0, 0) == MAKELRESULT(0, 11));
    press(dialog, IDOK);
  }));
  CHECK(session.name == L"New_Folder2");
}

TEST_CASE("the new-folder dialog shows where the folder will be") {
  NewFolderSession session;
  session.fixture.disk.makeFolder(L"webs\\site\\dwts\\in ner");
  const auto shown = [](std::wstring& text) {
    return [&text](HWND dialog) {
      text = windowText(dialog, IDC_NEWFOLDER_LBLPARENTFOLDER);
      press(dialog, IDCANCEL);
    };
  };
  std::wstring root;
  std::wstring dwts;
  std::wstring inner;
  session.ask(L"", shown(root));
  session.ask(L"dwts", shown(dwts));
  session.ask(L"dwts/in ner", shown(inner));
  CHECK(root == L"<web root>");
  CHECK(dwts == L"/dwts");
  CHECK(inner == L"/dwts/in ner");
}

TEST_CASE("a name with any forbidden character is refused and the dialog stays") {
  NewFolderSession session;
  const Lines names = {L"a\\b", L"a/b", L":", L"a*", L"?", L"<a", L"a>", L"a|b", L"\"a\""};
  CHECK_FALSE(session.tryNames(names));
  REQUIRE(session.driver.boxes().size() == names.size());
  for (const auto& box : session.driver.boxes()) checkBox(box, L"Invalid folder name specified.");
  CHECK(session.focused);
  CHECK(session.open);
  CHECK(session.name == L"untouched");
}

TEST_CASE("a name of blanks only and no name at all are refused") {
  NewFolderSession session;
  CHECK_FALSE(session.tryNames({L"", L"   "}));
  REQUIRE(session.driver.boxes().size() == 2);
  for (const auto& box : session.driver.boxes()) checkBox(box, L"Invalid folder name specified.");
}

TEST_CASE("a folder named NEWS blocks the name news") {
  NewFolderSession session;
  session.fixture.disk.makeFolder(L"webs\\site\\NEWS");
  CHECK_FALSE(session.tryNames({L"news", L"NEWS"}));
  REQUIRE(session.driver.boxes().size() == 2);
  for (const auto& box : session.driver.boxes())
    checkBox(box, L"Folder with this name already exists.");
  CHECK(session.focused);
  CHECK(session.open);
}

TEST_CASE("an umlaut blocks its other letter case as well") {
  NewFolderSession session;
  session.fixture.disk.makeFolder(L"webs\\site\\\u00dcber");
  CHECK_FALSE(session.tryNames({L"\u00fcBER"}));
  REQUIRE(session.driver.boxes().size() == 1);
}

TEST_CASE("an accepted name keeps its blanks") {
  NewFolderSession session;
  CHECK(session.ask(L"", [](HWND dialog) {
    type(dialog, L" a ");
    press(dialog, IDOK);
  }));
  CHECK(session.name == L" a ");
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a very long name is accepted as it was typed") {
  NewFolderSession session;
  const std::wstring name(300, L'n');
  CHECK(session.ask(L"", [&](HWND dialog) {
    type(dialog, name);
    press(dialog, IDOK);
  }));
  CHECK(session.name == name);
}

TEST_CASE("the new-folder dialog makes nothing itself") {
  NewFolderSession session;
  CHECK(session.ask(L"", [](HWND dialog) { press(dialog, IDOK); }));
  CHECK(session.name == L"New_Folder");
  CHECK(session.fixture.webTree().empty());
}

TEST_CASE("cancelling the new-folder dialog leaves the name as it was") {
  NewFolderSession session;
  for (const UINT message : {WM_COMMAND, WM_CLOSE}) {
    CHECK_FALSE(session.ask(L"", [message](HWND dialog) {
      PostMessageW(dialog, message, message == WM_COMMAND ? IDCANCEL : 0, 0);
    }));
    CHECK(session.name == L"untouched");
  }
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("cancelling the new-folder dialog while the host looks at the name takes OK back") {
  for (const wchar_t* name : {L"pages", L"taken"}) {
    CAPTURE(std::wstring(name));
    NewFolderSession session;
    session.fixture.disk.makeFolder(L"webs\\site\\taken");
    CHECK_FALSE(session.ask(L"", [&](HWND dialog) {
      type(dialog, name);
      session.fixture.host.faults().before(L"WebFolder.Folders",
                                           [dialog] { press(dialog, IDCANCEL); });
      press(dialog, IDOK);
      session.fixture.host.faults().clear();
    }));
    CHECK(session.name == L"untouched");
    CHECK(session.driver.boxes().empty());
  }
}

TEST_CASE("Enter in the name box confirms and Escape cancels") {
  NewFolderSession session;
  const auto key = [](WPARAM code) {
    return [code](HWND dialog) {
      PostMessageW(GetDlgItem(dialog, IDC_NEWFOLDER_TXTFOLDERNAME), WM_KEYDOWN, code, 1);
    };
  };
  CHECK_FALSE(session.ask(L"", key(VK_ESCAPE)));
  CHECK(session.ask(L"", key(VK_RETURN)));
  CHECK(session.name == L"New_Folder");
}

TEST_CASE("a host that will not tell the sub-folders leaves the new-folder dialog open") {
  NewFolderSession session;
  const bool accepted = session.ask(L"", [&](HWND dialog) {
    session.fixture.host.faults().refuse(L"WebFolder.Folders", L"Gone.");
    press(dialog, IDOK);
    session.open = IsWindowVisible(dialog) != FALSE;
    press(dialog, IDCANCEL);
  });
  CHECK_FALSE(accepted);
  CHECK(session.open);
  CHECK(session.fixture.log.messages().back().find(
            L"ERROR in procedure btnOK_Click of Form frmNewFolder. Error : ") == 0);
}

TEST_CASE("a host that fails in any one of its members leaves a new-folder dialog to be left") {
  for (const wchar_t* member :
       {L"WebFolder.Folders", L"WebFolders.Count", L"WebFolders.Item", L"WebFolder.Name",
        L"WebFolder.Url", L"WebFolder.Web", L"Web.Url"}) {
    for (const bool refuses : {true, false}) {
      for (const bool empty : {false, true}) {
        CAPTURE(std::wstring(member));
        CAPTURE(refuses);
        CAPTURE(empty);
        NewFolderSession session;
        session.fixture.disk.makeFolder(L"webs\\site\\there");
        const auto parent = session.fixture.application().activeWeb()->rootFolder();
        session.fixture.host.options().nothingIsEmpty = empty;
        if (refuses)
          session.fixture.host.faults().refuse(member, L"The host refuses.");
        else
          session.fixture.host.faults().returnNothing(member);
        session.driver.onDialog(dialogCaption, [&](HWND dialog) {
          session.open = IsWindowVisible(dialog) != FALSE;
          press(dialog, IDCANCEL);
        });
        CHECK_FALSE(AskNewFolderName(parent, session.name, nullptr));
        CHECK(session.open);
        CHECK(session.name == L"untouched");
        CHECK(session.driver.boxes().empty());
      }
    }
  }
}

TEST_CASE("the new-folder dialog holds no object of the host when it is over") {
  NewFolderSession session;
  const long before = session.fixture.host.liveObjects();
  session.ask(L"", [](HWND dialog) { press(dialog, IDOK); });
  CHECK(session.fixture.host.liveObjects() == before);
}
