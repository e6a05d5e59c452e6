#include "host/script/picture.h"

#include <algorithm>
#include <vector>

// The library's header needs these names.
using std::max;
using std::min;
#include <objidl.h>

#include <gdiplus.h>

#include "common/handles.h"

namespace standin {
namespace {

constexpr CLSID pngEncoder = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
constexpr DWORD settleMilliseconds = 3000;
constexpr DWORD betweenLooks = 150;

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

// What the area shows now.
class Look {
 public:
  explicit Look(const RECT& area) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const handles::ScreenContext screen;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const handles::DeviceContext memory(CreateCompatibleDC(screen.get()));
    const HGDIOBJ old = SelectObject(memory.get(), bitmap_.get());
    BitBlt(memory.get(), 0, 0, width, height, screen.get(), area.left, area.top, SRCCOPY);
    SelectObject(memory.get(), old);
    GdiFlush();
    if (bits) pixels_.assign(static_cast<DWORD*>(bits), static_cast<DWORD*>(bits) + width * height);
  }

  bool operator==(const Look& other) const { return pixels_ == other.pixels_; }
  HBITMAP bitmap() const { return static_cast<HBITMAP>(bitmap_.get()); }

 private:
  handles::Gdi bitmap_;
  std::vector<DWORD> pixels_;
};

Look settledLook(const RECT& area) {
  const DWORD start = GetTickCount();
  Look last(area);
  while (GetTickCount() - start < settleMilliseconds) {
    Sleep(betweenLooks);
    Look next(area);
    if (next == last) break;
    last = std::move(next);
  }
  return last;
}

}  // namespace

RECT wholeScreen() { return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}; }

bool takePicture(const RECT& area, const std::wstring& file) {
  const Look look = settledLook(area);
  const GdiPlus library;
  Gdiplus::Bitmap bitmap(look.bitmap(), nullptr);
  return bitmap.Save(file.c_str(), &pngEncoder, nullptr) == Gdiplus::Ok;
}

}  // namespace standin
