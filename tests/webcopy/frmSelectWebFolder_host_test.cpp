// The folder picker and what it asks the host for.
#include <utility>

#include "tests/webcopy/PickerSession.h"

namespace {

// Whether the wait cursor was there at every call of a member.
class CursorAtCalls {
 public:
  CursorAtCalls(const PickerSession& session, const wchar_t* member) {
    session.fixture.host.faults().before(member, [this] {
      ++calls;
      waiting = waiting && isWaiting();
    });
  }
  static bool isWaiting() { return GetCursor() == LoadCursorW(nullptr, IDC_WAIT); }

  int calls = 0;
  bool waiting = true;
};

}  // namespace

TEST_CASE("the wait cursor is there while the first level of a web is read and not after") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  const CursorAtCalls cursor(session, L"WebFolders.Item");
  session.look([&](const FolderTree&) {
    CHECK(cursor.calls == 1);
    CHECK(cursor.waiting);
    CHECK_FALSE(CursorAtCalls::isWaiting());
  });
}

TEST_CASE("the wait cursor is there while a folder is read and not after") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.look([&](const FolderTree& tree) {
    const CursorAtCalls cursor(session, L"WebFolders.Item");
    tree.open(tree.at({L"site", L"dwts"}));
    CHECK(cursor.calls == 1);
    CHECK(cursor.waiting);
    CHECK_FALSE(CursorAtCalls::isWaiting());
    session.fixture.host.faults().clear();
  });
}

TEST_CASE("the wait cursor goes when a folder cannot be read") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.look([&](const FolderTree& tree) {
    session.fixture.host.faults().refuse(L"WebFolders.Item", L"Not now.");
    tree.open(tree.at({L"site", L"dwts"}));
    CHECK_FALSE(CursorAtCalls::isWaiting());
  });
}

TEST_CASE("a folder whose sub-folders are refused or nothing is read at its next opening") {
  for (const bool refused : {true, false}) {
    CAPTURE(refused);
    PickerSession session;
    session.makeFolders({L"dwts\\blue", L"dwts\\red"});
    session.look([&](const FolderTree& tree) {
      standin::Faults& faults = session.fixture.host.faults();
      const HTREEITEM dwts = tree.at({L"site", L"dwts"});
      if (refused)
        faults.refuse(L"WebFolder.Folders", L"Not now.");
      else
        faults.returnNothing(L"WebFolder.Folders");
      tree.open(dwts);
      CHECK_FALSE(tree.expanded(dwts));
      CHECK(tree.children(dwts) == Lines{L""});
      faults.clear();
      tree.open(dwts);
      CHECK(tree.expanded(dwts));
      CHECK(tree.children(dwts) == Lines{L"blue", L"red"});
    });
    CHECK(session.driver.boxes().empty());
  }
}

TEST_CASE("a folder that is refused in the middle of its sub-folders is read at its next opening") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue", L"dwts\\red"});
  session.look([&](const FolderTree& tree) {
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    session.fixture.host.faults().refuse(L"WebFolder.Name", L"Not now.", E_FAIL, 1, 1);
    tree.open(dwts);
    CHECK(tree.children(dwts) == Lines{L""});
    tree.open(dwts);
    CHECK(tree.children(dwts) == Lines{L"blue", L"red"});
  });
}

TEST_CASE("a web whose first level is refused can be opened at the root later") {
  PickerSession session;
  session.makeFolders({L"dwts"});
  session.fixture.host.faults().refuse(L"WebFolder.Folders", L"Not now.", E_FAIL, 0, 1);
  session.pick([&](HWND dialog) {
    const FolderTree tree = treeOf(dialog);
    CHECK(tree.selectedPath() == L"site");
    CHECK(tree.children(tree.at({L"site"})).empty());
    makeFolder(session, dialog, [](HWND window) { press(window, IDCANCEL); });
    CHECK(tree.children(tree.at({L"site"})) == Lines{L"dwts"});
    press(dialog, IDCANCEL);
  });
}

