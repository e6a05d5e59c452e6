#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "common/forms/controls.h"
#include "common/handles.h"
#include "tests/support/MessageCount.h"
#include "tests/support/text_output.h"
#include "webcopy/resource.h"

namespace {

// A form with a progress bar; `script` runs when it is on the screen.
class BarForm : public forms::Form {
 public:
  explicit BarForm(std::function<void(BarForm&)> script)
      : Form(L"frmBar", IDD_COPYTOWEB), bar(*this, IDC_COPYTOWEB_PBOVERALL), script_(script) {
    showModal(nullptr);
  }
  long shown() const { return static_cast<long>(SendMessageW(bar.hwnd(), PBM_GETPOS, 0, 0)); }
  long range() const { return static_cast<long>(SendMessageW(bar.hwnd(), PBM_GETRANGE, 0, 0)); }

  forms::ProgressBar bar;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(BarForm&)> script_;
};

// How wide the parts of a window are that are painted anew.
class PaintedWidth {
 public:
  explicit PaintedWidth(HWND window) : window_(window) {
    widest_ = 0;
    former_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
  }
  ~PaintedWidth() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  PaintedWidth(const PaintedWidth&) = delete;
  PaintedWidth& operator=(const PaintedWidth&) = delete;
  // Of the widest part since the last question.
  static long take() { return std::exchange(widest_, 0); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    RECT part = {};
    if (message == WM_PAINT && GetUpdateRect(window, &part, FALSE))
      widest_ = std::max(widest_, part.right - part.left);
    return CallWindowProcW(former_, window, message, wParam, lParam);
  }

  HWND window_;
  static inline WNDPROC former_ = nullptr;
  static inline long widest_ = 0;
};

// What is on the screen, from left to right.
std::vector<COLORREF> middleLine(HWND window) {
  RECT client = {};
  GetClientRect(window, &client);
  const handles::WindowContext context(window);
  std::vector<COLORREF> line;
  for (LONG x = 0; x < client.right; ++x)
    line.push_back(GetPixel(context.get(), x, client.bottom / 2));
  return line;
}

}  // namespace

TEST_CASE("a progress bar paints the part that a step changes and no more") {
  BarForm([](BarForm& form) {
    RECT client = {};
    GetClientRect(form.bar.hwnd(), &client);
    form.bar.ResetProgress(10);
    UpdateWindow(form.bar.hwnd());
    const PaintedWidth painted(form.bar.hwnd());
    form.bar.StepProgress(5);
    CHECK(painted.take() >= client.right / 2);
    // With some room for the end of what is filled, whatever the theme makes of it.
    form.bar.StepProgress(1);
    CHECK(painted.take() >= client.right / 10 + 2 * client.bottom);
    form.bar.StepProgress(1);
    CHECK(painted.take() <= client.right / 10 + 1 + 2 * client.bottom);
    form.bar.ResetProgress(20);
    UpdateWindow(form.bar.hwnd());
    CHECK(painted.take() >= client.right * 7 / 10);
    form.bar.ResetProgress(30);
    UpdateWindow(form.bar.hwnd());
    CHECK(painted.take() <= 2 * client.bottom);
  });
}

TEST_CASE("a progress bar that is painted in parts looks like one that is painted as a whole") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(10);
    UpdateWindow(form.bar.hwnd());
    const auto empty = middleLine(form.bar.hwnd());
    for (const long value : {3, 4, 9, 2, 10, 0}) {
      form.bar.setValue(value);
      UpdateWindow(form.bar.hwnd());
      const auto parts = middleLine(form.bar.hwnd());
      CHECK((parts == empty) == (value == 0));
      RedrawWindow(form.bar.hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
      CHECK(parts == middleLine(form.bar.hwnd()));
    }
  });
}

TEST_CASE("a progress bar that is filled and reset at once is painted once and with the queue") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(2);
    form.bar.StepProgress(1);
    const MessageCount painted(form.bar.hwnd(), WM_PAINT);
    form.bar.StepProgress(1);
    form.bar.ResetProgress(3);
    CHECK(painted.get() == 0);
    forms::yieldToMessages();
    CHECK(painted.get() == 1);
    form.bar.StepProgress(3);
    forms::yieldToMessages();
    CHECK(painted.get() == 2);
    form.bar.ResetProgress(3);
    form.bar.StepProgress(1);  // comes with what is left to paint
    CHECK(painted.get() == 3);
    forms::yieldToMessages();
    CHECK(painted.get() == 3);
  });
}

