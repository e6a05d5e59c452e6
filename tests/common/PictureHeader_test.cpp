#include "common/PictureHeader.h"

#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

namespace {

std::string bigEndian(int value) {
  return {static_cast<char>(value >> 8), static_cast<char>(value)};
}
std::string littleEndian(int value) {
  return {static_cast<char>(value), static_cast<char>(value >> 8)};
}

std::string segment(int marker, const std::string& content) {
  return std::string("\xFF") + static_cast<char>(marker) +
         bigEndian(static_cast<int>(content.size()) + 2) + content;
}
std::string frame(int width, int height) {
  return "\x08" + bigEndian(height) + bigEndian(width) + std::string("\x01\x01\x11\x00", 4);
}

std::string gifOf(int width, int height, int frameWidth, int frameHeight) {
  return "GIF89a" + littleEndian(width) + littleEndian(height) + std::string("\x80\x00\x00", 3) +
         std::string(6, '\0') + "," + std::string(4, '\0') + littleEndian(frameWidth) +
         littleEndian(frameHeight) + std::string("\x00\x02\x02\x44\x01\x00", 6);
}

}  // namespace

TEST_CASE("a picture's header tells its size") {
  for (const std::string& file :
       {pictures::bytes(pictures::blueGif), pictures::bytes(pictures::blueJpeg)}) {
    const auto header = readPictureHeader(file);
    REQUIRE(header);
    CHECK(header->width == 201);
    CHECK(header->height == 100);
    CHECK(header->pixels == 20100);
  }
  CHECK(readPictureHeader(pictures::bytes(pictures::blueGif))->isGif);
  CHECK_FALSE(readPictureHeader(pictures::bytes(pictures::blueJpeg))->isGif);
}

TEST_CASE("the size of a JPEG file stands in its frame of whatever coding") {
  for (int marker = 0xC0; marker <= 0xCF; ++marker) {
    CAPTURE(marker);
    const bool isTable = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
    const auto header =
        readPictureHeader("\xFF\xD8" + segment(0xE0, std::string(300, 'x')) +
                          "\xFF\x01\xFF\xFF\xFF" + segment(marker, frame(300, 513)).substr(1));
    REQUIRE(header.has_value() == !isTable);
    if (isTable) continue;
    CHECK(header->width == 300);
    CHECK(header->height == 513);
  }
}

TEST_CASE("a JPEG file whose picture begins or ends before its size has none") {
  CHECK_FALSE(readPictureHeader("\xFF\xD8" + segment(0xDA, "x") + segment(0xC0, frame(3, 4))));
  CHECK_FALSE(readPictureHeader("\xFF\xD8" + segment(0xD9, "x") + segment(0xC0, frame(3, 4))));
  CHECK_FALSE(readPictureHeader("\xFF\xD8" + segment(0xC0, frame(0, 4))));
  CHECK_FALSE(readPictureHeader("\xFF\xD8" + segment(0xC0, frame(3, 0))));
  CHECK_FALSE(readPictureHeader("\xFF\xD8x" + segment(0xC0, frame(3, 4))));
  CHECK_FALSE(readPictureHeader("\xFF\xD8\xFF\xE0" + std::string(2, '\0') + "xx" +
                                segment(0xC0, frame(3, 4))));
}

// Some decoders look for the next marker right behind these, others behind a length.
TEST_CASE("a JPEG file in which decoders may find another size has none") {
  for (const int marker : {0x00, 0xD8}) {
    CAPTURE(marker);
    CHECK_FALSE(readPictureHeader("\xFF\xD8" + segment(marker, segment(0xC0, frame(20000, 20000))) +
                                  segment(0xC0, frame(10, 10))));
  }
}

TEST_CASE("no beginning of a picture file has a size before it is told") {
  const std::string jpeg = "\xFF\xD8" + segment(0xE0, "abc") + segment(0xC2, frame(3, 4));
  for (std::size_t length = 0; length < jpeg.size() - 4; ++length)
    CHECK_FALSE(readPictureHeader(jpeg.substr(0, length)));
  CHECK(readPictureHeader(jpeg));
  const std::string gif = gifOf(5, 6, 5, 6);
  for (std::size_t length = 0; length < gif.size() - 6; ++length)
    CHECK_FALSE(readPictureHeader(gif.substr(0, length)));
  CHECK(readPictureHeader(gif));
}

TEST_CASE("a GIF file's screen is its size and its frame counts for the pixels") {
  const auto header = readPictureHeader(gifOf(5, 6, 1000, 2000));
  REQUIRE(header);
  CHECK(header->width == 5);
  CHECK(header->height == 6);
  CHECK(header->pixels == 2000000);
  const auto screenless = readPictureHeader(gifOf(0, 0, 7, 8));
  REQUIRE(screenless);
  CHECK(screenless->width == 7);
  CHECK(screenless->height == 8);
}

TEST_CASE("of a GIF file only the first frame is needed") {
  const std::string first = gifOf(5, 6, 5, 6);
  const auto header = readPictureHeader(first + gifOf(9, 9, 9, 9).substr(19) + ";");
  REQUIRE(header);
  CHECK(header->length == first.size());
}

TEST_CASE("extensions and colour tables of a GIF file are passed over") {
  std::string gif = gifOf(5, 6, 5, 6);
  const std::string extension = std::string(
      "!\xFE\x03"
      "a,b\x01,\x00",
      9);
  gif.insert(19, extension + extension);
  const auto header = readPictureHeader(gif);
  REQUIRE(header);
  CHECK(header->length == gif.size());
}

TEST_CASE("what is neither a GIF nor a JPEG file has no size") {
  for (const char* file :
       {"", "GIF", "GIF88a0000000000", "BM00000000000000", "\x89PNG\r\n", "<html>"})
    CHECK_FALSE(readPictureHeader(file));
}
