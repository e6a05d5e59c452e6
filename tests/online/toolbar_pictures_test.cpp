#include "online/toolbar_pictures.h"

#include <set>

#include "tests/support/text_output.h"

namespace {

constexpr int size = 16;

// The colours of a picture on a white ground.
std::set<COLORREF> coloursOf(const forms::ImageList& list, int picture) {
  const handles::ScreenContext screen;
  const handles::DeviceContext memory(CreateCompatibleDC(screen.get()));
  const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), size, size));
  const HGDIOBJ old = SelectObject(memory.get(), bitmap.get());
  PatBlt(memory.get(), 0, 0, size, size, WHITENESS);
  ImageList_Draw(list.get(), picture, memory.get(), 0, 0, ILD_NORMAL);
  std::set<COLORREF> colours;
  for (int i = 0; i < size * size; ++i) colours.insert(GetPixel(memory.get(), i % size, i / size));
  SelectObject(memory.get(), old);
  return colours;
}

bool isGrey(COLORREF colour) {
  return GetRValue(colour) == GetGValue(colour) && GetGValue(colour) == GetBValue(colour);
}

int greysIn(const std::set<COLORREF>& colours) {
  int greys = 0;
  for (const COLORREF colour : colours)
    if (isGrey(colour)) ++greys;
  return greys;
}

}  // namespace

TEST_CASE("each button of the toolbar has its picture") {
  const forms::ImageList list = online::toolbarPictures();
  REQUIRE(ImageList_GetImageCount(list.get()) == 7);
  std::set<std::set<COLORREF>> different;
  for (int i = 0; i < 7; ++i) different.insert(coloursOf(list, i));
  CHECK(different.size() >= 6);  // back and forward have the same colours
}

TEST_CASE("the toolbar's pictures leave the ground around them as it is") {
  const forms::ImageList list = online::toolbarPictures();
  const auto colours = coloursOf(list, 0);
  // Blending in nothing may cost the ground the last bit.
  CHECK((*colours.rbegin() & RGB(0xFE, 0xFE, 0xFE)) == RGB(0xFE, 0xFE, 0xFE));
  CHECK_FALSE(colours.contains(RGB(255, 0, 255)));
  CHECK(colours.size() > 8);  // smooth edges
}

TEST_CASE("the pictures of disabled buttons have shape but no colour") {
  const forms::ImageList list = online::disabledToolbarPictures();
  REQUIRE(ImageList_GetImageCount(list.get()) == 7);
  for (int i = 0; i < 7; ++i) {
    const auto colours = coloursOf(list, i);
    CHECK(greysIn(colours) == static_cast<int>(colours.size()));
    CHECK(colours.size() > 4);
    CHECK_FALSE(colours.contains(RGB(0, 0, 0)));
  }
}
