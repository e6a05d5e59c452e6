#include "help/frmQuickHelp.h"

#include "help/resource.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

HWND pageOf(HWND dialog) { return GetWindow(GetDlgItem(dialog, IDC_QUICKHELP_PAGE), GW_CHILD); }

void CALLBACK closeActive(HWND, UINT, UINT_PTR, DWORD) {
  PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0);
}

// Shows a page and runs a script in its window, which must come under that caption.
void show(const std::wstring& file, const std::wstring& title, const std::wstring& caption,
          const std::function<void(HWND)>& script = {}) {
  const ScratchRegistry registry;
  ModalDriver driver;
  driver.onDialog(caption, [&](HWND dialog) {
    if (script) script(dialog);
    press(dialog, IDCANCEL);
  });
  frmQuickHelp form;
  // One under another caption is closed too, so that the test fails instead of waiting.
  const UINT_PTR timer = SetTimer(nullptr, 0, 5000, closeActive);
  form.ShowQuickHelp({file, title});
  KillTimer(nullptr, timer);
  CHECK(driver.dialogs() == std::vector<std::wstring>{caption});
}

}  // namespace

TEST_CASE("quick help bears the title of its page and the one it is given") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"a.htm", "<title>Tides</title>");
  show(file, L"Something", L"Tides - Something");
}

TEST_CASE("a template's notes are called so") {
  const ScratchFolder disk;
  show(disk.writeFile(L"a.htm", "<title>Tides</title>"), L"DWTNotes", L"Tides - Template Notes");
  show(disk.writeFile(L"b.htm", "<p>no title"), L"DWTNotes", L"Template Notes");
}

TEST_CASE("quick help without a title bears its page's alone") {
  const ScratchFolder disk;
  show(disk.writeFile(L"a.htm", "<title>Tides</title>"), L"", L"Tides");
}

TEST_CASE("notes that are missing are told in the page") {
  const ScratchFolder disk;
  show(disk / L"none.htm", L"DWTNotes", L"none.htm - Template Notes");
}

TEST_CASE("a link of the notes to a page beside them is followed and the caption follows") {
  const ScratchFolder disk;
  disk.writeFile(L"b.htm", "<title>More</title>");
  const auto file = disk.writeFile(L"a.htm", "<title>Tides</title><a href=b.htm>more</a>");
  std::wstring shown;
  show(file, L"DWTNotes", L"Tides - Template Notes", [&](HWND dialog) {
    SendMessageW(pageOf(dialog), WM_KEYDOWN, VK_TAB, 0);
    SendMessageW(pageOf(dialog), WM_KEYDOWN, VK_RETURN, 0);
    shown = windowText(dialog);
  });
  CHECK(shown == L"More - Template Notes");
}

TEST_CASE("a page of a megabyte is shown without harm") {
  const ScratchFolder disk;
  std::string html = "<title>Huge</title>";
  while (html.size() < (1u << 20)) html += "<p>some words that are repeated <b>very</b> often";
  show(disk.writeFile(L"a.htm", html), L"", L"Huge");
}

TEST_CASE("a broken page is shown as far as it goes") {
  const ScratchFolder disk;
  const std::string html("<title>Odd</title><table><td><table><tr></table></td><b><i><\0<p<<img>",
                         70);
  show(disk.writeFile(L"a.htm", html), L"", L"Odd");
}
