#include "webcopy/frmSelectWebFolder.h"

#include "tests/support/MadeUpFolder.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/PickerSession.h"
#include "webcopy/resource.h"

namespace {

// Makes a folder, with a sub-web beside it, and chooses it.
void checkPickerUnder(const standin::HostOptions& options) {
  PickerSession session(options);
  session.makeFolders({L"dwts\\blue", L"sub\\_vti_pvt"});
  session.absolute = true;
  session.path = L"/dwts/blue";
  CHECK(session.pick([&](HWND dialog) {
    const FolderTree tree = treeOf(dialog);
    CHECK(tree.children(tree.at({L"site"})) == Lines{L"dwts"});
    makeFolder(session, dialog, confirming(L"inner"));
    press(dialog, IDOK);
  }));
  CHECK(session.path == session.fixture.url(L"/dwts/blue/inner"));
  CHECK(session.existsInWeb(L"dwts\\blue\\inner"));
}

}  // namespace

TEST_CASE("the picker's texts and tips are all there") {
  PickerSession session;
  bool seen = false;
  session.pick([&](HWND dialog) {
    seen = true;
    CHECK(windowText(dialog, IDC_SELECTWEBFOLDER_LBLWEB) == L"Web:");
    CHECK(windowText(dialog, IDC_SELECTWEBFOLDER_TXTWEB) == session.fixture.url());
    CHECK(windowText(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER) == L"New...");
    CHECK(windowText(dialog, IDOK) == L"OK");
    CHECK(windowText(dialog, IDCANCEL) == L"Cancel");
    CHECK(toolTip(dialog, IDC_SELECTWEBFOLDER_TXTWEB) == L"Current web");
    CHECK(toolTip(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS) == L"Web folder structure");
    CHECK(toolTip(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER) ==
          L"Create a new folder as a subfolder of the selected folder");
    CHECK(toolTip(dialog, IDOK) == L"Select the folder");
    CHECK(toolTip(dialog, IDCANCEL) == L"Cancel the changes");
    press(dialog, IDCANCEL);
  });
  CHECK(seen);
}

TEST_CASE("the picker opens with the web's root expanded and its folders sorted") {
  PickerSession session;
  session.makeFolders({L"beta", L"Alpha", L"gamma", L"BETA2"});
  session.look([](const FolderTree& tree) {
    const HTREEITEM root = tree.at({L"site"});
    REQUIRE(root);
    CHECK(tree.expanded(root));
    CHECK(tree.children(root) == Lines{L"Alpha", L"beta", L"BETA2", L"gamma"});
    CHECK(tree.selectedPath() == L"site");
  });
}

TEST_CASE("sub-webs are not offered") {
  PickerSession session;
  session.makeFolders({L"dwts", L"subweb\\_vti_pvt", L"dwts\\inner\\_vti_pvt", L"dwts\\plain"});
  session.look([](const FolderTree& tree) {
    CHECK(tree.children(tree.at({L"site"})) == Lines{L"dwts"});
    tree.open(tree.at({L"site", L"dwts"}));
    CHECK(tree.children(tree.at({L"site", L"dwts"})) == Lines{L"plain"});
  });
}

TEST_CASE("a folder with sub-folders carries one node without a name until it is opened") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue", L"dwts\\red", L"empty"});
  session.look([](const FolderTree& tree) {
    CHECK(tree.children(tree.at({L"site", L"dwts"})) == Lines{L""});
    CHECK(tree.children(tree.at({L"site", L"empty"})).empty());
    tree.open(tree.at({L"site", L"dwts"}));
    CHECK(tree.expanded(tree.at({L"site", L"dwts"})));
    CHECK(tree.children(tree.at({L"site", L"dwts"})) == Lines{L"blue", L"red"});
  });
}

TEST_CASE("a folder is read at its first opening and never again") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.look([&](const FolderTree& tree) {
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    const int before = session.calls(L"WebFolders.Item");
    tree.open(dwts);
    CHECK(session.calls(L"WebFolders.Item") == before + 1);
    session.makeFolders({L"dwts\\made by others"});
    const int total = session.calls(L"WebFolders.Item");
    tree.close(dwts);
    CHECK_FALSE(tree.expanded(dwts));
    tree.open(dwts);
    CHECK(tree.expanded(dwts));
    CHECK(session.calls(L"WebFolders.Item") == total);
    CHECK(tree.children(dwts) == Lines{L"blue"});
  });
}

