#include "tests/fuzz/Input.h"

#include <algorithm>

namespace fuzz {
namespace {

struct Letter {
  unsigned code;
  std::size_t length;  // in bytes
};

// The first one.
Letter letterOf(std::string_view bytes) {
  const auto at = [bytes](std::size_t place) { return static_cast<unsigned char>(bytes[place]); };
  const unsigned lead = at(0);
  const Letter none = {0xD780 + lead, 1};
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return none;
  unsigned code = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return none;
    code = code << 6 | (at(i) & 0x3Fu);
  }
  return code > 0x10FFFF ? none : Letter{code, length};
}

}  // namespace

unsigned Input::byte() {
  const std::string_view taken = bytes(1);
  return taken.empty() ? 0 : static_cast<unsigned char>(taken.front());
}

unsigned Input::word() {
  const unsigned low = byte();
  return byte() << 8 | low;
}

unsigned long Input::doubleWord() {
  const unsigned long low = word();
  return static_cast<unsigned long>(word()) << 16 | low;
}

std::string_view Input::bytes(std::size_t count) {
  const std::string_view taken = rest_.substr(0, count);
  rest_.remove_prefix(taken.size());
  return taken;
}

std::string_view Input::rest() { return bytes(rest_.size()); }

std::string_view Input::line() {
  const std::string_view taken = bytes(std::min(rest_.find('\n'), rest_.size()));
  bytes(1);
  return taken;
}

std::vector<std::wstring> Input::texts() {
  std::vector<std::wstring> lines;
  while (!ended()) lines.push_back(text());
  return lines;
}

std::wstring Input::lettersOf(std::string_view bytes) {
  std::wstring letters;
  letters.reserve(bytes.size());
  while (!bytes.empty()) {
    const Letter letter = letterOf(bytes);
    if (letter.code >= 0x10000) {
      letters += static_cast<wchar_t>(0xD7C0 + (letter.code >> 10));
      letters += static_cast<wchar_t>(0xDC00 + (letter.code & 0x3FF));
    } else {
      letters += static_cast<wchar_t>(letter.code);
    }
    bytes.remove_prefix(letter.length);
  }
  return letters;
}

}  // namespace fuzz
