#include "common/forms/dialog_template.h"

#include <cstring>

#include "common/errors.h"
#include "common/handles.h"

namespace forms {
namespace {

constexpr std::size_t titleOffset =
    26;  // behind the fixed part: versions, styles, count, rectangle
constexpr std::size_t styleOffset = 12;
constexpr std::size_t widthOffset = 22;
constexpr std::size_t heightOffset = 24;

// Walks a template in its 16-bit units.
class Walker {
 public:
  Walker(const BYTE* bytes, std::size_t size) : bytes_(bytes), size_(size) {}

  std::size_t position = titleOffset;

  WORD word() {
    if (position + sizeof(WORD) > size_) throw Error(errors::cannotCreateObject);
    WORD value;
    std::memcpy(&value, bytes_ + position, sizeof value);
    position += sizeof value;
    return value;
  }

  void skipText() {
    while (word() != 0) {
    }
  }

  // A menu or class: nothing, a number behind 0xFFFF, or a text.
  void skipNameOrNumber() {
    const WORD first = word();
    // Not run by tests: our dialogs have neither.
    if (first == 0xFFFF)
      word();
    else if (first != 0)
      skipText();  // Not run by tests: as above.
  }

 private:
  const BYTE* bytes_;
  std::size_t size_;
};

constexpr std::size_t aligned(std::size_t position) { return (position + 3) & ~std::size_t{3}; }

void append(std::vector<BYTE>& to, const void* from, std::size_t size) {
  const auto* bytes = static_cast<const BYTE*>(from);
  to.insert(to.end(), bytes, bytes + size);
}

}  // namespace

DialogFont messageFont() {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0))
    return {L"MS Shell Dlg 2", 8};  // Not run by tests: every system has one.
  const handles::ScreenContext screen;
  const LONG height = metrics.lfMessageFont.lfHeight;
  const int points =
      MulDiv(height < 0 ? -height : height, 72, GetDeviceCaps(screen.get(), LOGPIXELSY));
  return {metrics.lfMessageFont.lfFaceName, static_cast<WORD>(points)};
}

std::vector<BYTE> loadDialogTemplate(HINSTANCE module, int dialog, const DialogFont& font) {
  const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(dialog), MAKEINTRESOURCEW(5));
  const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
  const auto* bytes = static_cast<const BYTE*>(loaded ? LockResource(loaded) : nullptr);
  if (!bytes) throw Error(errors::cannotCreateObject);
  const std::size_t size = SizeofResource(module, found);

  Walker walker(bytes, size);
  walker.skipNameOrNumber();  // menu
  walker.skipNameOrNumber();  // class
  walker.skipText();          // title
  const std::size_t fontStart = walker.position;

  DWORD style;
  std::memcpy(&style, bytes + styleOffset, sizeof style);
  WORD weight = FW_NORMAL;
  WORD italicAndCharset = DEFAULT_CHARSET << 8;
  if (style & DS_SETFONT) {
    walker.word();  // points
    weight = walker.word();
    italicAndCharset = walker.word();
    walker.skipText();
  }
  style |= DS_SETFONT;

  std::vector<BYTE> result(bytes, bytes + fontStart);
  std::memcpy(result.data() + styleOffset, &style, sizeof style);
  append(result, &font.points, sizeof font.points);
  append(result, &weight, sizeof weight);
  append(result, &italicAndCharset, sizeof italicAndCharset);
  append(result, font.face.c_str(), (font.face.size() + 1) * sizeof(wchar_t));
  result.resize(aligned(result.size()));
  const std::size_t items = aligned(walker.position);
  if (items < size) append(result, bytes + items, size - items);
  return result;
}

SIZE dialogUnitsOf(const std::vector<BYTE>& dialogTemplate) {
  if (dialogTemplate.size() < titleOffset) throw Error(errors::cannotCreateObject);
  short width = 0;
  short height = 0;
  std::memcpy(&width, dialogTemplate.data() + widthOffset, sizeof width);
  std::memcpy(&height, dialogTemplate.data() + heightOffset, sizeof height);
  return {width, height};
}

}  // namespace forms
