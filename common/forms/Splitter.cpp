#include "common/forms/Splitter.h"

#include <windowsx.h>

#include "common/forms/Painting.h"
#include "common/forms/screen_reader.h"

namespace forms {
namespace {

constexpr LONG step = 8;
constexpr LONG farAway = 32000;  // the form goes as far as there is room

}  // namespace

Splitter::Splitter(Form& form, int id) : Control(form, id), class_(className, windowProcedure) {}

Splitter::~Splitter() {
  if (hwnd() && IsWindow(hwnd())) SetWindowLongPtrW(hwnd(), GWLP_USERDATA, 0);
}

void Splitter::onAttached() {
  SetWindowLongPtrW(hwnd(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

LRESULT CALLBACK Splitter::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                           LPARAM lParam) noexcept {
  auto* splitter = reinterpret_cast<Splitter*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (splitter && splitter->hwnd() == window) return splitter->onMessage(message, wParam, lParam);
  return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT Splitter::onMessage(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_GETOBJECT:
      if (const LRESULT told = tellScreenReader(hwnd(), wParam, lParam, ROLE_SYSTEM_SEPARATOR))
        return told;
      break;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_KEYDOWN:
      onKey(wParam);
      return 0;
    case WM_LBUTTONDOWN:
      grabbed_ = form().split() - inForm(lParam);
      SetCapture(hwnd());
      return 0;
    case WM_MOUSEMOVE:
      if (GetCapture() == hwnd()) form().setSplit(grabbed_ + inForm(lParam));
      return 0;
    case WM_LBUTTONUP:
      ReleaseCapture();
      return 0;
    case WM_LBUTTONDBLCLK:
      form().setSplit(0);
      return 0;
    case WM_SETCURSOR:
      // The form's cursor first: the user may have to wait.
      if (!DefWindowProcW(hwnd(), message, wParam, lParam))
        SetCursor(LoadCursorW(nullptr, IDC_SIZEWE));
      return TRUE;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(hwnd(), nullptr, FALSE);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      paint(Painting(hwnd()).target());
      return 0;
    case WM_PRINTCLIENT:
      paint(reinterpret_cast<HDC>(wParam));
      return 0;
    default:
      break;
  }
  return DefWindowProcW(hwnd(), message, wParam, lParam);
}

void Splitter::onKey(WPARAM key) noexcept {
  const LONG now = form().split();
  switch (key) {
    case VK_LEFT:
      return form().setSplit(now - step);
    case VK_RIGHT:
      return form().setSplit(now + step);
    case VK_HOME:
      return form().setSplit(-farAway);
    case VK_END:
      return form().setSplit(farAway);
    default:
      return;
  }
}

LONG Splitter::inForm(LPARAM mouse) const noexcept {
  POINT point = {GET_X_LPARAM(mouse), 0};
  MapWindowPoints(hwnd(), form().hwnd(), &point, 1);
  return point.x;
}

void Splitter::paint(HDC target) const noexcept {
  RECT all;
  GetClientRect(hwnd(), &all);
  FillRect(target, &all, GetSysColorBrush(COLOR_3DFACE));
  if (GetFocus() == hwnd()) DrawFocusRect(target, &all);
}

}  // namespace forms
