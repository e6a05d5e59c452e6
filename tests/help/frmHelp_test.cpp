#include "help/frmHelp.h"

#include <cderr.h>
#include <commctrl.h>
#include <commdlg.h>

#include "help/resource.h"
#include "tests/support/HeldKeys.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t caption[] = L"Quillet Help";

// A book of three topics, and the help window over it.
struct HelpWindow {
  ScratchRegistry registry;
  ScratchFolder disk;
  ModalDriver driver;
  frmHelp form;

  HelpWindow() {
    disk.writeFile(L"contents.txt", "Start = The start\n  Part = A part\nLast = The end\n");
    disk.writeFile(L"Start.htm", "<title>The start</title><p>Go to <a href=Part.htm>it</a>");
    disk.writeFile(L"Part.htm", "<title>A part</title><p>copied");
    disk.writeFile(L"Last.htm", "<title>The end</title><p>copied <a href=../x.htm>out</a>");
  }

  void show(const std::wstring& topic, const std::function<void(HWND)>& script) {
    driver.onDialog(caption, [&](HWND dialog) {
      script(dialog);
      PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    form.ShowHelp({disk.path(), topic});
  }
};

HWND pageOf(HWND dialog) { return GetWindow(GetDlgItem(dialog, IDC_HELP_PAGE), GW_CHILD); }
std::wstring shownIn(HWND dialog) { return windowText(pageOf(dialog)); }

std::wstring selectedIn(HWND dialog) {
  const HWND tree = GetDlgItem(dialog, IDC_HELP_CONTENTS);
  wchar_t text[100] = {};
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = TreeView_GetSelection(tree);
  item.pszText = text;
  item.cchTextMax = 100;
  SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return text;
}

BOOL WINAPI noPrinter(LPPRINTDLGW) { return FALSE; }
DWORD WINAPI noPrinterError() { return PDERR_NODEFAULTPRN; }

}  // namespace

TEST_CASE("help opens with the topic that is asked for and marks it in the contents") {
  HelpWindow help;
  std::wstring shown, selected;
  help.show(L"last", [&](HWND dialog) {
    shown = shownIn(dialog);
    selected = selectedIn(dialog);
  });
  CHECK(shown == L"The end");
  CHECK(selected == L"The end");
}

TEST_CASE("help without a topic or with an unknown one opens with the first") {
  for (const wchar_t* topic : {L"", L"NoSuchTopic"}) {
    HelpWindow help;
    std::wstring shown;
    help.show(topic, [&](HWND dialog) { shown = shownIn(dialog); });
    CHECK(shown == L"The start");
  }
}

TEST_CASE("choosing a topic of the contents shows it") {
  HelpWindow help;
  std::wstring shown;
  help.show(L"", [&](HWND dialog) {
    const HWND tree = GetDlgItem(dialog, IDC_HELP_CONTENTS);
    const HTREEITEM first = TreeView_GetRoot(tree);
    TreeView_SelectItem(tree, TreeView_GetChild(tree, first));
    shown = shownIn(dialog);
  });
  CHECK(shown == L"A part");
}

TEST_CASE("the buttons of the help window go back and forward and are off where there is no way") {
  HelpWindow help;
  std::vector<std::wstring> shown;
  help.show(L"", [&](HWND dialog) {
    CHECK_FALSE(isEnabled(dialog, IDC_HELP_BACK));
    CHECK_FALSE(isEnabled(dialog, IDC_HELP_FORWARD));
    const HWND tree = GetDlgItem(dialog, IDC_HELP_CONTENTS);
    TreeView_SelectItem(tree, TreeView_GetChild(tree, TreeView_GetRoot(tree)));
    press(dialog, IDC_HELP_BACK);
    shown.push_back(shownIn(dialog));
    shown.push_back(selectedIn(dialog));
    CHECK_FALSE(isEnabled(dialog, IDC_HELP_BACK));
    press(dialog, IDC_HELP_FORWARD);
    shown.push_back(shownIn(dialog));
    CHECK_FALSE(isEnabled(dialog, IDC_HELP_FORWARD));
  });
  CHECK(shown == std::vector<std::wstring>{L"The start", L"The start", L"A part"});
}

TEST_CASE("the keys of the help window go back and forward and to the search and print") {
  HelpWindow help;
  const ImportPatch print(nullptr, "comdlg32.dll", "PrintDlgW", noPrinter);
  const ImportPatch why(nullptr, "comdlg32.dll", "CommDlgExtendedError", noPrinterError);
  std::vector<std::wstring> shown;
  help.show(L"", [&](HWND dialog) {
    const HWND tree = GetDlgItem(dialog, IDC_HELP_CONTENTS);
    // Not the next one: the tree goes there by an arrow of its own.
    TreeView_SelectItem(tree, TreeView_GetNextSibling(tree, TreeView_GetRoot(tree)));
    const auto type = [&](UINT message, WPARAM key) {
      PostMessageW(tree, message, key, 0);
      forms::yieldToMessages();
    };
    type(WM_SYSKEYDOWN, VK_LEFT);
    shown.push_back(shownIn(dialog));
    type(WM_SYSKEYDOWN, VK_RIGHT);
    shown.push_back(shownIn(dialog));
    const HeldKeys control{VK_CONTROL};
    type(WM_KEYDOWN, 'F');
    CHECK(GetFocus() == GetDlgItem(dialog, IDC_HELP_TXTSEARCH));
    type(WM_KEYDOWN, 'P');
  });
  CHECK(shown == std::vector<std::wstring>{L"The start", L"The end"});
  REQUIRE(help.driver.boxes().size() == 1);
  CHECK(help.driver.boxes()[0].text == L"There is no printer to print on.");
}

TEST_CASE("a key that is none of the help window's goes to what has the focus") {
  HelpWindow help;
  std::wstring shown;
  help.show(L"", [&](HWND dialog) {
    const HWND tree = GetDlgItem(dialog, IDC_HELP_CONTENTS);
    SetFocus(tree);
    TreeView_SelectItem(tree, TreeView_GetRoot(tree));
    PostMessageW(tree, WM_KEYDOWN, VK_DOWN, 0);
    forms::yieldToMessages();
    shown = shownIn(dialog);
  });
  CHECK(shown == L"A part");
}

TEST_CASE("a link in a help topic is followed") {
  HelpWindow help;
  std::wstring shown, selected;
  help.show(L"", [&](HWND dialog) {
    SetFocus(GetDlgItem(dialog, IDC_HELP_PAGE));
    REQUIRE(GetFocus() == pageOf(dialog));
    SendMessageW(pageOf(dialog), WM_KEYDOWN, VK_TAB, 0);
    SendMessageW(pageOf(dialog), WM_KEYDOWN, VK_RETURN, 0);
    shown = shownIn(dialog);
    selected = selectedIn(dialog);
  });
  CHECK(shown == L"A part");
  CHECK(selected == L"A part");
}

TEST_CASE("a link out of the help folder leads nowhere") {
  HelpWindow help;
  std::wstring shown;
  help.show(L"Last", [&](HWND dialog) {
    SendMessageW(pageOf(dialog), WM_KEYDOWN, VK_TAB, 0);
    SendMessageW(pageOf(dialog), WM_KEYDOWN, VK_RETURN, 0);
    shown = shownIn(dialog);
  });
  CHECK(shown == L"The end");
}

TEST_CASE("a search lists the topics it finds and shows the first") {
  HelpWindow help;
  std::wstring shown;
  int rows = 0;
  help.show(L"", [&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_HELP_TXTSEARCH, L"copied");
    press(dialog, IDOK);
    rows = ListView_GetItemCount(GetDlgItem(dialog, IDC_HELP_FOUND));
    CHECK(IsWindowVisible(GetDlgItem(dialog, IDC_HELP_FOUND)));
    CHECK_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_HELP_CONTENTS)));
    shown = shownIn(dialog);
    SetDlgItemTextW(dialog, IDC_HELP_TXTSEARCH, L"");
    CHECK(IsWindowVisible(GetDlgItem(dialog, IDC_HELP_CONTENTS)));
  });
  CHECK(rows == 2);
  CHECK(shown == L"A part");
}

