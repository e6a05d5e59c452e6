#include "common/NameSet.h"

#include <algorithm>

#include "common/letter_case.h"

namespace text {

NameSet::NameSet(const std::vector<std::wstring>& names) {
  names_.reserve(names.size());
  for (const std::wstring& name : names) names_.push_back(toLower(name));
  std::sort(names_.begin(), names_.end());
  names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
}

bool NameSet::insert(std::wstring_view name) {
  std::wstring lowered = toLower(name);
  const auto place = std::lower_bound(names_.begin(), names_.end(), lowered);
  if (place != names_.end() && *place == lowered) return false;
  names_.insert(place, std::move(lowered));
  return true;
}

void NameSet::erase(std::wstring_view name) {
  const std::wstring lowered = toLower(name);
  const auto place = std::lower_bound(names_.begin(), names_.end(), lowered);
  if (place != names_.end() && *place == lowered) names_.erase(place);
}

bool NameSet::has(std::wstring_view name) const {
  return std::binary_search(names_.begin(), names_.end(), toLower(name));
}

}  // namespace text
