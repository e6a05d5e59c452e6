// The editable regions of a template: what the pages that are made of it may change. They are
// marked by comments,
//
//     <!-- #BeginEditable "body" --> ... <!-- #EndEditable -->
//
// Pure rules.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace author {

struct EditableRegion {
  std::wstring name;
  std::size_t offset = 0;  // of its first mark, in characters from the page's first
};

enum class RegionFault {
  unnamed,
  repeated,  // a name that an earlier region has, in any letter case
  nested,    // begins inside of another one
  unclosed,
  unopened,
};

struct RegionFinding {
  RegionFault fault = RegionFault::unnamed;
  std::wstring name;       // empty for an end
  std::size_t offset = 0;  // of the mark that is wrong
  std::size_t other = 0;   // of the region that it repeats or lies in
};

struct EditableRegions {
  std::vector<EditableRegion> regions;  // in the page's order, each name once
  std::vector<RegionFinding> findings;
};

EditableRegions readRegions(std::wstring_view html);

}  // namespace author
