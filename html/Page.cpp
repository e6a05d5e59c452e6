#include "html/Page.h"

#include <windows.h>

#include <algorithm>
#include <cwctype>

#include "common/text.h"
#include "html/TokenReader.h"

namespace html {
namespace {

constexpr wchar_t plainFace[] = L"Times New Roman";
constexpr wchar_t fixedFace[] = L"Courier New";
constexpr int step = 30;  // the indent of lists and quotations, in pixels
constexpr int paragraphDistance = 14;

// A page may come from anywhere: however it is written, it takes neither the stack nor the time of
// whoever shows it, and no sum of its sizes is beyond a number.
constexpr std::size_t deepestTable = 16;  // in other tables
constexpr std::size_t mostOpenTags = 200;
constexpr std::size_t longestTitle = 250;
constexpr int smallestLetters = 6;  // pixels
constexpr int largestLetters = 200;
constexpr int longestSide = 10'000;
constexpr int mostSpacing = 100;
constexpr int mostColumns = 100;

// The sizes of <font size>, 1 to 7, in pixels.
constexpr int fontSizes[] = {10, 13, 16, 18, 24, 32, 48};
constexpr int headingSizes[] = {32, 24, 18, 16, 13, 11};

constexpr std::wstring_view paragraphTags[] = {L"p",  L"div", L"center", L"ul", L"ol",
                                               L"dl", L"dd",  L"dt",     L"li", L"blockquote"};

bool isHeading(const std::wstring& tag) {
  return tag.size() == 2 && tag[0] == L'h' && tag[1] >= L'1' && tag[1] <= L'6';
}

bool isParagraph(const std::wstring& tag) {
  return isHeading(tag) || std::ranges::find(paragraphTags, tag) != std::end(paragraphTags);
}

int numberIn(const std::wstring& text, int largest) {
  return std::clamp(_wtoi(text.c_str()), 0, largest);
}

Width widthIn(const std::wstring& text) {
  const bool percent = !text.empty() && text.back() == L'%';
  return {numberIn(text, percent ? 100 : longestSide), percent};
}

long colourIn(const std::wstring& text, long otherwise) {
  if (text.size() != 7 || text[0] != L'#') return otherwise;
  const unsigned long value = std::wcstoul(text.c_str() + 1, nullptr, 16);
  return static_cast<long>(RGB((value >> 16) & 0xFF, (value >> 8) & 0xFF, value & 0xFF));
}

Align alignIn(const std::wstring& text, Align otherwise) {
  if (text == L"center" || text == L"middle") return Align::centre;
  if (text == L"right") return Align::right;
  return text == L"left" ? Align::left : otherwise;
}

// Runs of blanks become one.
std::wstring collapsed(std::wstring_view text) {
  std::wstring result;
  for (const wchar_t letter : text) {
    const bool blank = letter != L'\xA0' && std::iswspace(static_cast<wint_t>(letter));
    if (!blank)
      result += letter;
    else if (result.empty() || result.back() != L' ')
      result += L' ';
  }
  return result;
}

class Parser {
 public:
  Parser() {
    states_.push_back({});
    states_.back().text.face = plainFace;
    flows_.push_back({&page_.body, {}, 0});
  }

  Page parse(std::wstring_view html) {
    TokenReader reader(html);
    Token token;
    while (reader.next(token)) take(token);
    return std::move(page_);
  }

 private:
  // What a tag changes until it is closed.
  struct State {
    std::wstring tag;
    TextStyle text;
    Align align = Align::left;
    int indent = 0;
  };

  // Where blocks go: the page, or a cell of a table in it.
  struct Flow {
    Cell* cell;
    std::shared_ptr<Table> table;  // that a cell of is being filled
    std::size_t states;            // those that were open around it
  };

  State& state() { return states_.back(); }
  // Between a table's cells that is the one around the table.
  Cell& cell() {
    auto flow = flows_.rbegin();
    while (!flow->cell) ++flow;
    return *flow->cell;
  }

