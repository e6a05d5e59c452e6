#include "common/forms/screen_reader.h"

#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/forms/WebBrowser.h"
#include "common/lifetime.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/accessible.h"
#include "tests/support/text_output.h"

namespace {

// A form with each of the module's own controls; `script` runs when it is on the screen.
class OwnControls : public forms::Form {
 public:
  explicit OwnControls(std::function<void(OwnControls&)> script)
      : Form(L"frmOwn", IDD_QUILLET),
        splitter(*this, IDC_QUILLET_SPLITTER),
        box(*this, IDC_QUILLET_PICTURE),
        page(*this, IDC_QUILLET_PAGE),
        script_(std::move(script)) {
    showModal(nullptr);
  }

  forms::Splitter splitter;
  forms::PictureBox box;
  forms::WebBrowser page;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(OwnControls&)> script_;
};

// The events that this process tells of.
class NotedEvents {
 public:
  NotedEvents() { noted.clear(); }
  static inline std::vector<std::pair<DWORD, HWND>> noted;

 private:
  static void WINAPI note(DWORD event, HWND window, LONG, LONG) {
    noted.emplace_back(event, window);
  }
  ImportPatch patch_{nullptr, "user32.dll", "NotifyWinEvent", note};
};

}  // namespace

TEST_CASE("a screen reader learns name and role of each of the module's own controls") {
  OwnControls([](OwnControls& form) {
    CHECK(accessibleOf(form.splitter.hwnd()).name == L"List width");
    CHECK(accessibleOf(form.splitter.hwnd()).role == ROLE_SYSTEM_SEPARATOR);
    CHECK(accessibleOf(form.box.hwnd()).name == L"DWT Preview");
    CHECK(accessibleOf(form.box.hwnd()).role == ROLE_SYSTEM_GRAPHIC);
    CHECK(accessibleOf(form.page.hwnd()).name == L"DWT Preview");
    CHECK(accessibleOf(form.page.hwnd()).role == ROLE_SYSTEM_CLIENT);
  });
}

TEST_CASE("a control's own object tells its place and its window as the system does") {
  OwnControls([](OwnControls& form) {
    const auto object = accessibleObject(form.box.hwnd());
    REQUIRE(object);
    VARIANT self = {};
    self.vt = VT_I4;
    long left = 0;
    long top = 0;
    long width = 0;
    long height = 0;
    CHECK(object->accLocation(&left, &top, &width, &height, self) == S_OK);
    RECT client;
    GetClientRect(form.box.hwnd(), &client);
    MapWindowPoints(form.box.hwnd(), nullptr, reinterpret_cast<POINT*>(&client), 2);
    CHECK(left == client.left);
    CHECK(top == client.top);
    CHECK(width == client.right - client.left);
    CHECK(height == client.bottom - client.top);
    HWND window = nullptr;
    WindowFromAccessibleObject(object.get(), &window);
    CHECK(window == form.box.hwnd());
  });
}

TEST_CASE("a control's own object says all else as the system does and has nothing to change") {
  OwnControls([](OwnControls& form) {
    const auto object = accessibleObject(form.box.hwnd());
    ComPtr<IAccessible> standard;
    REQUIRE(CreateStdAccessibleObject(form.box.hwnd(), OBJID_CLIENT, __uuidof(IAccessible),
                                      reinterpret_cast<void**>(standard.put())) == S_OK);
    VARIANT self = {};
    self.vt = VT_I4;
    const auto same = [&](auto&& ask) { CHECK(ask(*object.get()) == ask(*standard.get())); };
    same([](IAccessible& each) {
      long count = -1;
      return std::pair(each.get_accChildCount(&count), count);
    });
    same([&](IAccessible& each) {
      ComPtr<IDispatch> child;
      return std::pair(each.get_accChild(self, child.put()), static_cast<bool>(child));
    });
    same([&](IAccessible& each) {
      VARIANT state = {};
      const HRESULT result = each.get_accState(self, &state);
      return std::tuple(result, state.vt, state.lVal);
    });
    same([](IAccessible& each) {
      VARIANT child = {};
      const HRESULT result = each.get_accFocus(&child);
      return std::tuple(result, child.vt, child.lVal);
    });
    same([&](IAccessible& each) { return each.accSelect(0, self); });
    same([](IAccessible& each) {
      VARIANT child = {};
      const HRESULT result = each.accHitTest(-30000, -30000, &child);
      return std::tuple(result, child.vt, child.lVal);
    });

    constexpr HRESULT none = DISP_E_MEMBERNOTFOUND;
    BSTR text = nullptr;
    long number = 0;
    VARIANT value = {};
    CHECK(object->get_accValue(self, &text) == none);
    CHECK(object->get_accDescription(self, &text) == none);
    CHECK(object->get_accHelp(self, &text) == none);
    CHECK(object->get_accHelpTopic(&text, self, &number) == none);
    CHECK(object->get_accKeyboardShortcut(self, &text) == none);
    CHECK(object->get_accDefaultAction(self, &text) == none);
    CHECK(object->get_accSelection(&value) == none);
    CHECK(object->accDoDefaultAction(self) == none);
    CHECK(object->put_accName(self, nullptr) == none);
    CHECK(object->put_accValue(self, nullptr) == none);
    UINT count = 0;
    CHECK(object->GetTypeInfoCount(&count) == E_NOTIMPL);
    CHECK(object->GetTypeInfo(0, 0, nullptr) == E_NOTIMPL);
    CHECK(object->GetIDsOfNames(IID_NULL, nullptr, 0, 0, nullptr) == E_NOTIMPL);
    CHECK(object->Invoke(0, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr) == E_NOTIMPL);
  });
}

TEST_CASE(
    "an error in place of a page is told to a screen reader and forgotten with the next page") {
  for (const bool hasDocument : {true, false}) {
    CAPTURE(hasDocument);
    FakeWebBrowser browser;
    browser.hasDocument = hasDocument;
    OwnControls([&](OwnControls& form) {
      form.page.navigate(L"about:blank");
      const NotedEvents events;
      form.page.setBodyHtml(L"<b>No page</b>", L"No page");
      const std::pair<DWORD, HWND> alert(EVENT_SYSTEM_ALERT, form.page.hwnd());
      CHECK(NotedEvents::noted == std::vector{alert});
      CHECK(accessibleOf(form.page.hwnd()).name == L"No page");
      CHECK(accessibleOf(form.page.hwnd()).role == ROLE_SYSTEM_ALERT);
      form.page.navigate(L"about:blank");
      CHECK(accessibleOf(form.page.hwnd()).name == L"DWT Preview");
      CHECK(accessibleOf(form.page.hwnd()).role == ROLE_SYSTEM_CLIENT);
    });
  }
}

TEST_CASE("what a screen reader holds keeps the module loaded") {
  const long before = lifetime::references();
  ComPtr<IAccessible> held;
  OwnControls([&](OwnControls& form) { held = accessibleObject(form.box.hwnd()); });
  CHECK(lifetime::references() == before + 1);
  VARIANT self = {};
  self.vt = VT_I4;
  VARIANT role = {};
  CHECK(held->get_accRole(self, &role) == S_OK);
  held.reset();
  CHECK(lifetime::references() == before);
}

TEST_CASE("without the accessibility library the controls are as the system tells them") {
  CHECK(forms::tellScreenReader(nullptr, 0, static_cast<LPARAM>(OBJID_CLIENT), 1) == 0);
  CHECK(forms::tellScreenReader(GetDesktopWindow(), 0, OBJID_CARET, ROLE_SYSTEM_GRAPHIC) == 0);
}
