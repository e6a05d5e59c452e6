// A web page as it is shown: what is left of its HTML.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace html {

constexpr long noColour = -1;  // otherwise 0xBBGGRR
constexpr int noLink = -1;

enum class Align { left, centre, right };

struct TextStyle {
  std::wstring face;
  int size = 16;  // pixels
  long colour = 0;
  bool bold = false;
  bool italic = false;
  int link = noLink;  // an index into Page::links

  bool operator==(const TextStyle&) const = default;
};

// A run of text, a picture or a line break.
struct Piece {
  enum class Kind { text, picture, lineBreak };
  Kind kind = Kind::text;
  std::wstring text;  // of a picture: its address
  TextStyle style;
  int width = 0;  // of a picture, in pixels; 0: its own
  int height = 0;
};

// Pixels, or a part of the place there is; 0 for as much as is left.
struct Width {
  int value = 0;
  bool percent = false;
};

struct Table;

// A paragraph, a rule or a table.
struct Block {
  Align align = Align::left;
  int indent = 0;
  int above = 0;  // pixels; of two distances that meet, the larger one counts
  int below = 0;
  bool bullet = false;
  bool rule = false;
  std::vector<Piece> pieces;
  std::shared_ptr<Table> table;
};

struct Cell {
  long background = noColour;
  Width width;
  int columns = 1;
  std::vector<Block> blocks;
};

struct Table {
  Width width;
  int spacing = 2;
  int padding = 1;
  long background = noColour;
  std::vector<std::vector<Cell>> rows;
};

struct Page {
  std::wstring title;
  std::vector<std::wstring> links;  // addresses as they are written
  Cell body;
};

// What the old presentational HTML says: headings, paragraphs, lists, tables, pictures, links and
// fonts. Style sheets, scripts, forms and frames are passed over; any text is a page.
Page parsePage(std::wstring_view html);

}  // namespace html
