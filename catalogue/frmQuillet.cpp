#include "catalogue/frmQuillet.h"

#include <shellapi.h>

#include <algorithm>
#include <cwchar>

#include "addin/host/environment.h"
#include "catalogue/TemplateInfo.h"
#include "catalogue/destination.h"
#include "catalogue/frmManageDWTFolders.h"
#include "catalogue/resource.h"
#include "common/forms/PopupMenu.h"
#include "common/forms/frmAbout.h"
#include "common/forms/page_address.h"
#include "common/handles.h"
#include "common/letter_case.h"
#include "common/log.h"
#include "common/log_switch.h"
#include "common/module.h"
#include "common/paths.h"
#include "common/placement.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/version.h"
#include "online/frmDWTOnline.h"
#include "webcopy/frmCopyToWeb.h"
#include "webcopy/frmSelectWebFolder.h"
#include "webcopy/same_place.h"

using modCommon::WriteLog;

namespace {

constexpr wchar_t componentsMissing[] =
    L"One or more components are not installed on your computer. You may need to setup the product "
    L"again. The application will be terminated.";
constexpr wchar_t nothingToCopy[] = L"There are no DWT's to copy.";
constexpr wchar_t noTemplates[] =
    L"There are no templates in your folders.\r\n\r\n"
    L"Press \"Folders...\" to choose the folders that hold templates, or \"DWT Online...\" to "
    L"download some.";
constexpr wchar_t splitSetting[] = L"DWTSplit";  // the list's extra width in 1/96 inch, default 0
constexpr long invalidFileFormat = 321;
constexpr wchar_t previewErrorPage[] =
    L"<h3><font face=arial color=red>Error in preview</font></h3>";
constexpr wchar_t previewErrorText[] = L"Error in preview";

int perInch() { return GetDeviceCaps(handles::ScreenContext().get(), LOGPIXELSX); }

std::wstring versionText() {
  constexpr int minor = QUILLET_VERSION_MINOR;
  return text::decimal(QUILLET_VERSION_MAJOR) + (minor < 10 ? L".0" : L".") + text::decimal(minor) +
         L"." + text::decimal(QUILLET_VERSION_REVISION);
}

// Whoever cancels knows it: that is no error, and the list tells what was found until then.
template <class Scan>
void unlessCancelled(Scan&& scan) {
  try {
    scan();
  } catch (const Error& error) {
    if (error.number() != errors::cancelled) throw;
  }
}

}  // namespace

// While the folders are scanned, pending events run: nothing may start that would scan again or
// needs the whole list. The buttons that could are off meanwhile.
class frmQuillet::Scanning {
 public:
  explicit Scanning(frmQuillet& form) noexcept : form_(form), focus_(GetFocus()) {
    set(true);
    form_.lvDWTs.beginGrowing();
    handedOn_ = GetFocus();
  }
  ~Scanning() {
    form_.lvDWTs.endGrowing();
    set(false);
    giveFocusBack();
  }
  Scanning(const Scanning&) = delete;
  Scanning& operator=(const Scanning&) = delete;

 private:
  void set(bool scanning) noexcept {
    form_.scanning_ = scanning;
    form_.cancelled_ = false;
    form_.cmdSelect.setEnabled(!scanning);
    form_.cmdDWTOnline.setEnabled(!scanning);
  }

  // To the button that started the scan, unless the user has gone on meanwhile.
  void giveFocusBack() const noexcept {
    if (handedOn_ == focus_ || GetFocus() != handedOn_) return;
    for (forms::Button* each : {&form_.cmdSelect, &form_.cmdDWTOnline})
      if (each->hwnd() == focus_) each->focus();
  }

  frmQuillet& form_;
  HWND focus_;
  HWND handedOn_ = nullptr;
};

