#include "common/forms/TreeView.h"

#include <windowsx.h>

namespace forms {
namespace {

constexpr std::size_t longestText = 1024;

// TVM_SETEXTENDEDSTYLE and TVS_EX_DOUBLEBUFFER, which the headers hide from a program for XP.
constexpr UINT setExtendedStyle = 0x112C;
constexpr WPARAM doubleBuffer = 0x0004;

// What a node keeps beside its text, packed into the control's own number for it.
LPARAM pack(int tag, TreeView::Images images) {
  return (tag << 16) | ((images.closed & 0xFF) << 8) | (images.expanded & 0xFF);
}
int tagOf(LPARAM data) { return static_cast<int>(data) >> 16; }
int closedImage(LPARAM data) { return static_cast<int>(data >> 8) & 0xFF; }
int expandedImage(LPARAM data) { return static_cast<int>(data) & 0xFF; }

LPARAM dataOf(HWND tree, HTREEITEM node) noexcept {
  TVITEMW item = {};
  item.mask = TVIF_PARAM;
  item.hItem = node;
  SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return item.lParam;
}

HTREEITEM next(HWND tree, UINT relation, HTREEITEM node) noexcept {
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(node)));
}

}  // namespace

TreeView::TreeView(Form& form, int id, wchar_t pathSeparator)
    : Control(form, id), pathSeparator_(pathSeparator) {}

// Drawn aside: no flicker while the window is resized. A system that cannot do so does not know the
// message.
void TreeView::onAttached() {
  SendMessageW(hwnd(), setExtendedStyle, doubleBuffer, static_cast<LPARAM>(doubleBuffer));
}

TreeView::Node TreeView::add(Node parent, std::wstring_view text, Images images, int tag) {
  std::wstring copy(text);
  TVINSERTSTRUCTW insertion = {};
  insertion.hParent = parent ? parent : TVI_ROOT;
  insertion.hInsertAfter = TVI_LAST;
  insertion.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  insertion.item.pszText = copy.data();
  insertion.item.iImage = insertion.item.iSelectedImage = images.closed;
  insertion.item.lParam = pack(tag, images);
  const auto node = reinterpret_cast<Node>(
      SendMessageW(hwnd(), TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
  if (!node) throw Error(errors::outOfMemory);
  return node;
}

void TreeView::remove(Node node) noexcept { TreeView_DeleteItem(hwnd(), node); }

void TreeView::clear() noexcept { TreeView_DeleteAllItems(hwnd()); }

void TreeView::sortChildren(Node node) noexcept { TreeView_SortChildren(hwnd(), node, FALSE); }

std::wstring TreeView::text(Node node) const {
  std::wstring value(longestText, L'\0');
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = node;
  item.pszText = value.data();
  item.cchTextMax = static_cast<int>(value.size());
  if (!SendMessageW(hwnd(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return {};
  return item.pszText;
}

int TreeView::tag(Node node) const noexcept { return tagOf(dataOf(hwnd(), node)); }

void TreeView::setTag(Node node, int tag) noexcept {
  const LPARAM data = dataOf(hwnd(), node);
  TVITEMW item = {};
  item.mask = TVIF_PARAM;
  item.hItem = node;
  item.lParam = pack(tag, {closedImage(data), expandedImage(data)});
  SendMessageW(hwnd(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

TreeView::Node TreeView::parent(Node node) const noexcept {
  return next(hwnd(), TVGN_PARENT, node);
}

TreeView::Node TreeView::firstChild(Node node) const noexcept {
  return next(hwnd(), TVGN_CHILD, node);
}

TreeView::Node TreeView::nextSibling(Node node) const noexcept {
  return next(hwnd(), TVGN_NEXT, node);
}

std::wstring TreeView::fullPath(Node node) const {
  std::wstring path = text(node);
  while ((node = parent(node)) != nullptr) path = text(node) + pathSeparator_ + path;
  return path;
}

void TreeView::expand(Node node) {
  // The control tells of an expansion by message only the first time, so it is told here; the
  // second telling then finds nothing to do.
  if (onExpanding && !onExpanding(node)) return;
  TreeView_Expand(hwnd(), node, TVE_EXPAND);
  showExpandedImage(node);
}

bool TreeView::expanded(Node node) const noexcept {
  return (SendMessageW(hwnd(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(node), TVIS_EXPANDED) &
          TVIS_EXPANDED) != 0;
}

void TreeView::ensureVisible(Node node) noexcept { TreeView_EnsureVisible(hwnd(), node); }

TreeView::Node TreeView::selected() const noexcept { return next(hwnd(), TVGN_CARET, nullptr); }

void TreeView::select(Node node) noexcept { TreeView_SelectItem(hwnd(), node); }

void TreeView::setImages(HIMAGELIST images) noexcept {
  TreeView_SetImageList(hwnd(), images, TVSIL_NORMAL);
}

LRESULT TreeView::onNotify(NMHDR& header) {
  switch (header.code) {
    case TVN_ITEMEXPANDINGW: {
      const auto& change = reinterpret_cast<const NMTREEVIEWW&>(header);
      const bool opening = (change.action & TVE_EXPAND) != 0;
      return opening && onExpanding && !onExpanding(change.itemNew.hItem) ? TRUE : FALSE;
    }
    case TVN_ITEMEXPANDEDW:
      showExpandedImage(reinterpret_cast<const NMTREEVIEWW&>(header).itemNew.hItem);
      return 0;
    case TVN_SELCHANGEDW:
      if (onSelect) onSelect();
      return 0;
    case NM_DBLCLK:
      if (isOnButton() || !onDoubleClick) return 0;
      onDoubleClick();
      return TRUE;  // the node itself stays as it is
    default:
      return 0;
  }
}

void TreeView::showExpandedImage(Node node) noexcept {
  const LPARAM data = dataOf(hwnd(), node);
  TVITEMW item = {};
  item.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  item.hItem = node;
  item.iImage = item.iSelectedImage = expanded(node) ? expandedImage(data) : closedImage(data);
  SendMessageW(hwnd(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

bool TreeView::isOnButton() const noexcept {
  const DWORD position = GetMessagePos();
  TVHITTESTINFO hit = {};
  hit.pt = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
  ScreenToClient(hwnd(), &hit.pt);
  TreeView_HitTest(hwnd(), &hit);
  return (hit.flags & TVHT_ONITEMBUTTON) != 0;
}

}  // namespace forms
