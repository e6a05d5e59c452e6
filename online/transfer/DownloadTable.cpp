#include "online/transfer/DownloadTable.h"

#include <utility>

#include "common/letter_case.h"
#include "common/text.h"
#include "online/transfer/numeric.h"

void DownloadTable::fill(std::wstring_view extraInfo) {
  columns_.clear();
  addressCount_ = 0;
  if (const auto mark = extraInfo.find(L'?'); mark != extraInfo.npos)
    extraInfo.remove_prefix(mark + 1);
  if (text::trimBlanks(extraInfo).empty()) return;
  const std::vector<std::wstring> parts = text::split(extraInfo, L'&');
  columns_.resize(parts.size());
  for (const std::wstring& part : parts) addPart(part);
}

// Names are told by their beginning alone.
void DownloadTable::addPart(std::wstring_view part) {
  const auto equals = part.find(L'=');
  if (equals == part.npos) return;
  const std::wstring name = text::toLower(part.substr(0, equals));
  for (const auto& [prefix, kind] :
       {std::pair<std::wstring_view, Row>{L"theme", theme}, {L"dwt", dwt}}) {
    if (!name.starts_with(prefix)) continue;
    const std::wstring number = name.substr(prefix.size());
    if (isNumeric(number)) store(number, kind, part.substr(equals + 1));
    return;
  }
}

void DownloadTable::store(std::wstring_view number, Row kind, std::wstring_view address) {
  for (auto& column : columns_) {
    std::wstring& item = column.rows[itemNumber];
    if (!item.empty() && item != number) continue;
    column.rows[kind] = address;
    item = number;
    ++addressCount_;
    return;
  }
}

short DownloadTable::itemCount() const {
  short count = 0;
  for (const auto& column : columns_) {
    if (text::trimBlanks(column.rows[itemNumber]).empty()) break;
    ++count;
  }
  return count;
}

void DownloadTable::setParts(std::size_t column, Row kind, Parts parts) {
  (kind == theme ? columns_[column].theme : columns_[column].dwt) = std::move(parts);
}

const DownloadTable::Parts& DownloadTable::parts(std::size_t column, Row kind) const {
  return kind == theme ? columns_[column].theme : columns_[column].dwt;
}

void DownloadTable::setSize(std::size_t column, Row kind, unsigned long long bytes) {
  columns_[column].rows[kind + 1] = text::decimal(static_cast<long long>(bytes));
}

unsigned long long DownloadTable::size(std::size_t column, Row kind) const {
  return std::wcstoull(sizeText(column, kind).c_str(), nullptr, 10);
}

const std::wstring& DownloadTable::sizeText(std::size_t column, Row kind) const {
  return columns_[column].rows[kind + 1];
}

std::vector<DownloadTable::Place> DownloadTable::places() const {
  std::vector<Place> result;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    if (columns_[column].rows[itemNumber].empty()) break;
    for (const Row kind : kinds)
      if (!address(column, kind).empty()) result.push_back({column, kind});
  }
  return result;
}
