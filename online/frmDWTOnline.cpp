#include "online/frmDWTOnline.h"

#include <utility>

#include "addin/host/environment.h"
#include "common/forms/PopupMenu.h"
#include "common/forms/folder_icons.h"
#include "common/forms/modBrowseForFolder.h"
#include "common/log.h"
#include "common/log_switch.h"
#include "common/paths.h"
#include "common/placement.h"
#include "common/settings.h"
#include "common/text.h"
#include "folders/TemplateFolderList.h"
#include "online/download_page.h"
#include "online/frmDownloadProgress.h"
#include "online/resource.h"
#include "online/toolbar_pictures.h"
#include "online/transfer/InternetSession.h"
#include "online/transfer/modWINInetURL.h"

namespace {

constexpr wchar_t startPageValue[] = L"DWTOnline";
constexpr wchar_t destinationKey[] = L"DestPath";
constexpr wchar_t noDestination[] = L" ";  // a button with no text at all would not show one later
constexpr long settingsMissing = 513;

// The browser's numbers for its two navigation commands.
constexpr long forwardCommand = 1;
constexpr long backCommand = 2;

constexpr UINT_PTR unloadTimer = 1;
constexpr UINT_PTR watchTimer = 2;
constexpr UINT unloadInterval = 500;  // milliseconds
constexpr UINT watchInterval = 1000;

constexpr int firstMenuCommand = 0x6000;

// The toolbar's buttons in their order, a gap where the key is empty. Each has the picture of its
// own key.
struct ButtonDescription {
  const wchar_t* key;
  const wchar_t* text;
};
constexpr ButtonDescription buttons[] = {
    {L"Back", L"Back (Alt+Left)"},
    {L"Next", L"Forward (Alt+Right)"},
    {L"Stop", L"Stop (Esc)"},
    {L"Refresh", L"Refresh (F5)"},
    {L"", L""},
    {L"Print", L"Print (Ctrl+P)"},
    {L"", L""},
    {L"Quillet", L"Browse and copy the templates on this computer"},
    {L"", L""},
    {L"Help", L"Help (F1)"},
};

int destinationPicture(const std::wstring& tag) {
  return tag == DestinationMenu::machineTag ? 0 : 1;
}

void centreOnScreen(HWND window) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  RECT place;
  if (!GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor) ||
      !GetWindowRect(window, &place))
    return;  // Not run by tests: the window is there.
  const RECT& screen = monitor.rcWork;
  SetWindowPos(window, nullptr, (screen.left + screen.right - place.right + place.left) / 2,
               (screen.top + screen.bottom - place.bottom + place.top) / 2, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// A button that goes down, of the mouse or the keyboard. A key that is only held may have closed
// the box about the refusal.
bool isUserAct(const MSG& message) {
  constexpr LPARAM wasDown = 1 << 30;
  switch (message.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      return !(message.lParam & wasDown);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
      return true;
    default:
      return false;
  }
}

// A menu's text shows each "&" of a path as it is.
std::wstring menuText(const std::wstring& path) { return text::replaceAll(path, L"&", L"&&"); }

forms::PopupMenu popupMenu(const DestinationMenu& destinations) {
  forms::PopupMenu menu;
  int command = firstMenuCommand;
  for (const DestinationEntry& entry : destinations.entries()) {
    if (entry.text == DestinationMenu::separator)
      menu.addSeparator(command++);
    else
      menu.add(command++, menuText(entry.text).c_str());
  }
  return menu;
}

}  // namespace

