#include "html/Layout.h"

#include <algorithm>

namespace html {
namespace {

constexpr int pageMargin = 10;
constexpr int ruleSpace = 8;  // above and below
constexpr int bulletSize = 5;

// What is never parted: a word, a picture, or a line break.
struct Part {
  const Piece* piece;
  std::wstring text;
  SIZE size;
  int ascent;
  bool blankBefore = false;
};

class Composer {
 public:
  Composer(Fonts& fonts, PictureSizes& pictures) : fonts_(fonts), pictures_(pictures) {}

  // Fills the place from its top downwards and returns where it ends.
  int cell(const Cell& cell, const RECT& place) {
    int bottom = place.top;
    int distance = 0;
    bool first = true;
    for (const Block& block : cell.blocks) {
      if (!first) bottom += std::max(distance, block.above);
      bottom = this->block(block, {place.left + block.indent, bottom, place.right, bottom});
      distance = block.below;
      first = false;
    }
    return bottom;
  }

  std::vector<Item> takeItems() { return std::move(items_); }

 private:
  int block(const Block& block, const RECT& place) {
    if (block.rule) {
      const int top = place.top + ruleSpace;
      fill({place.left, top, place.right, top + 1}, RGB(160, 160, 160));
      return top + 1 + ruleSpace;
    }
    return block.table ? table(*block.table, block.align, place) : paragraph(block, place);
  }

  void fill(const RECT& place, long colour) {
    items_.push_back({Item::Kind::fill, place, colour, {}, {}});
  }

  // --- Text

  int paragraph(const Block& block, const RECT& place) {
    const auto parts = partsOf(block);
    if (block.bullet && !parts.empty()) {
      const int top = place.top + (parts.front().size.cy - bulletSize) / 2;
      const int left = place.left - 3 * bulletSize;
      fill({left, top, left + bulletSize, top + bulletSize}, parts.front().piece->style.colour);
    }
    int top = place.top;
    for (std::size_t begin = 0; begin < parts.size();) {
      const std::size_t end = lineEnd(parts, begin, place.right - place.left);
      top = line(parts, begin, end, block.align, {place.left, top, place.right, top});
      begin = end;
    }
    return top;
  }

  std::vector<Part> partsOf(const Block& block) {
    std::vector<Part> parts;
    bool blank = false;
    for (const Piece& piece : block.pieces) {
      if (piece.kind == Piece::Kind::text) {
        splitText(piece, parts, blank);
        continue;
      }
      const bool isBreak = piece.kind == Piece::Kind::lineBreak;
      const SIZE size = isBreak ? textSize(L" ", piece.style) : pictureSize(piece);
      const int ascent = isBreak ? ascentOf(piece.style) : size.cy;
      parts.push_back({&piece, {}, {isBreak ? 0 : size.cx, size.cy}, ascent, blank});
      blank = false;
    }
    return parts;
  }

  void splitText(const Piece& piece, std::vector<Part>& parts, bool& blank) {
    std::size_t at = 0;
    const std::wstring& text = piece.text;
    while (at < text.size()) {
      if (text[at] == L' ') {
        blank = true;
        ++at;
        continue;
      }
      const auto end = std::min(text.find(L' ', at), text.size());
      std::wstring word = text.substr(at, end - at);
      const SIZE size = textSize(word, piece.style);
      parts.push_back({&piece, std::move(word), size, ascentOf(piece.style), blank});
      blank = false;
      at = end;
    }
  }

  static bool isBreak(const Part& part) { return part.piece->kind == Piece::Kind::lineBreak; }

  int gapBefore(const Part& part) {
    return part.blankBefore ? textSize(L" ", part.piece->style).cx : 0;
  }

  // Behind the last part that fits, and behind a line break; at least one.
  std::size_t lineEnd(const std::vector<Part>& parts, std::size_t begin, int width) {
    int used = 0;
    for (std::size_t i = begin; i < parts.size(); ++i) {
      const int wanted = parts[i].size.cx + (i > begin ? gapBefore(parts[i]) : 0);
      // Words of different looks without a blank between them stay together only if they fit.
      if (i > begin && used + wanted > width) return i;
      used += wanted;
      if (isBreak(parts[i])) return i + 1;
    }
    return parts.size();
  }

  int line(const std::vector<Part>& parts, std::size_t begin, std::size_t end, Align align,
           const RECT& place) {
    int width = 0;
    int ascent = 0;
    int descent = 0;
    for (std::size_t i = begin; i < end; ++i) {
      width += parts[i].size.cx + (i > begin ? gapBefore(parts[i]) : 0);
      ascent = std::max(ascent, parts[i].ascent);
      descent = std::max(descent, static_cast<int>(parts[i].size.cy) - parts[i].ascent);
    }
    int left = aligned(align, place, width);
    for (std::size_t i = begin; i < end; ++i) {
      const int gap = i > begin ? gapBefore(parts[i]) : 0;
      addPart(parts[i], left, gap, place.top + ascent - parts[i].ascent);
      left += gap + parts[i].size.cx;
    }
    return place.top + ascent + descent;
  }

  static int aligned(Align align, const RECT& place, int width) {
    const int left = static_cast<int>(place.right - place.left) - width;
    if (align == Align::left || left < 0) return place.left;
    return place.left + (align == Align::centre ? left / 2 : left);
  }

