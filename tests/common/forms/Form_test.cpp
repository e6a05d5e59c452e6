#include "common/forms/Form.h"

#include <memory>

#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/forms/WebBrowser.h"
#include "common/forms/controls.h"
#include "common/forms/dialog_template.h"
#include "common/forms/resource.h"
#include "tests/support/DialogResource.h"
#include "tests/support/Frame.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/error_number.h"
#include "tests/support/text_output.h"

namespace {

// A form over the about box's resource, with events to watch.
class ProbeForm : public forms::Form {
 public:
  ProbeForm() : Form(L"frmProbe", IDD_ABOUT), check(*this, IDC_ABOUT_LOGGING), ok(*this, IDOK) {
    ok.onClick = [this] { unload(); };
  }

  void show(HWND owner) { showModal(owner); }
  void close() { unload(); }
  void say(const wchar_t* text) { message(text, MB_OK); }
  void keepPlaces() {
    keep(check, forms::left | forms::top);
    keep(ok, forms::right | forms::bottom);
  }
  using Form::keep;

  std::function<void(ProbeForm&)> load = [](ProbeForm&) {};
  std::function<void(ProbeForm&)> activate = [](ProbeForm&) {};
  std::vector<std::wstring> events;

  forms::CheckBox check;
  forms::Button ok;

 private:
  void Form_Load() override {
    events.emplace_back(L"load");
    load(*this);
  }
  void Form_Activate() override {
    events.emplace_back(L"activate");
    activate(*this);
  }
  void Form_Unload() override { events.emplace_back(L"unload"); }
};

// How often the program looks into the message queue.
class Peeks {
 public:
  Peeks() {
    current_ = this;
    count_ = 0;
  }
  static int count() { return count_; }

 private:
  static BOOL WINAPI peek(LPMSG message, HWND window, UINT first, UINT last, UINT removal) {
    ++count_;
    return current_->patch_.original<decltype(peek)>()(message, window, first, last, removal);
  }

  static inline Peeks* current_ = nullptr;
  static inline int count_ = 0;
  ImportPatch patch_{nullptr, "user32.dll", "PeekMessageW", peek};
};

DWORD WINAPI sendCheck(void* box) {
  SendMessageW(static_cast<HWND>(box), BM_SETCHECK, BST_CHECKED, 0);
  return 0;
}

// Any of the program's forms, without controls of its own.
class AnyForm : public forms::Form {
 public:
  AnyForm(int dialog, std::function<void(AnyForm&)> script)
      : Form(L"frmAny", dialog), script_(std::move(script)) {
    showModal(nullptr);
  }

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }

  const forms::WindowClass pictures_{forms::PictureBox::className, DefWindowProcW};
  const forms::WindowClass pages_{forms::WebBrowser::className, DefWindowProcW};
  const forms::WindowClass splitters_{forms::Splitter::className, DefWindowProcW};
  std::function<void(AnyForm&)> script_;
};

// Notes which changes of the system's looks and settings a window hears of.
class Listener {
 public:
  explicit Listener(HWND window) : window_(window) {
    heard_.clear();
    former_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }
  ~Listener() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  const std::vector<UINT>& heard() const { return heard_; }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SYSCOLORCHANGE || message == WM_SETTINGCHANGE || message == WM_THEMECHANGED)
      heard_.push_back(message);
    return CallWindowProcW(former_, window, message, wParam, lParam);
  }

  HWND window_;
  static inline WNDPROC former_ = nullptr;
  static inline std::vector<UINT> heard_;
};

// A dialog resource as a window that nobody sees.
class BareDialog {
 public:
  explicit BareDialog(const std::vector<BYTE>& resource)
      : window_(CreateDialogIndirectParamW(GetModuleHandleW(nullptr),
                                           reinterpret_cast<const DLGTEMPLATE*>(resource.data()),
                                           nullptr, nullptr, 0)) {}
  ~BareDialog() {
    if (window_) DestroyWindow(window_);
  }
  BareDialog(const BareDialog&) = delete;
  BareDialog& operator=(const BareDialog&) = delete;
  HWND get() const { return window_; }

