#include "common/forms/PictureBox.h"

#include <windowsx.h>

#include <algorithm>

#include "common/errors.h"
#include "common/forms/BitmapContext.h"
#include "common/forms/Painting.h"
#include "common/forms/screen_reader.h"
#include "common/handles.h"

namespace forms {
namespace {

constexpr DWORD largestFile = 64u << 20;
constexpr std::uint64_t decodedAtOnce = 1u << 20;  // pixels
constexpr std::uint64_t keptPixels = 6u << 20;     // of all kept pictures together
constexpr std::size_t mostKept = 32;               // the host's own bitmaps count too
constexpr int lineStep = 16;
constexpr UINT notDecodedMessage = WM_APP + 1;
constexpr UINT wheelSideways = 0x020E;  // WM_MOUSEHWHEEL, which Windows XP has from some drivers

Error notAPicture() { return Error(PictureBox::invalidPicture, L"Invalid picture"); }

std::string contentsOf(HANDLE file, DWORD size) {
  std::string contents(size, '\0');
  DWORD done = 0;
  if (!ReadFile(file, contents.data(), size, &done, nullptr)) throw errors::fromLastError();
  if (done != size) throw notAPicture();
  return contents;
}

// Whether the user has pressed or typed something that waits.
bool isInputWaiting() noexcept {
  if (HIWORD(GetQueueStatus(QS_KEY | QS_MOUSEBUTTON | QS_POSTMESSAGE)) == 0) return false;
  constexpr UINT look = PM_NOREMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE;
  MSG message;
  return PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, look) ||
         PeekMessageW(&message, nullptr, WM_LBUTTONDOWN, WM_MOUSELAST, look);
}

handles::Gdi blankBitmap(HDC like, SIZE size) {
  handles::Gdi bitmap(CreateCompatibleBitmap(like, size.cx, size.cy));
  if (!bitmap) throw Error(errors::outOfMemory);
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

SIZE PictureBox::naturalSize() const noexcept {
  return {picture_.header.width, picture_.header.height};
}

void PictureBox::load(const std::wstring& path, const Scale& scale) {
  handles::File file(CreateFileW(path.c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) throw errors::fromLastError();
  Picture next;
  next.path = path;
  DWORD high = 0;
  next.bytes = GetFileSize(file.get(), &high);
  if (high != 0 || next.bytes == 0 || next.bytes > largestFile) throw notAPicture();
  GetFileTime(file.get(), nullptr, nullptr, &next.written);

  const bool shown = isSame(next, picture_) && (picture_.bitmap || !waiting_.empty());
  if (!shown && !takeKept(next)) {
    std::string contents = contentsOf(file.get(), next.bytes);
    next.header = PictureDecoder::headerOf(contents);
    if (next.header.pixels <= decodedAtOnce) {
      next.bitmap = decoder_.decode(contents, next.header, GetSysColor(COLOR_WINDOW));
      contents.clear();
    }
    keep(std::exchange(picture_, std::move(next)));
    waiting_ = std::move(contents);
  }
  setPictureSize(scale ? scale(naturalSize()) : naturalSize());
}

bool PictureBox::isSame(const Picture& one, const Picture& other) noexcept {
  return one.path == other.path && one.bytes == other.bytes &&
         CompareFileTime(&one.written, &other.written) == 0;
}

// Shows a kept picture of the file as it is now.
bool PictureBox::takeKept(const Picture& wanted) {
  const auto found = std::find_if(kept_.begin(), kept_.end(),
                                  [&](const Picture& each) { return isSame(each, wanted); });
  if (found == kept_.end()) return false;
  Picture picture = std::move(*found);
  kept_.erase(found);
  keep(std::exchange(picture_, std::move(picture)));
  waiting_.clear();
  return true;
}

void PictureBox::keep(Picture left) noexcept try {
  ++turn_;
  if (!left.bitmap || left.header.pixels > decodedAtOnce) return;
  kept_.insert(kept_.begin(), std::move(left));
  std::uint64_t pixels = 0;
  std::size_t count = 0;
  const auto tooMuch = std::find_if(kept_.begin(), kept_.end(), [&](const Picture& each) {
    return ++count > mostKept || (pixels += each.header.pixels) > keptPixels;
  });
  kept_.erase(tooMuch, kept_.end());
} catch (...) {  // Not run by tests: no memory.
  // One that cannot be kept is decoded again.
}

void PictureBox::decodeWaiting(PictureDecoder::Stop stop) noexcept {
  if (waiting_.empty()) return;
  std::string contents = std::exchange(waiting_, {});
  const PictureHeader header = picture_.header;
  const unsigned turn = turn_;
  handles::Gdi bitmap;
  bool stopped = false;
  try {
    bitmap = decoder_.decode(contents, header, GetSysColor(COLOR_WINDOW), stop);
    stopped = !bitmap;
  } catch (...) {
    failure_ = errors::current();
  }
  // Looking for input may let another thread's message in, and with it another picture.
  if (turn == turn_) {
    if (stopped) waiting_ = std::move(contents);
    picture_.bitmap = std::move(bitmap);
  }
  if (!picture_.bitmap) PostMessageW(hwnd(), notDecodedMessage, 0, 0);
}

// What was stopped is begun anew when no input waits any more. Another picture may have come since.
void PictureBox::onNotDecoded() {
  if (!waiting_.empty()) {
    InvalidateRect(hwnd(), nullptr, FALSE);
  } else if (hasPicture() && !picture_.bitmap) {
    clear();
    if (onFailed) onFailed(failure_);
  }
}

// Transparent parts show the window's colour.
void PictureBox::onNewColours() noexcept try {
  kept_.clear();
  if (!hasPicture()) return;
  const SIZE size = shown_;
  const std::wstring path = picture_.path;
  picture_.bytes = 0;  // no longer the same
  load(path, [size](SIZE) { return size; });
} catch (...) {
  // The file has gone: what was made of it stays.
}

void PictureBox::clear() noexcept {
  keep(std::exchange(picture_, {}));
  waiting_.clear();
  shown_ = {};
  offset_ = {};
  updateScrollBars();
  InvalidateRect(hwnd(), nullptr, FALSE);
}

void PictureBox::setPictureSize(SIZE size) {
  if (!hasPicture()) return;
  const bool nothing = size.cx <= 0 || size.cy <= 0;  // a thin picture may shrink to nothing
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
      decodeWaiting(isInputWaiting);
      if (const Painting painting(hwnd()); waiting_.empty()) paint(painting.target());
      return 0;
    case WM_PRINTCLIENT:
      decodeWaiting(nullptr);
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
    case wheelSideways:
      onWheel(-GET_WHEEL_DELTA_WPARAM(wParam), true);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_KEYDOWN:
      onKey(wParam);
      return 0;
    case WM_LBUTTONDOWN:
      SetFocus(hwnd());
      if (!isLarger()) return 0;
      grabbed_ = {GET_X_LPARAM(lParam) + offset_.x, GET_Y_LPARAM(lParam) + offset_.y};
      SetCapture(hwnd());
      return 0;
    case WM_MOUSEMOVE:
      if (GetCapture() == hwnd()) onDrag(lParam);
      return 0;
    case WM_LBUTTONUP:
      ReleaseCapture();
      return 0;
    case WM_SETCURSOR:
      // The form's cursor first: the user may have to wait.
      if (DefWindowProcW(hwnd(), message, wParam, lParam)) return TRUE;
      if (LOWORD(lParam) != HTCLIENT || !isLarger()) return FALSE;
      SetCursor(LoadCursorW(nullptr, IDC_HAND));
      return TRUE;
    case WM_GETOBJECT:
      if (const LRESULT told = tellScreenReader(hwnd(), wParam, lParam, ROLE_SYSTEM_GRAPHIC))
        return told;
      return DefWindowProcW(hwnd(), message, wParam, lParam);
    case WM_SYSCOLORCHANGE:
      onNewColours();
      return 0;
    case notDecodedMessage:
      onNotDecoded();
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
  if (picture_.bitmap) paintPicture(context.get());
  if (GetFocus() == hwnd()) DrawFocusRect(context.get(), &all);
  BitBlt(target, 0, 0, client.cx, client.cy, context.get(), 0, 0, SRCCOPY);
}

void PictureBox::paintPicture(HDC target) const {
  const SIZE client = clientSize();
  const BitmapContext source(target, picture_.bitmap.get());
  // A smaller picture stands in the middle.
  const int x = std::max<int>(0, (client.cx - shown_.cx) / 2) - offset_.x;
  const int y = std::max<int>(0, (client.cy - shown_.cy) / 2) - offset_.y;
  const SIZE natural = naturalSize();
  if (shown_.cx == natural.cx && shown_.cy == natural.cy) {
    BitBlt(target, x, y, shown_.cx, shown_.cy, source.get(), 0, 0, SRCCOPY);
  } else {
    SetStretchBltMode(target, HALFTONE);
    SetBrushOrgEx(target, 0, 0, nullptr);
    StretchBlt(target, x, y, shown_.cx, shown_.cy, source.get(), 0, 0, natural.cx, natural.cy,
               SRCCOPY);
  }
}

// Told to the window only when something changes: that takes longer than to show a small picture.
void PictureBox::setBar(int bar, int length, int page, int position) noexcept {
  const bool needed = length > page;
  const Bar wanted = {needed ? length : 1, needed ? page : 1, needed ? position : 0};
  Bar& former = bars_[bar];
  if (former.length == wanted.length && former.page == wanted.page &&
      former.position == wanted.position)
    return;
  former = wanted;  // before the window, which may get another size by it, asks again
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMax = wanted.length - 1;
  info.nPage = static_cast<UINT>(wanted.page);
  info.nPos = wanted.position;
  SetScrollInfo(hwnd(), bar, &info, TRUE);
}

void PictureBox::updateScrollBars() noexcept {
  if (!hwnd()) return;
  // One bar takes room from the other direction, so the second pass sees the final size.
  for (int pass = 0; pass < 2; ++pass) {
    scrollTo(SB_HORZ, offset_.x);
    scrollTo(SB_VERT, offset_.y);
  }
}

void PictureBox::scrollTo(int bar, int position) noexcept {
  const bool sideways = bar == SB_HORZ;
  const int length = sideways ? shown_.cx : shown_.cy;
  const int page = sideways ? clientSize().cx : clientSize().cy;
  LONG& offset = sideways ? offset_.x : offset_.y;
  const LONG wanted = std::clamp(position, 0, std::max(0, length - page));
  const bool moves = offset != wanted;
  offset = wanted;
  setBar(bar, length, page, wanted);
  if (moves) InvalidateRect(hwnd(), nullptr, FALSE);
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

void PictureBox::onDrag(LPARAM mouse) noexcept {
  scrollTo(SB_HORZ, grabbed_.x - GET_X_LPARAM(mouse));
  scrollTo(SB_VERT, grabbed_.y - GET_Y_LPARAM(mouse));
}

// Than its frame: there is something to drag.
bool PictureBox::isLarger() const noexcept {
  const SIZE client = clientSize();
  return shown_.cx > client.cx || shown_.cy > client.cy;
}

void PictureBox::onWheel(int delta, bool sideways) noexcept {
  wheelRest_ += delta;
  const int notches = wheelRest_ / WHEEL_DELTA;
  wheelRest_ %= WHEEL_DELTA;
  const int bar = sideways ? SB_HORZ : SB_VERT;
  scrollTo(bar, (sideways ? offset_.x : offset_.y) - notches * 3 * lineStep);
}

}  // namespace forms