TEST_CASE("of two found topics with one title each shows its own page") {
  HelpWindow help;
  help.disk.writeFile(L"contents.txt", "First = Notes\nSecond = Notes\n");
  help.disk.writeFile(L"First.htm", "<title>First notes</title><p>copied");
  help.disk.writeFile(L"Second.htm", "<title>Second notes</title><p>copied");
  std::vector<std::wstring> shown;
  help.show(L"", [&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_HELP_TXTSEARCH, L"copied");
    press(dialog, IDOK);
    shown.push_back(shownIn(dialog));
    ListView_SetItemState(GetDlgItem(dialog, IDC_HELP_FOUND), 1, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    shown.push_back(shownIn(dialog));
  });
  CHECK(shown == std::vector<std::wstring>{L"First notes", L"Second notes"});
}

TEST_CASE("a search that finds nothing says so") {
  HelpWindow help;
  help.show(L"", [&](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_HELP_TXTSEARCH, L"zebra");
    press(dialog, IDOK);
  });
  REQUIRE(help.driver.boxes().size() == 1);
  CHECK(help.driver.boxes()[0].text == L"No topic was found.");
  CHECK(help.driver.boxes()[0].title == caption);
}

TEST_CASE("a search for nothing shows the contents") {
  HelpWindow help;
  help.show(L"", [](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_HELP_TXTSEARCH, L"copied");
    press(dialog, IDOK);
    SetDlgItemTextW(dialog, IDC_HELP_TXTSEARCH, L"  ");
    press(dialog, IDOK);
    CHECK_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_HELP_FOUND)));
    CHECK(IsWindowVisible(GetDlgItem(dialog, IDC_HELP_CONTENTS)));
  });
}

