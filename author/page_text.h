// What stands in pages and style sheets: comments, and the addresses of other files. Pure rules.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace author {

// Offsets are in characters from the text's first.
struct Comment {
  std::wstring text;  // without its marks
  std::size_t offset = 0;
};
std::vector<Comment> commentsOf(std::wstring_view html);

struct Link {
  std::wstring address;    // entities replaced, nothing else
  std::size_t offset = 0;  // of the tag, or of the address in a style sheet
};

// The files that a page is made of or leads to: by its tags, its styles, and the host's own
// components, which stand in comments.
std::vector<Link> linksOfPage(std::wstring_view html);
std::vector<Link> linksOfStyleSheet(std::wstring_view css);

// Everything in a page that is script: what it names may be a file.
std::wstring scriptsOf(std::wstring_view html);

// Where an address leads to, as far as it may be a file.
struct Target {
  enum class Kind {
    elsewhere,  // the network, a place in the same page, a script
    inFolder,   // `path`
    outside,    // above the template folder, or from the web's root
    localDisk,  // a drive, a share, or "file:"
  };
  Kind kind = Kind::elsewhere;
  std::wstring path;  // below the template folder, "\" between; empty for the folder itself
  bool isFolder = false;
};

// `page`: the file that the address stands in, below the template folder.
Target targetOf(std::wstring_view address, std::wstring_view page);

// From 1.
int lineOf(std::wstring_view text, std::size_t offset);

// The same for many offsets of one text.
class LineNumbers {
 public:
  explicit LineNumbers(std::wstring_view text);
  int of(std::size_t offset) const;

 private:
  std::vector<std::size_t> ends_;  // of the lines, in order
};

// Without blanks, tabs and line breaks at both ends.
std::wstring withoutSpace(std::wstring_view text);

}  // namespace author
