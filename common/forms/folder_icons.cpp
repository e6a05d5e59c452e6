#include "common/forms/folder_icons.h"

#include <algorithm>
#include <span>
#include <vector>

#include "common/errors.h"

namespace forms {
namespace {

// Shapes are drawn on a square of 16 units, each in its colour over the ones before.
struct Point {
  float x;
  float y;
};
struct Shape {
  COLORREF colour;
  std::span<const Point> outline;
};
using Drawing = std::span<const Shape>;

constexpr float units = 16;
constexpr int samples = 4;  // of each pixel, in both directions

constexpr COLORREF edge = RGB(0xA8, 0x7A, 0x1E);
constexpr COLORREF back = RGB(0xE3, 0xB3, 0x41);
constexpr COLORREF front = RGB(0xFF, 0xDB, 0x7A);
constexpr COLORREF gleam = RGB(0xFF, 0xEE, 0xB5);
constexpr COLORREF rim = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF metal = RGB(0x2B, 0x57, 0x97);
constexpr COLORREF glass = RGB(0x8F, 0xC4, 0xF5);
constexpr COLORREF skin = RGB(0xF0, 0xBE, 0x8C);
constexpr COLORREF shirt = RGB(0x3C, 0x8C, 0x50);

constexpr Point folderEdge[] = {{1, 3}, {2, 2}, {6, 2}, {7.5, 4}, {15, 4}, {15, 14}, {1, 14}};
constexpr Point folderBack[] = {{2, 3}, {5.6F, 3}, {7, 5}, {14, 5}, {14, 7}, {2, 7}};
constexpr Point folderFront[] = {{2, 6}, {14, 6}, {14, 13}, {2, 13}};
constexpr Point folderGleam[] = {{2, 6}, {14, 6}, {14, 7}, {2, 7}};

constexpr Point openEdge[] = {{1, 3}, {2, 2}, {6, 2}, {7.5, 4}, {13, 4}, {13, 14}, {1, 14}};
constexpr Point openBack[] = {{2, 3}, {5.6F, 3}, {7, 5}, {12, 5}, {12, 13}, {2, 13}};
constexpr Point lidEdge[] = {{3.6F, 7}, {16, 7}, {13.4F, 14}, {1, 14}};
constexpr Point lidFront[] = {{4.4F, 8}, {14.7F, 8}, {12.8F, 13}, {2.4F, 13}};
constexpr Point lidGleam[] = {{4.4F, 8}, {14.7F, 8}, {14.4F, 9}, {4, 9}};

constexpr Point screenRim[] = {{6, 6},   {16, 6}, {16, 13}, {15, 13},
                               {15, 16}, {7, 16}, {7, 13},  {6, 13}};
constexpr Point screenCase[] = {{7, 7}, {15, 7}, {15, 12}, {7, 12}};
constexpr Point screenGlass[] = {{8, 8}, {14, 8}, {14, 11}, {8, 11}};
constexpr Point screenFoot[] = {{10, 12}, {12, 12}, {12, 14}, {14, 14},
                                {14, 15}, {8, 15},  {8, 14},  {10, 14}};

constexpr Point personRim[] = {{9, 5},   {13, 5}, {15, 7}, {15, 9}, {14, 11}, {16, 13},
                               {16, 16}, {6, 16}, {6, 13}, {8, 11}, {7, 9},   {7, 7}};
constexpr Point personBody[] = {{7, 15},     {7, 13.4F},  {9, 11.4F},
                                {13, 11.4F}, {15, 13.4F}, {15, 15}};
constexpr Point personHead[] = {{9.8F, 6}, {12.2F, 6},    {14, 7.6F}, {14, 9.2F}, {12.6F, 11.6F},
                                {11, 12},  {9.4F, 11.6F}, {8, 9.2F},  {8, 7.6F}};

constexpr Shape closedFolder[] = {
    {edge, folderEdge}, {back, folderBack}, {front, folderFront}, {gleam, folderGleam}};
constexpr Shape openFolder[] = {
    {edge, openEdge}, {back, openBack}, {edge, lidEdge}, {front, lidFront}, {gleam, lidGleam}};
constexpr Shape machineFolder[] = {{edge, folderEdge},   {back, folderBack}, {front, folderFront},
                                   {gleam, folderGleam}, {rim, screenRim},   {metal, screenCase},
                                   {glass, screenGlass}, {metal, screenFoot}};
constexpr Shape userFolder[] = {{edge, folderEdge},   {back, folderBack}, {front, folderFront},
                                {gleam, folderGleam}, {rim, personRim},   {shirt, personBody},
                                {skin, personHead}};

constexpr Drawing drawings[] = {closedFolder, openFolder, machineFolder, userFolder};

bool isInside(std::span<const Point> outline, float x, float y) {
  bool inside = false;
  const Point* last = &outline.back();
  for (const Point& each : outline) {
    if ((each.y > y) != (last->y > y) &&
        x < (last->x - each.x) * (y - each.y) / (last->y - each.y) + each.x)
      inside = !inside;
    last = &each;
  }
  return inside;
}

const Shape* shapeAt(Drawing drawing, float x, float y) {
  // Not run by tests: they do, and it counts with the next line.
  const auto shape = std::find_if(drawing.rbegin(), drawing.rend(),
                                  [&](const Shape& each) { return isInside(each.outline, x, y); });
  return shape == drawing.rend() ? nullptr : &*shape;
}

// One pixel with its coverage as alpha; the colours are multiplied by it, as image lists want them.
DWORD pixelAt(Drawing drawing, int column, int row, int size) {
  int red = 0;
  int green = 0;
  int blue = 0;
  int covered = 0;
  const float step = units / static_cast<float>(size * samples);
  for (int sample = 0; sample < samples * samples; ++sample) {
    const float x = (static_cast<float>(column * samples + sample % samples) + 0.5F) * step;
    const int line = sample / samples;
    const float y = (static_cast<float>(row * samples + line) + 0.5F) * step;
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

}  // namespace

ImageList makeFolderIcons(std::initializer_list<FolderIcon> icons) {
  return makeFolderIcons(icons, GetSystemMetrics(SM_CXSMICON));
}

ImageList makeFolderIcons(std::initializer_list<FolderIcon> icons, int size) {
  ImageList images(
      ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(icons.size()), 0));
  if (!images) throw Error(errors::outOfMemory);
  for (const FolderIcon icon : icons)
    add(images.get(), drawings[static_cast<std::size_t>(icon)], size);
  return images;
}

}  // namespace forms
