#include "common/forms/ListView.h"

#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/forms/WebBrowser.h"
#include "tests/support/MessageCount.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

namespace {

using Lines = std::vector<std::wstring>;

// A form with a list of these rows; `script` runs when it is on the screen.
class ListForm : public forms::Form {
 public:
  ListForm(Lines texts, std::function<void(ListForm&)> script)
      : Form(L"frmList", IDD_QUILLET),
        list(*this, IDC_QUILLET_LIST, L"Title"),
        box(*this, IDC_QUILLET_PICTURE),
        page(*this, IDC_QUILLET_PAGE),
        splitter(*this, IDC_QUILLET_SPLITTER),
        texts_(std::move(texts)),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  void add(const std::wstring& text) { list.add({.text = text, .toolTip = {}}); }

  Lines rows() const {
    Lines result;
    for (int index = 0; index < list.count(); ++index) result.push_back(list.row(index).text);
    return result;
  }

  // As the header tells a click of the user.
  void clickHeader() const {
    NMHEADERW click = {};
    const HWND header = ListView_GetHeader(list.hwnd());
    click.hdr = {header, static_cast<UINT_PTR>(GetDlgCtrlID(header)),
                 static_cast<UINT>(HDN_ITEMCLICKW)};
    SendMessageW(list.hwnd(), WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
  }

  int arrow() const {
    HDITEMW column = {};
    column.mask = HDI_FORMAT;
    SendMessageW(ListView_GetHeader(list.hwnd()), HDM_GETITEMW, 0,
                 reinterpret_cast<LPARAM>(&column));
    return column.fmt & (HDF_SORTUP | HDF_SORTDOWN);
  }

  // As the user clicks on a row with the mouse. The thread's own record of the button goes along,
  // as it does with real input.
  void clickRow(int index) const {
    RECT row;
    ListView_GetItemRect(list.hwnd(), index, &row, LVIR_LABEL);
    const LPARAM place = MAKELPARAM(row.left + 4, (row.top + row.bottom) / 2);
    setMouseButton(true);
    PostMessageW(list.hwnd(), WM_LBUTTONUP, 0, place);
    SendMessageW(list.hwnd(), WM_LBUTTONDOWN, MK_LBUTTON, place);
    setMouseButton(false);
    forms::yieldToMessages();
  }
  // Presses the mouse on a row and is told that it drags.
  void startDrag(int index) const {
    setMouseButton(true);
    ListView_SetItemState(list.hwnd(), index, LVIS_SELECTED, LVIS_SELECTED);
    NMLISTVIEW drag = {};
    drag.hdr = {list.hwnd(), IDC_QUILLET_LIST, static_cast<UINT>(LVN_BEGINDRAG)};
    drag.iItem = index;
    SendMessageW(hwnd(), WM_NOTIFY, IDC_QUILLET_LIST, reinterpret_cast<LPARAM>(&drag));
    setMouseButton(false);
  }
  void pressKey(WPARAM key) const {
    SendMessageW(list.hwnd(), WM_KEYDOWN, key, 1);
    SendMessageW(list.hwnd(), WM_KEYUP, key, 1);
  }

  // What the list adds to a tip that has room for `size` characters and begins with `shown`.
  std::wstring tipOf(int index, const std::wstring& shown, DWORD flags, int size = 400) const {
    std::vector<wchar_t> buffer(static_cast<std::size_t>(size) + 1, L'#');
    lstrcpyW(buffer.data(), shown.c_str());
    NMLVGETINFOTIPW tip = {};
    tip.hdr = {list.hwnd(), IDC_QUILLET_LIST, static_cast<UINT>(LVN_GETINFOTIPW)};
    tip.dwFlags = flags;
    tip.pszText = buffer.data();
    tip.cchTextMax = size;
    tip.iItem = index;
    SendMessageW(hwnd(), WM_NOTIFY, IDC_QUILLET_LIST, reinterpret_cast<LPARAM>(&tip));
    CHECK(buffer.back() == L'#');
    return buffer.data();
  }

  // The space of the list as it is painted.
  std::vector<COLORREF> painted() const {
    UpdateWindow(list.hwnd());
    const handles::WindowContext context(list.hwnd());
    std::vector<COLORREF> result;
    for (int y = 30; y < 60; ++y)
      for (int x = 0; x < 150; ++x) result.push_back(GetPixel(context.get(), x, y));
    return result;
  }

  void type(wchar_t character) const { SendMessageW(list.hwnd(), WM_CHAR, character, 1); }

  forms::ListView list;
  forms::PictureBox box;  // the dialog has these too
  forms::WebBrowser page;
  forms::Splitter splitter;

 private:
  static void setMouseButton(bool down) {
    BYTE keys[256];
    GetKeyboardState(keys);
    keys[VK_LBUTTON] = down ? 0x80 : 0;
    SetKeyboardState(keys);
  }

  void Form_Load() override {
    keep(list, forms::left | forms::top | forms::bottom);
    for (const auto& text : texts_) add(text);
    list.select(0);
  }
  void Form_Activate() override {
    script_(*this);
    unload();
  }

  Lines texts_;
  std::function<void(ListForm&)> script_;
};

}  // namespace

TEST_CASE("rows stand as they were added until the header is clicked") {
  ListForm({L"pear", L"Apple", L"fig"}, [](ListForm& form) {
    CHECK(form.rows() == Lines{L"pear", L"Apple", L"fig"});
    CHECK(form.arrow() == 0);
  });
}

TEST_CASE(
    "a click on the header sorts and the next one turns the order and the third takes it back") {
  ListForm({L"pear", L"Apple", L"fig"}, [](ListForm& form) {
    form.clickHeader();
    CHECK(form.rows() == Lines{L"Apple", L"fig", L"pear"});
    CHECK(form.arrow() == HDF_SORTUP);
    form.clickHeader();
    CHECK(form.rows() == Lines{L"pear", L"fig", L"Apple"});
    CHECK(form.arrow() == HDF_SORTDOWN);
    form.clickHeader();
    CHECK(form.rows() == Lines{L"pear", L"Apple", L"fig"});
    CHECK(form.arrow() == 0);
    form.clickHeader();
    CHECK(form.rows() == Lines{L"Apple", L"fig", L"pear"});
    CHECK(form.arrow() == HDF_SORTUP);
  });
}

TEST_CASE("sorting keeps the selected row selected") {
  ListForm({L"pear", L"apple", L"fig"}, [](ListForm& form) {
    int clicks = 0;
    form.list.onItemClick = [&] { ++clicks; };
    form.clickHeader();
    CHECK(form.list.row(form.list.selected()).text == L"pear");
    CHECK(clicks == 0);
  });
}

TEST_CASE("rows that come later join the order of a sorted list") {
  ListForm({L"pear", L"apple"}, [](ListForm& form) {
    form.clickHeader();
    form.add(L"fig");
    CHECK(form.rows() == Lines{L"apple", L"fig", L"pear"});
    form.clickHeader();
    form.add(L"kiwi");
    CHECK(form.rows() == Lines{L"pear", L"kiwi", L"fig", L"apple"});
    form.clickHeader();
    form.add(L"lime");
    CHECK(form.rows() == Lines{L"pear", L"apple", L"fig", L"kiwi", L"lime"});
  });
}

TEST_CASE("typing the beginning of a row selects it") {
  ListForm({L"pear", L"apple", L"plum"}, [](ListForm& form) {
    int clicks = 0;
    form.list.onItemClick = [&] { ++clicks; };
    form.type(L'p');
    form.type(L'l');
    CHECK(form.list.row(form.list.selected()).text == L"plum");
    CHECK(clicks > 0);
  });
}

TEST_CASE("a click on a row tells it once and a click on the selected row tells it again") {
  ListForm({L"pear", L"apple", L"fig"}, [](ListForm& form) {
    Lines told;
    form.list.onItemClick = [&] { told.push_back(form.list.row(form.list.selected()).text); };
    form.clickRow(1);
    CHECK(told == Lines{L"apple"});
    form.clickRow(1);
    form.clickRow(1);
    CHECK(told == Lines{L"apple", L"apple", L"apple"});
    form.clickRow(2);
    CHECK(told == Lines{L"apple", L"apple", L"apple", L"fig"});
  });
}

TEST_CASE("a click on the row that a key or the program selected tells it") {
  ListForm({L"pear", L"apple", L"fig"}, [](ListForm& form) {
    Lines told;
    form.list.onItemClick = [&] { told.push_back(form.list.row(form.list.selected()).text); };
    form.clickRow(0);
    CHECK(told == Lines{L"pear"});
    form.pressKey(VK_DOWN);
    CHECK(told == Lines{L"pear", L"apple"});
    form.clickRow(1);
    CHECK(told == Lines{L"pear", L"apple", L"apple"});
    form.list.select(2);
    CHECK(told.size() == 3);
    form.clickRow(2);
    CHECK(told == Lines{L"pear", L"apple", L"apple", L"fig"});
  });
}

TEST_CASE("a click beside the rows leaves the selection where it was and tells nothing") {
  ListForm({L"pear", L"apple"}, [](ListForm& form) {
    form.list.select(1);
    int told = 0;
    form.list.onItemClick = [&] { ++told; };
    // What the system's list does with such a click.
    ListView_SetItemState(form.list.hwnd(), -1, 0, LVIS_SELECTED);
    NMITEMACTIVATE click = {};
    click.hdr = {form.list.hwnd(), IDC_QUILLET_LIST, static_cast<UINT>(NM_CLICK)};
    click.iItem = -1;
    SendMessageW(form.hwnd(), WM_NOTIFY, IDC_QUILLET_LIST, reinterpret_cast<LPARAM>(&click));
    CHECK(ListView_GetNextItem(form.list.hwnd(), -1, LVNI_SELECTED) == 1);
    CHECK(told == 0);
  });
}

TEST_CASE("a click on a selected row is told after a press that became a drag") {
  ListForm({L"pear", L"apple"}, [](ListForm& form) {
    int told = 0;
    form.list.onItemClick = [&] { ++told; };
    form.startDrag(1);
    CHECK(told == 1);
    form.clickRow(1);
    CHECK(told == 2);
  });
}

TEST_CASE("the tip of a row is its own text or follows the label that is cut off") {
  ListForm({}, [](ListForm& form) {
    form.list.add({L"A long title", L"C:\\Templates\\home"});
    CHECK(form.tipOf(0, L"", LVGIT_UNFOLDED) == L"C:\\Templates\\home");
    CHECK(form.tipOf(0, L"A long title", 0) == L"A long title\r\nC:\\Templates\\home");
  });
}

TEST_CASE("a row without a tip leaves the label that is cut off") {
  ListForm({L"A long title"}, [](ListForm& form) {
    CHECK(form.tipOf(0, L"", LVGIT_UNFOLDED).empty());
    CHECK(form.tipOf(0, L"A long title", 0) == L"A long title");
  });
}

TEST_CASE("a tip that is longer than its place is cut there") {
  ListForm({}, [](ListForm& form) {
    form.list.add({L"title", L"C:\\Templates"});
    CHECK(form.tipOf(0, L"", LVGIT_UNFOLDED, 5) == L"C:\\T");
    CHECK(form.tipOf(0, L"title", 0, 10) == L"title\r\nC:");
    CHECK(form.tipOf(0, L"title", 0, 6) == L"title");
  });
}

TEST_CASE("a list is drawn aside and shown in one piece") {
  ListForm({L"pear"}, [](ListForm& form) {
    CHECK((ListView_GetExtendedListViewStyle(form.list.hwnd()) & LVS_EX_DOUBLEBUFFER) != 0);
  });
}

TEST_CASE("a list that grows paints only what has come to it") {
  ListForm({L"pear"}, [](ListForm& form) {
    RECT window;
    GetWindowRect(form.hwnd(), &window);
    RedrawWindow(form.hwnd(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    RECT before;
    GetClientRect(form.list.hwnd(), &before);
    SetWindowPos(form.hwnd(), nullptr, 0, 0, window.right - window.left,
                 window.bottom - window.top + 40, SWP_NOMOVE | SWP_NOZORDER);
    RECT stale = {};
    GetUpdateRect(form.list.hwnd(), &stale, FALSE);
    CHECK(stale.top == before.bottom);
    CHECK(stale.bottom == before.bottom + 40);
  });
}

TEST_CASE("rows that come into a growing list are painted together") {
  ListForm({}, [](ListForm& form) {
    form.list.beginGrowing();
    const DWORD began = GetTickCount();
    const MessageCount paints(form.list.hwnd(), WM_PAINT);
    for (int row = 0; row < 300; ++row) {
      form.add(std::to_wstring(row));
      forms::yieldToMessages();
    }
    // Ten times a second, and once for what was still to be painted before.
    CHECK(paints.get() <= static_cast<int>((GetTickCount() - began) / 100) + 1);
    CHECK(form.list.count() == 300);
    form.list.endGrowing();
    const int before = paints.get();
    CHECK(GetUpdateRect(form.list.hwnd(), nullptr, FALSE));
    UpdateWindow(form.list.hwnd());
    CHECK(paints.get() == before + 1);
  });
}

TEST_CASE("a growing list shows after a while what has come into it") {
  ListForm({}, [](ListForm& form) {
    form.list.beginGrowing();
    form.add(L"a");
    const MessageCount paints(form.list.hwnd(), WM_PAINT);
    form.list.showGrowth();
    CHECK(paints.get() == 0);
    CHECK(pumpUntil([&] {
      form.list.showGrowth();
      return paints.get() > 0;
    }));
    form.list.endGrowing();
  });
}

TEST_CASE("the user goes on working with a list while it grows") {
  ListForm({L"a", L"b"}, [](ListForm& form) {
    int clicks = 0;
    form.list.onItemClick = [&] { ++clicks; };
    form.list.select(0);
    form.list.focus();
    form.list.beginGrowing();
    form.add(L"c");
    PostMessageW(form.list.hwnd(), WM_KEYDOWN, VK_DOWN, 1);
    forms::yieldToMessages();
    CHECK(form.list.selected() == 1);
    CHECK(clicks == 1);
    form.list.endGrowing();
  });
}

TEST_CASE("an empty list says its text in its space until a row comes") {
  ListForm({}, [](ListForm& form) {
    const std::vector<COLORREF> blank = form.painted();
    form.list.setEmptyText(L"Nothing here");
    CHECK(GetUpdateRect(form.list.hwnd(), nullptr, FALSE));
    const std::vector<COLORREF> told = form.painted();
    CHECK(told != blank);
    CHECK(form.painted() == told);
    form.add(L"a");
    // All of the text goes, not only what the row covers.
    RECT stale = {};
    GetUpdateRect(form.list.hwnd(), &stale, FALSE);
    RECT client;
    GetClientRect(form.list.hwnd(), &client);
    CHECK(EqualRect(&stale, &client));
    form.list.clear();
    CHECK(form.painted() == blank);
  });
}
