#include "common/placement.h"

#include <algorithm>

#include "common/RegKey.h"
#include "common/handles.h"
#include "common/settings.h"

namespace {

struct PlacementRecord {
  WINDOWPLACEMENT placement;
  LONG pixelsPerInch;
};
static_assert(sizeof(WINDOWPLACEMENT) == 44 && sizeof(PlacementRecord) == 48);

LONG screenResolution() noexcept {
  return GetDeviceCaps(handles::ScreenContext().get(), LOGPIXELSX);
}

BYTE* bytesOf(PlacementRecord& record) noexcept { return reinterpret_cast<BYTE*>(&record); }

bool read(std::wstring_view application, std::wstring_view section, std::wstring_view name,
          PlacementRecord& record) {
  RegKey key;
  DWORD type = REG_NONE;
  return key.OpenKey(HKEY_CURRENT_USER, settings::keyPath(application, section)) &&
         key.QueryValueEx(name, sizeof record, type, bytesOf(record));
}

// Window messages carry 16-bit coordinates: no window was ever beyond them.
bool isPossible(LONG coordinate) noexcept { return coordinate == static_cast<SHORT>(coordinate); }

bool isPossible(const RECT& rectangle) noexcept {
  return isPossible(rectangle.left) && isPossible(rectangle.top) && isPossible(rectangle.right) &&
         isPossible(rectangle.bottom) && !IsRectEmpty(&rectangle);
}

MONITORINFO infoOf(HMONITOR monitor) noexcept {
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  return info;
}

// Shifts the span so that it ends, and above all begins, within the limits.
void shiftInto(LONG& begin, LONG& end, LONG lowest, LONG highest) noexcept {
  const LONG length = end - begin;
  begin = std::max(std::min(begin, highest - length), lowest);
  end = begin + length;
}

// The monitor that the window was on may be gone or smaller now.
void bringIntoView(RECT& window) noexcept {
  const RECT area = infoOf(MonitorFromRect(&window, MONITOR_DEFAULTTONEAREST)).rcWork;
  if (window.right - window.left > GetSystemMetrics(SM_CXVIRTUALSCREEN))
    window.right = window.left + (area.right - area.left);
  if (window.bottom - window.top > GetSystemMetrics(SM_CYVIRTUALSCREEN))
    window.bottom = window.top + (area.bottom - area.top);
  if (MonitorFromRect(&window, MONITOR_DEFAULTTONULL)) return;
  shiftInto(window.left, window.right, area.left, area.right);
  shiftInto(window.top, window.bottom, area.top, area.bottom);
}

// Workspace coordinates begin at the primary monitor's work area instead of its corner.
POINT workspaceOrigin() noexcept {
  const MONITORINFO primary = infoOf(MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY));
  return {primary.rcWork.left - primary.rcMonitor.left, primary.rcWork.top - primary.rcMonitor.top};
}

}  // namespace

bool SaveWindowPlacementSetting(HWND window, std::wstring_view application,
                                std::wstring_view section, std::wstring_view name) {
  PlacementRecord record = {};
  record.placement.length = sizeof record.placement;
  if (!GetWindowPlacement(window, &record.placement)) return false;
  RegKey key;
  if (!key.CreateKey(HKEY_CURRENT_USER, settings::keyPath(application, section))) return false;
  record.pixelsPerInch = screenResolution();
  return key.SetValueEx(name, sizeof record, REG_BINARY, bytesOf(record));
}

bool RestoreWindowPlacementSetting(HWND window, std::wstring_view application,
                                   std::wstring_view section, std::wstring_view name) {
  PlacementRecord record = {};
  if (!read(application, section, name, record)) return false;
  if (record.pixelsPerInch != screenResolution()) return false;
  RECT& rectangle = record.placement.rcNormalPosition;
  if (!isPossible(rectangle)) return false;
  const POINT origin = workspaceOrigin();
  OffsetRect(&rectangle, origin.x, origin.y);
  bringIntoView(rectangle);
  OffsetRect(&rectangle, -origin.x, -origin.y);
  record.placement.length = sizeof record.placement;
  record.placement.showCmd = SW_HIDE;
  return SetWindowPlacement(window, &record.placement) != FALSE;
}