 private:
  const forms::WindowClass pictures_{forms::PictureBox::className, DefWindowProcW};
  const forms::WindowClass pages_{forms::WebBrowser::className, DefWindowProcW};
  const forms::WindowClass splitters_{forms::Splitter::className, DefWindowProcW};
  HWND window_;
};

// The room that the caption of a button or label takes in its font; labels may wrap.
SIZE captionSize(HWND control, const std::wstring& caption, bool wraps, LONG width) {
  const handles::WindowContext context(control);
  const HGDIOBJ former = SelectObject(
      context.get(), reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
  RECT place = {0, 0, width, 0};
  DrawTextW(context.get(), caption.c_str(), -1, &place,
            DT_CALCRECT | (wraps ? DT_WORDBREAK : DT_SINGLELINE));
  SelectObject(context.get(), former);
  return {place.right, place.bottom};
}

bool captionFits(HWND control) {
  wchar_t name[64] = {};
  GetClassNameW(control, name, 64);
  const bool label = std::wstring(name) == L"Static";
  const LONG style = GetWindowLongW(control, GWL_STYLE);
  const std::wstring caption = forms::windowText(control);
  if ((!label && std::wstring(name) != L"Button") || caption.empty()) return true;
  if (label && (style & SS_ELLIPSISMASK)) return true;
  RECT place;
  GetClientRect(control, &place);
  const SIZE needed = captionSize(control, caption, label, place.right);
  const LONG border = label ? 0 : 2 * GetSystemMetrics(SM_CXEDGE);
  return needed.cx + border <= place.right && needed.cy <= place.bottom;
}

}  // namespace

TEST_CASE("a form loads then activates once then unloads") {
  ProbeForm form;
  form.activate = [](ProbeForm& self) { self.close(); };
  form.show(nullptr);
  CHECK(form.events == std::vector<std::wstring>{L"load", L"activate", L"unload"});
}

TEST_CASE("a form that unloads itself while loading is never shown") {
  ProbeForm form;
  form.load = [](ProbeForm& self) { self.close(); };
  form.show(nullptr);
  CHECK(form.events == std::vector<std::wstring>{L"load", L"unload"});
}

TEST_CASE("every window of the thread is disabled while a form is shown and enabled afterwards") {
  const Frame one;
  const Frame other;
  bool disabled = false;
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    disabled = !IsWindowEnabled(one.get()) && !IsWindowEnabled(other.get());
    self.close();
  };
  form.show(one.get());
  CHECK(disabled);
  CHECK(IsWindowEnabled(one.get()));
  CHECK(IsWindowEnabled(other.get()));
}

TEST_CASE("a window that was disabled before a form stays disabled after it") {
  const Frame frame;
  EnableWindow(frame.get(), FALSE);
  ProbeForm form;
  form.activate = [](ProbeForm& self) { self.close(); };
  form.show(nullptr);
  CHECK_FALSE(IsWindowEnabled(frame.get()));
}

TEST_CASE("a form is owned by its frame and centred on it") {
  const Frame frame;
  HWND owner = nullptr;
  POINT offset = {};
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    owner = GetWindow(self.hwnd(), GW_OWNER);
    RECT inner;
    RECT outer;
    GetWindowRect(self.hwnd(), &inner);
    GetWindowRect(frame.get(), &outer);
    offset = {inner.left + inner.right - outer.left - outer.right,
              inner.top + inner.bottom - outer.top - outer.bottom};
    self.close();
  };
  form.show(frame.get());
  CHECK(owner == frame.get());
  CHECK(std::abs(offset.x) <= 1);
  CHECK(std::abs(offset.y) <= 1);
}

TEST_CASE("the frame is active again after the form") {
  const Frame frame;
  SetActiveWindow(frame.get());
  ProbeForm form;
  form.activate = [](ProbeForm& self) { self.close(); };
  form.show(frame.get());
  CHECK(GetActiveWindow() == frame.get());
}

TEST_CASE("the close box leaves a form without a cancel button") {
  ProbeForm form;
  form.activate = [](ProbeForm& self) { PostMessageW(self.hwnd(), WM_CLOSE, 0, 0); };
  form.show(nullptr);
  CHECK(form.events.back() == L"unload");
}

