#include "webcopy/folder_icons.h"

#include <initializer_list>
#include <vector>

#include "common/errors.h"

namespace webfolder {
namespace {

// Shapes are drawn on a square of 16 units, each in its colour over the ones before.
struct Point {
  double x;
  double y;
};
struct Shape {
  COLORREF colour;
  std::initializer_list<Point> outline;
};
using Drawing = std::initializer_list<Shape>;

constexpr double units = 16;
constexpr int samples = 4;  // of each pixel, in both directions

constexpr COLORREF edge = RGB(0xA8, 0x7A, 0x1E);
constexpr COLORREF back = RGB(0xE3, 0xB3, 0x41);
constexpr COLORREF front = RGB(0xFF, 0xDB, 0x7A);
constexpr COLORREF gleam = RGB(0xFF, 0xEE, 0xB5);

bool isInside(std::initializer_list<Point> outline, double x, double y) {
  bool inside = false;
  const Point* last = outline.end() - 1;
  for (const Point& each : outline) {
    if ((each.y > y) != (last->y > y) &&
        x < (last->x - each.x) * (y - each.y) / (last->y - each.y) + each.x)
      inside = !inside;
    last = &each;
  }
  return inside;
}

const Shape* shapeAt(Drawing drawing, double x, double y) {
  for (const Shape* shape = drawing.end(); shape != drawing.begin();)
    if (isInside((--shape)->outline, x, y)) return shape;
  return nullptr;
}

// One pixel with its coverage as alpha; the colours are multiplied by it, as image lists want them.
DWORD pixelAt(Drawing drawing, int column, int row, int size) {
  int red = 0;
  int green = 0;
  int blue = 0;
  int covered = 0;
  const double step = units / size / samples;
  for (int sample = 0; sample < samples * samples; ++sample) {
    const double x = (column * samples + sample % samples + 0.5) * step;
    const int line = sample / samples;
    const double y = (row * samples + line + 0.5) * step;
    const Shape* const shape = shapeAt(drawing, x, y);
    if (!shape) continue;
    ++covered;
    red += GetRValue(shape->colour);
    green += GetGValue(shape->colour);
    blue += GetBValue(shape->colour);
  }
  constexpr int all = samples * samples;
  const auto channel = [](int sum) { return static_cast<DWORD>(sum / all); };
  return channel(covered * 255) << 24 | channel(red) << 16 | channel(green) << 8 | channel(blue);
}

// Where nothing is drawn, for systems that know no alpha.
handles::Gdi maskOf(const DWORD* pixels, int size) {
  const int stride = (size + 15) / 16 * 2;  // rows of device bitmaps are whole words
  std::vector<BYTE> bits(static_cast<std::size_t>(stride * size), 0);
  for (int row = 0; row < size; ++row)
    for (int column = 0; column < size; ++column)
      if (pixels[row * size + column] >> 24 < 128)
        bits[static_cast<std::size_t>(row * stride + column / 8)] |=
            static_cast<BYTE>(0x80 >> column % 8);
  return handles::Gdi(CreateBitmap(size, size, 1, 1, bits.data()));
}

void add(HIMAGELIST images, Drawing drawing, int size) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = size;
  info.bmiHeader.biHeight = -size;  // the first row on top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const handles::ScreenContext screen;
  const handles::Gdi picture(
      CreateDIBSection(screen.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!picture) throw Error(errors::outOfMemory);
  auto* const pixels = static_cast<DWORD*>(bits);
  for (int row = 0; row < size; ++row)
    for (int column = 0; column < size; ++column)
      pixels[row * size + column] = pixelAt(drawing, column, row, size);
  const handles::Gdi mask = maskOf(pixels, size);
  const int index =
      ImageList_Add(images, static_cast<HBITMAP>(picture.get()), static_cast<HBITMAP>(mask.get()));
  if (index < 0) throw Error(errors::outOfMemory);
}

void addClosedFolder(HIMAGELIST images, int size) {
  add(images,
      {{edge, {{1, 3}, {2, 2}, {6, 2}, {7.5, 4}, {15, 4}, {15, 14}, {1, 14}}},
       {back, {{2, 3}, {5.6, 3}, {7, 5}, {14, 5}, {14, 7}, {2, 7}}},
       {front, {{2, 6}, {14, 6}, {14, 13}, {2, 13}}},
       {gleam, {{2, 6}, {14, 6}, {14, 7}, {2, 7}}}},
      size);
}

void addOpenFolder(HIMAGELIST images, int size) {
  add(images,
      {{edge, {{1, 3}, {2, 2}, {6, 2}, {7.5, 4}, {13, 4}, {13, 14}, {1, 14}}},
       {back, {{2, 3}, {5.6, 3}, {7, 5}, {12, 5}, {12, 13}, {2, 13}}},
       {edge, {{3.6, 7}, {16, 7}, {13.4, 14}, {1, 14}}},
       {front, {{4.4, 8}, {14.7, 8}, {12.8, 13}, {2.4, 13}}},
       {gleam, {{4.4, 8}, {14.7, 8}, {14.4, 9}, {4, 9}}}},
      size);
}

}  // namespace

forms::ImageList makeFolderIcons() {
  const int size = GetSystemMetrics(SM_CXSMICON);
  forms::ImageList images(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 2, 0));
  if (!images) throw Error(errors::outOfMemory);
  addClosedFolder(images.get(), size);
  addOpenFolder(images.get(), size);
  return images;
}

}  // namespace webfolder
