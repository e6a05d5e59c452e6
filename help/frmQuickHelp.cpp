#include "help/frmQuickHelp.h"

#include "common/errors.h"
#include "common/module.h"
#include "common/placement.h"
#include "common/text.h"
#include "help/resource.h"

namespace {

constexpr wchar_t settingsSection[] = L"Settings";
constexpr wchar_t placement[] = L"QuickHelpPlacement";
// The add-in's name for a template's notes, which no user should have to read.
constexpr wchar_t notesName[] = L"DWTNotes";
constexpr wchar_t notesTitle[] = L"Template Notes";

}  // namespace

frmQuickHelp::frmQuickHelp()
    : Form(L"frmQuickHelp", IDD_QUICKHELP),
      pgPage(*this, IDC_QUICKHELP_PAGE),
      btnPrint(*this, IDC_QUICKHELP_PRINT),
      btnClose(*this, IDCANCEL) {
  btnPrint.onClick = [this] { btnPrint_Click(); };
  btnClose.onClick = [this] { unload(); };
  pgPage.onLink = [this](const std::wstring& file) {
    handle(L"pgPage_Link", [&] { showPage(file); });
  };
}

void frmQuickHelp::ShowQuickHelp(const help::QuickHelpRequest& request) {
  request_ = request;
  showModal(nullptr);
}

void frmQuickHelp::Form_Load() {
  using namespace forms;
  keep(pgPage, left | top | right | bottom);
  keep(btnPrint, right | bottom);
  keep(btnClose, right | bottom);
  RestoreWindowPlacementSetting(hwnd(), module::title, settingsSection, placement);
  pgPage.focus();
  showPage(request_.file);
}

void frmQuickHelp::Form_Unload() {
  SaveWindowPlacementSetting(hwnd(), module::title, settingsSection, placement);
}

void frmQuickHelp::showPage(const std::wstring& file) {
  pgPage.show(file);
  const std::wstring given = request_.title == notesName ? notesTitle : request_.title;
  const std::wstring page = pgPage.title();
  const bool both = !page.empty() && !given.empty();
  SetWindowTextW(hwnd(), text::join({page, both ? L" - " : L"", given}).c_str());
}

// Not run by tests: the same as in frmHelp, which is tested.
void frmQuickHelp::btnPrint_Click() {
  try {
    pgPage.print();
  } catch (const Error& error) {
    message(error.description(), MB_ICONEXCLAMATION);
  }
}