TEST_CASE("the picker reads no more than the first level of a web to open") {
  PickerSession session;
  session.makeFolders({L"a\\a1\\a2", L"b\\b1", L"c"});
  session.look([&](const FolderTree&) {
    CHECK(session.calls(L"WebFolders.Item") == 3);
    CHECK(session.calls(L"WebFolder.Name") == 3);
    CHECK(session.calls(L"WebFolder.IsWeb") == 3);
    // The root's, and whether each folder has any.
    CHECK(session.calls(L"WebFolders.Count") == 4);
  });
}

TEST_CASE("a web of 5000 folders opens without reading more than its first level") {
  PickerSession session;
  Lines folders;
  for (int number = 100; number < 200; ++number)
    folders.push_back(L"outer" + std::to_wstring(number));
  session.makeFolders(folders);
  constexpr int innerFolders = 49;
  const MadeUpFolder<WideSearch> inner(L"\\site\\outer", innerFolders, 0);
  session.look([&](const FolderTree& tree) {
    CHECK(tree.children(tree.at({L"site"})).size() == 100);
    CHECK(session.calls(L"WebFolders.Item") == 100);
    // The root's, and whether each folder has any.
    CHECK(session.calls(L"WebFolder.Folders") == 101);
    CHECK(session.calls(L"WebFolders.Count") == 101);
    tree.open(tree.at({L"site", L"outer150"}));
    CHECK(tree.children(tree.at({L"site", L"outer150"})).size() == innerFolders);
    CHECK(session.calls(L"WebFolders.Item") == 100 + innerFolders);
  });
}

TEST_CASE("folders show their pictures closed and open") {
  constexpr int closed = 0;
  constexpr int opened = 1;
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.look([=](const FolderTree& tree) {
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    CHECK(tree.image(tree.at({L"site"})) == opened);
    CHECK(tree.image(dwts) == closed);
    tree.open(dwts);
    CHECK(tree.image(dwts) == opened);
    tree.close(dwts);
    CHECK(tree.image(dwts) == closed);
  });
}

TEST_CASE("an initial path of nothing or a slash leaves the root as opened") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  CHECK(session.opensAt(L"") == L"site");
  CHECK(session.opensAt(L"/") == L"site");
}

TEST_CASE("an initial path selects its folder in any letter case") {
  PickerSession session;
  session.makeFolders({L"dwts\\Blue\\deep"});
  CHECK(session.opensAt(L"/dwts") == L"site/dwts");
  CHECK(session.opensAt(L"/DWTS/blue") == L"site/dwts/Blue");
  CHECK(session.opensAt(L"/dwts/Blue/deep") == L"site/dwts/Blue/deep");
}

TEST_CASE("an initial path can begin with the web's URL") {
  PickerSession session;
  session.makeFolders({L"dwts\\Blue"});
  CHECK(session.opensAt(session.fixture.url(L"/dwts")) == L"site/dwts");
  CHECK(session.opensAt(session.fixture.url(L"/dwts/Blue")) == L"site/dwts/Blue");
  CHECK(session.opensAt(session.fixture.url()) == L"site");
  CHECK(session.opensAt(session.fixture.url(L"/")) == L"site");
}

TEST_CASE("an initial path without a leading slash loses its first folder") {
  PickerSession session;
  session.makeFolders({L"dwts\\Blue", L"Blue"});
  CHECK(session.opensAt(L"dwts") == L"site");
  CHECK(session.opensAt(L"dwts/Blue") == L"site/Blue");
}

TEST_CASE("an initial path that leads nowhere selects nothing new") {
  PickerSession session;
  session.makeFolders({L"dwts\\Blue"});
  CHECK(session.opensAt(L"/gone") == L"site");
  CHECK(session.opensAt(L"/dwts/gone") == L"site");
  CHECK(session.opensAt(L"/dwts/") == L"site");
  CHECK(session.opensAt(L"//dwts") == L"site");
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a deep initial selection is scrolled into view") {
  PickerSession session;
  Lines folders;
  for (int number = 100; number < 200; ++number) folders.push_back(std::to_wstring(number));
  session.makeFolders(folders);
  session.path = L"/199";
  session.look([](const FolderTree& tree) { CHECK(tree.visible(tree.selected())); });
}

