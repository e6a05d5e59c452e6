#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/forms/WebBrowser.h"
#include "common/forms/controls.h"
#include "tests/support/MessageCount.h"
#include "tests/support/text_output.h"

namespace {

// A form with a label of several lines; `script` runs when it is on the screen.
class LabelForm : public forms::Form {
 public:
  explicit LabelForm(std::function<void(LabelForm&)> script)
      : Form(L"frmLabel", IDD_QUILLET),
        label(*this, IDC_QUILLET_STATUS),
        box(*this, IDC_QUILLET_PICTURE),
        page(*this, IDC_QUILLET_PAGE),
        splitter(*this, IDC_QUILLET_SPLITTER),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  SIZE size() const {
    RECT client;
    GetClientRect(label.hwnd(), &client);
    return {client.right, client.bottom};
  }

  // The label as it paints itself: which pixels bear text.
  std::vector<bool> painted() const {
    const handles::ScreenContext screen;
    const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
    const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), size().cx, size().cy));
    const HGDIOBJ old = SelectObject(context.get(), bitmap.get());
    const RECT all = {0, 0, size().cx, size().cy};
    FillRect(context.get(), &all, GetSysColorBrush(COLOR_3DFACE));
    SendMessageW(label.hwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(context.get()), PRF_CLIENT);
    std::vector<bool> result;
    for (int y = 0; y < size().cy; ++y)
      for (int x = 0; x < size().cx; ++x)
        result.push_back(GetPixel(context.get(), x, y) != GetSysColor(COLOR_3DFACE));
    SelectObject(context.get(), old);
    return result;
  }

  // The same text as the system cuts and paints it.
  std::vector<bool> expected(const std::wstring& text, UINT ending) const {
    const handles::ScreenContext screen;
    const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
    const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), size().cx, size().cy));
    const HGDIOBJ old = SelectObject(context.get(), bitmap.get());
    const HGDIOBJ oldFont = SelectObject(
        context.get(), reinterpret_cast<HGDIOBJ>(SendMessageW(label.hwnd(), WM_GETFONT, 0, 0)));
    RECT all = {0, 0, size().cx, size().cy};
    FillRect(context.get(), &all, GetSysColorBrush(COLOR_3DFACE));
    SetBkMode(context.get(), TRANSPARENT);
    DrawTextW(context.get(), text.c_str(), -1, &all,
              DT_NOPREFIX | DT_WORDBREAK | DT_EDITCONTROL | ending);
    std::vector<bool> result;
    for (int y = 0; y < size().cy; ++y)
      for (int x = 0; x < size().cx; ++x)
        result.push_back(GetPixel(context.get(), x, y) != GetSysColor(COLOR_3DFACE));
    SelectObject(context.get(), oldFont);
    SelectObject(context.get(), old);
    return result;
  }

  forms::Label label;
  forms::PictureBox box;  // the dialog has these too
  forms::WebBrowser page;
  forms::Splitter splitter;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(LabelForm&)> script_;
};

}  // namespace

TEST_CASE("a text too long for the lines of its label ends in an ellipsis") {
  LabelForm([](LabelForm& form) {
    std::wstring text;
    for (int i = 0; i < 60; ++i) text += L"fish & chips ";
    form.label.setText(text);
    CHECK(form.label.text() == text);
    CHECK(form.painted() == form.expected(text, DT_END_ELLIPSIS));
    CHECK(form.painted() != form.expected(text, 0));
  });
}

TEST_CASE("a text that fits into the lines of its label is shown whole") {
  LabelForm([](LabelForm& form) {
    const std::wstring text = L"One line\r\nand & another";
    form.label.setText(text);
    CHECK(form.painted() == form.expected(text, 0));
    form.label.setText(L"");
    CHECK(form.painted() == form.expected(L"", 0));
  });
}

TEST_CASE("a label that is given its own text again does not ask for it") {
  LabelForm([](LabelForm& form) {
    form.label.setText(L"one");
    {
      const MessageCount questions(form.label.hwnd(), WM_GETTEXT);
      form.label.setText(L"one");
      CHECK(questions.get() == 0);
    }
    const MessageCount texts(form.label.hwnd(), WM_SETTEXT);
    form.label.setText(L"one");
    CHECK(texts.get() == 0);
    form.label.setText(L"two");
    CHECK(texts.get() == 1);
    CHECK(form.label.text() == L"two");
  });
}