frmQuillet::frmQuillet(HostApplication& host)
    : Form(L"frmQuillet", IDD_QUILLET, L"Browser"),
      host_(host),
      lblDWTs(*this, IDC_QUILLET_LIST_LABEL),
      lvDWTs(*this, IDC_QUILLET_LIST, L"Title"),
      lblStatus(*this, IDC_QUILLET_STATUS),
      splitter(*this, IDC_QUILLET_SPLITTER),
      lblTitle(*this, IDC_QUILLET_TITLE),
      xwpPreview(*this, IDC_QUILLET_PICTURE),
      wbPreview(*this, IDC_QUILLET_PAGE),
      lblZoom(*this, IDC_QUILLET_ZOOM_LABEL),
      cbZoom(*this, IDC_QUILLET_ZOOM),
      lblDWTDescCaption(*this, IDC_QUILLET_DESC_LABEL),
      lblDWTDesc(*this, IDC_QUILLET_DESC),
      lblDWTPathCaption(*this, IDC_QUILLET_PATH_LABEL),
      lblDWTPath(*this, IDC_QUILLET_PATH),
      lblDestPathCaption(*this, IDC_QUILLET_DEST_LABEL),
      lblDestPath(*this, IDC_QUILLET_DEST),
      cmdCopytoWeb(*this, IDOK),
      cmdDestFolder(*this, IDC_QUILLET_DESTFOLDER),
      cmdDWTNotes(*this, IDC_QUILLET_NOTES),
      cmdApplyInstructions(*this, IDC_QUILLET_INSTRUCTIONS),
      cmdSelect(*this, IDC_QUILLET_SELECT),
      cmdDWTOnline(*this, IDC_QUILLET_ONLINE),
      cmdHelp(*this, IDC_QUILLET_HELP),
      cmdAbout(*this, IDC_QUILLET_ABOUT),
      cmdCancel(*this, IDCANCEL) {
  // Templates come from anywhere; they are looked at here, not run.
  wbPreview.setPassive(true);
  connectEvents();
}

frmQuillet::~frmQuillet() = default;

void frmQuillet::ShowQuillet(bool /*openedFromOnline*/, HWND owner) {
  try {
    showModal(owner);
  } catch (const Error& error) {
    if (error.number() != errors::cannotCreateObject) throw;
    showMessage(owner, componentsMissing, MB_ICONHAND, L"Dynamic Web Template Browser");
  }
}

void frmQuillet::connectEvents() {
  lvDWTs.onItemClick = [this] { lvListView_ItemClick(); };
  lvDWTs.onDoubleClick = [this] { lvListView_DblClick(); };
  xwpPreview.onFailed = [this](const Error& error) { xwpPreview_Failed(error); };
  cbZoom.onClick = [this] { cboZoom_Click(); };
  cmdCopytoWeb.onClick = [this] { cmdCopytoWeb_Click(); };
  cmdDestFolder.onClick = [this] { cmdDestFolder_Click(); };
  cmdSelect.onClick = [this] { cmdSelect_Click(); };
  cmdDWTOnline.onClick = [this] { cmdDWTOnline_Click(); };
  cmdDWTNotes.onClick = [this] { cmdDWTNotes_Click(); };
  cmdApplyInstructions.onClick = [this] { cmdApplyInstructions_Click(); };
  cmdHelp.onClick = [this] { cmdHelp_Click(); };
  cmdAbout.onClick = [this] { cmdAbout_Click(); };
  cmdCancel.onClick = [this] { cmdCancel_Click(); };
  wbPreview.onBeforeNavigate2 = [this](const std::wstring& address, bool topFrame, bool& cancel) {
    wbPreview_BeforeNavigate2(address, topFrame, cancel);
  };
  wbPreview.onNavigateError = [this](const std::wstring& address, bool topFrame, bool& cancel) {
    wbPreview_NavigateError(address, topFrame, cancel);
  };
}

void frmQuillet::keepEdges() {
  using namespace forms;
  keep(lblDWTs, left | top | beforeSplit);
  keep(lvDWTs, left | top | bottom | beforeSplit);
  keep(lblStatus, left | bottom | beforeSplit);
  keep(splitter, left | top | bottom | afterSplit);
  keep(lblTitle, left | top | right | afterSplit);
  keep(xwpPreview, left | top | right | bottom | afterSplit);
  keep(wbPreview, left | top | right | bottom | afterSplit);
  for (const Control* each : std::initializer_list<const Control*>{
           &lblZoom, &cbZoom, &lblDWTDescCaption, &lblDWTPathCaption, &lblDestPathCaption})
    keep(*each, left | bottom | afterSplit);
  for (const Control* each :
       std::initializer_list<const Control*>{&lblDWTDesc, &lblDWTPath, &lblDestPath})
    keep(*each, left | right | bottom | afterSplit);
  for (const Button* each : {&cmdCopytoWeb, &cmdDestFolder, &cmdDWTNotes, &cmdApplyInstructions,
                             &cmdSelect, &cmdDWTOnline})
    keep(*each, top | right);
  for (const Button* each : {&cmdHelp, &cmdAbout, &cmdCancel}) keep(*each, right | bottom);
}

