// The list of archives that a catalogue's download page asks for.
//
// The page's address carries it in its query: parts divided by "&", each a name, "=" and a value.
// "theme<n>" is the address of item n's theme archive, "dwt<n>" of its template archive; what else
// there is does not concern the list.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "online/transfer/modWINInetURL.h"

class DownloadTable {
 public:
  // The rows. An archive's kind is its address's row; its size is in the row below.
  enum Row : int {
    itemNumber = 0,
    theme = 1,
    themeSize = 2,
    dwt = 3,
    dwtSize = 4,
  };
  using Kind = Row;  // theme or dwt
  static constexpr std::array<Kind, 2> kinds = {theme, dwt};

  // Empties the table and fills it from an address's extra information.
  void fill(std::wstring_view extraInfo);

  // One for each part of the query; those behind the items are empty.
  std::size_t columns() const noexcept { return columns_.size(); }
  // Columns from the first while they have an item number that is not blank.
  short itemCount() const;
  // How many addresses were stored. One that replaced another was counted, too, on purpose.
  short addressCount() const noexcept { return addressCount_; }

  const std::wstring& text(std::size_t column, Row row) const { return columns_[column].rows[row]; }
  const std::wstring& address(std::size_t column, Row kind) const { return text(column, kind); }

  // An address taken apart, once somebody has done so; nothing when it could not be.
  using Parts = std::optional<modWINInetURL::CrackedUrl>;
  void setParts(std::size_t column, Row kind, Parts parts);
  const Parts& parts(std::size_t column, Row kind) const;

  // An archive's size in bytes; 0 when it could not be found.
  void setSize(std::size_t column, Row kind, unsigned long long bytes);
  unsigned long long size(std::size_t column, Row kind) const;
  const std::wstring& sizeText(std::size_t column, Row kind) const;

  // The places of all addresses, item by item, theme before template.
  struct Place {
    std::size_t column;
    Row kind;
  };
  std::vector<Place> places() const;

 private:
  void addPart(std::wstring_view part);
  void store(std::wstring_view number, Row kind, std::wstring_view address);

  struct Column {
    std::array<std::wstring, 5> rows;
    Parts theme;
    Parts dwt;
  };

  std::vector<Column> columns_;
  short addressCount_ = 0;
};
