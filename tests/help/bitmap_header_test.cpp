#include "help/bitmap_header.h"

#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

using namespace help;

namespace {

std::string number(std::int64_t value, int size) {
  std::string bytes;
  for (; size > 0; --size, value >>= 8) bytes += static_cast<char>(value);
  return bytes;
}

std::string coreBitmap(int width, int height, int bits) {
  return "BM" + std::string(12, '\0') + number(12, 4) + number(width, 2) + number(height, 2) +
         number(1, 2) + number(bits, 2);
}

std::string bitmap(std::int64_t width, std::int64_t height, int headerSize = 40, int bits = 24,
                   int compression = 0) {
  std::string file = "BM" + std::string(12, '\0') + number(headerSize, 4) + number(width, 4) +
                     number(height, 4) + number(1, 2) + number(bits, 2) + number(compression, 4);
  file.resize(14 + static_cast<std::size_t>(headerSize));
  return file;
}

}  // namespace

TEST_CASE("a bitmap's header tells its size") {
  for (const std::string& file : {pictures::blueBmpOf(201, 100), coreBitmap(201, 100, 8)}) {
    const auto header = readBitmapHeader(file);
    REQUIRE(header);
    CHECK_FALSE(header->isGif);
    CHECK(header->width == 201);
    CHECK(header->height == 100);
    CHECK(header->pixels == 20100);
    CHECK(header->length == file.size());
  }
}

TEST_CASE("each header that the system has written for bitmaps is known and no other") {
  for (int size = 26; size <= 130; ++size) {
    CAPTURE(size);
    const bool isKnown =
        size == 40 || size == 52 || size == 56 || size == 64 || size == 108 || size == 124;
    CHECK(readBitmapHeader(bitmap(3, 4, size)).has_value() == isKnown);
    if (isKnown) CHECK_FALSE(readBitmapHeader(bitmap(3, 4, size).substr(0, 13 + size)));
  }
  CHECK(readBitmapHeader(coreBitmap(3, 4, 8)));
  CHECK_FALSE(readBitmapHeader(coreBitmap(3, 4, 8).substr(0, 25)));
  CHECK_FALSE(readBitmapHeader(coreBitmap(3, 4, 8).replace(14, 1, "\x10")));
}

TEST_CASE("the largest numbers of a bitmap's header make no small picture") {
  const auto core = readBitmapHeader(coreBitmap(0xFFFF, 0xFFFF, 8));
  REQUIRE(core);
  CHECK(core->pixels == 0xFFFE0001u);
  const auto header = readBitmapHeader(bitmap(0x7FFFFFFF, 0x7FFFFFFF));
  REQUIRE(header);
  CHECK(header->width == 0x7FFFFFFF);
  CHECK(header->height == 0x7FFFFFFF);
  CHECK(header->pixels == 0x3FFFFFFF00000001u);
  CHECK_FALSE(readBitmapHeader(bitmap(3, -0x80000000LL)));
}

TEST_CASE("a bitmap from its top has a height like any other") {
  const auto header = readBitmapHeader(bitmap(3, -4));
  REQUIRE(header);
  CHECK(header->height == 4);
  CHECK(header->pixels == 12);
}

TEST_CASE("a bitmap without a size has no header") {
  CHECK_FALSE(readBitmapHeader(bitmap(0, 4)));
  CHECK_FALSE(readBitmapHeader(bitmap(-3, 4)));
  CHECK_FALSE(readBitmapHeader(bitmap(3, 0)));
  CHECK_FALSE(readBitmapHeader(coreBitmap(0, 4, 8)));
  CHECK_FALSE(readBitmapHeader(coreBitmap(3, 0, 8)));
}

TEST_CASE("a bitmap that holds a picture of another format is none") {
  for (const int compression : {0, 1, 2, 3})
    CHECK(readBitmapHeader(bitmap(3, 4, 40, 24, compression)));
  for (const int compression : {4, 5, 6, 0x31435641})
    CHECK_FALSE(readBitmapHeader(bitmap(3, 4, 40, 24, compression)));
}

TEST_CASE("a bitmap has no pixels of more than four bytes") {
  CHECK(readBitmapHeader(bitmap(3, 4, 40, 32)));
  CHECK_FALSE(readBitmapHeader(bitmap(3, 4, 40, 33)));
  CHECK(readBitmapHeader(coreBitmap(3, 4, 32)));
  CHECK_FALSE(readBitmapHeader(coreBitmap(3, 4, 33)));
}

TEST_CASE("what is no BMP file has no bitmap's header") {
  for (const std::string& file :
       {std::string(), std::string("BM"), std::string(200, 'B'), pictures::bytes(pictures::blueGif),
        bitmap(3, 4).replace(0, 2, "BA")})
    CHECK_FALSE(readBitmapHeader(file));
}
