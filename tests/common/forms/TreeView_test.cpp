#include "common/forms/TreeView.h"

#include <algorithm>

#include "tests/support/ImportPatch.h"
#include "tests/support/text_output.h"
#include "webcopy/resource.h"

using Node = forms::TreeView::Node;

namespace {

constexpr forms::TreeView::Images folder = {2, 3};

// A form over the folder picker's resource, with nothing but the tree.
class TreeForm : public forms::Form {
 public:
  TreeForm()
      : Form(L"frmTree", IDD_SELECTWEBFOLDER),
        tree(*this, IDC_SELECTWEBFOLDER_TVFOLDERS, L'/'),
        ok(*this, IDOK) {}

  void run(std::function<void(forms::TreeView&)> script) {
    script_ = std::move(script);
    showModal(nullptr);
    CHECK(ran_);
  }

  forms::TreeView tree;
  forms::Button ok;

 private:
  void Form_Load() override {
    keep(tree, forms::left | forms::top | forms::right | forms::bottom);
    keep(ok, forms::right | forms::bottom);
  }
  void Form_Activate() override {
    script_(tree);
    ran_ = true;
    unload();
  }

  std::function<void(forms::TreeView&)> script_;
  bool ran_ = false;
};

// Messages of one kind that this thread sends to its windows. Wine's tree does not tell by itself
// which extended style it was given.
class SentMessages {
 public:
  explicit SentMessages(UINT message) : message_(message) {
    current_ = this;
    hook_ = SetWindowsHookExW(WH_CALLWNDPROC, note, nullptr, GetCurrentThreadId());
  }
  ~SentMessages() {
    UnhookWindowsHookEx(hook_);
    current_ = nullptr;
  }
  SentMessages(const SentMessages&) = delete;
  SentMessages& operator=(const SentMessages&) = delete;

  const std::vector<CWPSTRUCT>& all() const { return all_; }

 private:
  static LRESULT CALLBACK note(int code, WPARAM wParam, LPARAM lParam) {
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent.message == current_->message_) current_->all_.push_back(sent);
    return CallNextHookEx(current_->hook_, code, wParam, lParam);
  }

  static inline SentMessages* current_ = nullptr;
  UINT message_;
  HHOOK hook_ = nullptr;
  std::vector<CWPSTRUCT> all_;
};

// The windows that the program places without what they show, while it lives. Wine's tree declares
// itself stale with every new size, which the region to be painted cannot be told from.
class BlankedWindows {
 public:
  BlankedWindows() { current_ = this; }
  ~BlankedWindows() { current_ = nullptr; }
  BlankedWindows(const BlankedWindows&) = delete;
  BlankedWindows& operator=(const BlankedWindows&) = delete;

  bool hold(HWND window) const {
    return std::find(windows_.begin(), windows_.end(), window) != windows_.end();
  }

 private:
  static HDWP WINAPI note(HDWP batch, HWND window, HWND after, int x, int y, int cx, int cy,
                          UINT flags) {
    if (flags & SWP_NOCOPYBITS) current_->windows_.push_back(window);
    return current_->patch_.original<decltype(note)>()(batch, window, after, x, y, cx, cy, flags);
  }

  static inline BlankedWindows* current_ = nullptr;
  std::vector<HWND> windows_;
  ImportPatch patch_{nullptr, "user32.dll", "DeferWindowPos", note};
};

std::vector<std::wstring> children(const forms::TreeView& tree, Node node) {
  std::vector<std::wstring> texts;
  for (Node child = tree.firstChild(node); child; child = tree.nextSibling(child))
    texts.push_back(tree.text(child));
  return texts;
}

int imageOf(const forms::TreeView& tree, Node node) {
  TVITEMW item = {};
  item.mask = TVIF_IMAGE;
  item.hItem = node;
  SendMessageW(tree.hwnd(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return item.iImage;
}

}  // namespace

TEST_CASE("a node's path holds the texts from the root down") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    const Node child = tree.add(root, L"a b", folder, 0);
    const Node leaf = tree.add(child, L"", folder, 0);
    CHECK(tree.fullPath(root) == L"site");
    CHECK(tree.fullPath(child) == L"site/a b");
    CHECK(tree.fullPath(leaf) == L"site/a b/");
    CHECK(tree.parent(leaf) == child);
    CHECK(tree.parent(root) == nullptr);
  });
}

