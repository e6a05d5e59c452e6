#include <windows.h>
#include <commctrl.h>

#include "common/forms/controls.h"
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

}  // namespace

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
