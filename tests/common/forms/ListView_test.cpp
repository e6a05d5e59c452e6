#include "common/forms/ListView.h"

#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/forms/WebBrowser.h"
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
        texts_(std::move(texts)),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  void add(const std::wstring& text) { list.add({text, text, L"", L""}); }

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

  void type(wchar_t character) const { SendMessageW(list.hwnd(), WM_CHAR, character, 1); }

  forms::ListView list;
  forms::PictureBox box;  // the dialog has these too
  forms::WebBrowser page;

 private:
  void Form_Load() override {
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

TEST_CASE("a click on the header sorts and the next one turns the order and the arrow shows it") {
  ListForm({L"pear", L"Apple", L"fig"}, [](ListForm& form) {
    form.clickHeader();
    CHECK(form.rows() == Lines{L"Apple", L"fig", L"pear"});
    CHECK(form.arrow() == HDF_SORTUP);
    form.clickHeader();
    CHECK(form.rows() == Lines{L"pear", L"fig", L"Apple"});
    CHECK(form.arrow() == HDF_SORTDOWN);
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

TEST_CASE("a list is drawn aside and shown in one piece") {
  ListForm({L"pear"}, [](ListForm& form) {
    CHECK((ListView_GetExtendedListViewStyle(form.list.hwnd()) & LVS_EX_DOUBLEBUFFER) != 0);
  });
}
