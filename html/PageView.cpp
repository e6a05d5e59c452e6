#include "html/PageView.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

namespace html {
namespace {

constexpr wchar_t className[] = L"QuilletPageView";
constexpr int lineHeight = 40;  // that one turn of the wheel or the scroll bar's arrow moves

void fillWith(HDC target, const RECT& place, long colour) {
  const handles::Gdi brush(CreateSolidBrush(static_cast<COLORREF>(colour)));
  FillRect(target, &place, static_cast<HBRUSH>(brush.get()));
}

RECT clientOf(HWND window) {
  RECT client = {};
  GetClientRect(window, &client);
  return client;
}

}  // namespace

PageView::~PageView() {
  if (window_) DestroyWindow(window_);
}

bool PageView::create(HWND parent, const RECT& place) {
  const HINSTANCE instance = GetModuleHandleW(nullptr);
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = className;
  RegisterClassW(&windowClass);
  window_ = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL, place.left,
                            place.top, place.right - place.left, place.bottom - place.top, parent,
                            nullptr, instance, this);
  return window_ != nullptr;
}

void PageView::show(Page page) {
  page_ = std::move(page);
  pictures_.clear();
  top_ = 0;
  marked_ = noLink;
  SetWindowTextW(window_, page_.title.c_str());
  layOutAgain();
}

bool linkPlace(HWND window, const std::wstring& text, POINT& place) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  if (std::wstring_view(name) != className) return false;
  const LRESULT found =
      SendMessageW(window, PageView::linkMessage, 0, reinterpret_cast<LPARAM>(&text));
  place = {GET_X_LPARAM(found), GET_Y_LPARAM(found)};
  return found != -1;
}