  void take(const Token& token) {
    if (token.tag.empty())
      takeText(token.text);
    else if (token.closing)
      close(token);
    else
      open(token);
  }

  void takeText(const std::wstring& text) {
    if (inTitle_) {
      if (page_.title.size() < longestTitle)
        page_.title = text::trimBlanks(collapsed(page_.title + text)).substr(0, longestTitle);
      return;
    }
    const std::wstring shown = collapsed(text);
    if (shown.empty() || (shown == L" " && !inBlock_)) return;
    block().pieces.push_back({Piece::Kind::text, shown, state().text, 0, 0});
  }

  void open(const Token& token) {
    const std::wstring& tag = token.tag;
    if (tag == L"title") {
      inTitle_ = true;
    } else if (tag == L"body") {
      openBody(token);
    } else if (tag == L"br") {
      block().pieces.push_back({Piece::Kind::lineBreak, {}, state().text, 0, 0});
    } else if (tag == L"img") {
      openPicture(token);
    } else if (tag == L"hr") {
      endBlock();
      cell().blocks.push_back({});
      cell().blocks.back().rule = true;
    } else if (tag == L"table") {
      openTable(token);
    } else if (tag == L"tr") {
      openRow();
    } else if (tag == L"td" || tag == L"th") {
      openCell(token);
    } else if (isParagraph(tag)) {
      openParagraph(token);
    } else {
      openText(token);
    }
  }

  void close(const Token& token) {
    const std::wstring& tag = token.tag;
    if (tag == L"title") inTitle_ = false;
    if (tag == L"td" || tag == L"th" || tag == L"tr") return closeCell();
    if (tag == L"table") return closeTable();
    if (isParagraph(tag)) endBlock();
    // Only what was opened in this cell can be closed in it.
    for (std::size_t i = states_.size(); i > flows_.back().states + 1; --i) {
      if (states_[i - 1].tag != tag) continue;
      states_.resize(i - 1);
      return;
    }
  }

  // Beyond the limit, tags change what the last one within it changed.
  State& push(const std::wstring& tag) {
    if (states_.size() > mostOpenTags) return state();
    states_.push_back(state());
    state().tag = tag;
    return state();
  }

  void openBody(const Token& token) {
    page_.body.background = colourIn(token.attribute(L"bgcolor"), noColour);
    state().text.colour = colourIn(token.attribute(L"text"), 0);
    linkColour_ = colourIn(token.attribute(L"link"), linkColour_);
  }

  void openPicture(const Token& token) {
    block().pieces.push_back({Piece::Kind::picture, token.attribute(L"src"), state().text,
                              numberIn(token.attribute(L"width"), longestSide),
                              numberIn(token.attribute(L"height"), longestSide)});
  }

  void openText(const Token& token) {
    const std::wstring& tag = token.tag;
    TextStyle& style = push(tag).text;
    if (tag == L"b" || tag == L"strong") style.bold = true;
    if (tag == L"i" || tag == L"em") style.italic = true;
    if (tag == L"small") style.size = std::max(style.size * 13 / 16, smallestLetters);
    if (tag == L"big") style.size = std::min(style.size * 18 / 16, largestLetters);
    if (tag == L"tt" || tag == L"code") style.face = fixedFace;
    if (tag == L"font") openFont(token, style);
    if (tag == L"a" && !token.attribute(L"href").empty()) {
      style.link = static_cast<int>(page_.links.size());
      style.colour = linkColour_;
      page_.links.push_back(token.attribute(L"href"));
    }
  }

  static void openFont(const Token& token, TextStyle& style) {
    style.colour = colourIn(token.attribute(L"color"), style.colour);
    const std::wstring face = token.attribute(L"face");
    if (!face.empty()) style.face = text::split(face, L',').front();
    const int size = numberIn(token.attribute(L"size"), 7);
    if (size > 0) style.size = fontSizes[size - 1];
  }

