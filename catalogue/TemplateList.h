// The templates that are listed, in the order in which they were found.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/NameSet.h"

// One template as it is listed.
struct TemplateEntry {
  std::wstring key;  // full path of the .dwt file, unique among the rows in any letter case
  std::wstring title;
  std::wstring folder;  // the template folder, without a trailing backslash
};

class TemplateList {
 public:
  // The template's number, by which the window's row refers to it. The window may show the rows in
  // another order.
  std::size_t add(const TemplateEntry& entry);
  void clear() noexcept;

  std::size_t count() const noexcept { return entries_.size(); }
  bool has(std::wstring_view key) const { return keys_.has(key); }
  // Raises an Error (9) for a number that there is not.
  const TemplateEntry& operator[](std::size_t number) const;

 private:
  std::vector<TemplateEntry> entries_;
  text::NameSet keys_;
};
