// A page laid out for a width: what is drawn where.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "common/handles.h"
#include "html/Page.h"

namespace html {

// The fonts of a page, made when they are first asked for.
class Fonts {
 public:
  HFONT of(const TextStyle& style);

 private:
  using Key = std::tuple<std::wstring, int, bool, bool, bool>;
  std::map<Key, handles::Gdi> fonts_;
};

// Tells how large a picture is; 0 x 0 for one that has not come.
class PictureSizes {
 public:
  virtual SIZE sizeOf(const std::wstring& address) = 0;

 protected:
  ~PictureSizes() = default;
};

struct Item {
  enum class Kind { fill, text, picture };
  Kind kind;
  RECT place;  // from the page's upper left corner, in pixels
  long colour = 0;
  std::wstring text;  // of a picture: its address
  TextStyle style;    // of a text or picture
};

struct Layout {
  std::vector<Item> items;  // in the order in which they are drawn
  int height = 0;
};

Layout layOut(const Page& page, int width, Fonts& fonts, PictureSizes& pictures);

}  // namespace html
