#include "common/forms/PictureBox.h"

#include <olectl.h>
#include <windowsx.h>

#include <algorithm>

#include "common/com.h"
#include "common/errors.h"
#include "common/forms/Painting.h"
#include "common/handles.h"

namespace forms {
namespace {

constexpr DWORD largestFile = 64u << 20;
constexpr int lineStep = 16;

// A bitmap stays selected only for the length of a drawing operation.
class BitmapContext {
 public:
  BitmapContext(HDC like, HGDIOBJ bitmap) noexcept
      : context_(CreateCompatibleDC(like)), old_(SelectObject(context_.get(), bitmap)) {}
  ~BitmapContext() { SelectObject(context_.get(), old_); }
  BitmapContext(const BitmapContext&) = delete;
  BitmapContext& operator=(const BitmapContext&) = delete;
  HDC get() const noexcept { return context_.get(); }

 private:
  handles::DeviceContext context_;
  HGDIOBJ old_;
};

Error notAPicture() { return Error(PictureBox::invalidPicture, L"Invalid picture"); }

// The whole file as a stream in memory, so that nobody finds the file locked afterwards.
ComPtr<IStream> streamOver(const std::wstring& path) {
  handles::File file(CreateFileW(path.c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) throw errors::fromLastError();
  DWORD high = 0;
  const DWORD size = GetFileSize(file.get(), &high);
  if (high != 0 || size == 0 || size > largestFile) throw notAPicture();

  handles::Global memory(GlobalAlloc(GMEM_MOVEABLE, size));
  if (!memory) throw Error(errors::outOfMemory);
  DWORD done = 0;
  const BOOL ok = ReadFile(file.get(), GlobalLock(memory.get()), size, &done, nullptr);
  const DWORD code = GetLastError();
  GlobalUnlock(memory.get());
  if (!ok) throw errors::fromSystemCode(code);
  if (done != size) throw notAPicture();

  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(memory.get(), TRUE, stream.put())))
    throw Error(errors::outOfMemory);
  static_cast<void>(memory.release());  // the stream frees it
  return stream;
}

// The system's own decoders read foreign bytes here; only what they make a bitmap of is taken.
ComPtr<IPicture> decode(const std::wstring& path) {
  const auto stream = streamOver(path);
  ComPtr<IPicture> picture;
  const HRESULT result =
      OleLoadPicture(stream.get(), 0, TRUE, IID_IPicture, reinterpret_cast<void**>(picture.put()));
  if (result == E_OUTOFMEMORY) throw Error(errors::outOfMemory);
  if (FAILED(result) || !picture) throw notAPicture();
  short type = PICTYPE_NONE;
  if (FAILED(picture->get_Type(&type)) || type != PICTYPE_BITMAP) throw notAPicture();
  return picture;
}

// The picture's own unit is 0.01 mm, too coarse to get the pixels back: its bitmap knows them.
SIZE sizeOf(IPicture& picture) {
  OLE_HANDLE handle = 0;
  BITMAP bitmap = {};
  if (FAILED(picture.get_Handle(&handle)) ||
      !GetObjectW(reinterpret_cast<HGDIOBJ>(static_cast<ULONG_PTR>(handle)), sizeof bitmap,
                  &bitmap) ||
      bitmap.bmWidth <= 0 || bitmap.bmHeight == 0)
    throw notAPicture();
  return {bitmap.bmWidth, std::abs(bitmap.bmHeight)};
}

handles::Gdi blankBitmap(HDC like, SIZE size) {
  handles::Gdi bitmap(CreateCompatibleBitmap(like, size.cx, size.cy));
  if (!bitmap) throw Error(errors::outOfMemory);
  return bitmap;
}

handles::Gdi rendered(IPicture& picture, SIZE size) {
  const handles::ScreenContext screen;
  handles::Gdi bitmap = blankBitmap(screen.get(), size);
  const BitmapContext target(screen.get(), bitmap.get());
  const RECT all = {0, 0, size.cx, size.cy};
  FillRect(target.get(), &all, GetSysColorBrush(COLOR_WINDOW));
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  picture.get_Width(&width);
  picture.get_Height(&height);
  // A picture's origin is its lower left corner.
  if (FAILED(
          picture.Render(target.get(), 0, 0, size.cx, size.cy, 0, height, width, -height, nullptr)))
    throw notAPicture();
  return bitmap;
}

handles::Gdi stretched(HGDIOBJ source, SIZE from, SIZE to) {
  const handles::ScreenContext screen;
  handles::Gdi bitmap = blankBitmap(screen.get(), to);
  const BitmapContext target(screen.get(), bitmap.get());
  const BitmapContext origin(screen.get(), source);
  SetStretchBltMode(target.get(), HALFTONE);
  SetBrushOrgEx(target.get(), 0, 0, nullptr);
  StretchBlt(target.get(), 0, 0, to.cx, to.cy, origin.get(), 0, 0, from.cx, from.cy, SRCCOPY);
  return bitmap;
}

}  // namespace

