#include "common/NameSet.h"

#include <algorithm>

#include "common/letter_case.h"

namespace text {

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
