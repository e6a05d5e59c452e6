#include "common/forms/Splitter.h"

#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/forms/WebBrowser.h"
#include "tests/support/text_output.h"

namespace {

// A form that is split; `script` runs when it is on the screen.
class SplitForm : public forms::Form {
 public:
  explicit SplitForm(std::function<void(SplitForm&)> script)
      : Form(L"frmSplit", IDD_QUILLET),
        list(*this, IDC_QUILLET_LIST),
        splitter(*this, IDC_QUILLET_SPLITTER),
        box(*this, IDC_QUILLET_PICTURE),
        page(*this, IDC_QUILLET_PAGE),
        zoom(*this, IDC_QUILLET_ZOOM),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  RECT placeOf(const forms::Control& control) const {
    RECT place;
    GetWindowRect(control.hwnd(), &place);
    MapWindowPoints(nullptr, hwnd(), reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  int widthOf(const forms::Control& control) const {
    const RECT place = placeOf(control);
    return place.right - place.left;
  }
  // As the user moves the mouse over the bar, seen from the form.
  void mouse(UINT message, int x) const {
    POINT point = {x, 50};
    MapWindowPoints(hwnd(), splitter.hwnd(), &point, 1);
    SendMessageW(splitter.hwnd(), message, 0, MAKELPARAM(point.x, point.y));
  }
  void key(WPARAM code) const { SendMessageW(splitter.hwnd(), WM_KEYDOWN, code, 1); }
  void resize(int wider) const {
    RECT window;
    GetWindowRect(hwnd(), &window);
    SetWindowPos(hwnd(), nullptr, 0, 0, window.right - window.left + wider,
                 window.bottom - window.top, SWP_NOMOVE | SWP_NOZORDER);
  }

  forms::Control list;
  forms::Splitter splitter;
  forms::PictureBox box;
  forms::WebBrowser page;
  forms::Control zoom;

 private:
  void Form_Load() override {
    using namespace forms;
    keep(list, left | top | bottom | beforeSplit);
    keep(splitter, left | top | bottom | afterSplit);
    keep(box, left | top | right | bottom | afterSplit);
    keep(zoom, left | bottom | afterSplit);
  }
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(SplitForm&)> script_;
};

}  // namespace

TEST_CASE("the bar moves what is beside it with the mouse that has hold of it") {
  SplitForm([](SplitForm& form) {
    const RECT list = form.placeOf(form.list);
    const RECT box = form.placeOf(form.box);
    const RECT zoom = form.placeOf(form.zoom);
    const RECT bar = form.placeOf(form.splitter);
    form.mouse(WM_MOUSEMOVE, bar.left + 60);
    CHECK(form.split() == 0);
    form.mouse(WM_LBUTTONDOWN, bar.left + 2);
    form.mouse(WM_MOUSEMOVE, bar.left + 32);
    form.mouse(WM_MOUSEMOVE, bar.left + 42);
    form.mouse(WM_LBUTTONUP, bar.left + 42);
    form.mouse(WM_MOUSEMOVE, bar.left + 70);
    CHECK(form.split() == 40);
    CHECK(form.placeOf(form.list).left == list.left);
    CHECK(form.placeOf(form.list).right == list.right + 40);
    CHECK(form.placeOf(form.splitter).left == bar.left + 40);
    CHECK(form.placeOf(form.splitter).right == bar.right + 40);
    CHECK(form.placeOf(form.box).left == box.left + 40);
    CHECK(form.placeOf(form.box).right == box.right);
    CHECK(form.placeOf(form.zoom).left == zoom.left + 40);
    CHECK(form.placeOf(form.zoom).right == zoom.right + 40);
    form.mouse(WM_LBUTTONDBLCLK, bar.left + 42);
    CHECK(form.split() == 0);
  });
}

TEST_CASE("the keys move the bar and leave each side half of what it was designed for") {
  SplitForm([](SplitForm& form) {
    const int list = form.widthOf(form.list);
    const int box = form.widthOf(form.box);
    form.key(VK_RIGHT);
    CHECK(form.widthOf(form.list) == list + 8);
    form.key(VK_LEFT);
    form.key(VK_LEFT);
    CHECK(form.widthOf(form.list) == list - 8);
    form.key(VK_HOME);
    CHECK(form.widthOf(form.list) == list - list / 2);
    form.key(VK_LEFT);
    CHECK(form.widthOf(form.list) == list - list / 2);
    form.key(VK_END);
    CHECK(form.widthOf(form.box) == box - box / 2);
    form.key(VK_LEFT);
    CHECK(form.widthOf(form.box) == box - box / 2 + 8);
  });
}

TEST_CASE("a bar gives way in a smaller window and comes back in a larger one") {
  SplitForm([](SplitForm& form) {
    const int box = form.widthOf(form.box);
    const int list = form.widthOf(form.list);
    form.resize(300);
    form.setSplit(box / 2 + 200);
    CHECK(form.widthOf(form.list) == list + box / 2 + 200);
    form.resize(-300);
    CHECK(form.widthOf(form.box) == box - box / 2);
    form.resize(300);
    CHECK(form.widthOf(form.list) == list + box / 2 + 200);
  });
}

TEST_CASE("the bar takes the arrow keys from the dialog and shows that it has the focus") {
  SplitForm([](SplitForm& form) {
    CHECK((SendMessageW(form.splitter.hwnd(), WM_GETDLGCODE, 0, 0) & DLGC_WANTARROWS) != 0);
    form.splitter.focus();
    PostMessageW(form.splitter.hwnd(), WM_KEYDOWN, VK_RIGHT, 1);
    forms::yieldToMessages();
    CHECK(form.split() == 8);
    CHECK(GetFocus() == form.splitter.hwnd());
    // Whether all of its upper edge is as the form's background.
    const auto plain = [&] {
      UpdateWindow(form.splitter.hwnd());
      const handles::WindowContext context(form.splitter.hwnd());
      bool same = true;
      for (int x = 0; x < 4; ++x)
        same = same && GetPixel(context.get(), x, 0) == GetSysColor(COLOR_3DFACE);
      return same;
    };
    CHECK_FALSE(plain());
    form.list.focus();
    CHECK(plain());
  });
}

TEST_CASE("the bar is printed as it is painted, and other keys leave it alone") {
  SplitForm([](SplitForm& form) {
    form.key('A');
    CHECK(form.split() == 0);
    const handles::ScreenContext screen;
    const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
    const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), 4, 4));
    const HGDIOBJ old = SelectObject(context.get(), bitmap.get());
    PatBlt(context.get(), 0, 0, 4, 4, WHITENESS);
    SendMessageW(form.splitter.hwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context.get()),
                 PRF_CLIENT);
    CHECK(GetPixel(context.get(), 1, 1) == GetSysColor(COLOR_3DFACE));
    SelectObject(context.get(), old);
  });
}

TEST_CASE("the cursor over the bar tells that it moves sideways unless the user has to wait") {
  SplitForm([](SplitForm& form) {
    const auto cursor = [&] {
      SendMessageW(form.splitter.hwnd(), WM_SETCURSOR,
                   reinterpret_cast<WPARAM>(form.splitter.hwnd()),
                   MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
      return GetCursor();
    };
    CHECK(cursor() == LoadCursorW(nullptr, IDC_SIZEWE));
    const forms::WaitCursor wait;
    CHECK(cursor() == LoadCursorW(nullptr, IDC_WAIT));
  });
}
