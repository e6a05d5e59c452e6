// A description file's text, line by line. What a key's value is, the system's reader says; this
// tells where it stands, and what that reader passes over.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace author {

struct DescriptionKey {
  std::wstring name;
  int line = 0;
  bool hasNul = false;  // in its value
};

struct DescriptionSection {
  std::wstring name;
  int line = 0;
  std::vector<DescriptionKey> keys;

  const DescriptionKey* find(std::wstring_view key) const;  // the first, in any letter case
};

struct DescriptionLines {
  std::vector<DescriptionSection> sections;
  std::vector<int> strayLines;  // neither a section nor a key nor a comment, or before any section

  const DescriptionSection* find(std::wstring_view section) const;
  // 0 when it is not there.
  int lineOf(std::wstring_view section, std::wstring_view key) const;
};

DescriptionLines readDescription(std::wstring_view text);

}  // namespace author