TEST_CASE("a folder made below one that could not be read shows once when that is read") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.path = L"/dwts";
  session.pick([&](HWND dialog) {
    const FolderTree tree = treeOf(dialog);
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    session.fixture.host.faults().refuse(L"WebFolder.Folders", L"Not now.", E_FAIL, 0, 1);
    makeFolder(session, dialog, confirming(L"beta"));
    CHECK(tree.selectedPath() == L"site/dwts/beta");
    tree.close(dwts);
    tree.open(dwts);
    CHECK(tree.children(dwts) == Lines{L"beta", L"blue"});
    press(dialog, IDCANCEL);
  });
  CHECK(session.existsInWeb(L"dwts\\beta"));
}

TEST_CASE("a folder made below one that still cannot be read shows when that is read") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue"});
  session.path = L"/dwts";
  session.pick([&](HWND dialog) {
    const FolderTree tree = treeOf(dialog);
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    session.fixture.host.faults().refuse(L"WebFolder.IsWeb", L"Not now.");
    makeFolder(session, dialog, confirming(L"beta"));
    CHECK(tree.children(dwts) == Lines{L""});
    CHECK(tree.selectedPath() == L"site/dwts");
    session.fixture.host.faults().clear();
    tree.open(dwts);
    CHECK(tree.children(dwts) == Lines{L"beta", L"blue"});
    press(dialog, IDCANCEL);
  });
  CHECK(session.existsInWeb(L"dwts\\beta"));
}

TEST_CASE("a picker that is left while the host reads a folder makes no new one") {
  for (const wchar_t* member : {L"WebFolder.Folders", L"Web.LocateFolder"}) {
    CAPTURE(std::wstring(member));
    PickerSession session;
    session.makeFolders({L"dwts\\blue"});
    session.path = L"/dwts";
    session.pick([&](HWND dialog) {
      session.fixture.host.faults().before(member, [dialog] { press(dialog, IDCANCEL); });
      makeFolder(session, dialog, confirming(L"beta"));
    });
    CHECK(session.driver.dialogs() == Lines{pickerCaption});
    CHECK_FALSE(session.existsInWeb(L"dwts\\beta"));
  }
}

TEST_CASE("the tree has the focus again after a new folder") {
  PickerSession session;
  session.pick([&](HWND dialog) {
    SetFocus(GetDlgItem(dialog, IDC_SELECTWEBFOLDER_BTNNEWFOLDER));
    makeFolder(session, dialog, [](HWND window) { press(window, IDCANCEL); });
    CHECK(GetFocus() == GetDlgItem(dialog, IDC_SELECTWEBFOLDER_TVFOLDERS));
    press(dialog, IDCANCEL);
  });
}

TEST_CASE("a new folder reaches the host with the blanks of its name") {
  PickerSession session;
  session.makeFolders({L"dwts"});
  session.path = L"/dwts";
  session.pick([&](HWND dialog) {
    makeFolder(session, dialog, confirming(L" a "));
    press(dialog, IDCANCEL);
  });
  CHECK(session.calls(L"WebFolders.Add") == 1);
  CHECK(session.fixture.host.faults().lastArguments(L"WebFolders.Add") == Lines{L" a "});
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("the picker sorts what the host does not") {
  standin::HostOptions options;
  options.listedUnsorted = true;
  PickerSession session(options);
  session.makeFolders({L"beta", L"Alpha\\b", L"Alpha\\A", L"Alpha\\c", L"gamma"});
  session.look([](const FolderTree& tree) {
    CHECK(tree.children(tree.at({L"site"})) == Lines{L"Alpha", L"beta", L"gamma"});
    tree.open(tree.at({L"site", L"Alpha"}));
    CHECK(tree.children(tree.at({L"site", L"Alpha"})) == Lines{L"A", L"b", L"c"});
  });
}

TEST_CASE("a folder that is opened again while the host reads it shows its folders once") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue", L"dwts\\red"});
  session.look([&](const FolderTree& tree) {
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    int openings = 0;
    session.fixture.host.faults().before(L"WebFolders.Item", [&] {
      if (++openings == 1) tree.open(dwts);
    });
    tree.open(dwts);
    CHECK(openings == 2);
    CHECK(tree.expanded(dwts));
    CHECK(tree.children(dwts) == Lines{L"blue", L"red"});
  });
}

