// Models of the system's conversions: Western letters, a page with letters of two bytes, of which
// the second may look like a backslash, and UTF-8.
#include <windows.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "tests/fuzz/System.h"

namespace {

constexpr UINT western = 1252;
constexpr UINT twoByte = 932;
constexpr wchar_t replacement = 0xFFFD;

UINT ansiPage = western;

// Where 0x80 to 0x9F lead.
constexpr std::array<wchar_t, 32> westernSigns = {
    0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030, 0x160,
    0x2039, 0x152,  0x8D,   0x17D,  0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};

UINT resolved(UINT page) {
  if (page == CP_ACP || page == CP_OEMCP) return ansiPage;
  return page;
}

class Decoder {
 public:
  Decoder(UINT page, std::string_view bytes) : page_(page), bytes_(bytes) {}

  // Nothing for bytes that are none of the page's.
  std::optional<std::wstring> run(bool strict) {
    std::wstring letters;
    while (!bytes_.empty()) {
      if (const auto letter = next())
        letters += *letter;
      else if (strict)
        return std::nullopt;
      else
        letters += replacement;
    }
    return letters;
  }

 private:
  unsigned take() {
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }
  unsigned ahead() const { return bytes_.empty() ? 0 : static_cast<unsigned char>(bytes_[0]); }

  std::optional<std::wstring> next() {
    const unsigned byte = take();
    if (byte < 0x80) return std::wstring(1, static_cast<wchar_t>(byte));
    if (page_ == CP_UTF8) return unicode(byte);
    if (page_ == twoByte) return pair(byte);
    const auto plain = static_cast<wchar_t>(byte);
    return std::wstring(1, byte < 0xA0 ? westernSigns[byte - 0x80] : plain);
  }

  std::optional<std::wstring> pair(unsigned lead) {
    if (lead >= 0xA1 && lead <= 0xDF)
      return std::wstring(1, static_cast<wchar_t>(0xFF61 + lead - 0xA1));
    const unsigned trail = ahead();
    if (lead == 0x80 || lead == 0xA0 || lead > 0xFC || trail < 0x40 || trail == 0x7F ||
        trail > 0xFC)
      return std::nullopt;
    take();
    return std::wstring(1, static_cast<wchar_t>(0x3400 + (lead - 0x81) * 0xBD + trail - 0x40));
  }

  std::optional<std::wstring> unicode(unsigned lead) {
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4) return std::nullopt;
    unsigned code = lead & (0x3Fu >> more);
    for (int i = 0; i < more; ++i) {
      if ((ahead() & 0xC0) != 0x80) return std::nullopt;
      code = code << 6 | (take() & 0x3Fu);
    }
    constexpr unsigned smallest[] = {0x80, 0x800, 0x10000};
    if (code < smallest[more - 1] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
      return std::nullopt;
    if (code < 0x10000) return std::wstring(1, static_cast<wchar_t>(code));
    return std::wstring{static_cast<wchar_t>(0xD7C0 + (code >> 10)),
                        static_cast<wchar_t>(0xDC00 + (code & 0x3FF))};
  }