TEST_CASE("Enter presses the default button and Escape closes") {
  for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
    ProbeForm form;
    form.activate = [key](ProbeForm& self) { PostMessageW(self.check.hwnd(), WM_KEYDOWN, key, 1); };
    form.show(nullptr);
    CHECK(form.events.back() == L"unload");
  }
}

TEST_CASE("sizing a form paints only those controls anew whose place changes") {
  bool checkIsPainted = true;
  bool okIsPainted = false;
  ProbeForm form;
  form.load = [](ProbeForm& self) { self.keepPlaces(); };
  form.activate = [&](ProbeForm& self) {
    RECT window;
    GetWindowRect(self.hwnd(), &window);
    RedrawWindow(self.hwnd(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    SetWindowPos(self.hwnd(), nullptr, 0, 0, window.right - window.left + 40,
                 window.bottom - window.top + 40, SWP_NOMOVE | SWP_NOZORDER);
    checkIsPainted = GetUpdateRect(self.check.hwnd(), nullptr, FALSE) != FALSE;
    okIsPainted = GetUpdateRect(self.ok.hwnd(), nullptr, FALSE) != FALSE;
    self.close();
  };
  form.show(nullptr);
  CHECK_FALSE(checkIsPainted);
  CHECK(okIsPainted);
}

TEST_CASE("a sized form moves what keeps to one edge and stretches what keeps to two") {
  const auto placeOf = [](const forms::Control& control) {
    RECT place;
    GetWindowRect(control.hwnd(), &place);
    MapWindowPoints(nullptr, GetParent(control.hwnd()), reinterpret_cast<POINT*>(&place), 2);
    return place;
  };
  ProbeForm form;
  form.load = [](ProbeForm& self) {
    self.keep(self.check, forms::left | forms::right | forms::top | forms::bottom);
    self.keep(self.ok, forms::right | forms::bottom);
  };
  form.activate = [&](ProbeForm& self) {
    const RECT check = placeOf(self.check);
    const RECT ok = placeOf(self.ok);
    RECT window;
    GetWindowRect(self.hwnd(), &window);
    SetWindowPos(self.hwnd(), nullptr, 0, 0, window.right - window.left + 50,
                 window.bottom - window.top + 40, SWP_NOMOVE | SWP_NOZORDER);
    const RECT stretched = {check.left, check.top, check.right + 50, check.bottom + 40};
    const RECT moved = {ok.left + 50, ok.top + 40, ok.right + 50, ok.bottom + 40};
    const RECT checkNow = placeOf(self.check);
    const RECT okNow = placeOf(self.ok);
    CHECK(EqualRect(&checkNow, &stretched));
    CHECK(EqualRect(&okNow, &moved));
    self.close();
  };
  form.show(nullptr);
}

TEST_CASE("a form can be made no smaller than it was designed") {
  ProbeForm form;
  form.activate = [](ProbeForm& self) {
    RECT window;
    GetWindowRect(self.hwnd(), &window);
    MINMAXINFO limits = {};
    CHECK(SendMessageW(self.hwnd(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits)) == 0);
    CHECK(limits.ptMinTrackSize.x == window.right - window.left);
    CHECK(limits.ptMinTrackSize.y == window.bottom - window.top);
    self.close();
  };
  form.show(nullptr);
}

TEST_CASE("yielding handles what is in the queue and returns") {
  int presses = 0;
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    self.ok.onClick = [&] { ++presses; };
    PostMessageW(self.hwnd(), WM_COMMAND, IDOK, 0);
    PostMessageW(self.hwnd(), WM_COMMAND, IDOK, 0);
    forms::yieldToMessages();
    self.close();
  };
  form.show(nullptr);
  CHECK(presses == 2);
}

TEST_CASE("yielding with nothing in the queue looks for no message") {
  ProbeForm form;
  form.activate = [](ProbeForm& self) {
    pumpUntil([] { return HIWORD(GetQueueStatus(QS_ALLINPUT)) == 0; });
    const Peeks peeks;
    forms::yieldToMessages();
    CHECK(peeks.count() == 0);
    PostMessageW(self.hwnd(), WM_NULL, 0, 0);
    forms::yieldToMessages();
    CHECK(peeks.count() > 0);
    self.close();
  };
  form.show(nullptr);
}

TEST_CASE("yielding answers what other threads have sent") {
  ProbeForm form;
  form.activate = [](ProbeForm& self) {
    const HWND window = self.check.hwnd();
    const HANDLE thread = CreateThread(nullptr, 0, sendCheck, window, 0, nullptr);
    const DWORD began = GetTickCount();
    while (self.check.value() == 0 && GetTickCount() - began < 10000) forms::yieldToMessages();
    CHECK(self.check.value() == 1);
    CHECK(WaitForSingleObject(thread, 10000) == WAIT_OBJECT_0);
    CloseHandle(thread);
    self.close();
  };
  form.show(nullptr);
}

TEST_CASE("a form closed while its work yields stays on the screen until the work has returned") {
  const Frame frame;
  bool enabledDuringWork = true;
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    PostMessageW(self.hwnd(), WM_COMMAND, IDOK, 0);
    forms::yieldToMessages();
    enabledDuringWork = IsWindowEnabled(frame.get()) != FALSE;
  };
  form.show(frame.get());
  CHECK_FALSE(enabledDuringWork);
  CHECK(IsWindowEnabled(frame.get()));
}