frmDWTOnline::frmDWTOnline(HostApplication host)
    : Form(L"frmDWTOnline", IDD_ONLINE),
      host_(std::move(host)),
      tbDWTOnline(*this, IDC_ONLINE_TOOLBAR),
      picSaveIn(*this, IDC_ONLINE_SAVEIN),
      tbDestPath(*this, IDC_ONLINE_DESTINATION),
      wbDWTOnline(*this, IDC_ONLINE_BROWSER) {
  tbDWTOnline.onButtonClick = [this](const std::wstring& key) { tbDWTOnline_ButtonClick(key); };
  tbDestPath.onButtonDropDown = [this](const std::wstring&) { tbDestPath_ButtonDropDown(); };
  tbDestPath.onButtonClick = [this](const std::wstring&) { tbDestPath_ButtonDropDown(); };
  wbDWTOnline.onBeforeNavigate2 = [this](const std::wstring& address, bool topFrame, bool& cancel) {
    wbDWTOnline_BeforeNavigate2(address, topFrame, cancel);
  };
  wbDWTOnline.onCommandStateChange = [this](long command, bool enable) {
    wbDWTOnline_CommandStateChange(command, enable);
  };
  wbDWTOnline.onDocumentComplete = [this](const std::wstring&, bool topFrame) {
    wbDWTOnline_DocumentComplete(topFrame);
  };
  // A success page that cannot be shown must not leave the window switched off.
  wbDWTOnline.onNavigateError = [this](const std::wstring&, bool, bool&) { switchOn(); };
}

short frmDWTOnline::RunOnline(bool openedFromBrowser, HWND owner) {
  OpenedFromBrowser_ = openedFromBrowser;
  CloseReason_ = nothing;
  showModal(owner);
  return CloseReason_;
}

void frmDWTOnline::Form_Load() {
  try {
    load();
  } catch (...) {
    // A browser that cannot be made leaves a window that can still be closed.
    complain(L"Form_Load", errors::current());
    if (!FullyLoaded_) unload();
  }
}

void frmDWTOnline::complain(const wchar_t* procedure, const Error& error) const noexcept {
  modCommon::reportFormError(procedure, name(), error);
  message(error.description(), MB_ICONHAND);
}

template <class Body>
void frmDWTOnline::handleMenu(Body&& body) const noexcept {
  try {
    body();
  } catch (...) {
    modCommon::reportMenuError(L"CreatePopupMenu", name(), errors::current());
  }
}

void frmDWTOnline::load() {
  modCommon::InitLog();
  buildToolbar();
  keep(tbDWTOnline, forms::left | forms::top | forms::right);
  keep(tbDestPath, forms::left | forms::top | forms::right);
  keep(wbDWTOnline, forms::left | forms::top | forms::right | forms::bottom);
  const std::wstring startPage = readStartPage();
  FullyLoaded_ = true;
  // A host that does not tell its version still has a catalogue.
  handle(L"Form_Load", [this] { hostVersion_ = host_.version(); });
  modCommon::SetHostProgID(hostVersion_);
  modCommon::BringHostToTop();
  BringWindowToTop(hwnd());
  if (!RestoreWindowPlacementSetting(hwnd(), module::title, settings::general,
                                     settings::onlinePlacement))
    centreOnScreen(hwnd());
  handleMenu([this] { buildMenu(); });
  restoreDestination();
  Form_Resize();
  openStartPage(startPage);
}

std::wstring frmDWTOnline::readStartPage() {
  const std::wstring startPage = modCommon::GetMachineSetting(startPageValue);
  if (startPage.empty())
    throw Error(settingsMissing,
                L"The required registry settings cannot be found. The product may have to be "
                L"reinstalled.",
                L"Form_Load procedure of " + name());
  return startPage;
}

void frmDWTOnline::buildToolbar() {
  pictures_ = online::toolbarPictures();
  disabledPictures_ = online::disabledToolbarPictures();
  tbDWTOnline.setImages(pictures_.get());
  tbDWTOnline.setDisabledImages(disabledPictures_.get());
  int picture = 0;
  for (const ButtonDescription& button : buttons) {
    if (*button.key)
      tbDWTOnline.addButton(button.key, picture++, button.text);
    else
      tbDWTOnline.addSeparator();
  }
  // The browser tells when there is somewhere to go.
  tbDWTOnline.setButtonEnabled(L"Back", false);
  tbDWTOnline.setButtonEnabled(L"Next", false);
  tbDWTOnline.setButtonEnabled(L"Quillet", !OpenedFromBrowser_);

  folderPictures_ =
      forms::makeFolderIcons({forms::FolderIcon::ofMachine, forms::FolderIcon::ofUser});
  tbDestPath.setImages(folderPictures_.get());
  tbDestPath.addDropDown(destinationKey, destinationPicture(DestinationMenu::userTag),
                         noDestination);
}