PictureBox::PictureBox(Form& form, int id)
    : Control(form, id), class_(className, windowProcedure) {}

PictureBox::~PictureBox() {
  if (hwnd() && IsWindow(hwnd())) SetWindowLongPtrW(hwnd(), GWLP_USERDATA, 0);
}

void PictureBox::onAttached() {
  SetWindowLongPtrW(hwnd(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  updateScrollBars();
}

void PictureBox::load(const std::wstring& path) {
  const auto picture = decode(path);
  const SIZE size = sizeOf(*picture.get());
  handles::Gdi bitmap = rendered(*picture.get(), size);
  path_ = std::wstring(path);  // may be this very text
  bitmap_ = std::move(bitmap);
  natural_ = size;
  setPictureSize(size);
}

void PictureBox::clear() noexcept {
  bitmap_.reset();
  scaled_.reset();
  natural_ = shown_ = {};
  offset_ = {};
  path_.clear();
  updateScrollBars();
  InvalidateRect(hwnd(), nullptr, FALSE);
}

void PictureBox::setPictureSize(SIZE size) {
  if (!bitmap_) return;
  const bool natural = size.cx == natural_.cx && size.cy == natural_.cy;
  const bool nothing = size.cx <= 0 || size.cy <= 0;  // a thin picture may shrink to nothing
  scaled_ = natural || nothing ? handles::Gdi() : stretched(bitmap_.get(), natural_, size);
  shown_ = nothing ? SIZE{} : size;
  offset_ = {};
  updateScrollBars();
  InvalidateRect(hwnd(), nullptr, FALSE);
}

LRESULT CALLBACK PictureBox::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam) noexcept {
  auto* box = reinterpret_cast<PictureBox*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  try {
    if (box && box->hwnd() == window) return box->onMessage(message, wParam, lParam);
  } catch (...) {
    // A picture that cannot be drawn leaves its place as it was.
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT PictureBox::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ERASEBKGND:
      return 1;  // painted as a whole
    case WM_PAINT:
      paint(Painting(hwnd()).target());
      return 0;
    case WM_PRINTCLIENT:
      paint(reinterpret_cast<HDC>(wParam));
      return 0;
    case WM_SIZE:
      updateScrollBars();
      InvalidateRect(hwnd(), nullptr, FALSE);
      return 0;
    case WM_HSCROLL:
      onScroll(SB_HORZ, LOWORD(wParam));
      return 0;
    case WM_VSCROLL:
      onScroll(SB_VERT, LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL:
      onWheel(GET_WHEEL_DELTA_WPARAM(wParam), (GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) != 0);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_KEYDOWN:
      onKey(wParam);
      return 0;
    case WM_LBUTTONDOWN:
      SetFocus(hwnd());
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(hwnd(), nullptr, FALSE);
      return 0;
    default:
      return DefWindowProcW(hwnd(), message, wParam, lParam);
  }
}

SIZE PictureBox::clientSize() const noexcept {
  RECT client = {};
  GetClientRect(hwnd(), &client);
  return {client.right, client.bottom};
}

void PictureBox::paint(HDC target) const {
  const SIZE client = clientSize();
  if (client.cx <= 0 || client.cy <= 0) return;
  // Drawn aside and shown in one piece: no flicker while the window is resized.
  const handles::Gdi canvas = blankBitmap(target, client);
  const BitmapContext context(target, canvas.get());
  const RECT all = {0, 0, client.cx, client.cy};
  FillRect(context.get(), &all, GetSysColorBrush(COLOR_WINDOW));
  if (hasPicture()) paintPicture(context.get());
  if (GetFocus() == hwnd()) DrawFocusRect(context.get(), &all);
  BitBlt(target, 0, 0, client.cx, client.cy, context.get(), 0, 0, SRCCOPY);
}

void PictureBox::paintPicture(HDC target) const {
  const SIZE client = clientSize();
  const BitmapContext source(target, scaled_ ? scaled_.get() : bitmap_.get());
  // A smaller picture stands in the middle.
  const int x = std::max<int>(0, (client.cx - shown_.cx) / 2) - offset_.x;
  const int y = std::max<int>(0, (client.cy - shown_.cy) / 2) - offset_.y;
  BitBlt(target, x, y, shown_.cx, shown_.cy, source.get(), 0, 0, SRCCOPY);
}

void PictureBox::updateScrollBars() noexcept {
  if (!hwnd()) return;
  // One bar takes room from the other direction, so the second pass sees the final size.
  for (int pass = 0; pass < 2; ++pass) {
    const SIZE client = clientSize();
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE;
    info.nMax = std::max<int>(0, shown_.cx - 1);
    info.nPage = static_cast<UINT>(client.cx);
    SetScrollInfo(hwnd(), SB_HORZ, &info, TRUE);
    info.nMax = std::max<int>(0, shown_.cy - 1);
    info.nPage = static_cast<UINT>(client.cy);
    SetScrollInfo(hwnd(), SB_VERT, &info, TRUE);
  }
  scrollTo(SB_HORZ, offset_.x);
  scrollTo(SB_VERT, offset_.y);
}

void PictureBox::scrollTo(int bar, int position) noexcept {
  const SIZE client = clientSize();
  const int room = bar == SB_HORZ ? shown_.cx - client.cx : shown_.cy - client.cy;
  LONG& offset = bar == SB_HORZ ? offset_.x : offset_.y;
  const LONG wanted = std::clamp<int>(position, 0, std::max(0, room));
  SetScrollPos(hwnd(), bar, wanted, TRUE);
  if (offset == wanted) return;
  offset = wanted;
  InvalidateRect(hwnd(), nullptr, FALSE);
}

void PictureBox::onScroll(int bar, WORD request) noexcept {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(hwnd(), bar, &info);
  const int page = static_cast<int>(info.nPage);
  int position = bar == SB_HORZ ? offset_.x : offset_.y;
  switch (request) {
    case SB_LINEUP:
      position -= lineStep;
      break;
    case SB_LINEDOWN:
      position += lineStep;
      break;
    case SB_PAGEUP:
      position -= page;
      break;
    case SB_PAGEDOWN:
      position += page;
      break;
    case SB_TOP:
      position = 0;
      break;
    case SB_BOTTOM:
      position = info.nMax;
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      position = info.nTrackPos;
      break;
    default:
      return;
  }
  scrollTo(bar, position);
}

void PictureBox::onKey(WPARAM key) noexcept {
  switch (key) {
    case VK_LEFT:
      onScroll(SB_HORZ, SB_LINEUP);
      break;
    case VK_RIGHT:
      onScroll(SB_HORZ, SB_LINEDOWN);
      break;
    case VK_UP:
      onScroll(SB_VERT, SB_LINEUP);
      break;
    case VK_DOWN:
      onScroll(SB_VERT, SB_LINEDOWN);
      break;
    case VK_PRIOR:
      onScroll(SB_VERT, SB_PAGEUP);
      break;
    case VK_NEXT:
      onScroll(SB_VERT, SB_PAGEDOWN);
      break;
    case VK_HOME:
      onScroll(SB_HORZ, SB_TOP);
      onScroll(SB_VERT, SB_TOP);
      break;
    case VK_END:
      onScroll(SB_HORZ, SB_BOTTOM);
      onScroll(SB_VERT, SB_BOTTOM);
      break;
    default:
      break;
  }
}

void PictureBox::onWheel(short delta, bool sideways) noexcept {
  wheelRest_ += delta;
  const int notches = wheelRest_ / WHEEL_DELTA;
  wheelRest_ %= WHEEL_DELTA;
  const int bar = sideways ? SB_HORZ : SB_VERT;
  scrollTo(bar, (sideways ? offset_.x : offset_.y) - notches * 3 * lineStep);
}

}  // namespace forms
