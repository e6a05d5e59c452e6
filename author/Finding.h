// What the check has to say of one place in a template folder.
#pragma once

#include <string>
#include <vector>

namespace author {

struct Finding {
  std::wstring rule;    // a name that stays the same, for programs: "theme-flags-short"
  std::wstring file;    // as the user wrote the folder, and the path below it
  int line = 0;         // from 1; 0 when it is about the file as a whole
  std::wstring what;    // what was found
  std::wstring effect;  // what happens
  std::wstring advice;  // what to do

  bool operator==(const Finding&) const = default;
};

using Findings = std::vector<Finding>;

}  // namespace author
