// Names without regard to letter case.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
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
  std::unordered_set<std::wstring> names_;  // lowered
};

}  // namespace text
