#include "online/toolbar_pictures.h"

#include "common/module.h"
#include "online/resource.h"

namespace online {
namespace {

constexpr int pictureSize = 16;

// A palette entry, or a pixel of 32 bits: how much it covers what is below it comes last.
struct Colour {
  BYTE blue, green, red, cover;
};

Colour faded(Colour colour) noexcept {
  const auto grey = static_cast<BYTE>((colour.red * 3 + colour.green * 6 + colour.blue) / 10);
  return {grey, grey, grey, static_cast<BYTE>(colour.cover * 55 / 100)};
}

// The resource is a bitmap of one byte a pixel, as draw-toolbar makes it.
const BITMAPINFOHEADER* resource() noexcept {
  const HRSRC found =
      FindResourceW(module::instance(), MAKEINTRESOURCEW(IDB_ONLINE_TOOLBAR), RT_BITMAP);
  const HGLOBAL loaded = found ? LoadResource(module::instance(), found) : nullptr;
  return loaded ? static_cast<const BITMAPINFOHEADER*>(LockResource(loaded)) : nullptr;
}

forms::ImageList pictures(bool disabled) {
  const BITMAPINFOHEADER* const source = resource();
  if (!source) return {};
  BITMAPINFO wanted = {};
  wanted.bmiHeader = *source;
  wanted.bmiHeader.biBitCount = 32;
  wanted.bmiHeader.biSizeImage = wanted.bmiHeader.biClrUsed = 0;
  void* bits = nullptr;
  const handles::Gdi bitmap(CreateDIBSection(nullptr, &wanted, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bits) return {};
  const auto* const colours = reinterpret_cast<const Colour*>(source + 1);
  const auto* const indices = reinterpret_cast<const BYTE*>(colours + source->biClrUsed);
  for (LONG i = 0; i < source->biWidth * source->biHeight; ++i) {
    const Colour colour = colours[indices[i]];
    static_cast<Colour*>(bits)[i] = disabled ? faded(colour) : colour;
  }
  forms::ImageList list(ImageList_Create(pictureSize, pictureSize, ILC_COLOR32, 0, 0));
  ImageList_Add(list.get(), static_cast<HBITMAP>(bitmap.get()), nullptr);
  return list;
}

}  // namespace

forms::ImageList toolbarPictures() { return pictures(false); }

forms::ImageList disabledToolbarPictures() { return pictures(true); }

}  // namespace online
