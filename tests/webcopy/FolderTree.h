// A tree control as the user reads it and works it.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string>
#include <vector>

class FolderTree {
 public:
  explicit FolderTree(HWND tree) : tree_(tree) {}

  // The node at that path of texts, from the root down; null when there is none.
  HTREEITEM at(const std::vector<std::wstring>& path) const;
  std::wstring text(HTREEITEM node) const;
  std::vector<std::wstring> children(HTREEITEM node) const;
  HTREEITEM selected() const;
  std::wstring selectedPath() const;  // with "/" between the texts
  bool expanded(HTREEITEM node) const;
  bool visible(HTREEITEM node) const;
  int image(HTREEITEM node) const;

  void select(HTREEITEM node) const;
  // By the keys Right and Left.
  void open(HTREEITEM node) const;
  void close(HTREEITEM node) const;
  void doubleClick(HTREEITEM node) const;
  void doubleClickBeside() const;

 private:
  HTREEITEM next(UINT relation, HTREEITEM node) const;
  TVITEMW item(HTREEITEM node, UINT mask) const;
  bool place(HTREEITEM node, BOOL textOnly, RECT& rect) const;

  HWND tree_;
};
