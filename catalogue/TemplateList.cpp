#include "catalogue/TemplateList.h"

#include "common/errors.h"

std::size_t TemplateList::add(const TemplateEntry& entry) {
  entries_.push_back(entry);
  keys_.insert(entry.key);
  return entries_.size() - 1;
}

void TemplateList::clear() noexcept {
  entries_.clear();
  keys_.clear();
}

const TemplateEntry& TemplateList::operator[](std::size_t number) const {
  if (number >= entries_.size()) throw Error(errors::subscriptOutOfRange);
  return entries_[number];
}