TEST_CASE("a progress bar that is hidden stays so") {
  BarForm([](BarForm& form) {
    ShowWindow(form.bar.hwnd(), SW_HIDE);
    form.bar.ResetProgress(10);
    form.bar.setValue(10);
    CHECK_FALSE(IsWindowVisible(form.bar.hwnd()));
    CHECK(form.shown() == 10);
  });
}

TEST_CASE("a progress bar is reset to nothing of its maximum and filled step by step") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(5);
    CHECK(form.range() == 5);
    CHECK(form.shown() == 0);
    form.bar.StepProgress(2);
    form.bar.StepProgress(3);
    CHECK(form.shown() == 5);
    form.bar.ResetProgress(7);
    CHECK(form.range() == 7);
    CHECK(form.shown() == 0);
  });
}

TEST_CASE("a step past the end of a progress bar is not applied") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(5);
    form.bar.StepProgress(4);
    form.bar.StepProgress(2);
    CHECK(form.shown() == 4);
    CHECK(form.bar.value() == 4);
    form.bar.StepProgress(1);
    CHECK(form.shown() == 5);
    form.bar.StepProgress(1);
    CHECK(form.shown() == 5);
  });
}

TEST_CASE("a progress bar of no steps takes none") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(0);
    form.bar.StepProgress(1);
    CHECK(form.shown() == 0);
    CHECK(form.bar.maximum() == 0);
  });
}

TEST_CASE("a progress bar takes the largest counts and no negative maximum") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(32767);
    form.bar.StepProgress(32767);
    CHECK(form.shown() == 32767);
    form.bar.StepProgress(32767);
    CHECK(form.shown() == 32767);
    form.bar.ResetProgress(-1);
    CHECK(form.range() == 32767);
    CHECK(form.shown() == 32767);
  });
}

TEST_CASE("a progress bar is painted ten times a second however fast its steps come") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(30000);
    const MessageCount shown(form.bar.hwnd(), PBM_SETPOS);
    const DWORD began = GetTickCount();
    for (int step = 0; step < 30000; ++step) form.bar.StepProgress(1);
    const DWORD tenths = (GetTickCount() - began) / 100;
    CHECK(form.bar.value() == 30000);
    CHECK(form.shown() == 30000);
    // And once for each tenth of the way, so that no large step is left out.
    CHECK(shown.get() >= 10);
    CHECK(shown.get() <= 12 + static_cast<int>(tenths));
  });
}

TEST_CASE("a progress bar shows each of a few steps at once") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(10);
    for (int step = 1; step <= 10; ++step) {
      form.bar.StepProgress(1);
      CHECK(form.shown() == step);
    }
  });
}

TEST_CASE("a small step of a progress bar shows when a tenth of a second has passed") {
  BarForm([](BarForm& form) {
    const DWORD began = GetTickCount();
    form.bar.ResetProgress(1000);
    while (form.shown() == 0 && GetTickCount() - began < 10000) form.bar.setValue(50);
    CHECK(form.shown() == 50);
    CHECK(GetTickCount() - began >= 100);
  });
}

TEST_CASE("a progress bar is not painted for steps that change no pixel") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(30000);
    const MessageCount shown(form.bar.hwnd(), PBM_SETPOS);
    const DWORD began = GetTickCount();
    while (GetTickCount() - began < 150)
      for (const long value : {1, 2}) form.bar.setValue(value);
    CHECK(form.bar.value() == 2);
    CHECK(shown.get() == 0);
  });
}

TEST_CASE("a progress bar shows its first and last step whatever came before") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(30000);
    form.bar.StepProgress(29999);
    form.bar.StepProgress(1);
    CHECK(form.shown() == 30000);
    form.bar.ResetProgress(30000);
    CHECK(form.shown() == 0);
  });
}
