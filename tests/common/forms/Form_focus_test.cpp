// Keys and the focus where a control has been hidden or disabled.
#include "common/errors.h"
#include "common/forms/Form.h"
#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/forms/WebBrowser.h"
#include "common/forms/controls.h"
#include "common/forms/resource.h"
#include "tests/support/DialogResource.h"
#include "tests/support/Frame.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/Watchdog.h"
#include "tests/support/text_output.h"

namespace {

struct Key {
  UINT message;
  WPARAM key;
};

constexpr Key everyKey[] = {
    {WM_CHAR, L'x'},          {WM_CHAR, L'\t'},        {WM_CHAR, L'\r'},
    {WM_DEADCHAR, L'^'},      {WM_SYSCHAR, L'x'},      {WM_SYSCHAR, L' '},
    {WM_SYSDEADCHAR, L'^'},   {WM_KEYDOWN, L'X'},      {WM_KEYUP, L'X'},
    {WM_KEYDOWN, VK_TAB},     {WM_KEYDOWN, VK_RETURN}, {WM_KEYDOWN, VK_LEFT},
    {WM_KEYDOWN, VK_RIGHT},   {WM_KEYDOWN, VK_UP},     {WM_KEYDOWN, VK_DOWN},
    {WM_KEYDOWN, VK_ESCAPE},  {WM_KEYDOWN, VK_SPACE},  {WM_KEYDOWN, VK_EXECUTE},
    {WM_SYSKEYDOWN, VK_MENU}, {WM_SYSKEYUP, VK_MENU},  {WM_SYSKEYDOWN, L'X'}};

// Something in a control that takes keys of its own, as an embedded page does.
class Inner {
 public:
  explicit Inner(HWND parent)
      : window_(CreateWindowW(L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, parent, nullptr,
                              nullptr, nullptr)) {}
  ~Inner() { DestroyWindow(window_); }
  Inner(const Inner&) = delete;
  Inner& operator=(const Inner&) = delete;
  HWND get() const { return window_; }

 private:
  HWND window_;
};

// Any of the program's forms: its window and the loop that all forms share.
class AnyForm : public forms::Form {
 public:
  AnyForm(int dialog, std::function<void(AnyForm&)> script)
      : Form(L"frmAny", dialog), script_(std::move(script)) {
    showModal(nullptr);
  }
  int closings = 0;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  void Form_QueryUnload() override { ++closings; }

  const forms::WindowClass pictures_{forms::PictureBox::className, DefWindowProcW};
  const forms::WindowClass pages_{forms::WebBrowser::className, DefWindowProcW};
  const forms::WindowClass splitters_{forms::Splitter::className, DefWindowProcW};
  std::function<void(AnyForm&)> script_;
};

HWND WINAPI makeNoDialog(HINSTANCE, LPCDLGTEMPLATEW, HWND, DLGPROC, LPARAM) { return nullptr; }

void hide(HWND window, bool away) { ShowWindow(window, away ? SW_HIDE : SW_SHOWNA); }
void disable(HWND window, bool away) { EnableWindow(window, !away); }

void postEveryKey(HWND window) {
  for (const Key& key : everyKey) {
    PostMessageW(window, key.message, key.key, 1);
    forms::yieldToMessages();
  }
}

// The about box with its buttons as members.
class AboutForm : public forms::Form {
 public:
  explicit AboutForm(std::function<void(AboutForm&)> script)
      : Form(L"frmAbout", IDD_ABOUT),
        check(*this, IDC_ABOUT_LOGGING),
        ok(*this, IDOK),
        script_(std::move(script)) {
    check.onClick = [this] { ++ticks; };
    ok.onClick = [this] { ++presses; };
    showModal(nullptr);
  }

  void post(HWND window, UINT message, WPARAM key) {
    PostMessageW(window, message, key, 1);
    forms::yieldToMessages();
  }

  forms::CheckBox check;
  forms::Button ok;
  int ticks = 0;
  int presses = 0;
  int closings = 0;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  void Form_QueryUnload() override { ++closings; }
  std::function<void(AboutForm&)> script_;
};

void putAway(forms::Control& control, bool hidden) {
  if (hidden)
    control.setVisible(false);
  else
    control.setEnabled(false);
}

}  // namespace

TEST_CASE("no key for a control that is hidden or disabled holds up any form") {
  const Watchdog watchdog(60000);
  for (const DialogResource& each : dialogResources()) {
    CAPTURE(each.caption);
    int closings = 0;
    std::size_t controls = 0;
    AnyForm(each.id, [&](AnyForm& form) {
      for (HWND control = GetWindow(form.hwnd(), GW_CHILD); control;
           control = GetWindow(control, GW_HWNDNEXT)) {
        const Inner inner(control);
        for (const auto putAway : {hide, disable}) {
          putAway(control, true);
          postEveryKey(control);
          postEveryKey(inner.get());
          putAway(control, false);
        }
        ++controls;
      }
      closings = form.closings;
    });
    CHECK(controls >= each.items.size());
    // Escape means the form, wherever it is typed.
    CHECK(closings == static_cast<int>(4 * controls));
  }
}

TEST_CASE("no key for a part that is hidden or disabled itself holds up a form") {
  const Watchdog watchdog(60000);
  AboutForm([](AboutForm& form) {
    const Inner inner(form.check.hwnd());
    for (const auto putAway : {hide, disable}) {
      putAway(inner.get(), true);
      postEveryKey(inner.get());
      putAway(inner.get(), false);
    }
    CHECK(form.closings == 2);
  });
}