TEST_CASE("a folder that is opened again while a reading fails can be opened later") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue", L"dwts\\red"});
  session.look([&](const FolderTree& tree) {
    standin::Faults& faults = session.fixture.host.faults();
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    bool opened = false;
    faults.before(L"WebFolder.Name", [&] {
      if (!std::exchange(opened, true)) tree.open(dwts);
    });
    faults.refuse(L"WebFolder.Name", L"Not now.", E_FAIL, 1, 1);
    tree.open(dwts);
    CHECK_FALSE(tree.expanded(dwts));
    CHECK(tree.children(dwts) == Lines{L""});
    tree.open(dwts);
    CHECK(tree.expanded(dwts));
    CHECK(tree.children(dwts) == Lines{L"blue", L"red"});
  });
}

TEST_CASE("a folder that is made while the host reads its parent shows once") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue", L"dwts\\red"});
  session.path = L"/";
  session.pick([&](HWND dialog) {
    const FolderTree tree = treeOf(dialog);
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    tree.select(dwts);
    bool made = false;
    session.fixture.host.faults().before(L"WebFolders.Count", [&] {
      if (!std::exchange(made, true)) makeFolder(session, dialog, confirming(L"beta"));
    });
    tree.open(dwts);
    CHECK(tree.children(dwts) == Lines{L"beta", L"blue", L"red"});
    press(dialog, IDCANCEL);
  });
  CHECK(session.existsInWeb(L"dwts\\beta"));
}

TEST_CASE("a folder that is made while a reading fails stays when its parent is read later") {
  PickerSession session;
  session.makeFolders({L"dwts\\blue", L"dwts\\red"});
  session.path = L"/";
  session.pick([&](HWND dialog) {
    const FolderTree tree = treeOf(dialog);
    const HTREEITEM dwts = tree.at({L"site", L"dwts"});
    tree.select(dwts);
    standin::Faults& faults = session.fixture.host.faults();
    bool made = false;
    faults.before(L"WebFolders.Count", [&] {
      if (std::exchange(made, true)) return;
      makeFolder(session, dialog, confirming(L"beta"));
      faults.refuse(L"WebFolder.Name", L"Not now.");
    });
    tree.open(dwts);
    faults.clear();
    tree.open(dwts);
    CHECK(tree.children(dwts) == Lines{L"beta", L"blue", L"red"});
    press(dialog, IDCANCEL);
  });
}

TEST_CASE("the picker opens at an address however the host spells it") {
  for (const bool webEscaped : {false, true}) {
    for (const bool itemEscaped : {false, true}) {
      CAPTURE(webEscaped);
      CAPTURE(itemEscaped);
      standin::HostOptions options;
      options.webUrlEscaped = webEscaped;
      options.itemUrlsEscaped = itemEscaped;
      PickerSession session(options);
      session.fixture.host.openWeb(session.fixture.disk.makeFolder(L"webs\\my web"));
      session.fixture.disk.makeFolder(L"webs\\my web\\a b\\50%20off\\new");
      const auto web = session.fixture.application().activeWeb();
      session.path = web->locateFolder(L"a b/50%20off")->url();
      bool seen = false;
      session.pick([&](HWND dialog) {
        seen = true;
        const std::wstring selected = treeOf(dialog).selectedPath();
        CHECK(selected.substr(selected.find(L'/')) == L"/a b/50%20off");
        makeFolder(session, dialog, [&](HWND window) {
          // Where both are escaped nothing tells so.
          CHECK(windowText(window, IDC_NEWFOLDER_LBLPARENTFOLDER) ==
                (webEscaped && itemEscaped ? L"/a%20b/50%2520off" : L"/a b/50%20off"));
          press(window, IDCANCEL);
        });
        press(dialog, IDCANCEL);
      });
      CHECK(seen);
    }
  }
}
