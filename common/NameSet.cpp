#include "common/NameSet.h"

#include "common/letter_case.h"

namespace text {

NameSet::NameSet(const std::vector<std::wstring>& names) {
  for (const std::wstring& name : names) insert(name);
}

bool NameSet::insert(std::wstring_view name) { return names_.insert(toLower(name)).second; }

bool NameSet::has(std::wstring_view name) const { return names_.contains(toLower(name)); }

}  // namespace text
