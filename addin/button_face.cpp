#include "addin/button_face.h"

#include <cstring>

#include "common/errors.h"

namespace {

constexpr DWORD colour = 0xFFFFFF;  // of a pixel, without what stands above it
constexpr DWORD black = 0;
constexpr DWORD white = colour;

struct Pixels {
  LONG width = 0;
  LONG height = 0;
  std::vector<DWORD> values;  // 0xRRGGBB, row by row from the top
};

BITMAPINFO describe(LONG width, LONG height, WORD bits) noexcept {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = bits;
  return info;
}

Pixels pixelsOf(HDC screen, HBITMAP picture) {
  BITMAP size = {};
  if (!GetObjectW(picture, sizeof size, &size)) throw Error(errors::invalidArgument);
  Pixels pixels = {size.bmWidth, size.bmHeight, {}};
  pixels.values.resize(static_cast<std::size_t>(pixels.width) * pixels.height);
  BITMAPINFO info = describe(pixels.width, -pixels.height, 32);
  if (!GetDIBits(screen, picture, 0, static_cast<UINT>(pixels.height), pixels.values.data(), &info,
                 DIB_RGB_COLORS))
    throw Error(errors::outOfMemory);  // Not run by tests: no memory.
  for (DWORD& value : pixels.values) value &= colour;
  return pixels;
}

// As the screen has bitmaps. Copying the picture itself takes the system three times as long.
handles::Gdi bitmapOf(HDC screen, const Pixels& pixels) {
  const BITMAPINFO info = describe(pixels.width, -pixels.height, 32);
  handles::Gdi bitmap(CreateDIBitmap(screen, &info.bmiHeader, CBM_INIT, pixels.values.data(), &info,
                                     DIB_RGB_COLORS));
  if (!bitmap) throw Error(errors::outOfMemory);
  return bitmap;
}

// 24 bits a pixel and from the bottom: what every reader knows.
handles::Global packed(const Pixels& pixels) {
  const auto stride = static_cast<std::size_t>(pixels.width * 3 + 3) / 4 * 4;
  const BITMAPINFOHEADER header = describe(pixels.width, pixels.height, 24).bmiHeader;
  std::vector<BYTE> rows(stride * pixels.height);
  for (LONG y = 0; y < pixels.height; ++y) {
    const DWORD* from = pixels.values.data() + static_cast<std::size_t>(y) * pixels.width;
    BYTE* to = rows.data() + static_cast<std::size_t>(pixels.height - 1 - y) * stride;
    for (LONG x = 0; x < pixels.width; ++x, to += 3) std::memcpy(to, from + x, 3);
  }
  handles::Global memory(GlobalAlloc(GMEM_MOVEABLE, sizeof header + rows.size()));
  auto* const to = memory ? static_cast<BYTE*>(GlobalLock(memory.get())) : nullptr;
  if (!to) throw Error(errors::outOfMemory);
  std::memcpy(to, &header, sizeof header);
  std::memcpy(to + sizeof header, rows.data(), rows.size());
  GlobalUnlock(memory.get());
  return memory;
}

}  // namespace

clipboard::Contents buttonFace(HBITMAP picture) {
  const handles::ScreenContext screen;
  Pixels face = pixelsOf(screen.get(), picture);
  handles::Gdi bitmap = bitmapOf(screen.get(), face);
  Pixels mask = face;
  const DWORD background = face.values.front();
  for (std::size_t i = 0; i < face.values.size(); ++i) {
    const bool seenThrough = face.values[i] == background;
    mask.values[i] = seenThrough ? white : black;
    if (seenThrough) face.values[i] = black;
  }
  clipboard::Contents contents;
  contents.push_back({CF_BITMAP, std::move(bitmap)});
  contents.push_back({RegisterClipboardFormatW(L"Toolbar Button Face"), packed(face)});
  contents.push_back({RegisterClipboardFormatW(L"Toolbar Button Mask"), packed(mask)});
  return contents;
}