TEST_CASE("choosing a folder gives its path without a leading slash") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.path = L"/dwts/blue";
  CHECK(session.pick([](HWND dialog) { press(dialog, IDOK); }));
  CHECK(session.path == L"dwts/blue");
}

TEST_CASE("choosing a folder gives its whole address when it shall be absolute") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.absolute = true;
  session.path = L"/dwts/blue";
  CHECK(session.pick([](HWND dialog) { press(dialog, IDOK); }));
  CHECK(session.path == session.fixture.url(L"/dwts/blue"));
}

TEST_CASE("pressing OK on the root gives nothing or the web's address and a slash") {
  PickerSession session;
  session.path = L"/";
  CHECK(session.pick([](HWND dialog) { press(dialog, IDOK); }));
  CHECK(session.path == L"");
  session.absolute = true;
  CHECK(session.pick([](HWND dialog) { press(dialog, IDOK); }));
  CHECK(session.path == session.fixture.url(L"/"));
}

TEST_CASE("cancelling the picker leaves the path as it was") {
  PickerSession session;
  session.makeFolders({L"dwts"});
  for (const UINT message : {WM_COMMAND, WM_CLOSE}) {
    session.path = L"/gone";
    CHECK_FALSE(session.pick([message](HWND dialog) {
      const FolderTree tree = treeOf(dialog);
      tree.select(tree.at({L"site", L"dwts"}));
      PostMessageW(dialog, message, message == WM_COMMAND ? IDCANCEL : 0, 0);
    }));
    CHECK(session.path == L"/gone");
  }
}

TEST_CASE("Enter in the tree chooses and Escape cancels") {
  PickerSession session;
  session.makeFolders({L"dwts"});
  const auto key = [](WPARAM code) {
    return [code](HWND dialog) {
      const HWND tree = GetDlgItem(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS);
      CHECK(GetFocus() == tree);
      PostMessageW(tree, WM_KEYDOWN, code, 1);
    };
  };
  session.path = L"/dwts";
  CHECK_FALSE(session.pick(key(VK_ESCAPE)));
  CHECK(session.path == L"/dwts");
  CHECK(session.pick(key(VK_RETURN)));
  CHECK(session.path == L"dwts");
}

TEST_CASE("a double click in the tree presses OK") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.path = L"/dwts";
  CHECK(session.pick([](HWND dialog) { treeOf(dialog).doubleClick(treeOf(dialog).selected()); }));
  CHECK(session.path == L"dwts");
}

TEST_CASE("a double click beside the nodes presses OK for the selected one") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.path = L"/dwts/blue";
  CHECK(session.pick([](HWND dialog) { treeOf(dialog).doubleClickBeside(); }));
  CHECK(session.path == L"dwts/blue");
}

TEST_CASE("the button for new folders shows only where they are allowed") {
  PickerSession session;
  for (const bool allowed : {true, false}) {
    session.allowNewFolder = allowed;
    bool shown = !allowed;
    session.pick([&](HWND dialog) {
      shown = IsWindowVisible(GetDlgItem(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER)) != FALSE;
      press(dialog, IDCANCEL);
    });
    CHECK(shown == allowed);
  }
}

TEST_CASE("a new folder is made below the selected one and selected itself") {
  PickerSession session;
  session.makeFolders({L"dwts\\alpha", L"dwts\\gamma"});
  session.path = L"/dwts";
  CHECK(session.pick([&](HWND dialog) {
    makeFolder(session, dialog, [](HWND window) {
      CHECK(windowText(window, IDC_NEWFOLDER_LBLPARENTFOLDER) == L"/dwts");
      confirming(L"beta")(window);
    });
    const FolderTree tree = treeOf(dialog);
    CHECK(tree.children(tree.at({L"site", L"dwts"})) == Lines{L"alpha", L"beta", L"gamma"});
    CHECK(tree.selectedPath() == L"site/dwts/beta");
    CHECK(tree.visible(tree.selected()));
    CHECK(tree.children(tree.selected()).empty());
    press(dialog, IDOK);
  }));
  CHECK(session.existsInWeb(L"dwts\\beta"));
  CHECK(session.path == L"dwts/beta");
}