  // A paragraph ends where the next one begins, closed or not.
  void openParagraph(const Token& token) {
    const std::wstring& tag = token.tag;
    endBlock();
    if (state().tag == L"p" || (tag == L"li" && state().tag == L"li")) states_.pop_back();
    State& opened = push(tag);
    opened.align =
        alignIn(token.attribute(L"align"), tag == L"center" ? Align::centre : opened.align);
    if (tag == L"p") distance_ = paragraphDistance;
    if (tag == L"ul" || tag == L"ol" || tag == L"blockquote" || tag == L"dd") opened.indent += step;
    if (tag == L"li") bullet_ = true;
    if (isHeading(tag)) {
      opened.text.size = headingSizes[tag[1] - L'1'];
      opened.text.bold = true;
      distance_ = paragraphDistance;
    }
  }

  void openTable(const Token& token) {
    if (tables_ == deepestTable) return;
    ++tables_;
    endBlock();
    auto table = std::make_shared<Table>();
    table->width = widthIn(token.attribute(L"width"));
    if (!token.attribute(L"cellspacing").empty())
      table->spacing = numberIn(token.attribute(L"cellspacing"), mostSpacing);
    if (!token.attribute(L"cellpadding").empty())
      table->padding = numberIn(token.attribute(L"cellpadding"), mostSpacing);
    table->background = colourIn(token.attribute(L"bgcolor"), noColour);
    Block block;
    block.align = alignIn(token.attribute(L"align"), state().align);
    block.table = table;
    cell().blocks.push_back(std::move(block));
    flows_.push_back({nullptr, table, states_.size()});
    push(L"table");
  }

  void openRow() {
    closeCell();
    if (flows_.back().table) flows_.back().table->rows.emplace_back();
  }

  void openCell(const Token& token) {
    closeCell();
    const std::shared_ptr<Table> table = flows_.back().table;
    if (!table) return;
    endBlock();
    if (table->rows.empty()) table->rows.emplace_back();
    table->rows.back().emplace_back();
    Cell& added = table->rows.back().back();
    added.background = colourIn(token.attribute(L"bgcolor"), noColour);
    added.width = widthIn(token.attribute(L"width"));
    added.columns = std::max(1, numberIn(token.attribute(L"colspan"), mostColumns));
    flows_.push_back({&added, {}, states_.size()});
    State& opened = push(token.tag);
    opened.indent = 0;
    opened.align =
        alignIn(token.attribute(L"align"), token.tag == L"th" ? Align::centre : Align::left);
    if (token.tag == L"th") opened.text.bold = true;
  }

  // Without an open cell nothing happens.
  void closeCell() {
    if (flows_.size() < 2 || !flows_.back().cell) return;
    endBlock();
    states_.resize(flows_.back().states);
    flows_.pop_back();
  }

  void closeTable() {
    closeCell();
    if (flows_.size() < 2) return;
    --tables_;
    states_.resize(flows_.back().states);
    flows_.pop_back();
  }

  // The paragraph that text goes to.
  Block& block() {
    Cell& to = cell();
    if (!inBlock_ || to.blocks.empty() || to.blocks.back().table) {
      Block added;
      added.align = state().align;
      added.indent = state().indent;
      added.above = added.below = distance_;
      added.bullet = bullet_;
      to.blocks.push_back(std::move(added));
      inBlock_ = true;
    }
    return to.blocks.back();
  }

  void endBlock() {
    inBlock_ = false;
    bullet_ = false;
    distance_ = 0;
  }

  Page page_;
  std::vector<State> states_;
  std::vector<Flow> flows_;
  std::size_t tables_ = 0;  // that are open
  long linkColour_ = RGB(0, 0, 238);
  int distance_ = 0;
  bool inTitle_ = false;
  bool inBlock_ = false;
  bool bullet_ = false;
};

}  // namespace

Page parsePage(std::wstring_view html) { return Parser().parse(html); }

}  // namespace html