void frmQuillet::Form_Load() {
  try {
    start();
  } catch (const Error& error) {
    if (!showStartFailure(error)) throw;
  }
}

void frmQuillet::start() {
  keepEdges();
  setUpControls();
  modCommon::InitLog();
  RestoreWindowPlacementSetting(hwnd(), module::title, settings::general, settings::placement);
  restoreSplit();
  writeVersions();
  wbPreview.navigate(forms::WebBrowser::blankPage);
  destination_.clear();
  // A scan may take long: it is watched, and can be cancelled, on the screen.
  showNow();
  ListTemplates();
}

// As they are until there are templates, also when the start fails.
void frmQuillet::setUpControls() {
  for (const long percent : {50, 75, 100}) cbZoom.add(text::decimal(percent) + L"%", percent);
  cbZoom.select(2);
  cbZoom.setEnabled(false);
  enableTemplateButtons(false);
}

void frmQuillet::writeVersions() const {
  WriteLog(L"Quillet started...");
  WriteLog({L"Quillet ver.: ", versionText(), L" for FrontPage 2003"});
  WriteLog({L"FP ver.: ", host_.version()});
  WriteLog({L"OS: ", modCommon::GetOSVersionText()});
}

bool frmQuillet::showStartFailure(const Error& error) {
  switch (error.number()) {
    case errors::cannotCreateObject:
      message(componentsMissing, MB_ICONHAND);
      unload();
      return true;
    case errors::cancelled:
      // A host on its way out has unloaded it already.
      if (!isUnloaded()) message(errors::descriptionOf(errors::cancelled), MB_ICONINFORMATION);
      return true;
    default:
      return false;
  }
}

void frmQuillet::Form_Unload() {
  SaveWindowPlacementSetting(hwnd(), module::title, settings::general, settings::placement);
  handle(L"Form_Unload", [this] { saveSplit(); });
  WriteLog(L"Quillet unloaded successfully.");
  WriteLog(modCommon::logSeparator);
}

void frmQuillet::restoreSplit() {
  const std::wstring wider = settings::GetSetting(settings::general, splitSetting);
  setSplit(MulDiv(std::wcstol(wider.c_str(), nullptr, 10), perInch(), 96));
}

// Apart from the window's placement, whose record others read.
void frmQuillet::saveSplit() const {
  const std::wstring wider = text::decimal(MulDiv(split(), 96, perInch()));
  if (wider != settings::GetSetting(settings::general, splitSetting, L"0"))
    settings::SaveSetting(settings::general, splitSetting, wider);
}

void frmQuillet::Form_Resize() { fitDescription(); }

// The copy button is off while there is nothing to copy; whoever fires its event all the same is
// told so.
bool frmQuillet::onMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (message == WM_CONTEXTMENU && reinterpret_cast<HWND>(wParam) == lvDWTs.hwnd()) {
    lvListView_ContextMenu(lParam);
    return true;
  }
  if (message == WM_COMMAND && wParam == IDC_QUILLET_OPENFOLDER) {
    mnuOpenFolder_Click();
    return true;
  }
  const bool copy = message == WM_COMMAND && wParam == MAKEWPARAM(IDOK, BN_CLICKED);
  if (!copy || cmdCopytoWeb.enabled() || scanning_ || lvDWTs.count() > 0)
    return Form::onMessage(message, wParam, lParam, result);
  cmdCopytoWeb_Click();
  return true;
}

// Keys that mean the window, also where a page would take them.
bool frmQuillet::preTranslate(MSG& message) {
  if (message.message != WM_KEYDOWN || message.wParam != VK_F5)
    return cbZoom_MouseWheel(message) || wbPreview.preTranslate(message);
  if (!scanning_) readAnew();
  return true;
}