TEST_CASE("an error in a handler leaves the form open") {
  ProbeForm form;
  form.load = [](ProbeForm&) { throw Error(errors::overflow); };
  form.activate = [](ProbeForm& self) { self.close(); };
  form.show(nullptr);
  CHECK(form.events == std::vector<std::wstring>{L"load", L"activate", L"unload"});
}

TEST_CASE("a missing dialog is error 429") {
  struct Missing : forms::Form {
    Missing() : Form(L"frmMissing", 999) {}
    void show() { showModal(nullptr); }
  } form;
  CHECK(numberOf([&] { form.show(); }) == 429);
}

TEST_CASE("a control's tool tip comes from the string with its number") {
  std::wstring tip;
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    tip = toolTip(self.hwnd(), self.check.id());
    self.close();
  };
  form.show(nullptr);
  CHECK(tip == L"Report each step to the system debug output, for a debug viewer to show");
}

TEST_CASE("dialogs take the system's message font") {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  LOGFONTW font = {};
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    const auto handle = reinterpret_cast<HFONT>(SendMessageW(self.hwnd(), WM_GETFONT, 0, 0));
    GetObjectW(handle, sizeof font, &font);
    self.close();
  };
  form.show(nullptr);
  CHECK(std::wstring(font.lfFaceName) == metrics.lfMessageFont.lfFaceName);
  CHECK(font.lfHeight == metrics.lfMessageFont.lfHeight);
}

TEST_CASE("a larger font makes the whole dialog larger") {
  const auto widthWith = [](WORD points) {
    const auto resource =
        forms::loadDialogTemplate(GetModuleHandleW(nullptr), IDD_ABOUT, {L"Tahoma", points});
    const HWND dialog = CreateDialogIndirectParamW(
        GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(resource.data()), nullptr,
        nullptr, 0);
    RECT client = {};
    GetClientRect(dialog, &client);
    DestroyWindow(dialog);
    return client.right;
  };
  const LONG at96 = widthWith(8);
  CHECK(at96 > 0);
  CHECK(widthWith(10) > at96);
  CHECK(widthWith(12) > widthWith(10));
}

TEST_CASE("the controls of every form hear of new colours and settings and themes") {
  for (const DialogResource& each : dialogResources()) {
    CAPTURE(each.caption);
    AnyForm(each.id, [&](AnyForm& form) {
      std::size_t controls = 0;
      for (HWND control = GetWindow(form.hwnd(), GW_CHILD); control;
           control = GetWindow(control, GW_HWNDNEXT)) {
        const Listener listener(control);
        for (const UINT message : {WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_THEMECHANGED})
          SendMessageW(form.hwnd(), message, 0, 0);
        CHECK(listener.heard() ==
              std::vector<UINT>{WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_THEMECHANGED});
        ++controls;
      }
      CHECK(controls >= each.items.size());
    });
  }
}

