// The help as a book: its topics in order, and the search in them.
//
// A help folder holds a page of HTML for each topic, "<topic>.htm", and "contents.txt" in UTF-8: a
// line "<topic> = <title>" for each, two blanks deeper than the topic that it belongs to.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace help {

struct Topic {
  std::wstring name;
  std::wstring title;
  int level = 0;  // 0 for a topic of its own
};

class HelpBook {
 public:
  // A folder without contents gives a book without topics.
  explicit HelpBook(const std::wstring& folder);

  const std::wstring& folder() const noexcept { return folder_; }  // ends in a backslash
  const std::vector<Topic>& topics() const noexcept { return topics_; }
  // Where the topic of that name stands, in any letter case.
  std::optional<std::size_t> find(std::wstring_view name) const;
  std::wstring fileOf(const Topic& topic) const;
  // The topic whose page that file is.
  std::optional<std::size_t> topicOfFile(std::wstring_view file) const;

  // The topics that hold all of the words, in any letter case; those that hold them in their titles
  // first, otherwise in the book's order. Nothing for no word.
  std::vector<std::size_t> search(std::wstring_view words) const;

 private:
  std::wstring folder_;
  std::vector<Topic> topics_;
};

}  // namespace help