void frmDWTOnline::buildMenu() {
  TemplateFolderList folders;
  modCommon::ReadTemplateFolderList(folders);
  menu_ = DestinationMenu(folders);
}

std::wstring frmDWTOnline::readApplicationData() const {
  std::wstring applicationData;
  modCommon::SystemFolders wanted;
  wanted.applicationData = &applicationData;
  modCommon::GetSystemFolders(hostVersion_, wanted);
  return applicationData;
}

// Without a destination the window can still show what there is, and the user can choose one.
void frmDWTOnline::restoreDestination() {
  try {
    const std::wstring applicationData = readApplicationData();
    std::wstring destination = settings::GetSetting(settings::general, settings::downloadFolder);
    if (destination.empty()) {
      if (applicationData.empty()) throw Error(errors::pathNotFound);
      destination = modCommon::withBackslash(applicationData) + L"Korvel Software\\DWTs";
      modCommon::CreateFolderPath(destination, boxOwner());
    }
    setDestination(destination, {});
  } catch (...) {
    complain(L"Form_Load", errors::current());
  }
}

void frmDWTOnline::openStartPage(const std::wstring& startPage) {
  const bool cracks = modWINInetURL::CrackUrl(startPage).has_value();
  wbDWTOnline.navigate(cracks ? startPage : forms::WebBrowser::blankPage);
}

void frmDWTOnline::Form_Resize() {
  RECT client;
  GetClientRect(tbDestPath.hwnd(), &client);
  tbDestPath.setButtonWidth(destinationKey, client.right);
}

void frmDWTOnline::Form_Unload() {
  stopUnloadTimer();
  KillTimer(hwnd(), watchTimer);
  if (!FullyLoaded_) return;
  SaveWindowPlacementSetting(hwnd(), module::title, settings::general, settings::onlinePlacement);
  modCommon::WriteLog(modCommon::logSeparator);
}

bool frmDWTOnline::onMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT&) {
  if (message == WM_TIMER && wParam == unloadTimer) {
    tmrUnloadMe_Timer();
    return true;
  }
  if (message == WM_TIMER && wParam == watchTimer) {
    if (!wbDWTOnline.busy()) switchOn();
    return true;
  }
  if (message == WM_COMMAND && lParam == 0 && LOWORD(wParam) >= firstMenuCommand) {
    const auto index = static_cast<std::size_t>(LOWORD(wParam) - firstMenuCommand);
    if (index < menu_.entries().size()) mnuFolder_Click(menu_.entries()[index]);
    return true;
  }
  return false;
}

bool frmDWTOnline::preTranslate(MSG& message) {
  // The focus stays in the page while the window is switched off.
  if (!IsWindowEnabled(hwnd())) {
    const bool down = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    if (down && message.wParam == VK_ESCAPE) stopSuccessPage();
    return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  }
  if (isUserAct(message)) refused_.userActs();
  if (message.message == WM_SYSKEYDOWN &&
      (message.wParam == VK_LEFT || message.wParam == VK_RIGHT)) {
    const wchar_t* const key = message.wParam == VK_LEFT ? L"Back" : L"Next";
    if (tbDWTOnline.buttonEnabled(key)) tbDWTOnline_ButtonClick(key);
    return true;
  }
  if (message.message == WM_KEYDOWN) {
    // Both together are the right Alt key of many keyboards, which writes letters.
    const bool control = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
    const wchar_t* const key = message.wParam == VK_F5            ? L"Refresh"
                               : message.wParam == VK_ESCAPE      ? L"Stop"
                               : message.wParam == VK_F1          ? L"Help"
                               : control && message.wParam == 'P' ? L"Print"
                                                                  : nullptr;
    if (key) {
      tbDWTOnline_ButtonClick(key);
      return true;
    }
  }
  return wbDWTOnline.preTranslate(message);
}

bool frmDWTOnline::openHelp(const wchar_t* topic, HWND owner) {
  modCommon::ShowHelp(topic, {}, owner);
  return true;
}

