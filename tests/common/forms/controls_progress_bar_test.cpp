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

TEST_CASE("a progress bar is not painted for steps that change no pixel") {
  BarForm([](BarForm& form) {
    form.bar.ResetProgress(30000);
    RECT client;
    GetClientRect(form.bar.hwnd(), &client);
    const MessageCount steps(form.bar.hwnd(), PBM_SETPOS);
    for (int step = 0; step < 30000; ++step) form.bar.StepProgress(1);
    CHECK(form.bar.value() == 30000);
    CHECK(form.shown() == 30000);
    CHECK(steps.get() >= client.right - 1);
    CHECK(steps.get() <= client.right + 1);
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
