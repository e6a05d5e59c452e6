// A made-up input, taken apart from its beginning. Whatever the bytes are, there is something to
// take; past the end it is empty or zero. Inputs are mostly text, line by line, so that they can be
// written and read by people.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  bool ended() const noexcept { return rest_.empty(); }
  unsigned byte();
  unsigned word();                            // the low byte first
  unsigned long doubleWord();                 // the low byte first
  std::string_view bytes(std::size_t count);  // fewer at the end
  std::string_view rest();
  std::string_view line();  // up to the next line feed, which is passed over

  // The same in letters.
  std::wstring text() { return lettersOf(line()); }
  std::wstring restAsText() { return lettersOf(rest()); }
  std::vector<std::wstring> texts();  // all lines that are left

  // UTF-8; a byte that is none becomes half of a pair, so that such halves come up too.
  static std::wstring lettersOf(std::string_view bytes);

 private:
  std::string_view rest_;
};

}  // namespace fuzz