void frmDWTOnline::tbDWTOnline_ButtonClick(const std::wstring& key) {
  refused_.userActs();
  handle(L"tbDWTOnline_ButtonClick", [&] {
    if (key == L"Back") {
      wbDWTOnline.goBack();
    } else if (key == L"Next") {
      wbDWTOnline.goForward();
    } else if (key == L"Stop") {
      wbDWTOnline.stop();
    } else if (key == L"Refresh") {
      wbDWTOnline.refresh();
    } else if (key == L"Print") {
      wbDWTOnline.print();
    } else if (key == L"Quillet") {
      CloseReason_ = showBrowser;
      unload();
    } else if (key == L"Help") {
      openHelp(L"DWTOnline", hwnd());
    }
  });
}

void frmDWTOnline::tbDestPath_ButtonDropDown() {
  handleMenu([this] {
    const forms::PopupMenu menu = popupMenu(menu_);
    const RECT place = tbDestPath.buttonPlace(destinationKey);
    TPMPARAMS keepClear = {sizeof keepClear, place};
    TrackPopupMenuEx(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_VERTICAL, place.left,
                     place.bottom, hwnd(), &keepClear);
  });
}

void frmDWTOnline::mnuFolder_Click(const DestinationEntry& entry) {
  handle(L"mnuFolder_Click", [&] {
    if (entry.text == DestinationMenu::browse)
      browseForDestination();
    else if (modCommon::CanWriteToFolder(entry.text, hwnd(), caption()))
      setDestination(entry.text, entry.tag);
  });
}

void frmDWTOnline::browseForDestination() {
  std::wstring path = destination();
  if (!modBrowseForFolder::BrowseForFolder(
          hwnd(), L"Select the folder where downloaded DWTs will be stored.", path))
    return;
  if (path.empty())
    message(modBrowseForFolder::invalidPath, MB_ICONASTERISK);
  else if (modCommon::CanWriteToFolder(path, hwnd(), caption()))
    setDestination(path, {});
}

std::wstring frmDWTOnline::destination() const {
  const std::wstring path = tbDestPath.buttonText(destinationKey);
  return path == noDestination ? std::wstring() : path;
}

void frmDWTOnline::setDestination(const std::wstring& path, const std::wstring& tag) {
  tbDestPath.setButtonText(destinationKey, path);
  tbDestPath.setToolTip(path);  // the box may be too narrow for it
  tbDestPath.tag = tag.empty() ? menu_.tagOf(path) : tag;
  tbDestPath.setButtonImage(destinationKey, destinationPicture(tbDestPath.tag));
}

void frmDWTOnline::addToUserFolders(const std::wstring& path) {
  if (!menu_.has(path)) settings::SaveSetting(settings::folders, path, path);
}

void frmDWTOnline::wbDWTOnline_BeforeNavigate2(const std::wstring& address, bool topFrame,
                                               bool& cancel) {
  handle(L"wbDWTOnline_BeforeNavigate2", [&] {
    UnloadArmed_ = false;
    const auto cracked = modWINInetURL::CrackUrl(address);
    if (!(cracked ? isDownloadPage(cracked->path) : isDownloadAddress(address))) {
      if (topFrame) refused_.pageBegins();
      return;
    }
    cancel = true;
    askForDownload(address, cracked ? cracked->extraInfo : std::wstring());
  });
}

void frmDWTOnline::wbDWTOnline_DocumentComplete(bool topFrame) {
  if (topFrame) refused_.pageIsShown();
  switchOn();
}

void frmDWTOnline::askForDownload(const std::wstring& address,
                                  const std::wstring& extraInformation) {
  // A page's own script may ask again while the download's dialog is open.
  if (inDownload_) return;
  if (refused_.mayAsk()) return runDownload(address, extraInformation);
  modCommon::WriteLog(
      L"A page asks for a download again although one was refused. It is ignored until the user "
      L"has acted.");
}

