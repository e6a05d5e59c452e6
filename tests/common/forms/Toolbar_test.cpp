#include "common/forms/Toolbar.h"

#include "common/forms/WebBrowser.h"
#include "common/log.h"
#include "online/resource.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/text_output.h"

namespace {

using Keys = std::vector<std::wstring>;

// A form with a toolbar of two buttons; `script` runs when it is on the screen.
class ToolbarForm : public forms::Form {
 public:
  explicit ToolbarForm(std::function<void(ToolbarForm&)> script)
      : Form(L"frmToolbar", IDD_ONLINE),
        bar(*this, IDC_ONLINE_TOOLBAR),
        page(*this, IDC_ONLINE_BROWSER),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  // The number by which the toolbar knows a button.
  int commandAt(int place) const {
    TBBUTTON button = {};
    SendMessageW(bar.hwnd(), TB_GETBUTTON, static_cast<WPARAM>(place),
                 reinterpret_cast<LPARAM>(&button));
    return button.idCommand;
  }
  // As the toolbar tells that the user presses a drop-down button.
  LRESULT drop(int command) const {
    NMTOOLBARW told = {};
    told.hdr = {bar.hwnd(), IDC_ONLINE_TOOLBAR, static_cast<UINT>(TBN_DROPDOWN)};
    told.iItem = command;
    return SendMessageW(hwnd(), WM_NOTIFY, IDC_ONLINE_TOOLBAR, reinterpret_cast<LPARAM>(&told));
  }
  LONG width(std::wstring_view key) const {
    const RECT place = bar.buttonPlace(key);
    return place.right - place.left;
  }

  forms::Toolbar bar;
  forms::WebBrowser page;  // the dialog has one too

 private:
  void Form_Load() override {
    bar.addDropDown(L"one", 0, L"First");
    bar.addDropDown(L"two", 0, L"Second");
  }
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(ToolbarForm&)> script_;
};

}  // namespace

TEST_CASE("a drop-down button tells its key, and a button of nobody tells nothing") {
  ToolbarForm([](ToolbarForm& form) {
    Keys told;
    form.bar.onButtonDropDown = [&](const std::wstring& key) { told.push_back(key); };
    CHECK(form.drop(form.commandAt(1)) == TBDDRET_DEFAULT);
    CHECK(form.drop(form.commandAt(0)) == TBDDRET_DEFAULT);
    form.drop(form.commandAt(1) + 1);
    form.drop(form.commandAt(0) - 1);
    CHECK(told == Keys{L"two", L"one"});
  });
}

TEST_CASE("a drop-down button that nobody waits for is pressed without an error") {
  ToolbarForm([](ToolbarForm& form) {
    modCommon::setLoggingFlag(1);
    const DebugOutput output;
    form.drop(form.commandAt(0));
    CHECK(output.lines().empty());
    modCommon::setLoggingFlag(0);
  });
}

TEST_CASE("a button is as wide as it is told, within what a toolbar can, or as its text is") {
  ToolbarForm([](ToolbarForm& form) {
    const LONG ofText = form.width(L"one");
    form.bar.setButtonWidth(L"one", ofText + 100);
    CHECK(form.width(L"one") == ofText + 100);
    form.bar.setButtonWidth(L"one", 100000);
    CHECK(form.width(L"one") == 32767);
    for (const int none : {0, -1}) {
      form.bar.setButtonWidth(L"one", 200);
      form.bar.setButtonWidth(L"one", none);
      CHECK(form.width(L"one") == ofText);
    }
  });
}
