#include "help/frmHelp.h"

#include "common/errors.h"
#include "common/letter_case.h"
#include "common/module.h"
#include "common/paths.h"
#include "common/placement.h"
#include "common/text.h"
#include "help/resource.h"

namespace {

constexpr wchar_t settingsSection[] = L"Settings";
constexpr wchar_t placement[] = L"HelpPlacement";
constexpr wchar_t nothingFound[] = L"No topic was found.";

}  // namespace

frmHelp::frmHelp()
    : Form(L"frmHelp", IDD_HELP),
      btnBack(*this, IDC_HELP_BACK),
      btnForward(*this, IDC_HELP_FORWARD),
      btnPrint(*this, IDC_HELP_PRINT),
      lblSearch(*this, IDC_HELP_LBLSEARCH),
      txtSearch(*this, IDC_HELP_TXTSEARCH),
      btnFind(*this, IDOK),
      lblContents(*this, IDC_HELP_LBLCONTENTS),
      tvContents(*this, IDC_HELP_CONTENTS, L'/'),
      lblFound(*this, IDC_HELP_LBLFOUND),
      lvFound(*this, IDC_HELP_FOUND, L"Topic"),
      pgTopic(*this, IDC_HELP_PAGE) {
  btnBack.onClick = [this] { goBack(); };
  btnForward.onClick = [this] { goForward(); };
  btnPrint.onClick = [this] { btnPrint_Click(); };
  btnFind.onClick = [this] { btnFind_Click(); };
  txtSearch.onChange = [this] {
    if (txtSearch.text().empty()) showFound(false);
  };
  tvContents.onSelect = [this] { tvContents_Select(); };
  lvFound.onItemClick = [this] { lvFound_ItemClick(); };
  pgTopic.onLink = [this](const std::wstring& file) { showFile(file); };
}

void frmHelp::ShowHelp(const help::HelpRequest& request) {
  request_ = request;
  showModal(nullptr);
}

void frmHelp::showRequest(const help::HelpRequest& request) {
  handle(L"showRequest", [&] {
    if (IsIconic(hwnd())) ShowWindow(hwnd(), SW_RESTORE);
    SetForegroundWindow(hwnd());
    if (!request.folder.empty() &&
        !text::equalIgnoringCase(modCommon::withBackslash(request.folder), book_.folder()))
      openBook(request.folder);
    showTopic(request.topic);
  });
}

void frmHelp::Form_Load() {
  using namespace forms;
  keep(lblSearch, top | right);
  keep(txtSearch, top | right);
  keep(btnFind, top | right);
  for (const Control* each : std::initializer_list<const Control*>{&tvContents, &lvFound})
    keep(*each, left | top | bottom);
  keep(pgTopic, left | top | right | bottom);
  RestoreWindowPlacementSetting(hwnd(), module::title, settingsSection, placement);
  tvContents.focus();
  openBook(request_.folder.empty() ? module::folder() + L"QuilletHelp" : request_.folder);
  showTopic(request_.topic);
}

void frmHelp::Form_Unload() {
  SaveWindowPlacementSetting(hwnd(), module::title, settingsSection, placement);
}

bool frmHelp::preTranslate(MSG& message) {
  const bool alt = message.message == WM_SYSKEYDOWN;
  if (message.message != WM_KEYDOWN && !alt) return false;
  const bool control = GetKeyState(VK_CONTROL) < 0 && !alt;
  if (alt && message.wParam == VK_LEFT)
    goBack();
  else if (alt && message.wParam == VK_RIGHT)
    goForward();
  else if (control && message.wParam == 'P')
    btnPrint_Click();
  else if (control && message.wParam == 'F')
    txtSearch.focus();
  else
    return false;
  return true;
}

void frmHelp::openBook(const std::wstring& folder) {
  book_ = help::HelpBook(folder);
  history_ = {};
  txtSearch.setText(L"");
  showFound(false);
  fillContents();
}

void frmHelp::fillContents() {
  const forms::TreeView::Frozen frozen(tvContents);
  tvContents.clear();
  nodes_.clear();
  std::vector<forms::TreeView::Node> path;  // to the last node, from the root down
  for (const help::Topic& topic : book_.topics()) {
    path.resize(std::min(path.size(), static_cast<std::size_t>(topic.level)));
    const auto parent = path.empty() ? nullptr : path.back();
    nodes_.push_back(tvContents.add(parent, topic.title, {}, static_cast<int>(nodes_.size())));
    path.push_back(nodes_.back());
  }
  for (const auto node : nodes_) tvContents.expand(node);
}

// A topic that the book does not have is its first one.
void frmHelp::showTopic(const std::wstring& name) {
  if (book_.topics().empty()) {
    display(book_.folder() + L"contents.txt");
    return;
  }
  showFile(book_.fileOf(book_.topics()[book_.find(name).value_or(0)]));
}

void frmHelp::showFile(const std::wstring& file) {
  history_.visit(file);
  display(file);
}

void frmHelp::display(const std::wstring& file) {
  pgTopic.show(file);
  btnBack.setEnabled(history_.canGoBack());
  btnForward.setEnabled(history_.canGoForward());
  const auto topic = book_.topicOfFile(file);
  if (!topic) return;
  following_ = true;
  tvContents.select(nodes_[*topic]);
  tvContents.ensureVisible(nodes_[*topic]);
  following_ = false;
}

void frmHelp::goBack() {
  handle(L"goBack", [this] {
    if (history_.canGoBack()) display(history_.back());
  });
}

void frmHelp::goForward() {
  handle(L"goForward", [this] {
    if (history_.canGoForward()) display(history_.forward());
  });
}

void frmHelp::tvContents_Select() {
  handle(L"tvContents_Select", [this] {
    const auto node = tvContents.selected();
    if (following_ || !node) return;
    showFile(book_.fileOf(book_.topics()[static_cast<std::size_t>(tvContents.tag(node))]));
  });
}

void frmHelp::btnFind_Click() {
  handle(L"btnFind_Click", [this] {
    const std::wstring words = text::trimBlanks(txtSearch.text());
    if (words.empty()) {
      showFound(false);
      return;
    }
    const forms::WaitCursor wait;
    const std::vector<std::size_t> found = book_.search(words);
    lvFound.clear();
    for (const std::size_t each : found)
      lvFound.add({.text = book_.topics()[each].title, .toolTip = {}, .icon = -1, .item = each});
    lvFound.autoSizeColumn();
    showFound(true);
    if (found.empty()) {
      message(nothingFound, MB_ICONINFORMATION);
      return;
    }
    lvFound.focus();
    lvFound.select(0);
    lvFound_ItemClick();
  });
}

void frmHelp::lvFound_ItemClick() {
  handle(L"lvFound_ItemClick", [this] {
    const int row = lvFound.selected();
    if (row >= 0) showFile(book_.fileOf(book_.topics()[lvFound.row(row).item]));
  });
}

// Contents and found topics share one place.
void frmHelp::showFound(bool shown) {
  lblFound.setVisible(shown);
  lvFound.setVisible(shown);
  lblContents.setVisible(!shown);
  tvContents.setVisible(!shown);
}

void frmHelp::btnPrint_Click() {
  try {
    pgTopic.print();
  } catch (const Error& error) {
    message(error.description(), MB_ICONEXCLAMATION);
  }
}
