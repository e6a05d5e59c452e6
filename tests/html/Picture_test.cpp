#include "html/Picture.h"

#include "tests/support/metafiles.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

using namespace html;

TEST_CASE("a bitmap of any format has a size, and what is no picture has none") {
  for (const std::string& file :
       {pictures::bytes(pictures::blueGif), pictures::bytes(pictures::blueJpeg),
        pictures::blueBmpOf(201, 100), pictures::blueBmpOf(201, -100)}) {
    CHECK(Picture(file).size().cx == 201);
    CHECK(Picture(file).size().cy == 100);
  }
  for (const char* file : {"", "no picture", "GIF89a"}) CHECK(Picture(file).size().cx == 0);
}

TEST_CASE("a drawing that the system would play is no picture of a page") {
  CHECK(metafiles::kindOf(metafiles::enhanced()) == PICTYPE_ENHMETAFILE);
  CHECK(metafiles::kindOf(metafiles::placeable()) == PICTYPE_METAFILE);
  for (const std::string& file : {metafiles::enhanced(), metafiles::placeable()}) {
    const SIZE size = Picture(file).size();
    CHECK(size.cx == 0);
    CHECK(size.cy == 0);
  }
}
