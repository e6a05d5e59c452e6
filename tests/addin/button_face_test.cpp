// The formats in which a picture is offered as a button's face.
#include "addin/button_face.h"

#include "common/errors.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

namespace {

// Three pixels by two, from the top; the uppermost byte of a pixel means nothing.
handles::Gdi picture(const DWORD (&pixels)[6]) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = 3;
  info.bmiHeader.biHeight = -2;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  handles::Gdi bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  REQUIRE(bits);
  memcpy(bits, pixels, sizeof pixels);
  return bitmap;
}

std::string bytesOf(const clipboard::Item& item) {
  const HGLOBAL memory = std::get<handles::Global>(item.data).get();
  std::string bytes(static_cast<const char*>(GlobalLock(memory)), GlobalSize(memory));
  GlobalUnlock(memory);
  return bytes;
}

std::string header() {
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof header;
  header.biWidth = 3;
  header.biHeight = 2;
  header.biPlanes = 1;
  header.biBitCount = 24;
  return {reinterpret_cast<const char*>(&header), sizeof header};
}

}  // namespace

TEST_CASE("A picture is offered with its first pixel's colour as see-through") {
  const handles::Gdi drawn =
      picture({0xFF102030, 0x00102030, 0x00405060, 0x77102030, 0x00708090, 0x000000FF});
  const auto contents = buttonFace(static_cast<HBITMAP>(drawn.get()));
  REQUIRE(contents.size() == 3);
  CHECK(contents[0].format == CF_BITMAP);
  CHECK(std::get<handles::Gdi>(contents[0].data).get() != drawn.get());
  CHECK(contents[1].format == RegisterClipboardFormatW(L"Toolbar Button Face"));
  CHECK(contents[2].format == RegisterClipboardFormatW(L"Toolbar Button Mask"));
  // Rows from the bottom, each filled up to a multiple of four bytes.
  const std::string face("\0\0\0\x90\x80\x70\xFF\0\0\0\0\0\0\0\0\0\0\0\x60\x50\x40\0\0\0", 24);
  const std::string mask("\xFF\xFF\xFF\0\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\0\0\0\0\0\0", 24);
  CHECK(bytesOf(contents[1]).substr(0, 64) == header() + face);
  CHECK(bytesOf(contents[2]).substr(0, 64) == header() + mask);
}

TEST_CASE("What is no bitmap is no button face") {
  CHECK(numberOf([] { buttonFace(nullptr); }) == errors::invalidArgument);
}
