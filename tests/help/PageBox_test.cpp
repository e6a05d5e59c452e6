#include "help/PageBox.h"

#include <cderr.h>
#include <commdlg.h>

#include "help/resource.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/error_number.h"
#include "tests/support/metafiles.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

namespace {

using Lines = std::vector<std::wstring>;

// A form with a page; `script` runs when it is on the screen.
class PageForm : public forms::Form {
 public:
  explicit PageForm(std::function<void(PageForm&)> script)
      : Form(L"frmPage", IDD_QUICKHELP),
        page(*this, IDC_QUICKHELP_PAGE),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  help::PageBox page;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(PageForm&)> script_;
};

// How high the page is that is shown.
int heightOf(const help::PageBox& page) {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE;
  GetScrollInfo(GetWindow(page.hwnd(), GW_CHILD), SB_VERT, &info);
  return info.nMax + 1;
}

// The system's dialog for printers and a printer that works up to some call.
class Printer {
 public:
  explicit Printer(std::wstring failing = {}) : failing_(std::move(failing)) { current_ = this; }

  static constexpr DWORD paperIsOut = ERROR_OUT_OF_PAPER;

  DWORD reason = paperIsOut;

  bool isCancelled = false;
  HWND owner = nullptr;
  Lines calls;

 private:
  int call(const std::wstring& name, const std::wstring& said = {}) {
    calls.push_back(said.empty() ? name : name + L" " + said);
    SetLastError(reason);
    return name == failing_ ? 0 : 1;
  }

  static BOOL WINAPI ask(LPPRINTDLGW dialog) {
    current_->owner = dialog->hwndOwner;
    current_->error_ = dialog->lStructSize == sizeof *dialog ? 0 : CDERR_STRUCTSIZE;
    if (current_->error_ || current_->isCancelled) return FALSE;
    CHECK(dialog->Flags ==
          (PD_RETURNDC | PD_NOPAGENUMS | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE));
    dialog->hDC = CreateCompatibleDC(nullptr);
    dialog->hDevMode = GlobalAlloc(GMEM_MOVEABLE, 1);
    dialog->hDevNames = GlobalAlloc(GMEM_MOVEABLE, 1);
    return TRUE;
  }
  static DWORD WINAPI why() { return current_->error_; }
  static int WINAPI startDoc(HDC, const DOCINFOW* document) {
    CHECK(document->cbSize == sizeof *document);
    return current_->call(L"StartDoc", document->lpszDocName);
  }
  static int WINAPI startPage(HDC) { return current_->call(L"StartPage"); }
  static int WINAPI endPage(HDC) { return current_->call(L"EndPage"); }
  static int WINAPI endDoc(HDC) { return current_->call(L"EndDoc"); }
  static int WINAPI abortDoc(HDC) { return current_->call(L"AbortDoc"); }

  static inline Printer* current_ = nullptr;
  std::wstring failing_;
  DWORD error_ = 0;
  ImportPatch ask_{nullptr, "comdlg32.dll", "PrintDlgW", ask};
  ImportPatch why_{nullptr, "comdlg32.dll", "CommDlgExtendedError", why};
  ImportPatch startDoc_{nullptr, "gdi32.dll", "StartDocW", startDoc};
  ImportPatch startPage_{nullptr, "gdi32.dll", "StartPage", startPage};
  ImportPatch endPage_{nullptr, "gdi32.dll", "EndPage", endPage};
  ImportPatch endDoc_{nullptr, "gdi32.dll", "EndDoc", endDoc};
  ImportPatch abortDoc_{nullptr, "gdi32.dll", "AbortDoc", abortDoc};
};

}  // namespace

TEST_CASE("a picture of notes has its room and one that is refused has none") {
  const ScratchFolder disk;
  const auto page = disk.writeFile(L"readme.htm", "<img src=a.gif>");
  PageForm([&](PageForm& form) {
    form.page.show(page);
    const int without = heightOf(form.page);
    disk.writeFile(L"a.gif", metafiles::enhanced());
    form.page.show(page);
    CHECK(heightOf(form.page) == without);
    disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
    form.page.show(page);
    CHECK(heightOf(form.page) == without + 100);
  });
}

TEST_CASE("a page is printed under its title on the printer that the user chooses") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"a.htm", "<title>Tides</title>one");
  PageForm([&](PageForm& form) {
    form.page.show(file);
    const long before = handles::liveCount();
    Printer printer;
    CHECK(numberOf([&] { form.page.print(); }) == 0);
    CHECK(printer.owner == form.hwnd());
    CHECK(printer.calls == Lines{L"StartDoc Tides", L"StartPage", L"EndPage", L"EndDoc"});
    CHECK(handles::liveCount() == before);
  });
}

TEST_CASE("a user who cancels the dialog for printers prints nothing") {
  PageForm([](PageForm& form) {
    Printer printer;
    printer.isCancelled = true;
    CHECK(numberOf([&] { form.page.print(); }) == 0);
    CHECK(printer.owner == form.hwnd());
    CHECK(printer.calls.empty());
  });
}

TEST_CASE("a user who cancels a printer's own dialog prints nothing") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"a.htm", "<title>Tides</title>one");
  PageForm([&](PageForm& form) {
    form.page.show(file);
    for (const DWORD reason : {ERROR_CANCELLED, ERROR_PRINT_CANCELLED}) {
      CAPTURE(reason);
      Printer printer(L"StartDoc");
      printer.reason = reason;
      CHECK(numberOf([&] { form.page.print(); }) == 0);
      CHECK(printer.calls == Lines{L"StartDoc Tides"});
    }
  });
}

TEST_CASE("what a printer refuses is given up and raises an error") {
  const ScratchFolder disk;
  const auto file = disk.writeFile(L"a.htm", "<title>Tides</title>one");
  struct Refusal {
    const wchar_t* failing;
    Lines calls;  // up to it, and what gives it up
  };
  const Refusal refusals[] = {
      {L"StartDoc", {L"StartDoc Tides"}},
      {L"StartPage", {L"StartDoc Tides", L"StartPage", L"AbortDoc"}},
      {L"EndPage", {L"StartDoc Tides", L"StartPage", L"EndPage", L"AbortDoc"}}};
  PageForm([&](PageForm& form) {
    form.page.show(file);
    for (const Refusal& refusal : refusals) {
      CAPTURE(refusal.failing);
      Printer printer(refusal.failing);
      CHECK(numberOf([&] { form.page.print(); }) ==
            errors::fromSystemCode(Printer::paperIsOut).number());
      CHECK(printer.calls == refusal.calls);
    }
  });
}