TEST_CASE("help that is asked for again shows the topic in the window that is there") {
  HelpWindow help;
  std::wstring shown;
  help.show(L"", [&](HWND dialog) {
    help.form.showRequest({help.disk.path() + L"\\", L"Last"});
    shown = shownIn(dialog);
    CHECK(isEnabled(dialog, IDC_HELP_BACK));
  });
  CHECK(shown == L"The end");
}

TEST_CASE("help of another folder that is asked for opens that one") {
  HelpWindow help;
  const ScratchFolder other;
  other.writeFile(L"contents.txt", "Only = Another book\n");
  other.writeFile(L"Only.htm", "<title>Another book</title>");
  std::wstring shown;
  help.show(L"", [&](HWND dialog) {
    help.form.showRequest({other.path(), L"Last"});
    shown = shownIn(dialog);
    CHECK(TreeView_GetCount(GetDlgItem(dialog, IDC_HELP_CONTENTS)) == 1);
  });
  CHECK(shown == L"Another book");
}

TEST_CASE("a help folder that is missing is told in the page") {
  HelpWindow help;
  std::wstring shown = L"?";
  help.driver.onDialog(caption, [&](HWND dialog) {
    shown = shownIn(dialog);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  });
  help.form.ShowHelp({help.disk / L"none", L""});
  CHECK(shown == L"contents.txt");
  CHECK(help.driver.boxes().empty());
}

TEST_CASE("the help window remembers its place") {
  HelpWindow help;
  help.show(L"",
            [](HWND dialog) { SetWindowPos(dialog, nullptr, 40, 50, 800, 600, SWP_NOZORDER); });
  RECT place = {};
  frmHelp again;
  help.driver.onDialog(caption, [&](HWND dialog) {
    GetWindowRect(dialog, &place);
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  });
  again.ShowHelp({help.disk.path(), L""});
  CHECK(place.left == 40);
  CHECK(place.top == 50);
  CHECK(place.right == 840);
  CHECK(place.bottom == 650);
}

TEST_CASE("without a printer the help window says so") {
  HelpWindow help;
  const ImportPatch print(nullptr, "comdlg32.dll", "PrintDlgW", noPrinter);
  const ImportPatch why(nullptr, "comdlg32.dll", "CommDlgExtendedError", noPrinterError);
  help.show(L"", [](HWND dialog) { press(dialog, IDC_HELP_PRINT); });
  REQUIRE(help.driver.boxes().size() == 1);
  CHECK(help.driver.boxes()[0].text == L"There is no printer to print on.");
}
