// The query of a catalogue's download page as a list of files.
#include <set>

#include "common/text.h"
#include "online/transfer/DownloadTable.h"
#include "online/transfer/numeric.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

std::vector<std::wstring> addressesOf(const DownloadTable& table) {
  std::vector<std::wstring> addresses;
  for (const auto& place : table.places())
    addresses.push_back(table.address(place.column, place.kind));
  return addresses;
}

const fuzz::Target target("query_list", [](fuzz::Input input) {
  const std::wstring query = input.restAsText();
  DownloadTable table;
  table.fill(query);

  const std::vector<std::wstring> parts = text::split(query.substr(query.find(L'?') + 1), L'&');
  promise(table.columns() == 0 || table.columns() == parts.size(), "a column for each part");
  promise(table.itemCount() >= 0 && static_cast<std::size_t>(table.itemCount()) <= table.columns(),
          "no more items than columns");
  promise(table.addressCount() >= table.itemCount(), "an address for each item at least");

  std::set<std::wstring> numbers;
  for (std::size_t column = 0; column < table.columns(); ++column) {
    const std::wstring& number = table.text(column, DownloadTable::itemNumber);
    const bool isItem = !number.empty();
    promise(!isItem || isNumeric(number), "an item has a number");
    promise(!isItem || numbers.insert(number).second, "a number has one item");
    for (const auto kind : DownloadTable::kinds)
      promise(isItem || table.address(column, kind).empty(), "no address without an item");
  }
  const std::vector<std::wstring> addresses = addressesOf(table);
  promise(addresses.size() <= 2 * numbers.size(), "two archives for an item at most");
  for (const std::wstring& address : addresses)
    promise(address.find(L'&') == address.npos && query.find(L"=" + address) != query.npos,
            "an address stands as it is behind an equals sign");

  for (const auto& place : table.places()) table.setSize(place.column, place.kind, 1234567890123);
  for (const auto& place : table.places())
    promise(table.size(place.column, place.kind) == 1234567890123, "a size is kept");
  table.fill(query);
  promise(addressesOf(table) == addresses, "filling it again changes nothing");
});

}  // namespace
