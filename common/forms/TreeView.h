// A tree of texts that is read while it is opened.
#pragma once

#include <string>
#include <string_view>

#include "common/forms/controls.h"

namespace forms {

class TreeView : public Control {
 public:
  // A node is the control's own handle; null stands for "no node". It is valid until its removal.
  using Node = HTREEITEM;

  TreeView(Form& form, int id, wchar_t pathSeparator);

  struct Images {
    int closed = 0;
    int expanded = 0;
  };

  // The new node joins behind its siblings; without a parent it is a root. `tag` is the program's
  // own number for it. Raises an Error (7) when the control refuses it.
  Node add(Node parent, std::wstring_view text, Images images, int tag);
  void remove(Node node) noexcept;
  void clear() noexcept;
  // The children in the order of their texts, ignoring letter case, by the user's locale.
  void sortChildren(Node node) noexcept;

  std::wstring text(Node node) const;
  int tag(Node node) const noexcept;
  void setTag(Node node, int tag) noexcept;
  Node parent(Node node) const noexcept;
  Node firstChild(Node node) const noexcept;
  Node nextSibling(Node node) const noexcept;
  // The texts from the root down, with separators between them.
  std::wstring fullPath(Node node) const;

  // Fires onExpanding like the user's own click; a node without children stays as it is.
  void expand(Node node);
  bool expanded(Node node) const noexcept;
  void ensureVisible(Node node) noexcept;
  Node selected() const noexcept;
  void select(Node node) noexcept;

  void setImages(HIMAGELIST images) noexcept;  // borrowed

  // Before the children of a node show, each time; false keeps it closed.
  std::function<bool(Node)> onExpanding;
  // Another node became the selected one, or none is.
  std::function<void()> onSelect;
  // Anywhere but on the buttons that open and close nodes.
  std::function<void()> onDoubleClick;

  // No painting while it lives, for many changes at once.
  class Frozen {
   public:
    explicit Frozen(const TreeView& tree) noexcept : tree_(tree.hwnd()) {
      SendMessageW(tree_, WM_SETREDRAW, FALSE, 0);
    }
    ~Frozen() {
      SendMessageW(tree_, WM_SETREDRAW, TRUE, 0);
      InvalidateRect(tree_, nullptr, TRUE);
    }
    Frozen(const Frozen&) = delete;
    Frozen& operator=(const Frozen&) = delete;

   private:
    HWND tree_;
  };

 private:
  void onAttached() override;
  bool repaintsWhenSized() const override { return false; }
  LRESULT onNotify(NMHDR& header) override;
  void showExpandedImage(Node node) noexcept;
  bool isOnButton() const noexcept;

  wchar_t pathSeparator_;
};

}  // namespace forms