TEST_CASE("a new folder can be made in the root and below a folder that was just made") {
  PickerSession session;
  session.pick([&](HWND dialog) {
    makeFolder(session, dialog, [](HWND window) {
      CHECK(windowText(window, IDC_NEWFOLDER_LBLPARENTFOLDER) == L"<web root>");
      press(window, IDOK);
    });
    CHECK(treeOf(dialog).selectedPath() == L"site/New_Folder");
    makeFolder(session, dialog, confirming(L"inner"));
    CHECK(treeOf(dialog).selectedPath() == L"site/New_Folder/inner");
    press(dialog, IDCANCEL);
  });
  CHECK(session.existsInWeb(L"New_Folder\\inner"));
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a cancelled new folder changes nothing") {
  PickerSession session;
  session.makeFolders({L"dwts"});
  session.path = L"/dwts";
  session.pick([&](HWND dialog) {
    makeFolder(session, dialog, [](HWND window) { press(window, IDCANCEL); });
    CHECK(treeOf(dialog).selectedPath() == L"site/dwts");
    press(dialog, IDCANCEL);
  });
  CHECK(session.fixture.webTree() == Lines{L"dwts\\"});
}

TEST_CASE("a name that the host refuses is told and the picker stays open") {
  PickerSession session;
  for (const std::wstring& name :
       {std::wstring(L"CON"), std::wstring(L"nul"), std::wstring(300, L'n')}) {
    CAPTURE(name);
    bool open = false;
    const std::size_t before = session.driver.boxes().size();
    session.fixture.host.faults().refuse(L"WebFolders.Add", L"That name cannot be used.");
    CHECK_FALSE(session.pick([&](HWND dialog) {
      makeFolder(session, dialog, confirming(name));
      open = IsWindowVisible(dialog) && IsWindowEnabled(dialog);
      CHECK(session.driver.boxes().back().owner == dialog);
      CHECK(treeOf(dialog).selectedPath() == L"site");
      CHECK(treeOf(dialog).children(treeOf(dialog).at({L"site"})).empty());
      press(dialog, IDCANCEL);
    }));
    CHECK(open);
    REQUIRE(session.driver.boxes().size() == before + 1);
    const ShownBox& box = session.driver.boxes().back();
    CHECK(box.text ==
          L"The folder \"" + name + L"\" could not be created.\r\nThat name cannot be used.");
    CHECK(box.title == L"Create Web Folder");
    CHECK(box.icon == MB_ICONHAND);
    CHECK(box.buttons == Lines{L"OK"});
    CHECK(session.fixture.log.messages().back() ==
          L"ERROR in procedure btnNewFolder_Click of Form frmSelectWebFolder. Error : " +
              std::to_wstring(E_FAIL) + L"\tThat name cannot be used.");
  }
}

TEST_CASE("reserved and overlong names are the host's to refuse") {
  PickerSession session;
  for (const std::wstring& name : {std::wstring(L"CON"), std::wstring(300, L'n')}) {
    CAPTURE(name);
    const std::size_t before = session.driver.boxes().size();
    session.pick([&](HWND dialog) {
      makeFolder(session, dialog, confirming(name));
      press(dialog, IDCANCEL);
    });
    REQUIRE(session.driver.boxes().size() == before + 1);
    CHECK(session.driver.boxes().back().text.find(L"The folder \"" + name +
                                                  L"\" could not be created.\r\n") == 0);
  }
  CHECK(session.fixture.webTree().empty());
}

