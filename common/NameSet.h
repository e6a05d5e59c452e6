// Names without regard to letter case.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace text {

class NameSet {
 public:
  NameSet() = default;
  explicit NameSet(const std::vector<std::wstring>& names);

  // False when it is there already.
  bool insert(std::wstring_view name);
  void clear() noexcept { names_.clear(); }
  bool has(std::wstring_view name) const;

 private:
  std::set<std::wstring> names_;  // lowered
};

}  // namespace text
