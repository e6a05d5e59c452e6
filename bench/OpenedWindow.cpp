#include "bench/OpenedWindow.h"

#include <commctrl.h>

#include <utility>

#include "bench/BareWindow.h"
#include "bench/bare_scan.h"
#include "catalogue/resource.h"
#include "common/handles.h"

namespace bench {
namespace {

constexpr wchar_t userFolders[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\DWT Folders";

constexpr double patience = 2000;  // milliseconds for a picture to come

Colour colourIn(COLORREF pixel) {
  const bool red = GetRValue(pixel) > 200;
  const bool blue = GetBValue(pixel) > 200;
  if (red == blue || GetGValue(pixel) > 80) return Colour::none;
  return red ? Colour::red : Colour::blue;
}

}  // namespace

Machine::Machine(const std::wstring& templates) : host_({}, web_.path(), themes_.path()) {
  hostApplication() = HostApplication(com::Dispatch(ComPtr<IDispatch>(host_.application())));
  registry_.setString(HKEY_CURRENT_USER, userFolders, templates, templates);
}

Machine::~Machine() { hostApplication() = HostApplication(); }

OpenedWindow::OpenedWindow(std::function<void(OpenedWindow&)> script)
    : frmQuillet(hostApplication()), script_(std::move(script)) {}

HWND OpenedWindow::list() const noexcept { return GetDlgItem(hwnd(), IDC_QUILLET_LIST); }

int OpenedWindow::rowCount() const noexcept { return ListView_GetItemCount(list()); }

int OpenedWindow::selected() const noexcept {
  return ListView_GetNextItem(list(), -1, LVNI_SELECTED);
}

void OpenedWindow::open() {
  ShowQuillet(false, nullptr);
  if (failure_) throw CannotRun(*failure_);
}

// The form would take an error of the script for one of its own.
void OpenedWindow::Form_Activate() {
  try {
    script_(*this);
  } catch (const CannotRun& failure) {
    failure_ = failure;
  }
  unload();
}

Colour shownColour(HWND window) {
  const HWND place = GetDlgItem(window, IDC_QUILLET_PICTURE);
  if (!IsWindowVisible(place)) return Colour::none;
  RECT client;
  GetClientRect(place, &client);
  const handles::WindowContext context(place);
  const handles::Gdi bitmap(CreateCompatibleBitmap(context.get(), client.right, client.bottom));
  const handles::DeviceContext memory(CreateCompatibleDC(context.get()));
  const HGDIOBJ former = SelectObject(memory.get(), bitmap.get());
  SendMessageW(place, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory.get()), PRF_CLIENT);
  const COLORREF pixel = GetPixel(memory.get(), client.right / 2, client.bottom / 2);
  SelectObject(memory.get(), former);
  return colourIn(pixel);
}

double untilShown(HWND window, Colour colour, const Stopwatch& watch) {
  double looking = 0;
  for (;;) {
    pumpQueue();
    paintAll(window);
    const double now = watch.milliseconds();
    if (shownColour(window) == colour) return now - looking;
    if (now - looking > patience) return -1;
    looking += watch.milliseconds() - now;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
  }
}

}  // namespace bench