TEST_CASE("what is typed for a hidden or disabled control presses no other one") {
  const Watchdog watchdog(60000);
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    AboutForm([hidden](AboutForm& form) {
      form.ok.focus();
      SetWindowTextW(form.ok.hwnd(), L"&Leave");
      putAway(form.check, hidden);
      form.post(form.check.hwnd(), WM_CHAR, L'l');
      form.post(form.check.hwnd(), WM_KEYDOWN, VK_RETURN);
      form.post(form.check.hwnd(), WM_KEYDOWN, VK_SPACE);
      form.post(form.check.hwnd(), WM_KEYUP, VK_SPACE);
      CHECK(form.presses == 0);
      CHECK(form.ticks == 0);
      CHECK(GetFocus() == form.ok.hwnd());
    });
  }
}

TEST_CASE("Alt and a letter finds its button also from a hidden or disabled control") {
  const Watchdog watchdog(60000);
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    AboutForm([hidden](AboutForm& form) {
      SetWindowTextW(form.ok.hwnd(), L"&Leave");
      putAway(form.check, hidden);
      form.post(form.check.hwnd(), WM_SYSCHAR, L'l');
      CHECK(form.presses == 1);
    });
  }
}

TEST_CASE("other messages reach hidden and disabled controls") {
  AboutForm([](AboutForm& form) {
    for (const bool hidden : {false, true}) {
      putAway(form.check, hidden);
      const std::wstring text = hidden ? L"hidden" : L"disabled";
      // A text may not be posted; this message sets a check mark.
      form.post(form.check.hwnd(), BM_SETCHECK, hidden ? BST_UNCHECKED : BST_CHECKED);
      CAPTURE(text);
      CHECK(form.check.value() == (hidden ? 0 : 1));
    }
  });
}

TEST_CASE("a control that is hidden or disabled hands the focus to the next one") {
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    AboutForm([hidden](AboutForm& form) {
      form.check.focus();
      REQUIRE(GetFocus() == form.check.hwnd());
      putAway(form.check, hidden);
      CHECK(GetFocus() == form.ok.hwnd());
    });
  }
}

TEST_CASE("a control whose inner part has the focus hands it on too") {
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    AboutForm([hidden](AboutForm& form) {
      const Inner inner(form.check.hwnd());
      SetFocus(inner.get());
      putAway(form.check, hidden);
      CHECK(GetFocus() == form.ok.hwnd());
    });
  }
}

TEST_CASE("the focus stays in the form when no control is left for it") {
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    AboutForm([hidden](AboutForm& form) {
      for (HWND each = GetWindow(form.hwnd(), GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT))
        if (each != form.ok.hwnd()) EnableWindow(each, FALSE);
      form.ok.focus();
      putAway(form.ok, hidden);
      CHECK(GetFocus() == form.hwnd());
      form.post(GetFocus(), WM_KEYDOWN, VK_ESCAPE);
      CHECK(form.closings == 1);
    });
  }
}

TEST_CASE("a control that is put away while another window is active does not get the focus back") {
  for (const bool hidden : {false, true}) {
    CAPTURE(hidden);
    AboutForm([hidden](AboutForm& form) {
      form.check.focus();
      {
        const Frame other;
        SetActiveWindow(other.get());
        putAway(form.check, hidden);
        SetActiveWindow(form.hwnd());
        CHECK(GetFocus() == form.ok.hwnd());
      }
    });
  }
}

TEST_CASE("the only control put away while another window is active leaves the focus to its form") {
  AboutForm([](AboutForm& form) {
    for (HWND each = GetWindow(form.hwnd(), GW_CHILD); each; each = GetWindow(each, GW_HWNDNEXT))
      if (each != form.ok.hwnd()) EnableWindow(each, FALSE);
    form.ok.focus();
    const Frame other;
    SetActiveWindow(other.get());
    form.ok.setEnabled(false);
    SetActiveWindow(form.hwnd());
    CHECK(GetFocus() == form.hwnd());
  });
}

TEST_CASE("a form that becomes active again gives the focus back to the control that had it") {
  AboutForm([](AboutForm& form) {
    const Frame other;
    for (forms::Control* each :
         {static_cast<forms::Control*>(&form.ok), static_cast<forms::Control*>(&form.check)}) {
      each->focus();
      SetActiveWindow(other.get());
      SetActiveWindow(form.hwnd());
      CHECK(GetFocus() == each->hwnd());
    }
  });
}

TEST_CASE("a form that is told anew that it is active leaves the focus where it is") {
  AboutForm([](AboutForm& form) {
    form.ok.focus();
    SendMessageW(form.hwnd(), WM_ACTIVATE, WA_ACTIVE, 0);
    CHECK(GetFocus() == form.ok.hwnd());
  });
}

TEST_CASE("what had the focus in another window has it again after a form") {
  const Frame frame;
  const Inner inner(frame.get());
  SetFocus(inner.get());
  REQUIRE(GetFocus() == inner.get());
  AboutForm([](AboutForm&) {});
  CHECK(GetFocus() == inner.get());
}

TEST_CASE("a window that had the focus itself has it again after a form that got no window") {
  const Frame frame;
  SetFocus(frame.get());
  REQUIRE(GetFocus() == frame.get());
  const ImportPatch patch(nullptr, "user32.dll", "CreateDialogIndirectParamW", makeNoDialog);
  CHECK_THROWS_AS(AboutForm([](AboutForm&) {}), Error);
  CHECK(GetFocus() == frame.get());
}
