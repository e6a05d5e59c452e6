#include "common/placement.h"

#include "common/RegKey.h"
#include "common/handles.h"
#include "common/placement_record.h"
#include "common/settings.h"

namespace {

using placement::Record;

LONG screenResolution() noexcept {
  return GetDeviceCaps(handles::ScreenContext().get(), LOGPIXELSX);
}

BYTE* bytesOf(Record& record) noexcept { return reinterpret_cast<BYTE*>(&record); }

bool read(std::wstring_view application, std::wstring_view section, std::wstring_view name,
          Record& record) {
  RegKey key;
  DWORD type = REG_NONE;
  return key.OpenKey(HKEY_CURRENT_USER, settings::keyPath(application, section)) &&
         key.QueryValueEx(name, sizeof record, type, bytesOf(record));
}

MONITORINFO infoOf(HMONITOR monitor) noexcept {
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  return info;
}

RECT visible(RECT window) noexcept {
  placement::Screen screen = {};
  screen.area = infoOf(MonitorFromRect(&window, MONITOR_DEFAULTTONEAREST)).rcWork;
  screen.all = {GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN)};
  window = placement::cutDown(window, screen);
  screen.shows = MonitorFromRect(&window, MONITOR_DEFAULTTONULL) != nullptr;
  return placement::broughtIntoView(window, screen);
}

// Workspace coordinates begin at the primary monitor's work area instead of its corner, which is
// the origin of the screen.
POINT workspaceOrigin() noexcept {
  const RECT area = infoOf(MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY)).rcWork;
  return {area.left, area.top};
}

}  // namespace

bool SaveWindowPlacementSetting(HWND window, std::wstring_view application,
                                std::wstring_view section, std::wstring_view name) {
  Record record = {};
  record.placement.length = sizeof record.placement;
  if (!GetWindowPlacement(window, &record.placement)) return false;
  RegKey key;
  if (!key.CreateKey(HKEY_CURRENT_USER, settings::keyPath(application, section))) return false;
  record.pixelsPerInch = screenResolution();
  return key.SetValueEx(name, sizeof record, REG_BINARY, bytesOf(record));
}

bool RestoreWindowPlacementSetting(HWND window, std::wstring_view application,
                                   std::wstring_view section, std::wstring_view name) {
  Record record = {};
  if (!read(application, section, name, record)) return false;
  const auto written = placement::rectangleOf(record, screenResolution());
  if (!written) return false;
  RECT rectangle = *written;
  const POINT origin = workspaceOrigin();
  OffsetRect(&rectangle, origin.x, origin.y);
  rectangle = visible(rectangle);
  OffsetRect(&rectangle, -origin.x, -origin.y);
  record.placement.rcNormalPosition = rectangle;
  record.placement.length = sizeof record.placement;
  record.placement.showCmd = SW_HIDE;
  return SetWindowPlacement(window, &record.placement) != FALSE;
}
