#include "host/MainWindow.h"

#include <commctrl.h>
#include <shlobj.h>

#include "host/add_ins_dialog.h"
#include "host/guarded.h"
#include "host/model/web_paths.h"
#include "host/resource.h"

namespace standin {
namespace {

constexpr wchar_t windowClassName[] = L"FrontPageExplorerWindow40";
constexpr UINT menuMessage = WM_APP + 1;
constexpr UINT webMessage = WM_APP + 2;

// The folder that the user chooses; empty when there is none.
std::wstring chosenFolder(HWND owner) {
  BROWSEINFOW browse = {};
  wchar_t path[MAX_PATH] = {};
  browse.hwndOwner = owner;
  browse.lpszTitle = L"Open this folder as a web:";
  browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  LPITEMIDLIST item = SHBrowseForFolderW(&browse);
  if (item) SHGetPathFromIDListW(item, path);
  CoTaskMemFree(item);
  return path;
}

}  // namespace

MainWindow::MainWindow(Host& host, AddIns& addIns) : host_(host), addIns_(addIns) {}

MainWindow::~MainWindow() {
  host_.session().menuChanged = [] {};
  host_.session().webChanged = [] {};
  host_.session().activated = [] {};
}

bool MainWindow::create() {
  const HINSTANCE instance = GetModuleHandleW(nullptr);
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = instance;
  windowClass.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_HOST));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  windowClass.lpszClassName = windowClassName;
  RegisterClassExW(&windowClass);
  window_ = CreateWindowExW(0, windowClassName, windowCaption(host_.session()).c_str(),
                            WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 20, 20, 900, 640, nullptr,
                            nullptr, instance, this);
  if (!window_) return false;
  host_.session().menuChanged = [this] { postOnce(menuMessage, menuPosted_); };
  host_.session().webChanged = [this] { postOnce(webMessage, webPosted_); };
  host_.session().activated = [this] { SetForegroundWindow(window_); };
  rebuildMenu();
  showWeb();
  return true;
}

void MainWindow::setStatus(const std::wstring& text) const {
  SendMessageW(status_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<MainWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  try {
    return self->onMessage(message, wParam, lParam);
  } catch (const Refusal& refusal) {
    self->setStatus(refusal.description);
  } catch (...) {
    self->setStatus(L"The command failed.");
  }
  return 0;
}

LRESULT MainWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      createChildren();
      return 0;
    case WM_SIZE:
      SendMessageW(status_, WM_SIZE, wParam, lParam);
      layOut();
      return 0;
    case WM_COMMAND:
      if (lParam == 0) onCommand(LOWORD(wParam));
      return 0;
    case WM_NOTIFY:
      folders_.onNotify(*reinterpret_cast<NMHDR*>(lParam), host_.session());
      return 0;
    case WM_ENTERMENULOOP:
      inMenu_ = true;
      return 0;
    case WM_EXITMENULOOP:
      inMenu_ = false;
      if (menuPosted_) PostMessageW(window_, menuMessage, 0, 0);
      return 0;
    case menuMessage:
      // An open menu is not taken away from under the user.
      if (!inMenu_) rebuildMenu();
      return 0;
    case startedMessage:
      return started_;
    case webMessage:
      showWeb();
      return 0;
    case WM_CLOSE:
      addIns_.shutDown();
      DestroyWindow(window_);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

void MainWindow::createChildren() {
  folders_.create(window_);
  status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                            0, 0, window_, nullptr, GetModuleHandleW(nullptr), nullptr);
}

void MainWindow::layOut() const {
  RECT area = {};
  RECT statusArea = {};
  GetClientRect(window_, &area);
  GetWindowRect(status_, &statusArea);
  area.bottom -= statusArea.bottom - statusArea.top;
  folders_.resize(area);
}

// Many changes in a row cost one rebuild.
void MainWindow::postOnce(UINT message, bool& posted) const {
  if (posted) return;
  posted = true;
  PostMessageW(window_, message, 0, 0);
}

void MainWindow::rebuildMenu() {
  menuPosted_ = false;
  menu_.build(window_, host_.commandBars().menuBar.get());
}

void MainWindow::showWeb() {
  webPosted_ = false;
  SetWindowTextW(window_, windowCaption(host_.session()).c_str());
  folders_.refresh(host_.session());
  setStatus(host_.session().webFolder.empty() ? L"No web is open." : webUrl(host_.session()));
}

void MainWindow::onCommand(UINT command) {
  const auto control = menu_.control(command);
  if (!control || !control->asButton()) return;
  const long id = control->id;
  const std::wstring caption = plainCaption(control->caption);
  bool cancel = false;
  if (!guarded([&] { cancel = host_.commandBars().click(*control->asButton()); })) {
    EnableWindow(window_, TRUE);
    setStatus(L"The command \"" + caption + L"\" has failed.");
    return;
  }
  constexpr long customId = 1;
  if (!cancel && id != customId) run(id, caption);
}

void MainWindow::run(long command, const std::wstring& caption) {
  switch (command) {
    case commandOpenWeb:
      openWeb();
      return;
    case commandCloseWeb:
      host_.closeWeb();
      return;
    case commandRefresh:
      showWeb();
      return;
    case commandExit:
      PostMessageW(window_, WM_CLOSE, 0, 0);
      return;
    case commandAddIns:
      showAddInsDialog(window_, addIns_);
      return;
    case commandAbout:
      MessageBoxW(window_, L"A stand-in for the web editor, to run add-ins in.", L"About",
                  MB_ICONINFORMATION);
      return;
    default:
      setStatus(L"\"" + caption + L"\" is not in this stand-in.");
  }
}

void MainWindow::openWeb() {
  const std::wstring folder = chosenFolder(window_);
  if (!folder.empty()) host_.openWeb(folder);
}

}  // namespace standin