// The list

// Selects the template `wanted` afterwards, where it still is.
void frmQuillet::ListTemplates(const std::wstring& wanted) {
  lvDWTs.clear();
  templates_.clear();
  lvDWTs.setEmptyText({});
  trouble_.clear();
  enableTemplateButtons(false);
  try {
    const Scanning scanning(*this);
    TemplateScan(*this).ListTemplates();
  } catch (...) {
    const Error error = errors::current();
    if (error.number() != errors::cancelled) showUnopened(error.description());
    // What was listed before the cancellation can be used.
    if (!isUnloaded()) showList(wanted);
    throw;
  }
  showList(wanted);
}

void frmQuillet::readAnew() {
  const auto selected = selectedTemplate();
  unlessCancelled([&] { ListTemplates(selected ? selected->key : std::wstring()); });
}

void frmQuillet::showList(const std::wstring& wanted) {
  showStatus();
  if (lvDWTs.count() == 0) {
    lvDWTs.setEmptyText(trouble_ + noTemplates);
    clearPreview();
    return;
  }
  enableTemplateButtons(true);
  lvDWTs.autoSizeColumn();
  int index = lvDWTs.count();
  while (--index > 0 && !text::equalIgnoringCase(templates_[lvDWTs.row(index).item].key, wanted)) {
  }
  lvDWTs.select(index);
  lvListView_ItemClick();
}

// What is done, while it is, and what came of it.
void frmQuillet::showStatus() {
  std::wstring status = text::decimal(lvDWTs.count()) + L" found";
  if (scanning_) status += L", searching\r\n" + searching_;
  lblStatus.setText(status);
}

void frmQuillet::clearPreview() {
  xwpPreview.clear();
  cbZoom.setEnabled(false);
  showDescription({});
  lblDWTPath.setText(L"");
  lblDWTPath.setToolTip(L"");
  cmdDWTNotes.tag.clear();
  lblTitle.setText(emptyHeading);
  wbPreview.navigate(forms::WebBrowser::blankPage);
}

void frmQuillet::enableTemplateButtons(bool enabled) {
  for (forms::Button* each : {&cmdCopytoWeb, &cmdDestFolder, &cmdApplyInstructions, &cmdDWTNotes})
    each->setEnabled(enabled);
}

bool frmQuillet::keepGoing() {
  if (lvDWTs.showGrowth()) showStatus();
  forms::yieldToMessages();
  return !cancelled_ && !isUnloaded();
}

void frmQuillet::add(const TemplateEntry& entry) {
  lvDWTs.add(
      {.text = entry.title, .toolTip = entry.folder, .icon = -1, .item = templates_.add(entry)});
}

void frmQuillet::showFolder(std::wstring_view folder) {
  searching_ = folder;
  showStatus();
}

void frmQuillet::showUnopened(std::wstring_view text) { trouble_.append(text).append(L"\r\n\r\n"); }

// The box stays for as long as the user likes: the list behind it is painted meanwhile.
void frmQuillet::showNotReady(const std::wstring& text) {
  lvDWTs.endGrowing();
  message(text, MB_ICONHAND);
  lvDWTs.beginGrowing();
}

void frmQuillet::showWaitCursor(bool shown) noexcept {
  if (shown)
    wait_.emplace();
  else
    wait_.reset();
}

// The preview

void frmQuillet::lvListView_ItemClick() {
  handle(L"lvListView_ItemClick", [this] {
    const auto entry = selectedTemplate();
    if (entry && modCommon::fileExists(entry->key)) showTemplate(*entry);
  });
}

std::optional<TemplateEntry> frmQuillet::selectedTemplate() const {
  const int index = lvDWTs.selected();
  if (index < 0) return std::nullopt;
  return templates_[lvDWTs.row(index).item];
}

// As Enter does it.
void frmQuillet::lvListView_DblClick() {
  if (cmdCopytoWeb.enabled()) cmdCopytoWeb_Click();
}