void frmDWTOnline::runDownload(const std::wstring& address, const std::wstring& extraInformation) {
  // It comes in place of the page that the window was switched off for.
  switchOn();
  std::wstring folder = destination();
  if (!downloadTo(folder, address)) return refused_.add();

  CloseReason_ = downloaded;
  switchOff();
  stopUnloadTimer();
  // What cannot be remembered does not keep the success page from being shown.
  handle(L"wbDWTOnline_BeforeNavigate2", [&] { addToUserFolders(folder); });
  handle(L"wbDWTOnline_BeforeNavigate2",
         [&] { settings::SaveSetting(settings::general, settings::downloadFolder, folder); });
  // The owner may have gone, and this window with it, under the download's last message.
  if (isUnloaded()) return;
  try {
    finish(extraInformation);
  } catch (...) {
    switchOn();  // no page comes that would do it
    throw;
  }
}

void frmDWTOnline::finish(const std::wstring& extraInformation) {
  const auto success = successAddress(extraInformation);
  if (success && isShowable(*success)) return showSuccessPage(*success);
  if (success)
    modCommon::WriteLog({L"The page for a completed download is not shown : ", *success});
  startUnloadTimer();
}

bool frmDWTOnline::downloadTo(std::wstring& folder, const std::wstring& address) {
  struct Running {
    explicit Running(bool& flag) noexcept : flag_(flag) { flag_ = true; }
    ~Running() { flag_ = false; }
    bool& flag_;
  } const running(inDownload_);
  if (folder.empty()) {
    message(modBrowseForFolder::invalidPath, MB_ICONASTERISK);
    return false;
  }
  const frmDownloadProgress::Request request = {.pageAddress = address,
                                                .applicationData = readApplicationData(),
                                                .destinationFolder = folder,
                                                .destinationTag = tbDestPath.tag,
                                                .agent = InternetSession::agent};
  return frmDownloadProgress(host_).RunModal(folder, DownloadCompleted_, request, hwnd());
}

// An address that the browser refuses leaves the window as it was, and so does one that it takes
// but shows nothing for: a mail address, an archive, an answer without a page. Nothing tells of
// those but the browser's coming to rest.
void frmDWTOnline::showSuccessPage(const std::wstring& address) {
  wbDWTOnline.navigate(address);
  if (switchedOff_ && !SetTimer(hwnd(), watchTimer, watchInterval, nullptr)) switchOn();
}

void frmDWTOnline::stopSuccessPage() {
  if (!switchedOff_ || timerRuns_) return;
  tbDWTOnline_ButtonClick(L"Stop");
  switchOn();
}

void frmDWTOnline::switchOff() noexcept {
  switchedOff_ = true;
  EnableWindow(hwnd(), FALSE);
}

// A window that is disabled by what stands over it, a dialog or a box, stays so.
void frmDWTOnline::switchOn() noexcept {
  if (!std::exchange(switchedOff_, false)) return;
  KillTimer(hwnd(), watchTimer);
  EnableWindow(hwnd(), TRUE);
}

void frmDWTOnline::wbDWTOnline_CommandStateChange(long command, bool enable) {
  if (command == forwardCommand) tbDWTOnline.setButtonEnabled(L"Next", enable);
  if (command == backCommand) tbDWTOnline.setButtonEnabled(L"Back", enable);
}

void frmDWTOnline::startUnloadTimer() {
  UnloadArmed_ = false;
  timerRuns_ = SetTimer(hwnd(), unloadTimer, unloadInterval, nullptr) != 0;
  if (!timerRuns_) switchOn();
}

void frmDWTOnline::stopUnloadTimer() noexcept {
  if (timerRuns_) KillTimer(hwnd(), unloadTimer);
  timerRuns_ = false;
}

// A dialog or a box stands over the window.
bool frmDWTOnline::isCovered() const noexcept { return !switchedOff_ && !IsWindowEnabled(hwnd()); }

// Closes on the second tick, unless a navigation has started between the two.
void frmDWTOnline::tmrUnloadMe_Timer() {
  handle(L"tmrUnloadMe_Timer", [this] {
    // One may still be in the queue after the timer has been stopped.
    if (!timerRuns_ || CloseReason_ != downloaded || isCovered()) return;
    if (UnloadArmed_ && DownloadCompleted_) {
      stopUnloadTimer();
      unload();
      return;
    }
    UnloadArmed_ = true;
  });
}
