// Notes and help topics in HTML, which may come with any template.
#include "html/Page.h"

#include "html/Layout.h"
#include "html/TokenReader.h"
#include "html/encoding.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

struct Count {
  std::size_t letters = 0;
  std::size_t tables = 0;
};

void count(const html::Page& page, const html::Cell& cell, Count& found) {
  promise(cell.columns >= 1 && cell.columns <= 100, "a cell is in some columns");
  for (const html::Block& block : cell.blocks) {
    for (const html::Piece& piece : block.pieces) {
      found.letters += piece.text.size();
      promise(piece.style.size >= 6 && piece.style.size <= 200, "letters have a size");
      promise(piece.style.link == html::noLink ||
                  static_cast<std::size_t>(piece.style.link) < page.links.size(),
              "a link has an address");
      promise(piece.width >= 0 && piece.height >= 0, "a picture has no size below none");
    }
    if (!block.table) continue;
    ++found.tables;
    for (const auto& row : block.table->rows)
      for (const html::Cell& each : row) count(page, each, found);
  }
}

// Whatever a page says of its pictures, one may be of any size.
struct Pictures final : html::PictureSizes {
  SIZE sizeOf(const std::wstring& address) override {
    return address.empty() ? SIZE{} : SIZE{address[0], address.back()};
  }
};

void layOut(const html::Page& page) {
  html::Fonts fonts;
  Pictures pictures;
  for (const int width : {0, 150, 1000}) {
    const html::Layout layout = html::layOut(page, width, fonts, pictures);
    promise(layout.height >= 0 && layout.height < 1 << 30, "a page ends somewhere");
    for (const html::Item& item : layout.items)
      promise(item.kind == html::Item::Kind::fill || item.place.left <= item.place.right,
              "what is shown has a place");
  }
}

const fuzz::Target target("html_page", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const std::string_view bytes = input.rest();
  const std::wstring text = html::decodePage(bytes);
  promise(text.size() <= bytes.size(), "a page has no more letters than bytes");

  html::TokenReader reader(text);
  html::Token token;
  std::size_t tokens = 0;
  while (reader.next(token)) ++tokens;
  promise(tokens <= text.size(), "each token takes a letter");

  const html::Page page = html::parsePage(text);
  Count found;
  count(page, page.body, found);
  promise(found.letters + page.title.size() <= text.size() + 1,
          "nothing is shown that is not there");
  promise(found.tables <= text.size() / 6, "a table is written");
  layOut(page);
});

}  // namespace
