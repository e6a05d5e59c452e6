#include "host/model/faces.h"

#include <optional>
#include <vector>

#include "host/model/Faults.h"

namespace standin {
namespace {

struct Pixels {
  LONG width = 0;
  LONG height = 0;
  std::vector<DWORD> values;  // 0xRRGGBB, row by row from the top
};

BITMAPINFO describe(LONG width, LONG height) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return info;
}

// Of a packed device-independent bitmap of `size` bytes that has no palette.
std::optional<Pixels> unpack(const void* memory, SIZE_T size) {
  const auto* info = static_cast<const BITMAPINFO*>(memory);
  if (!info || size < sizeof(BITMAPINFOHEADER)) return std::nullopt;
  const BITMAPINFOHEADER& header = info->bmiHeader;
  const bool known = header.biSize == sizeof(BITMAPINFOHEADER) && header.biPlanes == 1 &&
                     header.biCompression == BI_RGB &&
                     (header.biBitCount == 24 || header.biBitCount == 32) && header.biWidth > 0 &&
                     header.biWidth <= 1024 && header.biHeight > 0 && header.biHeight <= 1024;
  if (!known) return std::nullopt;
  const LONG stride = (header.biWidth * header.biBitCount + 31) / 32 * 4;
  if (size < sizeof header + static_cast<SIZE_T>(stride * header.biHeight)) return std::nullopt;
  Pixels pixels = {header.biWidth, header.biHeight, {}};
  for (LONG y = header.biHeight - 1; y >= 0; --y) {
    const BYTE* pixel = static_cast<const BYTE*>(memory) + sizeof header + y * stride;
    for (LONG x = 0; x < header.biWidth; ++x, pixel += header.biBitCount / 8)
      pixels.values.push_back(static_cast<DWORD>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]));
  }
  return pixels;
}

std::optional<Pixels> clipboardPixels(UINT format) {
  const HANDLE memory = GetClipboardData(format);
  const void* locked = memory ? GlobalLock(memory) : nullptr;
  if (!locked) return std::nullopt;
  auto pixels = unpack(locked, GlobalSize(memory));
  GlobalUnlock(memory);
  return pixels;
}

handles::Gdi combined(const Pixels& face, const Pixels& mask) {
  constexpr DWORD white = 0xFFFFFF;
  const BITMAPINFO info = describe(face.width, face.height);
  void* bits = nullptr;
  handles::Gdi bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bits) return {};
  auto* to = static_cast<DWORD*>(bits);
  for (std::size_t i = 0; i < face.values.size(); ++i)
    to[i] = mask.values[i] == white ? 0 : face.values[i] | 0xFF000000;
  return bitmap;
}

handles::Gdi maskedFace(UINT faceFormat, UINT maskFormat) {
  const auto face = clipboardPixels(faceFormat);
  const auto mask = clipboardPixels(maskFormat);
  if (!face || !mask || face->width != mask->width || face->height != mask->height)
    throw Refusal{E_FAIL, L"The face and its mask do not fit together."};
  return combined(*face, *mask);
}

struct OpenedClipboard {
  const bool opened = OpenClipboard(nullptr) != FALSE;
  ~OpenedClipboard() {
    if (opened) CloseClipboard();
  }
};

}  // namespace

handles::Gdi clipboardFace(bool masked) {
  const OpenedClipboard clipboard;
  if (!clipboard.opened) return {};
  const UINT face = RegisterClipboardFormatW(L"Toolbar Button Face");
  const UINT mask = RegisterClipboardFormatW(L"Toolbar Button Mask");
  if (masked && IsClipboardFormatAvailable(face) && IsClipboardFormatAvailable(mask))
    return maskedFace(face, mask);
  const HANDLE bitmap = GetClipboardData(CF_BITMAP);
  return handles::Gdi(bitmap ? CopyImage(bitmap, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)
                             : nullptr);
}

}  // namespace standin
