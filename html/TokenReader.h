// The tags and texts that HTML is made of.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace html {

struct Token {
  std::wstring text;  // when `tag` is empty
  std::wstring tag;   // in lower case
  bool closing = false;
  std::vector<std::pair<std::wstring, std::wstring>> attributes;  // names in lower case

  // Empty when there is none of that name.
  std::wstring attribute(std::wstring_view name) const;
};

// Reads one token behind the other. Comments and declarations are left out, and so is what stands
// in scripts and style sheets; entities are replaced.
class TokenReader {
 public:
  explicit TokenReader(std::wstring_view html) : html_(html) {}
  bool next(Token& token);

  // Where the last token stands in the page: its first letter, and behind its last. A script's or
  // style sheet's contents belong to the tag that opens it.
  std::size_t start() const noexcept { return start_; }
  std::size_t end() const noexcept { return at_; }

 private:
  bool skipMarkup();
  void readText(Token& token);
  void readTag(Token& token);
  void readAttribute(Token& token);
  std::wstring readName();
  std::wstring readValue();
  void skipBlanks();
  void skipTo(std::wstring_view end);
  void skipToClosing(const std::wstring& tag);

  bool atEnd() const { return at_ >= html_.size(); }
  wchar_t letter() const { return html_[at_]; }
  bool isAt(std::wstring_view text) const { return html_.substr(at_, text.size()) == text; }

  std::wstring_view html_;
  std::size_t at_ = 0;
  std::size_t start_ = 0;
};

std::wstring withoutEntities(std::wstring_view text);

}  // namespace html