TEST_CASE("a node keeps its tag beside its pictures") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node node = tree.add(nullptr, L"site", folder, 1);
    tree.add(node, L"child", folder, 0);
    CHECK(tree.tag(node) == 1);
    for (const int tag : {0, -1, 32767, -32768}) {
      tree.setTag(node, tag);
      CHECK(tree.tag(node) == tag);
    }
    tree.expand(node);
    CHECK(imageOf(tree, node) == folder.expanded);
  });
}

TEST_CASE("children are sorted when asked ignoring letter case") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    for (const wchar_t* text : {L"gamma", L"Beta", L"alpha"}) tree.add(root, text, folder, 0);
    CHECK(children(tree, root) == std::vector<std::wstring>{L"gamma", L"Beta", L"alpha"});
    tree.sortChildren(root);
    CHECK(children(tree, root) == std::vector<std::wstring>{L"alpha", L"Beta", L"gamma"});
  });
}

TEST_CASE("a node that is opened again by the program shows its open picture again") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    tree.add(root, L"child", folder, 0);
    for (int time = 0; time < 2; ++time) {
      tree.expand(root);
      CHECK(imageOf(tree, root) == folder.expanded);
      tree.focus();
      tree.select(root);
      SendMessageW(tree.hwnd(), WM_KEYDOWN, VK_SUBTRACT, 1);
      CHECK(imageOf(tree, root) == folder.closed);
    }
  });
}

TEST_CASE("each opening of a node is told and can be refused") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    tree.add(root, L"child", folder, 0);
    int told = 0;
    bool allowed = false;
    tree.onExpanding = [&](Node node) {
      CHECK(node == root);
      ++told;
      return allowed;
    };
    tree.expand(root);
    CHECK(told == 1);
    CHECK_FALSE(tree.expanded(root));
    allowed = true;
    tree.expand(root);
    CHECK(told > 1);
    CHECK(tree.expanded(root));
  });
}

TEST_CASE("clearing a tree leaves neither nodes nor selection") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    tree.select(root);
    CHECK(tree.selected() == root);
    tree.clear();
    CHECK(tree.selected() == nullptr);
    CHECK(TreeView_GetCount(tree.hwnd()) == 0);
  });
}

TEST_CASE("a removed node is gone with all below it") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    const Node child = tree.add(root, L"child", folder, 0);
    tree.add(child, L"leaf", folder, 0);
    tree.remove(child);
    CHECK(tree.firstChild(root) == nullptr);
    CHECK(TreeView_GetCount(tree.hwnd()) == 1);
  });
}

TEST_CASE("a tree is drawn aside and shown in one piece") {
  constexpr UINT setExtendedStyle = 0x112C;
  constexpr WPARAM doubleBuffer = 0x0004;
  const SentMessages sent(setExtendedStyle);
  TreeForm form;
  form.run([&](forms::TreeView& tree) {
    REQUIRE(sent.all().size() == 1);
    CHECK(sent.all()[0].hwnd == tree.hwnd());
    CHECK((sent.all()[0].wParam & doubleBuffer) != 0);
    CHECK((static_cast<WPARAM>(sent.all()[0].lParam) & doubleBuffer) != 0);
  });
}

TEST_CASE("a form leaves it to the tree what is painted anew when both are sized") {
  TreeForm form;
  form.run([](forms::TreeView& tree) {
    const HWND dialog = GetParent(tree.hwnd());
    RECT before;
    GetWindowRect(tree.hwnd(), &before);
    RECT window;
    GetWindowRect(dialog, &window);
    {
      const BlankedWindows blanked;
      SetWindowPos(dialog, nullptr, 0, 0, window.right - window.left + 40,
                   window.bottom - window.top + 40, SWP_NOMOVE | SWP_NOZORDER);
      CHECK_FALSE(blanked.hold(tree.hwnd()));
      CHECK(blanked.hold(GetDlgItem(dialog, IDOK)));
    }
    RECT after;
    GetWindowRect(tree.hwnd(), &after);
    CHECK(after.right == before.right + 40);
  });
}

TEST_CASE("a level of 1000 nodes is filled and sorted without delay") {
  std::vector<std::wstring> texts;
  for (int number = 0; number < 1000; ++number)
    texts.push_back(std::to_wstring(number * 791 % 1000));
  TreeForm form;
  form.run([&](forms::TreeView& tree) {
    const Node root = tree.add(nullptr, L"site", folder, 0);
    const DWORD start = GetTickCount();
    {
      const forms::TreeView::Frozen frozen(tree);
      for (const auto& text : texts) tree.add(root, text, folder, 0);
      tree.sortChildren(root);
    }
    CHECK(GetTickCount() - start < 5000);
    std::sort(texts.begin(), texts.end());
    CHECK(children(tree, root) == texts);
  });
}
