// The folder picker and what it asks the host for.
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