LRESULT CALLBACK PageView::procedure(HWND window, UINT message, WPARAM wParam,
                                     LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<PageView*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<PageView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  try {
    if (self) return self->onMessage(message, wParam, lParam);
  } catch (...) {
    // The page stays as it is.
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT PageView::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NCDESTROY:
      SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
      window_ = nullptr;
      return 0;
    case WM_SIZE:
      layOutAgain();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      paint();
      return 0;
    case WM_VSCROLL:
      onScroll(LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL:
      scrollBy(-lineHeight * GET_WHEEL_DELTA_WPARAM(wParam) / WHEEL_DELTA);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS | (takes(reinterpret_cast<const MSG*>(lParam)) ? DLGC_WANTMESSAGE : 0);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window_, nullptr, FALSE);
      return 0;
    case WM_KEYDOWN:
      if (onKey(wParam)) return 0;
      break;
    case WM_SETCURSOR: {
      POINT place = {};
      GetCursorPos(&place);
      ScreenToClient(window_, &place);
      if (!linkAt(place)) break;
      SetCursor(LoadCursorW(nullptr, IDC_HAND));
      return TRUE;
    }
    case WM_LBUTTONDOWN:
      SetFocus(window_);
      return 0;
    case WM_LBUTTONUP: {
      if (const Item* item = linkAt({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}))
        follow(item->style.link);
      return 0;
    }
    case linkMessage:
      return placeOfLink(*reinterpret_cast<const std::wstring*>(lParam));
    case laterMessage:
      if (onLater) onLater();
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

SIZE PageView::sizeOf(const std::wstring& address) {
  const Picture* const found = picture(address);
  return found ? found->size() : SIZE{};
}

const Picture* PageView::picture(const std::wstring& address) {
  const auto [known, isNew] = pictures_.try_emplace(address);
  if (isNew && onPicture) known->second = onPicture(address);
  return known->second.get();
}

void PageView::layOutAgain() {
  layout_ = layOut(page_, clientOf(window_).right, fonts_, *this);
  scrollTo(top_);
  InvalidateRect(window_, nullptr, FALSE);
}

void PageView::paint() {
  PAINTSTRUCT painting;
  const HDC target = BeginPaint(window_, &painting);
  const RECT client = clientOf(window_);
  const handles::DeviceContext memory(CreateCompatibleDC(target));
  const handles::Gdi bitmap(CreateCompatibleBitmap(target, client.right, client.bottom));
  const HGDIOBJ old = SelectObject(memory.get(), bitmap.get());
  draw(memory.get(), client);
  BitBlt(target, 0, 0, client.right, client.bottom, memory.get(), 0, 0, SRCCOPY);
  SelectObject(memory.get(), old);
  EndPaint(window_, &painting);
}

void PageView::draw(HDC target, const RECT& client) {
  const long background = page_.body.background;
  fillWith(target, client, background == noColour ? RGB(255, 255, 255) : background);
  SetBkMode(target, TRANSPARENT);
  for (const Item& item : layout_.items) {
    RECT place = item.place;
    OffsetRect(&place, 0, -top_);
    if (place.bottom > 0 && place.top < client.bottom) drawItem(target, item, place);
  }
}

void PageView::drawItem(HDC target, const Item& item, RECT place) {
  if (item.kind == Item::Kind::fill) return fillWith(target, place, item.colour);
  if (item.kind == Item::Kind::picture) {
    if (const Picture* const found = picture(item.text)) found->draw(target, place);
    return;
  }
  const HGDIOBJ old = SelectObject(target, fonts_.of(item.style));
  SetTextColor(target, static_cast<COLORREF>(item.colour));
  ExtTextOutW(target, place.left, place.top, 0, nullptr, item.text.c_str(),
              static_cast<UINT>(item.text.size()), nullptr);
  SelectObject(target, old);
  if (item.style.link != noLink && item.style.link == marked_ && GetFocus() == window_)
    DrawFocusRect(target, &place);
}

void PageView::print(HDC target, const std::function<bool(bool begins)>& onLeaf) {
  constexpr int leafWidth = 700;  // of the page's own pixels
  const int across = GetDeviceCaps(target, HORZRES);
  const int down = GetDeviceCaps(target, VERTRES);
  const int leafHeight = std::max(1, MulDiv(leafWidth, down, std::max(1, across)));
  const Layout shown = std::exchange(layout_, layOut(page_, leafWidth, fonts_, *this));
  const int marked = std::exchange(marked_, noLink);
  for (int top = 0, next = 0; top < layout_.height; top = next) {
    // What does not end on this leaf begins the next one, unless it is higher than any leaf.
    next = top + leafHeight;
    for (const Item& item : layout_.items)
      if (item.kind != Item::Kind::fill && item.place.top > top &&
          item.place.top < top + leafHeight && item.place.bottom > top + leafHeight &&
          item.place.bottom - item.place.top <= leafHeight)
        next = std::min<int>(next, item.place.top);
    if (!onLeaf(true)) break;
    const int saved = SaveDC(target);
    SetMapMode(target, MM_ANISOTROPIC);
    SetWindowExtEx(target, leafWidth, leafHeight, nullptr);
    SetViewportExtEx(target, across, down, nullptr);
    IntersectClipRect(target, 0, 0, leafWidth, next - top);
    SetBkMode(target, TRANSPARENT);
    for (const Item& item : layout_.items) {
      RECT place = item.place;
      OffsetRect(&place, 0, -top);
      if (place.bottom > 0 && place.top < next - top) drawItem(target, item, place);
    }
    RestoreDC(target, saved);
    if (!onLeaf(false)) break;
  }
  layout_ = shown;
  marked_ = marked;
}

void PageView::scrollTo(int top) {
  const int height = clientOf(window_).bottom;
  top = std::clamp(top, 0, std::max(0, layout_.height - height));
  if (top != top_) InvalidateRect(window_, nullptr, FALSE);
  top_ = top;
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
  info.nMax = std::max(0, layout_.height - 1);
  info.nPage = static_cast<UINT>(height);
  info.nPos = top_;
  SetScrollInfo(window_, SB_VERT, &info, TRUE);
}

void PageView::onScroll(int code) {
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_TRACKPOS | SIF_PAGE;
  GetScrollInfo(window_, SB_VERT, &info);
  const int page = static_cast<int>(info.nPage);
  if (code == SB_LINEUP) scrollBy(-lineHeight);
  if (code == SB_LINEDOWN) scrollBy(lineHeight);
  if (code == SB_PAGEUP) scrollBy(-page);
  if (code == SB_PAGEDOWN) scrollBy(page);
  if (code == SB_THUMBTRACK) scrollTo(info.nTrackPos);
}

bool PageView::onKey(WPARAM key) {
  switch (key) {
    case VK_UP:
      onScroll(SB_LINEUP);
      return true;
    case VK_DOWN:
      onScroll(SB_LINEDOWN);
      return true;
    case VK_PRIOR:
      onScroll(SB_PAGEUP);
      return true;
    case VK_NEXT:
      onScroll(SB_PAGEDOWN);
      return true;
    case VK_HOME:
      scrollTo(0);
      return true;
    case VK_END:
      scrollTo(layout_.height);
      return true;
    case VK_TAB:
      markLink(nextLink(GetKeyState(VK_SHIFT) < 0));
      return true;
    case VK_RETURN:
      if (marked_ != noLink) follow(marked_);
      return true;
    default:
      return false;
  }
}

// The tab key leaves the page behind its last link, Enter is the dialog's where no link is marked.
bool PageView::takes(const MSG* message) const {
  if (!message || message->message != WM_KEYDOWN) return false;
  if (message->wParam == VK_TAB) return nextLink(GetKeyState(VK_SHIFT) < 0) != noLink;
  return message->wParam == VK_RETURN && marked_ != noLink;
}

int PageView::nextLink(bool backwards) const {
  const int count = static_cast<int>(page_.links.size());
  if (marked_ == noLink) return count == 0 ? noLink : (backwards ? count - 1 : 0);
  const int next = marked_ + (backwards ? -1 : 1);
  return next < 0 || next >= count ? noLink : next;
}

void PageView::markLink(int link) {
  marked_ = link;
  for (const Item& item : layout_.items) {
    if (link == noLink || item.style.link != link) continue;
    const int height = clientOf(window_).bottom;
    if (item.place.top < top_ || item.place.bottom > top_ + height)
      scrollTo(static_cast<int>(item.place.top) - height / 3);
    break;
  }
  InvalidateRect(window_, nullptr, FALSE);
}

// By value: what is called may bring another page, or destroy this window.
void PageView::follow(int link) {
  const std::wstring address = page_.links[static_cast<std::size_t>(link)];
  if (onLink) onLink(address);
}

const Item* PageView::linkAt(POINT place) const {
  place.y += top_;
  for (const Item& item : layout_.items)
    if (item.kind != Item::Kind::fill && item.style.link != noLink && PtInRect(&item.place, place))
      return &item;
  return nullptr;
}

LRESULT PageView::placeOfLink(const std::wstring& text) {
  for (const Item& item : layout_.items) {
    if (item.kind != Item::Kind::text || item.style.link == noLink || item.text != text) continue;
    const LONG middle = (item.place.top + item.place.bottom) / 2;
    const int height = clientOf(window_).bottom;
    if (middle < top_ || middle >= top_ + height) scrollTo(static_cast<int>(middle) - height / 2);
    return MAKELRESULT((item.place.left + item.place.right) / 2, middle - top_);
  }
  return -1;
}

}  // namespace html
