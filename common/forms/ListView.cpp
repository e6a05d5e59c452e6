#include "common/forms/ListView.h"

#include <windowsx.h>

#include <algorithm>

#include "common/letter_case.h"
#include "common/text.h"

namespace forms {
namespace {

constexpr DWORD growthInterval = 100;  // milliseconds

const ListRow& rowOf(LPARAM data) { return *reinterpret_cast<const ListRow*>(data); }

// By the user's locale, ignoring letter case.
int compareTexts(const ListRow& left, const ListRow& right) {
  return lstrcmpiW(left.text.c_str(), right.text.c_str());
}

int CALLBACK compareAscending(LPARAM left, LPARAM right, LPARAM) noexcept {
  return compareTexts(rowOf(left), rowOf(right));
}

int CALLBACK compareDescending(LPARAM left, LPARAM right, LPARAM) noexcept {
  return compareTexts(rowOf(right), rowOf(left));
}

int CALLBACK compareFound(LPARAM left, LPARAM right, LPARAM) noexcept {
  return rowOf(left).found < rowOf(right).found ? -1 : 1;
}

// By the order that the list has.
constexpr PFNLVCOMPARE comparisons[] = {compareFound, compareAscending, compareDescending};

}  // namespace

ListView::ListView(Form& form, int id, std::wstring columnTitle)
    : Control(form, id), columnTitle_(std::move(columnTitle)) {}

ListView::~ListView() = default;

void ListView::onAttached() {
  // Drawn aside: no flicker while the window is resized.
  constexpr DWORD wanted =
      LVS_EX_FULLROWSELECT | LVS_EX_INFOTIP | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
  ListView_SetExtendedListViewStyleEx(hwnd(), wanted, wanted);
  LVCOLUMNW column = {};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.pszText = columnTitle_.data();
  column.cx = 100;
  SendMessageW(hwnd(), LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  autoSizeColumn();
}

int ListView::count() const noexcept { return static_cast<int>(rows_.size()); }

int ListView::add(ListRow row) {
  rows_.push_back(std::make_unique<ListRow>(std::move(row)));
  ListRow& added = *rows_.back();
  added.found = found_++;
  LVITEMW item = {};
  item.mask = LVIF_TEXT | LVIF_PARAM | LVIF_IMAGE;
  item.iItem = order_ == asFound ? count() - 1 : placeOf(added);
  item.pszText = added.text.data();
  item.iImage = added.icon;
  item.lParam = reinterpret_cast<LPARAM>(&added);
  const int index =
      static_cast<int>(SendMessageW(hwnd(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  if (index < 0) {  // Not run by tests: no memory.
    rows_.pop_back();
    throw Error(errors::outOfMemory);
  }
  if (count() == 1) setEmptyText({});
  showGrowth();
  return index;
}

void ListView::beginGrowing() noexcept {
  growing_ = true;
  shownAt_ = GetTickCount();
  SendMessageW(hwnd(), WM_SETREDRAW, FALSE, 0);
}

bool ListView::showGrowth() noexcept {
  if (!growing_ || GetTickCount() - shownAt_ < growthInterval) return false;
  endGrowing();
  UpdateWindow(hwnd());
  beginGrowing();
  return true;
}

void ListView::endGrowing() noexcept {
  growing_ = false;
  SendMessageW(hwnd(), WM_SETREDRAW, TRUE, 0);
  InvalidateRect(hwnd(), nullptr, TRUE);
}

// Behind the rows that come before it in the order of the header.
int ListView::placeOf(const ListRow& added) const {
  int first = 0;
  int last = count() - 1;
  while (first < last) {
    const int middle = first + (last - first) / 2;
    const int order = compareTexts(row(middle), added);
    if ((order_ == descending ? -order : order) <= 0)
      first = middle + 1;
    else
      last = middle;
  }
  return first;
}

void ListView::removeAt(int index) {
  const ListRow* const gone = &row(index);
  ++quiet_;
  ListView_DeleteItem(hwnd(), index);
  --quiet_;
  std::erase_if(rows_, [gone](const auto& each) { return each.get() == gone; });
}

void ListView::clear() {
  ++quiet_;
  ListView_DeleteAllItems(hwnd());
  --quiet_;
  rows_.clear();
}

const ListRow& ListView::row(int index) const {
  LVITEMW item = {};
  item.mask = LVIF_PARAM;
  item.iItem = index;
  if (!SendMessageW(hwnd(), LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)))
    throw Error(errors::subscriptOutOfRange);
  return rowOf(item.lParam);
}

void ListView::setText(int index, std::wstring_view value) {
  auto& target = const_cast<ListRow&>(row(index));  // the list owns its rows
  target.text = value;
  LVITEMW item = {};
  item.pszText = target.text.data();
  SendMessageW(hwnd(), LVM_SETITEMTEXTW, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&item));
}

int ListView::find(std::wstring_view text) const {
  for (int index = 0; index < count(); ++index)
    if (text::equalIgnoringCase(row(index).text, text)) return index;
  return -1;
}

int ListView::selected() const noexcept {
  const int index = ListView_GetNextItem(hwnd(), -1, LVNI_SELECTED);
  return index >= 0 ? index : ListView_GetNextItem(hwnd(), -1, LVNI_FOCUSED);
}

void ListView::select(int index) noexcept {
  ++quiet_;
  constexpr UINT state = LVIS_SELECTED | LVIS_FOCUSED;
  ListView_SetItemState(hwnd(), index, state, state);
  ListView_EnsureVisible(hwnd(), index, FALSE);
  --quiet_;
}

void ListView::autoSizeColumn() noexcept {
  ListView_SetColumnWidth(hwnd(), 0, LVSCW_AUTOSIZE);
  const int contents = ListView_GetColumnWidth(hwnd(), 0);
  // For the last column this mode fills the list, however wide the contents are.
  ListView_SetColumnWidth(hwnd(), 0, LVSCW_AUTOSIZE_USEHEADER);
  if (ListView_GetColumnWidth(hwnd(), 0) < contents) ListView_SetColumnWidth(hwnd(), 0, contents);
}

std::optional<POINT> ListView::menuPlace(LPARAM place) noexcept {
  POINT point = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
  if (place != -1) {
    LVHITTESTINFO hit = {};
    hit.pt = point;
    MapWindowPoints(nullptr, hwnd(), &hit.pt, 1);
    if (ListView_HitTest(hwnd(), &hit) < 0) return std::nullopt;
    return point;
  }
  const int index = selected();  // by the keyboard
  if (index < 0) return std::nullopt;
  ListView_EnsureVisible(hwnd(), index, FALSE);
  RECT row;
  ListView_GetItemRect(hwnd(), index, &row, LVIR_LABEL);
  point = {row.left, row.bottom};
  MapWindowPoints(hwnd(), nullptr, &point, 1);
  return point;
}

void ListView::setImages(HIMAGELIST images) noexcept {
  ListView_SetImageList(hwnd(), images, LVSIL_SMALL);
}

LRESULT ListView::onNotify(NMHDR& header) {
  switch (header.code) {
    case LVN_ITEMCHANGED:
      onItemChanged(reinterpret_cast<const NMLISTVIEW&>(header));
      return 0;
    case LVN_BEGINDRAG:
      pressTold_ = false;  // no click will follow
      return 0;
    case LVN_COLUMNCLICK:
      order_ = order_ == asFound ? ascending : order_ == ascending ? descending : asFound;
      sort();
      return 0;
    case NM_CUSTOMDRAW:
      return onCustomDraw(reinterpret_cast<const NMCUSTOMDRAW&>(header));
    case LVN_GETINFOTIPW:
      addTip(reinterpret_cast<NMLVGETINFOTIPW&>(header));
      return 0;
    case NM_CLICK:
      onClick(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem);
      return 0;
    case NM_DBLCLK:
      if (reinterpret_cast<const NMITEMACTIVATE&>(header).iItem >= 0 && onDoubleClick)
        onDoubleClick();
      return 0;
    default:
      return 0;
  }
}

void ListView::onItemChanged(const NMLISTVIEW& change) {
  const bool chosen = (change.uChanged & LVIF_STATE) && (change.uNewState & LVIS_SELECTED) &&
                      !(change.uOldState & LVIS_SELECTED);
  if (!chosen || quiet_ > 0) return;
  pressTold_ = GetKeyState(VK_LBUTTON) < 0;
  if (onItemClick) onItemClick();
}

void ListView::onClick(int index) {
  const bool told = std::exchange(pressTold_, false);
  if (index >= 0) {
    if (!told && onItemClick) onItemClick();
  } else if (selected() >= 0) {
    // A click beside the rows leaves the selection where it was.
    select(selected());
  }
}

// The list has begun the tip with a label that is cut off, and leaves it empty otherwise.
void ListView::addTip(NMLVGETINFOTIPW& tip) const {
  const std::wstring& added = row(tip.iItem).toolTip;
  if (added.empty()) return;
  const bool begun = tip.dwFlags == 0 && tip.pszText[0];
  const std::wstring whole = begun ? text::join({tip.pszText, L"\r\n", added}) : added;
  lstrcpynW(tip.pszText, whole.c_str(), tip.cchTextMax);
}

void ListView::setEmptyText(std::wstring_view text) {
  if (emptyText_ == text) return;
  emptyText_ = text;
  InvalidateRect(hwnd(), nullptr, TRUE);
}

LRESULT ListView::onCustomDraw(const NMCUSTOMDRAW& drawing) const {
  if (emptyText_.empty() || !rows_.empty()) return CDRF_DODEFAULT;
  if (drawing.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYPOSTPAINT;
  if (drawing.dwDrawStage != CDDS_POSTPAINT) return CDRF_DODEFAULT;
  RECT head;
  GetClientRect(ListView_GetHeader(hwnd()), &head);
  RECT space;
  GetClientRect(hwnd(), &space);
  space.top = head.bottom;
  InflateRect(&space, -head.bottom / 3, -head.bottom / 3);
  const HGDIOBJ former =
      SelectObject(drawing.hdc, reinterpret_cast<HGDIOBJ>(SendMessageW(hwnd(), WM_GETFONT, 0, 0)));
  SetBkMode(drawing.hdc, TRANSPARENT);
  SetTextColor(drawing.hdc, GetSysColor(COLOR_WINDOWTEXT));
  DrawTextW(drawing.hdc, emptyText_.c_str(), -1, &space,
            DT_NOPREFIX | DT_WORDBREAK | DT_EDITCONTROL);
  SelectObject(drawing.hdc, former);
  return CDRF_DODEFAULT;
}

void ListView::sort() {
  SendMessageW(hwnd(), LVM_SORTITEMS, order_, reinterpret_cast<LPARAM>(comparisons[order_]));
  HDITEMW column = {};
  column.mask = HDI_FORMAT;
  const HWND head = ListView_GetHeader(hwnd());
  SendMessageW(head, HDM_GETITEMW, 0, reinterpret_cast<LPARAM>(&column));
  column.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
  constexpr int arrows[] = {0, HDF_SORTUP, HDF_SORTDOWN};
  column.fmt |= arrows[order_];
  SendMessageW(head, HDM_SETITEMW, 0, reinterpret_cast<LPARAM>(&column));
  if (selected() >= 0) ListView_EnsureVisible(hwnd(), selected(), FALSE);
}

}  // namespace forms
