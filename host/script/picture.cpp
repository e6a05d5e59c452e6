#include "host/script/picture.h"

#include <algorithm>
#include <vector>

// The library's header needs these names.
using std::max;  // NOLINT(misc-unused-using-decls)
using std::min;  // NOLINT(misc-unused-using-decls)
#include <objidl.h>

#include <gdiplus.h>

#include "common/handles.h"

namespace standin {
namespace {

constexpr CLSID pngEncoder = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
constexpr DWORD settleMilliseconds = 8000;
constexpr DWORD betweenLooks = 150;
constexpr int stillLooks = 3;

class GdiPlus {
 public:
  GdiPlus() {
    Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&token_, &input, nullptr);
  }
  ~GdiPlus() { Gdiplus::GdiplusShutdown(token_); }
  GdiPlus(const GdiPlus&) = delete;
  GdiPlus& operator=(const GdiPlus&) = delete;

 private:
  ULONG_PTR token_ = 0;
};

// What a part of the screen, or of one window's own drawing, holds now.
class Look {
 public:
  explicit Look(const RECT& area) {
    const handles::ScreenContext screen;
    take(screen.get(), area);
  }

  explicit Look(HWND window) {
    RECT area = {};
    GetClientRect(window, &area);
    const HDC context = GetDC(window);
    take(context, area);
    ReleaseDC(window, context);
  }

  bool operator==(const Look& other) const { return pixels_ == other.pixels_; }
  HBITMAP bitmap() const { return static_cast<HBITMAP>(bitmap_.get()); }

  // But for a blinking caret and the like.
  bool isMuchLike(const Look& other) const {
    if (pixels_.size() != other.pixels_.size()) return false;
    std::size_t differing = 0;
    for (std::size_t i = 0; i < pixels_.size(); ++i)
      if ((pixels_[i] ^ other.pixels_[i]) & 0xFFFFFF) ++differing;
    return differing * 50 <= pixels_.size();
  }

 private:
  void take(HDC source, const RECT& area) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(source, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const handles::DeviceContext memory(CreateCompatibleDC(source));
    const HGDIOBJ old = SelectObject(memory.get(), bitmap_.get());
    BitBlt(memory.get(), 0, 0, width, height, source, area.left, area.top, SRCCOPY);
    SelectObject(memory.get(), old);
    GdiFlush();
    if (bits) pixels_.assign(static_cast<DWORD*>(bits), static_cast<DWORD*>(bits) + width * height);
  }

  handles::Gdi bitmap_;
  std::vector<DWORD> pixels_;
};

// The screen's server and the window manager take their time to bring a window up.
bool isShown(HWND window) {
  if (!window) return true;
  RECT area = {};
  GetClientRect(window, &area);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
  return Look(window).isMuchLike(Look(area));
}

Look settledLook(const RECT& area, HWND foremost) {
  const DWORD start = GetTickCount();
  const auto isTimeLeft = [&] { return GetTickCount() - start < settleMilliseconds; };
  while (!isShown(foremost) && isTimeLeft()) Sleep(betweenLooks);
  Look last(area);
  for (int still = 0; still < stillLooks && isTimeLeft();) {
    Sleep(betweenLooks);
    Look next(area);
    still = next == last ? still + 1 : 0;
    last = std::move(next);
  }
  return last;
}

}  // namespace

RECT wholeScreen() { return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}; }

bool takePicture(const RECT& area, HWND foremost, const std::wstring& file) {
  const Look look = settledLook(area, foremost);
  const GdiPlus library;
  Gdiplus::Bitmap bitmap(look.bitmap(), nullptr);
  return bitmap.Save(file.c_str(), &pngEncoder, nullptr) == Gdiplus::Ok;
}

}  // namespace standin
