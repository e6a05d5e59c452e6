// A list in report mode with one column.
#pragma once

#include <memory>
#include <vector>

#include "common/forms/controls.h"

namespace forms {

struct ListRow {
  std::wstring text;
  std::wstring toolTip;
  int icon = -1;
  std::size_t item = 0;  // the caller's own number for what the row shows
  unsigned found = 0;    // set by the list: its place in the order in which the rows came
};

// Rows are numbered as they are shown. A click on the header sorts, the next one the other way, and
// the third one brings back the order in which the rows came.
class ListView : public Control {
 public:
  ListView(Form& form, int id, std::wstring columnTitle);
  ~ListView() override;

  int count() const noexcept;
  int add(ListRow row);  // where it stands now
  void removeAt(int index);
  void clear();
  const ListRow& row(int index) const;
  void setText(int index, std::wstring_view value);
  // The first row of exactly that text; -1 when none has it. Letter case does not count.
  int find(std::wstring_view text) const;

  int selected() const noexcept;    // -1 when none is
  void select(int index) noexcept;  // also makes it visible; does not fire onItemClick

  // Wide enough for contents and header.
  void autoSizeColumn() noexcept;

  // Where on the screen a context menu of the selected row belongs, from what WM_CONTEXTMENU
  // brings; nothing for a click beside the rows.
  std::optional<POINT> menuPlace(LPARAM place) noexcept;
  void setImages(HIMAGELIST images) noexcept;  // borrowed

  // Between these, what is added shows no more often than ten times a second, at the next add or
  // showGrowth: painting costs far more than adding. The user can go on working with the list.
  void beginGrowing() noexcept;
  bool showGrowth() noexcept;  // true when it has shown
  void endGrowing() noexcept;

  // What the list says in its space while it has no row.
  void setEmptyText(std::wstring_view text);

  // The user selected a row, by mouse or keyboard, or clicked on the selected one again.
  std::function<void()> onItemClick;
  std::function<void()> onDoubleClick;

 private:
  void onAttached() override;
  bool repaintsWhenSized() const override { return rows_.empty(); }
  LRESULT onNotify(NMHDR& header) override;
  void onItemChanged(const NMLISTVIEW& change);
  void onClick(int index);
  void addTip(NMLVGETINFOTIPW& tip) const;
  LRESULT onCustomDraw(const NMCUSTOMDRAW& drawing) const;
  void sort();
  int placeOf(const ListRow& added) const;

  std::wstring columnTitle_;
  std::vector<std::unique_ptr<ListRow>> rows_;  // owned; the control refers to them
  int quiet_ = 0;
  bool growing_ = false;
  DWORD shownAt_ = 0;       // by the tick count
  bool pressTold_ = false;  // by the selection that this press of the mouse button has made
  enum Order : LPARAM { asFound, ascending, descending } order_ = asFound;
  unsigned found_ = 0;
  std::wstring emptyText_;
};

}  // namespace forms