TEST_CASE("a change of colours or theme paints a form anew") {
  ProbeForm form;
  form.activate = [](ProbeForm& self) {
    for (const UINT message : {WM_SYSCOLORCHANGE, WM_THEMECHANGED}) {
      UpdateWindow(self.hwnd());
      UpdateWindow(self.ok.hwnd());
      SendMessageW(self.hwnd(), message, 0, 0);
      CHECK(GetUpdateRect(self.hwnd(), nullptr, FALSE));
      CHECK(GetUpdateRect(self.ok.hwnd(), nullptr, FALSE));
    }
    self.close();
  };
  form.show(nullptr);
}

TEST_CASE("every caption fits its control at 96 and 120 and 144 pixels per inch") {
  for (const WORD points : {8, 10, 12}) {
    CAPTURE(points);
    for (const DialogResource& each : dialogResources()) {
      const auto resource =
          forms::loadDialogTemplate(GetModuleHandleW(nullptr), each.id, {L"Tahoma", points});
      const BareDialog dialog(resource);
      REQUIRE(dialog.get());
      for (HWND control = GetWindow(dialog.get(), GW_CHILD); control;
           control = GetWindow(control, GW_HWNDNEXT)) {
        CAPTURE(each.caption);
        CAPTURE(forms::windowText(control));
        CHECK(captionFits(control));
      }
    }
  }
}

TEST_CASE("a box stands over the form and over its owner once the form has gone") {
  const Frame owner;
  ModalDriver driver;
  ProbeForm form;
  HWND window = nullptr;
  form.activate = [&](ProbeForm& self) {
    window = self.hwnd();
    self.say(L"here");
    // While work that yields is under way the window is still on the screen.
    PostMessageW(window, WM_COMMAND, IDOK, 0);
    forms::yieldToMessages();
    CHECK(IsWindowVisible(window));
    self.say(L"gone");
  };
  form.show(owner.get());
  REQUIRE(driver.boxes().size() == 2);
  CHECK(driver.boxes()[0].owner == window);
  CHECK(driver.boxes()[1].owner == owner.get());
}

TEST_CASE("a form whose owner is destroyed ends and frees the other windows") {
  auto owner = std::make_unique<Frame>();
  const Frame other;
  ProbeForm form;
  form.activate = [&](ProbeForm&) { owner.reset(); };
  form.show(owner->get());
  CHECK(form.events == std::vector<std::wstring>{L"load", L"activate", L"unload"});
  CHECK(IsWindowEnabled(other.get()));
}

TEST_CASE("a handler that posts to itself does not keep a yield from returning") {
  int presses = 0;
  ProbeForm form;
  form.activate = [&](ProbeForm& self) {
    self.ok.onClick = [&] {
      ++presses;
      PostMessageW(self.hwnd(), WM_COMMAND, IDOK, 0);
    };
    PostMessageW(self.hwnd(), WM_COMMAND, IDOK, 0);
    forms::yieldToMessages();
    self.ok.onClick = nullptr;
    self.close();
  };
  form.show(nullptr);
  CHECK(presses > 0);
}

TEST_CASE("a quit that arrives while the work yields closes the form and reaches the host") {
  ProbeForm form;
  bool closed = false;
  form.activate = [&](ProbeForm& self) {
    PostQuitMessage(7);
    forms::yieldToMessages();
    closed = self.events.back() == L"unload";
  };
  form.show(nullptr);
  MSG message = {};
  CHECK(closed);
  REQUIRE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  CHECK(message.wParam == 7);
}

TEST_CASE("a quit in the form's own loop closes the form and reaches the host") {
  ProbeForm form;
  form.activate = [](ProbeForm&) { PostQuitMessage(3); };
  form.show(nullptr);
  MSG message = {};
  CHECK(form.events.back() == L"unload");
  REQUIRE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  CHECK(message.wParam == 3);
}

TEST_CASE("a form that lacks one of its controls is error 429") {
  struct Lacking : forms::Form {
    Lacking() : Form(L"frmLacking", IDD_ABOUT), nowhere(*this, 1999) {}
    void show() { showModal(nullptr); }
    forms::Button nowhere;
  } form;
  const Frame frame;
  CHECK(numberOf([&] { form.show(); }) == 429);
  CHECK(IsWindowEnabled(frame.get()));
}