  UINT page_;
  std::string_view bytes_;
};

void putUnicode(std::string& bytes, unsigned code) {
  if (code < 0x80) {
    bytes += static_cast<char>(code);
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr unsigned leads[] = {0xC0, 0xE0, 0xF0};
  bytes += static_cast<char>(leads[more - 1] | code >> (6 * more));
  for (int i = more - 1; i >= 0; --i) bytes += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
}

// False when the page lacks the letter.
bool put(std::string& bytes, UINT page, wchar_t letter) {
  if (letter < 0x80) {
    bytes += static_cast<char>(letter);
    return true;
  }
  if (page == western) {
    const auto sign = std::find(westernSigns.begin(), westernSigns.end(), letter);
    const bool isPlain = letter >= 0xA0 && letter < 0x100;
    if (!isPlain && sign == westernSigns.end()) return false;
    bytes += static_cast<char>(isPlain ? letter : 0x80 + (sign - westernSigns.begin()));
    return true;
  }
  if (page != twoByte) return false;
  if (letter >= 0xFF61 && letter < 0xFF61 + 0x3F) {
    bytes += static_cast<char>(0xA1 + letter - 0xFF61);
    return true;
  }
  if (letter < 0x3400) return false;
  const unsigned place = letter - 0x3400u;
  const char pair[] = {static_cast<char>(0x81 + place / 0xBD),
                       static_cast<char>(0x40 + place % 0xBD)};
  if (place / 0xBD > 0x7B || Decoder(page, {pair, 2}).run(true) != std::wstring(1, letter))
    return false;
  bytes.append(pair, 2);
  return true;
}

// Answers as the system does: with the whole length, or with 0 when there is too little room.
template <class Letter>
int handOut(const std::basic_string<Letter>& made, Letter* to, int size) {
  const int length = static_cast<int>(made.size());
  if (size == 0) return length;
  if (length > size) return 0;
  made.copy(to, made.size());
  return length;
}

bool isHalf(wchar_t letter, unsigned from) { return letter >= from && letter < from + 0x400; }

}  // namespace

UINT GetACP() { return ansiPage; }

int MultiByteToWideChar(UINT page, DWORD flags, const char* bytes, int count, wchar_t* letters,
                        int size) {
  if (count <= 0) return 0;
  const auto made = Decoder(resolved(page), {bytes, static_cast<std::size_t>(count)})
                        .run((flags & MB_ERR_INVALID_CHARS) != 0);
  return made ? handOut(*made, letters, size) : 0;
}

int WideCharToMultiByte(UINT page, DWORD, const wchar_t* letters, int count, char* bytes, int size,
                        const char*, BOOL* lossy) {
  if (count <= 0) return 0;
  page = resolved(page);
  std::string made;
  if (lossy) *lossy = FALSE;
  for (int i = 0; i < count; ++i) {
    if (page == CP_UTF8) {
      const bool isPair =
          isHalf(letters[i], 0xD800) && i + 1 < count && isHalf(letters[i + 1], 0xDC00);
      const bool isBroken = !isPair && isHalf(letters[i] & 0xFBFF, 0xD800);
      putUnicode(made, isPair ? 0x10000u + ((letters[i] & 0x3FFu) << 10 | (letters[i + 1] & 0x3FFu))
                       : isBroken ? replacement
                                  : letters[i]);
      if (isPair) ++i;
    } else if (!put(made, page, letters[i])) {
      made += '?';
      if (lossy) *lossy = TRUE;
    }
  }
  return handOut(made, bytes, size);
}

// Latin, Greek and Cyrillic letters will do.
static wchar_t lower(wchar_t letter) {
  const bool isCapital =
      (letter >= L'A' && letter <= L'Z') || (letter >= 0xC0 && letter <= 0xDE && letter != 0xD7) ||
      (letter >= 0x391 && letter <= 0x3A9) || (letter >= 0x410 && letter <= 0x42F);
  return isCapital ? static_cast<wchar_t>(letter + 32) : letter;
}

static wchar_t upper(wchar_t letter) {
  const auto capital = static_cast<wchar_t>(letter - 32);
  return letter >= 32 && lower(capital) == letter ? capital : letter;
}

DWORD CharLowerBuffW(wchar_t* text, DWORD count) {
  for (DWORD i = 0; i < count; ++i) text[i] = lower(text[i]);
  return count;
}

DWORD CharUpperBuffW(wchar_t* text, DWORD count) {
  for (DWORD i = 0; i < count; ++i) text[i] = upper(text[i]);
  return count;
}

void fuzz::chooseCodePage(unsigned choice) {
  constexpr UINT pages[] = {western, twoByte, CP_UTF8};
  ansiPage = pages[choice % 3];
}