// What the buttons do for the selected template, and its folder.
void frmQuillet::lvListView_ContextMenu(LPARAM place) {
  handle(L"lvListView_ContextMenu", [&] {
    const auto point = lvDWTs.menuPlace(place);
    if (!point) return;
    const forms::PopupMenu menu;
    menu.add(IDOK, L"&Copy to Web", cmdCopytoWeb.enabled());
    menu.add(IDC_QUILLET_NOTES, L"&Notes...", cmdDWTNotes.enabled());
    menu.add(IDC_QUILLET_OPENFOLDER, L"Open &Folder", true);
    TrackPopupMenuEx(menu.get(), TPM_LEFTALIGN | TPM_RIGHTBUTTON, point->x, point->y, hwnd(),
                     nullptr);
  });
}

void frmQuillet::mnuOpenFolder_Click() {
  handle(L"mnuOpenFolder_Click", [this] {
    const auto selected = selectedTemplate();
    if (!selected) return;
    const std::wstring& folder = selected->folder;
    const auto opened = reinterpret_cast<INT_PTR>(
        ShellExecuteW(hwnd(), L"open", folder.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    if (opened <= 32) message(L"Could not open \" " + folder + L" \"", MB_ICONHAND);
  });
}

void frmQuillet::showDescription(const std::wstring& description) {
  lblDWTDesc.setText(description);
  lblDWTDesc.setToolTip(description);
  fitDescription();
}

// A scroll bar where there is more than the three lines that there is room for.
void frmQuillet::fitDescription() noexcept {
  const HWND box = lblDWTDesc.hwnd();
  // A bar takes room from the lines: whether one is needed is seen without it, and nobody sees
  // that.
  SendMessageW(box, WM_SETREDRAW, FALSE, 0);
  ShowScrollBar(box, SB_VERT, FALSE);
  ShowScrollBar(box, SB_VERT, SendMessageW(box, EM_GETLINECOUNT, 0, 0) > 3);
  SendMessageW(box, WM_SETREDRAW, TRUE, 0);
  RedrawWindow(box, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
}

void frmQuillet::showTemplate(const TemplateEntry& entry) {
  const std::wstring fileName(text::afterLast(entry.key, L'\\'));
  const Preview preview = previewOf(
      entry.key, GetDWTInfo(modCommon::withBackslash(entry.folder), templateBaseName(fileName)));
  showDescription(preview.description);
  cmdDWTNotes.tag = preview.notes;
  lblDWTPath.setText(wrappable(entry.folder));
  lblDWTPath.setToolTip(entry.folder);
  showPreview(preview);
}

void frmQuillet::showPreview(const Preview& preview) {
  lblTitle.setText(preview.heading);
  try {
    if (preview.isImage)
      showPicture(preview.file);
    else
      showPage(preview.file);
  } catch (...) {
    showPreviewError();
    throw;
  }
}

void frmQuillet::showPicture(const std::wstring& file) {
  showPlace(true);
  xwpPreview.load(file, [this](SIZE natural) { return zoomedSize(natural); });
  cbZoom.setEnabled(true);
}

void frmQuillet::showPage(const std::wstring& file) {
  const bool empty = modCommon::fileSize(file) == 0;
  const bool shown = !empty && isPageFile(file);
  wbPreview.navigate(shown ? file : forms::WebBrowser::blankPage);
  if (!empty && !shown) throw Error(invalidFileFormat, L"Invalid file format");
  showPlace(false);
  xwpPreview.clear();
  cbZoom.setEnabled(false);
}

void frmQuillet::showPreviewError() {
  xwpPreview.clear();
  cbZoom.setEnabled(false);
  wbPreview.setBodyHtml(previewErrorPage, previewErrorText);
  showPlace(false);
}

// Not run by tests: the picture box is tested with pictures that fail late.
void frmQuillet::xwpPreview_Failed(const Error& error) {
  handle(L"lvListView_ItemClick", [&] {
    showPreviewError();
    throw error;
  });
}

// Picture and page share one place. The one that comes is there before the other one goes, which
// may have the focus to hand on.
void frmQuillet::showPlace(bool picture) {
  forms::Control* comes = &wbPreview;
  forms::Control* goes = &xwpPreview;
  if (picture) std::swap(comes, goes);
  comes->setVisible(true);
  goes->setVisible(false);
}

// The preview shows its template and nothing else: a link that is followed in it goes nowhere.
// Frames may load what lies beside the page, until that is there.
void frmQuillet::wbPreview_BeforeNavigate2(const std::wstring& address, bool topFrame,
                                           bool& cancel) {
  cancel = true;  // also where it cannot be told
  handle(L"wbPreview_BeforeNavigate2", [&] {
    cancel = topFrame ? !forms::isSamePage(address, wbPreview.requested())
                      : !wbPreview.isOnItsWay() || !isFrame(address);
  });
}

bool frmQuillet::isFrame(const std::wstring& address) const {
  if (forms::isSamePage(address, forms::WebBrowser::blankPage)) return true;
  const auto file = forms::fileBeside(address, wbPreview.requested());
  return file && isPageFile(*file);
}

// No page of the browser's own about the error: a blank one that says so. What becomes of a page
// that has been left no longer matters.
void frmQuillet::wbPreview_NavigateError(const std::wstring& address, bool topFrame, bool& cancel) {
  handle(L"wbPreview_NavigateError", [&] {
    if (!topFrame || forms::isSamePage(address, forms::WebBrowser::blankPage)) return;
    cancel = true;
    if (!forms::isSamePage(address, wbPreview.requested())) return;
    wbPreview.navigate(forms::WebBrowser::blankPage);
    wbPreview.setBodyHtml(previewErrorPage, previewErrorText);
  });
}

void frmQuillet::cboZoom_Click() {
  handle(L"cboZoom_Click", [this] {
    if (lvDWTs.count() == 0 || !xwpPreview.hasPicture()) return;
    const std::wstring file = xwpPreview.path();
    xwpPreview.load(file, [this](SIZE natural) { return zoomedSize(natural); });
  });
}

// With the Ctrl key, wherever in the window.
bool frmQuillet::cbZoom_MouseWheel(const MSG& message) {
  if (message.message != WM_MOUSEWHEEL || !(GET_KEYSTATE_WPARAM(message.wParam) & MK_CONTROL))
    return false;
  wheelRest_ += GET_WHEEL_DELTA_WPARAM(message.wParam);
  const int wanted = cbZoom.selected() + wheelRest_ / WHEEL_DELTA;
  wheelRest_ %= WHEEL_DELTA;
  const int step = std::clamp(wanted, 0, 2);
  if (!cbZoom.enabled() || step == cbZoom.selected()) return true;
  cbZoom.select(step);
  cboZoom_Click();
  return true;
}

SIZE frmQuillet::zoomedSize(SIZE natural) const {
  const long percent = cbZoom.selectedData();
  return {zoomed(natural.cx, percent), zoomed(natural.cy, percent)};
}

// The destination

void frmQuillet::cmdDestFolder_Click() {
  handle(L"cmdDestFolder_Click", [this] {
    const auto web = host_.activeWeb();
    if (!web) return;
    offerDefaultFolder(*web);
    if (isUnloaded()) return;  // while the host answered
    WriteLog(L"Setting destination folder...");
    if (SelectWebFolder(*web, destination_, true, true, hwnd())) {
      const auto folder = web->locateFolder(destination_);
      lblDestPath.setText(folder ? folder->url() : destination_);
      WriteLog({L"Destination folder set to: ", lblDestPath.text()});
    } else {
      destination_ = lblDestPath.text();
      WriteLog(L"Setting destination folder operation cancelled.");
    }
  });
}

void frmQuillet::offerDefaultFolder(const HostWeb& web) {
  if (destination_ != defaultDestination(web.url()) || web.locateFolder(destination_) ||
      isUnloaded())
    return;
  if (showMessage(hwnd(), createDefaultQuestion, MB_ICONQUESTION | MB_YESNO) == IDYES)
    web.createFolder(defaultWebFolder);
  else
    destination_.clear();
}

// Copying

void frmQuillet::cmdCopytoWeb_Click() {
  handle(L"cmdCopytoWeb_Click", [this] {
    const auto web = host_.activeWeb();
    if (!web || isUnloaded()) return;
    const auto entry = selectedTemplate();
    // Not run by tests: no row's folder ends with the backslash that the comparison asks for.
    if (entry && isSamePlace(entry->folder, destination_)) {
      showMessage(hwnd(), samePlaceMessage(entry->folder), MB_ICONHAND);
      return;
    }
    if (lvDWTs.count() == 0) {
      message(nothingToCopy, MB_ICONINFORMATION);
      return;
    }
    // No folder at all would be taken for the root of the current drive.
    if (!entry) throw Error(errors::objectNotSet);
    if (destination_.empty() && !askForDefault(*web)) return;
    copyTo(*web, *entry);
  });
}

bool frmQuillet::askForDefault(const HostWeb& web) {
  const std::wstring url = web.url();
  if (isUnloaded() || message(copyToDefaultQuestion(url), MB_ICONQUESTION | MB_YESNO) != IDYES)
    return false;
  destination_ = defaultDestination(url);
  return true;
}

// A window that was closed while the host answered copies nothing.
void frmQuillet::copyTo(const HostWeb& web, const TemplateEntry& entry) {
  const auto located = web.locateFolder(destination_);
  if (isUnloaded()) return;
  const HostFolder folder = located ? *located : web.createFolder(destination_).folder;
  WriteLog({L"Copying folder to the following path : ", destination_});
  const std::wstring url = folder.url();
  if (isUnloaded()) return;
  if (!frmCopyToWeb().CopyTemplateFolder(url, {entry.title, entry.folder}, hwnd())) return;
  if (lvDWTs.count() == 0) {  // Not run by tests: a row cannot go meanwhile.
    cmdCopytoWeb.setEnabled(false);
    cmdDestFolder.setEnabled(false);
  }
  xwpPreview.clear();
  unload();
}

// The other windows

void frmQuillet::cmdSelect_Click() {
  handle(L"cmdSelect_Click", [this] {
    bringToFront();
    if (isUnloaded()) return;  // while the host answered
    if (ShowFolderDialog(hwnd())) unlessCancelled([this] { ListTemplates(); });
    const bool any = lvDWTs.count() > 0;
    for (forms::Button* each : {&cmdCopytoWeb, &cmdDestFolder, &cmdApplyInstructions})
      each->setEnabled(any);
  });
}

// A host that cannot be brought to the front keeps nobody from the folders.
void frmQuillet::bringToFront() noexcept {
  handle(L"cmdSelect_Click", [this] {
    modCommon::SetHostProgID(host_.version());
    modCommon::BringHostToTop();
  });
  BringWindowToTop(hwnd());
}

void frmQuillet::cmdDWTOnline_Click() {
  handle(L"cmdDWTOnline_Click", [this] {
    if (frmDWTOnline(host_).RunOnline(true, hwnd()) == frmDWTOnline::downloaded) takeDownloads();
  });
}

// New templates join the list; the folders that are listed already are not scanned again.
void frmQuillet::takeDownloads() {
  unlessCancelled([this] {
    const Scanning scanning(*this);
    TemplateScan(*this).ScanFolder(
        settings::GetSetting(settings::general, settings::downloadFolder));
  });
  if (isUnloaded()) return;
  showStatus();
  lvDWTs.autoSizeColumn();
  if (lvDWTs.selected() < 0 && lvDWTs.count() > 0) lvDWTs.select(0);
  lvListView_ItemClick();
  enableTemplateButtons(true);
}

void frmQuillet::cmdDWTNotes_Click() {
  handle(L"cmdDWTNotes_Click",
         [this] { modCommon::ShowQuickHelp(cmdDWTNotes.tag, L"DWTNotes", hwnd()); });
}

void frmQuillet::cmdApplyInstructions_Click() {
  handle(L"cmdApplyInstructions_Click", [this] { openHelp(L"HowToApply", hwnd()); });
}

void frmQuillet::cmdHelp_Click() {
  handle(L"cmdHelp_Click", [this] { openHelp(L"Quillet", hwnd()); });
}

bool frmQuillet::openHelp(const wchar_t* topic, HWND owner) {
  modCommon::ShowHelp(topic, {}, owner);
  return true;
}

void frmQuillet::cmdAbout_Click() {
  handle(L"cmdAbout_Click_Error", [this] { frmAbout().ShowAbout(hwnd()); });
}

// During a scan it stops the scan: the window stays, with what was listed. Otherwise it closes.
void frmQuillet::cmdCancel_Click() {
  handle(L"cmdCancel_Click", [this] {
    cancelled_ = true;
    if (!scanning_) unload();
  });
}