  // A link is underlined through its blanks, too: its words become one text.
  void addPart(const Part& part, int left, int gap, int top) {
    if (isBreak(part)) return;
    const TextStyle& style = part.piece->style;
    const RECT place = {left + gap, top, left + gap + part.size.cx, top + part.size.cy};
    if (part.piece->kind == Piece::Kind::picture) {
      items_.push_back({Item::Kind::picture, place, 0, part.piece->text, style});
      return;
    }
    Item* last = items_.empty() ? nullptr : &items_.back();
    if (last && last->kind == Item::Kind::text && last->style == style && last->place.top == top &&
        last->place.right == left) {
      last->text += (gap ? L" " : L"") + part.text;
      last->place.right = place.right;
      return;
    }
    items_.push_back({Item::Kind::text, place, style.colour, part.text, style});
  }

  SIZE textSize(const std::wstring& text, const TextStyle& style) {
    SIZE size = {};
    const HGDIOBJ old = SelectObject(screen_.get(), fonts_.of(style));
    GetTextExtentPoint32W(screen_.get(), text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(screen_.get(), old);
    return size;
  }

  int ascentOf(const TextStyle& style) {
    TEXTMETRICW metrics = {};
    const HGDIOBJ old = SelectObject(screen_.get(), fonts_.of(style));
    GetTextMetricsW(screen_.get(), &metrics);
    SelectObject(screen_.get(), old);
    return metrics.tmAscent;
  }

  SIZE pictureSize(const Piece& piece) {
    SIZE size = pictures_.sizeOf(piece.text);
    if (piece.width > 0) size.cx = piece.width;
    if (piece.height > 0) size.cy = piece.height;
    return size;
  }

  // --- Tables

  int table(const Table& table, Align align, const RECT& place) {
    const int available = place.right - place.left;
    const int width = table.width.value == 0 ? available : resolved(table.width, available);
    const int left = aligned(align, place, width);
    const auto columns = columnWidths(table, width);
    const std::size_t background = items_.size();
    if (table.background != noColour) fill({left, place.top, left + width, 0}, table.background);
    int top = place.top + table.spacing;
    for (const auto& row : table.rows) top = this->row(table, row, columns, left, top);
    if (table.background != noColour) items_[background].place.bottom = top;
    return top;
  }

  static int resolved(Width width, int available) {
    return width.percent ? available * width.value / 100 : width.value;
  }

  // What is not said is shared equally.
  static std::vector<int> columnWidths(const Table& table, int width) {
    std::vector<int> columns;
    for (const auto& row : table.rows) {
      std::size_t column = 0;
      for (const Cell& cell : row) {
        if (columns.size() < column + static_cast<std::size_t>(cell.columns))
          columns.resize(column + static_cast<std::size_t>(cell.columns), 0);
        if (cell.columns == 1)
          columns[column] = std::max(columns[column], resolved(cell.width, width));
        column += static_cast<std::size_t>(cell.columns);
      }
    }
    int left = width - table.spacing * (static_cast<int>(columns.size()) + 1);
    for (const int column : columns) left -= column;
    const auto open = static_cast<int>(std::ranges::count(columns, 0));
    for (int& column : columns)
      if (column == 0) column = std::max(0, left / open);
    return columns;
  }

  int row(const Table& table, const std::vector<Cell>& cells, const std::vector<int>& columns,
          int left, int top) {
    std::vector<std::size_t> fills;
    int bottom = top;
    std::size_t column = 0;
    int right = left + table.spacing;
    for (const Cell& cell : cells) {
      const int start = right;
      for (int i = 0; i < cell.columns; ++i) right += columns[column++] + table.spacing;
      const int end = right - table.spacing;
      if (cell.background != noColour) {
        fills.push_back(items_.size());
        fill({start, top, end, top}, cell.background);
      }
      const int padding = table.padding;
      const RECT inside = {start + padding, top + padding, end - padding, top};
      bottom = std::max(bottom, this->cell(cell, inside) + padding);
    }
    // How high the row is, its highest cell has told.
    for (const std::size_t each : fills) items_[each].place.bottom = bottom;
    return bottom + table.spacing;
  }

  Fonts& fonts_;
  PictureSizes& pictures_;
  handles::ScreenContext screen_;
  std::vector<Item> items_;
};

}  // namespace

HFONT Fonts::of(const TextStyle& style) {
  const bool underlined = style.link != noLink;
  handles::Gdi& font = fonts_[{style.face, style.size, style.bold, style.italic, underlined}];
  if (!font)
    font.reset(CreateFontW(-style.size, 0, 0, 0, style.bold ? FW_BOLD : FW_NORMAL, style.italic,
                           underlined, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY, DEFAULT_PITCH,
                           style.face.c_str()));
  return static_cast<HFONT>(font.get());
}

Layout layOut(const Page& page, int width, Fonts& fonts, PictureSizes& pictures) {
  Composer composer(fonts, pictures);
  const RECT place = {pageMargin, pageMargin, std::max(pageMargin, width - pageMargin), 0};
  Layout layout;
  layout.height = composer.cell(page.body, place) + pageMargin;
  layout.items = composer.takeItems();
  return layout;
}

}  // namespace html