TEST_CASE("a folder that has gone stays closed") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.look([&](const FolderTree& tree) {
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    RemoveDirectoryW((session.fixture.disk / L"webs\\site\\dwts\\blue").c_str());
    RemoveDirectoryW((session.fixture.disk / L"webs\\site\\dwts").c_str());
    tree.open(dwts);
    CHECK_FALSE(tree.expanded(dwts));
    CHECK(tree.selectedPath() == L"site/dwts");
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a host that fails in any one of its members leaves a picker that can be left") {
  enum class Failure { refuses, givesNull, givesEmpty };
  for (const wchar_t* member :
       {L"Web.Url", L"Web.RootFolder", L"Web.LocateFolder", L"WebFolder.Folders",
        L"WebFolders.Count", L"WebFolders.Item", L"WebFolder.Name", L"WebFolder.IsWeb"}) {
    for (const Failure failure : {Failure::refuses, Failure::givesNull, Failure::givesEmpty}) {
      CAPTURE(std::wstring(member));
      CAPTURE(static_cast<int>(failure));
      PickerSession session;
      session.makeFolders({L"dwts\\blue"});
      session.path = L"/dwts/blue";
      session.fixture.host.options().nothingIsEmpty = failure == Failure::givesEmpty;
      if (failure == Failure::refuses)
        session.fixture.host.faults().refuse(member, L"The host refuses.");
      else
        session.fixture.host.faults().returnNothing(member);
      CHECK_FALSE(session.pick([&](HWND dialog) {
        makeFolder(session, dialog, [](HWND window) { press(window, IDCANCEL); });
        press(dialog, IDCANCEL);
      }));
      CHECK(session.path == L"/dwts/blue");
      CHECK(session.driver.boxes().empty());
    }
  }
}

TEST_CASE("a folder that the host takes the name of but does not make is told") {
  PickerSession session;
  const bool picked = session.pick([&](HWND dialog) {
    session.fixture.host.faults().returnNothing(L"WebFolders.Add");
    makeFolder(session, dialog, confirming(L"inner"));
    CHECK(IsWindowEnabled(dialog));
    press(dialog, IDCANCEL);
  });
  CHECK_FALSE(picked);
  REQUIRE(session.driver.boxes().size() == 1);
  CHECK(session.driver.boxes()[0].title == L"Create Web Folder");
  CHECK(session.driver.boxes()[0].text.starts_with(
      L"The folder \"inner\" could not be created.\r\n"));
  CHECK_FALSE(session.existsInWeb(L"inner"));
}

TEST_CASE(
    "the picker makes and chooses a folder in a host that hands over nothing as an empty value") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::nothingIsEmpty));
}

TEST_CASE(
    "the picker makes and chooses a folder in a host that refuses to locate an absent folder") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::absentFolderIsError));
}

TEST_CASE("the picker makes and chooses a folder in a host that refuses to locate an absent file") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::absentFileIsError));
}

TEST_CASE(
    "the picker makes and chooses a folder in a host that gives the existing folder for a new one "
    "of its name") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::addExistingFolderGivesIt));
}

TEST_CASE(
    "the picker makes and chooses a folder in a host that makes several levels of folders at "
    "once") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::addMakesLevels));
}

TEST_CASE(
    "the picker makes and chooses a folder in a host that takes the address of a new folder") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::addTakesUrl));
}

TEST_CASE("the picker makes and chooses a folder in a host that takes a slash before a path") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::leadingSlashTaken));
}

TEST_CASE("the picker makes and chooses a folder in a host that refuses a slash behind a path") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::trailingSlashTaken));
}

TEST_CASE(
    "the picker makes and chooses a folder in a host that puts a path with a leading slash below "
    "the server") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::makeAbsFromServer));
}

TEST_CASE("the picker makes and chooses a folder in a host that calls the root of the web a web") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::rootIsWeb));
}

TEST_CASE("the picker makes and chooses a folder in a host that lists its own folders") {
  checkPickerUnder(otherThanPlain(&standin::HostOptions::vtiFoldersListed));
}

TEST_CASE("the picker grows with its window and no smaller than designed") {
  PickerSession session;
  bool seen = false;
  session.pick([&](HWND dialog) {
    seen = true;
    RECT designed;
    GetWindowRect(dialog, &designed);
    const int width = designed.right - designed.left;
    const int height = designed.bottom - designed.top;
    RECT treeBefore;
    RECT treeAfter;
    const HWND tree = GetDlgItem(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS);
    GetClientRect(tree, &treeBefore);
    SetWindowPos(dialog, nullptr, 0, 0, width + 120, height + 80, SWP_NOMOVE | SWP_NOZORDER);
    GetClientRect(tree, &treeAfter);
    CHECK(treeAfter.right == treeBefore.right + 120);
    CHECK(treeAfter.bottom == treeBefore.bottom + 80);
    SetWindowPos(dialog, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
    RECT smallest;
    GetWindowRect(dialog, &smallest);
    CHECK(smallest.right - smallest.left == width);
    CHECK(smallest.bottom - smallest.top == height);
    press(dialog, IDCANCEL);
  });
  CHECK(seen);
}

TEST_CASE("the picker leaves no handle and no object of the host behind") {
  const long handles = handles::liveCount();
  {
    PickerSession session;
    session.makeFolders({L"dwts\\blue"});
    const long objects = session.fixture.host.liveObjects();
    session.path = L"/dwts/blue";
    session.pick([](HWND dialog) { press(dialog, IDOK); });
    CHECK(session.fixture.host.liveObjects() == objects);
  }
  CHECK(handles::liveCount() == handles);
}
