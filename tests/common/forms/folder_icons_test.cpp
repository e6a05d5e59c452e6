#include "common/forms/folder_icons.h"

#include <set>
#include <vector>

#include "tests/support/text_output.h"

using forms::FolderIcon;

namespace {

// One image over white, row by row.
std::vector<COLORREF> pixels(HIMAGELIST images, int index, int size) {
  const handles::ScreenContext screen;
  const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
  const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), size, size));
  const HGDIOBJ former = SelectObject(context.get(), bitmap.get());
  PatBlt(context.get(), 0, 0, size, size, WHITENESS);
  ImageList_Draw(images, index, context.get(), 0, 0, ILD_NORMAL);
  std::vector<COLORREF> result;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) result.push_back(GetPixel(context.get(), x, y));
  SelectObject(context.get(), former);
  return result;
}

}  // namespace

TEST_CASE("folder icons have the size of the system's small icons") {
  const forms::ImageList images = forms::makeFolderIcons({FolderIcon::closed, FolderIcon::open});
  int width = 0;
  int height = 0;
  CHECK(ImageList_GetImageCount(images.get()) == 2);
  REQUIRE(ImageList_GetIconSize(images.get(), &width, &height));
  CHECK(width == GetSystemMetrics(SM_CXSMICON));
  CHECK(height == GetSystemMetrics(SM_CYSMICON));
}

TEST_CASE("folder icons are told apart and sharp at 96 and 120 and 144 pixels per inch") {
  for (const int size : {16, 20, 24}) {
    CAPTURE(size);
    const forms::ImageList images = forms::makeFolderIcons(
        {FolderIcon::closed, FolderIcon::open, FolderIcon::ofMachine, FolderIcon::ofUser}, size);
    std::set<std::vector<COLORREF>> pictures;
    for (int index = 0; index < 4; ++index) {
      const auto picture = pixels(images.get(), index, size);
      pictures.insert(picture);
      CAPTURE(index);
      // The front of the folder is of one colour, without a seam of a scaled picture.
      const std::size_t row = static_cast<std::size_t>(size) * 21 / 32;
      const std::size_t column = static_cast<std::size_t>(size) * 4 / 16 + 1;
      CHECK(picture[row * static_cast<std::size_t>(size) + column] == RGB(0xFF, 0xDB, 0x7A));
      CHECK(picture.front() == RGB(0xFF, 0xFF, 0xFF));
    }
    CHECK(pictures.size() == 4);
  }
}

TEST_CASE("folder icons leave no handle open") {
  const long before = handles::liveCount();
  forms::makeFolderIcons({FolderIcon::ofMachine});
  CHECK(handles::liveCount() == before);
}
