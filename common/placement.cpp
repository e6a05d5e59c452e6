#include "common/placement.h"

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

// How far to shift the span so that it begins and, if it fits, ends within the limits.
LONG shiftInto(LONG begin, LONG end, LONG lowest, LONG highest) noexcept {
  if (end - begin > highest - lowest || begin < lowest) return lowest - begin;
  return end > highest ? highest - end : 0;
}

// Far outside any desktop, and small enough to add and subtract.
bool isSane(LONG coordinate) noexcept { return coordinate > -1000000 && coordinate < 1000000; }

bool isSane(const RECT& rectangle) noexcept {
  return isSane(rectangle.left) && isSane(rectangle.top) && isSane(rectangle.right) &&
         isSane(rectangle.bottom) && rectangle.left < rectangle.right &&
         rectangle.top < rectangle.bottom;
}

MONITORINFO infoOf(HMONITOR monitor) noexcept {
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  return info;
}

// A monitor that the record still knows may be gone: the window then opens on the nearest one. The
// rectangle is in workspace coordinates, which begin at the primary monitor's work area.
void moveIntoView(RECT& rectangle) noexcept {
  const MONITORINFO primary = infoOf(MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY));
  const POINT offset = {primary.rcWork.left - primary.rcMonitor.left,
                        primary.rcWork.top - primary.rcMonitor.top};
  RECT onScreen = rectangle;
  OffsetRect(&onScreen, offset.x, offset.y);
  if (MonitorFromRect(&onScreen, MONITOR_DEFAULTTONULL)) return;
  const MONITORINFO nearest = infoOf(MonitorFromRect(&onScreen, MONITOR_DEFAULTTONEAREST));
  OffsetRect(&rectangle,
             shiftInto(onScreen.left, onScreen.right, nearest.rcWork.left, nearest.rcWork.right),
             shiftInto(onScreen.top, onScreen.bottom, nearest.rcWork.top, nearest.rcWork.bottom));
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
  if (!isSane(record.placement.rcNormalPosition)) return false;
  record.placement.length = sizeof record.placement;
  record.placement.showCmd = SW_HIDE;
  moveIntoView(record.placement.rcNormalPosition);
  return SetWindowPlacement(window, &record.placement) != FALSE;
}
