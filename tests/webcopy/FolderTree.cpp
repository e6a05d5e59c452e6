#include "tests/webcopy/FolderTree.h"

#include <cstring>

HTREEITEM FolderTree::next(UINT relation, HTREEITEM node) const {
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(tree_, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(node)));
}

TVITEMW FolderTree::item(HTREEITEM node, UINT mask) const {
  TVITEMW result = {};
  result.mask = mask;
  result.hItem = node;
  result.stateMask = ~0u;
  SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&result));
  return result;
}

std::wstring FolderTree::text(HTREEITEM node) const {
  wchar_t buffer[512] = {};
  TVITEMW wanted = {};
  wanted.mask = TVIF_TEXT;
  wanted.hItem = node;
  wanted.pszText = buffer;
  wanted.cchTextMax = 512;
  SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&wanted));
  return wanted.pszText;
}

HTREEITEM FolderTree::at(const std::vector<std::wstring>& path) const {
  HTREEITEM node = nullptr;
  HTREEITEM candidate = next(TVGN_ROOT, nullptr);
  for (const auto& name : path) {
    while (candidate && text(candidate) != name) candidate = next(TVGN_NEXT, candidate);
    if (!candidate) return nullptr;
    node = candidate;
    candidate = next(TVGN_CHILD, node);
  }
  return node;
}

std::vector<std::wstring> FolderTree::children(HTREEITEM node) const {
  std::vector<std::wstring> texts;
  for (HTREEITEM child = next(TVGN_CHILD, node); child; child = next(TVGN_NEXT, child))
    texts.push_back(text(child));
  return texts;
}

HTREEITEM FolderTree::selected() const { return next(TVGN_CARET, nullptr); }

std::wstring FolderTree::selectedPath() const {
  HTREEITEM node = selected();
  if (!node) return L"(nothing)";
  std::wstring path = text(node);
  while ((node = next(TVGN_PARENT, node)) != nullptr) path = text(node) + L"/" + path;
  return path;
}

bool FolderTree::expanded(HTREEITEM node) const {
  return (item(node, TVIF_STATE).state & TVIS_EXPANDED) != 0;
}

bool FolderTree::visible(HTREEITEM node) const {
  RECT rect;
  RECT client;
  GetClientRect(tree_, &client);
  return place(node, FALSE, rect) && rect.top >= 0 && rect.bottom <= client.bottom;
}

// The node goes in where its rectangle comes out.
bool FolderTree::place(HTREEITEM node, BOOL textOnly, RECT& rect) const {
  std::memcpy(&rect, &node, sizeof rect.left);
  return SendMessageW(tree_, TVM_GETITEMRECT, static_cast<WPARAM>(textOnly),
                      reinterpret_cast<LPARAM>(&rect)) != 0;
}

int FolderTree::image(HTREEITEM node) const { return item(node, TVIF_IMAGE).iImage; }

void FolderTree::select(HTREEITEM node) const {
  SendMessageW(tree_, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node));
}

void FolderTree::open(HTREEITEM node) const {
  select(node);
  SendMessageW(tree_, WM_KEYDOWN, VK_ADD, 1);
}

void FolderTree::close(HTREEITEM node) const {
  select(node);
  SendMessageW(tree_, WM_KEYDOWN, VK_SUBTRACT, 1);
}

void FolderTree::doubleClick(HTREEITEM node) const {
  RECT rect;
  if (!place(node, TRUE, rect)) return;
  SendMessageW(tree_, WM_LBUTTONDBLCLK, MK_LBUTTON,
               MAKELPARAM(rect.left + 3, (rect.top + rect.bottom) / 2));
}

// The control under the tests tells of double clicks on nodes only, the system's own of all.
void FolderTree::doubleClickBeside() const {
  NMHDR header = {};
  header.hwndFrom = tree_;
  header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(tree_));
  header.code = static_cast<UINT>(NM_DBLCLK);
  SendMessageW(GetParent(tree_), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}
