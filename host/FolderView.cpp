#include "host/FolderView.h"

#include <commctrl.h>
#include <shellapi.h>

#include "common/text.h"
#include "host/model/disk.h"

namespace standin {
namespace {

constexpr int treeWidth = 220;

HWND child(HWND parent, const wchar_t* className, DWORD style) {
  return CreateWindowExW(WS_EX_CLIENTEDGE, className, L"",
                         WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 0, 0, parent, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

// The system's own small icons; lists do not own it.
HIMAGELIST systemIcons() {
  SHFILEINFOW info = {};
  return reinterpret_cast<HIMAGELIST>(
      SHGetFileInfoW(L"C:\\", 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON));
}

int iconOf(const std::wstring& path) {
  SHFILEINFOW info = {};
  SHGetFileInfoW(path.c_str(), 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
  return info.iIcon;
}

void addColumn(HWND list, int index, const wchar_t* title, int width, int format) {
  LVCOLUMNW column = {};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
  column.pszText = const_cast<wchar_t*>(title);
  column.cx = width;
  column.fmt = format;
  SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&column));
}

}  // namespace

void FolderView::create(HWND parent) {
  tree_ = child(parent, WC_TREEVIEWW,
                TVS_HASLINES | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS);
  list_ = child(parent, WC_LISTVIEWW, LVS_REPORT | LVS_SHAREIMAGELISTS | LVS_SHOWSELALWAYS);
  SendMessageW(tree_, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(systemIcons()));
  SendMessageW(list_, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(systemIcons()));
  addColumn(list_, 0, L"Name", 260, LVCFMT_LEFT);
  addColumn(list_, 1, L"Size", 90, LVCFMT_RIGHT);
}

void FolderView::resize(const RECT& area) const {
  const int height = area.bottom - area.top;
  MoveWindow(tree_, area.left, area.top, treeWidth, height, TRUE);
  MoveWindow(list_, area.left + treeWidth, area.top, area.right - area.left - treeWidth, height,
             TRUE);
}

HTREEITEM FolderView::add(HTREEITEM parent, const std::wstring& name, const std::wstring& folder) {
  TVINSERTSTRUCTW insert = {};
  insert.hParent = parent;
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  insert.item.pszText = const_cast<wchar_t*>(name.c_str());
  insert.item.iImage = insert.item.iSelectedImage = iconOf(folder);
  const auto item = reinterpret_cast<HTREEITEM>(
      SendMessageW(tree_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
  folders_[item] = folder;
  return item;
}

void FolderView::addFolders(HTREEITEM parent, const std::wstring& folder) {
  for (const auto& name : disk::folderNames(folder))
    addFolders(add(parent, name, folder + L"\\" + name), folder + L"\\" + name);
  TreeView_Expand(tree_, parent, TVE_EXPAND);
}

void FolderView::refresh(const Session& session) {
  filling_ = true;
  SendMessageW(tree_, WM_SETREDRAW, FALSE, 0);
  TreeView_DeleteAllItems(tree_);
  folders_.clear();
  if (disk::isFolder(session.webFolder)) {
    const HTREEITEM root =
        add(TVI_ROOT, std::wstring(text::afterLast(session.webFolder, L'\\')), session.webFolder);
    addFolders(root, session.webFolder);
    HTREEITEM chosen = root;
    for (const auto& [item, folder] : folders_)
      if (folder == chosen_) chosen = item;
    chosen_ = folders_[chosen];
    TreeView_SelectItem(tree_, chosen);
  } else {
    chosen_.clear();
  }
  SendMessageW(tree_, WM_SETREDRAW, TRUE, 0);
  filling_ = false;
  showFiles(chosen_);
}

void FolderView::onNotify(const NMHDR& header, const Session&) {
  if (header.hwndFrom != tree_ || header.code != static_cast<UINT>(TVN_SELCHANGEDW) || filling_)
    return;
  const auto& change = reinterpret_cast<const NMTREEVIEWW&>(header);
  const auto found = folders_.find(change.itemNew.hItem);
  if (found == folders_.end()) return;
  chosen_ = found->second;
  showFiles(chosen_);
}

void FolderView::showFiles(const std::wstring& folder) const {
  ListView_DeleteAllItems(list_);
  if (!disk::isFolder(folder)) return;
  int row = 0;
  for (const auto& name : disk::fileNames(folder)) {
    const std::wstring path = folder + L"\\" + name;
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    item.iItem = row;
    item.pszText = const_cast<wchar_t*>(name.c_str());
    item.iImage = iconOf(path);
    SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    const std::wstring size = std::to_wstring(disk::fileSize(path));
    item.mask = LVIF_TEXT;
    item.iSubItem = 1;
    item.pszText = const_cast<wchar_t*>(size.c_str());
    SendMessageW(list_, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    ++row;
  }
}

}  // namespace standin
