#include "common/forms/WebBrowser.h"

#include <mshtmhst.h>
#include <oleidl.h>

#include <algorithm>

#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/lifetime.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/HeldKeys.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

namespace {

using Lines = std::vector<std::wstring>;

// A form with a web browser; `script` runs when it is on the screen.
class PageForm : public forms::Form {
 public:
  explicit PageForm(std::function<void(PageForm&)> script)
      : Form(L"frmPage", IDD_QUILLET),
        box(*this, IDC_QUILLET_PICTURE),
        page(*this, IDC_QUILLET_PAGE),
        splitter(*this, IDC_QUILLET_SPLITTER),
        script_(script) {
    page.onBeforeNavigate2 = [this](const std::wstring& address, bool top, bool& cancel) {
      events.push_back(L"before " + address + (top ? L"" : L" in a frame"));
      cancel = refused == address;
    };
    page.onNavigateComplete2 = [this](const std::wstring& address, bool) {
      events.push_back(L"navigated " + address);
    };
    page.onDocumentComplete = [this](const std::wstring& address, bool) {
      events.push_back(L"complete " + address);
    };
    page.onNavigateError = [this](const std::wstring& address, bool, bool& cancel) {
      events.push_back(L"error " + address);
      cancel = true;
    };
    page.onCommandStateChange = [this](long command, bool enabled) {
      events.push_back(std::to_wstring(command) + (enabled ? L" on" : L" off"));
    };
  }

  void show() { showModal(nullptr); }
  long navigateError(const std::wstring& address) {
    try {
      page.navigate(address);
      return 0;
    } catch (const Error& error) {
      return error.number();
    }
  }

  // Until the page has come or failed.
  void go(const FakeWebBrowser& fake, const std::wstring& address) {
    page.navigate(address);
    fake.settle();
  }

  bool preTranslate(MSG& message) override { return page.preTranslate(message); }

  // A key for the page, or for who else has the focus, by way of the form's loop.
  void type(WPARAM key, UINT message = WM_KEYDOWN) {
    PostMessageW(GetFocus(), message, key, 0);
    MSG pending;
    for (int i = 0; i < 1000 && PeekMessageW(&pending, nullptr, 0, 0, PM_NOREMOVE); ++i)
      forms::yieldToMessages();
  }
  // The page with the focus in it.
  void enter(const FakeWebBrowser& fake) {
    page.setVisible(true);
    go(fake, L"http://one/");
    page.focus();
  }
  bool isLeft(const FakeWebBrowser& fake) const {
    return IsChild(hwnd(), GetFocus()) && GetFocus() != page.hwnd() && GetFocus() != fake.window();
  }

  forms::PictureBox box;
  forms::WebBrowser page;
  forms::Splitter splitter;
  Lines events;
  std::wstring refused;

 private:
  void Form_Activate() override {
    script_(*this);
    unload();
  }
  std::function<void(PageForm&)> script_;
};

void show(std::function<void(PageForm&)> script) { PageForm(script).show(); }

// The first page is there, the second one and its body are on their way.
void leaveFirstPage(FakeWebBrowser& fake, forms::WebBrowser& page) {
  page.navigate(L"http://one/");
  fake.settle();
  fake.isSlow = true;
  page.navigate(L"http://two/");
  page.setBodyHtml(L"<p>instead</p>", L"instead");
}

// What stands where an answer goes before there is one.
template <class Interface>
Interface* leftover() {
  return reinterpret_cast<Interface*>(0x10);
}

void checkFillsControl(const FakeWebBrowser& fake, const PageForm& form) {
  RECT control;
  GetClientRect(form.page.hwnd(), &control);
  RECT page;
  GetWindowRect(fake.window(), &page);
  CHECK(page.right - page.left == control.right);
  CHECK(page.bottom - page.top == control.bottom);
}

}  // namespace

TEST_CASE("the browser is made when it is first needed and taken down in order") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    CHECK(fake.alive() == 0);
    form.page.navigate(L"http://one/");
    CHECK(fake.alive() == 1);
    form.page.navigate(L"http://two/");
    CHECK(fake.alive() == 1);
    CHECK(fake.calls() ==
          Lines{L"SetClientSite", L"Silent", L"no drop target", L"in-place activate", L"Advise"});
    fake.clear();
  });
  CHECK(fake.alive() == 0);
  CHECK(fake.calls() ==
        Lines{L"InPlaceDeactivate", L"Unadvise", L"SetClientSite nothing", L"Close", L"released"});
}

TEST_CASE("the module stays loaded for as long as anybody holds the browser's site") {
  FakeWebBrowser fake;
  const long before = lifetime::references();
  ComPtr<IUnknown> site;
  show([&](PageForm& form) {
    form.page.navigate(L"http://one/");
    site = fake.site();
  });
  REQUIRE(site);
  CHECK(lifetime::references() == before + 1);
  site.reset();
  CHECK(lifetime::references() == before);
}

TEST_CASE("a browser that cannot be made raises 429 each time it is asked for") {
  FakeWebBrowser fake;
  fake.canBeMade = false;
  show([&](PageForm& form) {
    CHECK(form.navigateError(L"http://one/") == errors::cannotCreateObject);
    fake.canBeMade = true;
    CHECK(form.navigateError(L"http://one/") == 0);
  });
  CHECK(fake.alive() == 0);
}

TEST_CASE("the events of a page reach the form in order") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    CHECK(form.events ==
          Lines{L"before http://one/", L"navigated http://one/", L"complete http://one/"});
    CHECK(form.page.address() == L"http://one/");
  });
}

TEST_CASE("a navigation can be refused") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.refused = L"http://two/";
    form.go(fake, L"http://one/");
    CHECK_FALSE(fake.follow(L"http://two/"));
    CHECK(fake.follow(L"http://three/"));
    form.go(fake, L"http://two/");
    CHECK(form.page.address() == L"http://one/");
  });
}

TEST_CASE("a frame in the page is told from the page itself") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    form.events.clear();
    fake.followInFrame(L"http://frame/");
    CHECK(form.events == Lines{L"before http://frame/ in a frame"});
  });
}

TEST_CASE("a page that does not arrive fires the error and no error is raised") {
  FakeWebBrowser fake;
  fake.unreachable = [](const std::wstring&) { return true; };
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    CHECK(form.events == Lines{L"before http://one/", L"error http://one/"});
  });
}

TEST_CASE("the tool bar's commands reach the browser and its answers the form") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    fake.clear();
    form.page.goBack();
    form.page.goForward();
    form.page.stop();
    form.page.refresh();
    form.page.print();
    CHECK(fake.calls() == Lines{L"GoBack", L"GoForward", L"Stop", L"Refresh", L"ExecWB 6 0"});
    fake.setCommandState(1, true);
    fake.setCommandState(2, false);
    CHECK(form.events == Lines{L"1 on", L"2 off"});
  });
}

TEST_CASE("a page opens no window and only a passive browser refuses downloads") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    CHECK_FALSE(fake.openWindow());
    CHECK(fake.download(false));
  });
  show([&](PageForm& form) {
    form.page.setPassive(true);
    form.page.create();
    CHECK_FALSE(fake.download(false));
    CHECK(fake.download(true));
  });
}

// As the engine asks for it: pictures 0x10, videos 0x20, background sounds 0x40; no scripts 0x80,
// no Java 0x100, components neither run 0x200 nor fetched 0x400, no behaviours 0x8000; nothing from
// the network 0x10000000, no client pull 0x20000000, no questions 0x40000000.
TEST_CASE("a passive page only shows itself and what lies on the disk") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    CHECK(fake.ambient(-5512) == 0x40000070);
    CHECK(fake.ambient(-5513) == 0);
  });
  show([&](PageForm& form) {
    form.page.setPassive(true);
    form.page.create();
    CHECK(fake.ambient(-5512) == 0x70008790);
  });
}

TEST_CASE("a page opens no window and does not close the browser") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    CHECK_FALSE(fake.openWindow(DISPID_NEWWINDOW2));
    CHECK_FALSE(fake.openWindow(DISPID_NEWWINDOW3));
    fake.clear();
    CHECK_FALSE(fake.closeWindow());
    CHECK(fake.calls().empty());
  });
}

TEST_CASE("a page has no context menu, no object of the host and nothing to drop on") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    const auto host = fake.site().as<IDocHostUIHandler>();
    REQUIRE(host);
    CHECK(host->ShowContextMenu(0, nullptr, nullptr, nullptr) == S_OK);
    auto* external = leftover<IDispatch>();
    CHECK(host->GetExternal(&external) != S_OK);
    CHECK(external == nullptr);
    ComPtr<IDropTarget> target;
    CHECK(host->GetDropTarget(nullptr, target.put()) != S_OK);
    DOCHOSTUIINFO info = {};
    info.cbSize = sizeof info;
    CHECK(host->GetHostInfo(&info) == S_OK);
    MSG key = {};
    key.message = WM_KEYDOWN;
    key.wParam = VK_DELETE;
    CHECK(fake.site().as<IOleControlSite>()->TranslateAccelerator(&key, 0) == S_FALSE);
    CHECK(info.dwFlags == 0x40004);  // no frame, themed controls
  });
}

TEST_CASE("the place of a page has no menus, no bars and nothing of a container") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    const auto client = fake.site().as<IOleClientSite>();
    auto* moniker = leftover<IMoniker>();
    CHECK(client->GetMoniker(0, 0, &moniker) == E_NOTIMPL);
    CHECK(moniker == nullptr);
    auto* container = leftover<IOleContainer>();
    CHECK(client->GetContainer(&container) == E_NOINTERFACE);
    CHECK(container == nullptr);
    CHECK(client->SaveObject() == E_NOTIMPL);
    CHECK(client->OnShowWindow(TRUE) == S_OK);
    CHECK(client->RequestNewObjectLayout() == E_NOTIMPL);

    const auto place = fake.site().as<IOleInPlaceSite>();
    CHECK(place->ContextSensitiveHelp(TRUE) == E_NOTIMPL);
    CHECK(place->Scroll({}) == E_NOTIMPL);
    CHECK(place->DiscardUndoState() == E_NOTIMPL);
    CHECK(place->DeactivateAndUndo() == E_NOTIMPL);

    const auto frame = fake.site().as<IOleInPlaceFrame>();
    RECT border;
    CHECK(frame->GetBorder(&border) == INPLACE_E_NOTOOLSPACE);
    CHECK(frame->RequestBorderSpace(nullptr) == INPLACE_E_NOTOOLSPACE);
    CHECK(frame->SetBorderSpace(nullptr) == S_OK);
    CHECK(frame->SetActiveObject(nullptr, nullptr) == S_OK);
    CHECK(frame->InsertMenus(nullptr, nullptr) == E_NOTIMPL);
    CHECK(frame->SetMenu(nullptr, nullptr, nullptr) == S_OK);
    CHECK(frame->RemoveMenus(nullptr) == E_NOTIMPL);
    CHECK(frame->TranslateAccelerator(nullptr, 0) == S_FALSE);

    const auto control = fake.site().as<IOleControlSite>();
    auto* object = leftover<IDispatch>();
    CHECK(control->GetExtendedControl(&object) == E_NOTIMPL);
    CHECK(object == nullptr);
    CHECK(control->OnControlInfoChanged() == S_OK);
    CHECK(control->LockInPlaceActive(TRUE) == S_OK);
    CHECK(control->TransformCoords(nullptr, nullptr, 0) == E_NOTIMPL);
    CHECK(control->OnFocus(TRUE) == S_OK);
    CHECK(control->ShowPropertyFrame() == E_NOTIMPL);
  });
}

TEST_CASE("the host of a page leaves its documents to the browser and tells scripts nothing") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    const auto host = fake.site().as<IDocHostUIHandler>();
    CHECK(host->ShowUI(0, nullptr, nullptr, nullptr, nullptr) == S_OK);
    CHECK(host->HideUI() == S_OK);
    CHECK(host->UpdateUI() == S_OK);
    CHECK(host->OnDocWindowActivate(TRUE) == S_OK);
    CHECK(host->OnFrameWindowActivate(TRUE) == S_OK);
    CHECK(host->ResizeBorder(nullptr, nullptr, TRUE) == S_OK);
    wchar_t some[] = L"x";
    wchar_t* key = some;
    CHECK(host->GetOptionKeyPath(&key, 0) == S_FALSE);
    CHECK(key == nullptr);
    wchar_t* address = some;
    CHECK(host->TranslateUrl(0, some, &address) == S_FALSE);
    CHECK(address == nullptr);
    auto* data = leftover<IDataObject>();
    CHECK(host->FilterDataObject(nullptr, &data) == S_FALSE);
    CHECK(data == nullptr);

    const auto properties = fake.site().as<IDispatch>();
    UINT count = 1;
    CHECK(properties->GetTypeInfoCount(&count) == S_OK);
    CHECK(count == 0);
    auto* type = leftover<ITypeInfo>();
    CHECK(properties->GetTypeInfo(0, 0, &type) == E_NOTIMPL);
    CHECK(type == nullptr);
    DISPID member;
    CHECK(properties->GetIDsOfNames(IID_NULL, nullptr, 0, 0, &member) == DISP_E_UNKNOWNNAME);
  });
}

TEST_CASE("a page that was refused is no longer on its way") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.refused = L"http://two/";
    form.page.navigate(L"http://two/");
    CHECK(form.page.isOnItsWay());
    fake.followInFrame(L"http://two/");
    fake.follow(L"http://three/");
    CHECK(form.page.isOnItsWay());
    fake.settle();
    CHECK_FALSE(form.page.isOnItsWay());
    CHECK(fake.navigations() == Lines{L"http://two/"});
  });
}

TEST_CASE("a page that arrives under its own address is no longer on its way") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.navigate(L"http://one");
    CHECK(form.page.isOnItsWay());
    fake.completeLate(L"http://zero/");
    CHECK(form.page.isOnItsWay());
    fake.settle();
    CHECK(form.page.address() == L"http://one/");
    CHECK_FALSE(form.page.isOnItsWay());
    fake.unreachable = [](const std::wstring&) { return true; };
    form.page.navigate(L"http://two");
    CHECK(form.page.isOnItsWay());
    fake.failInFrame(L"http://two/");
    CHECK(form.page.isOnItsWay());
    fake.settle();
    CHECK_FALSE(form.page.isOnItsWay());
  });
}

TEST_CASE("a page that the browser does not take raises an error and is not on its way") {
  FakeWebBrowser fake;
  fake.refusesAll = true;
  show([&](PageForm& form) {
    CHECK(form.navigateError(L"http://one/") != 0);
    CHECK_FALSE(form.page.isOnItsWay());
  });
}

TEST_CASE("the browser tells whether it is loading something") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    CHECK_FALSE(form.page.busy());
    form.page.navigate(L"http://one/");
    CHECK(form.page.busy());
    fake.settle();
    CHECK_FALSE(form.page.busy());
  });
}

TEST_CASE("a page that is shown again comes as itself") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    form.events.clear();
    form.page.refresh();
    fake.settle();
    CHECK(form.events ==
          Lines{L"before http://one/", L"navigated http://one/", L"complete http://one/"});
  });
}

TEST_CASE("an event with named or missing arguments is none") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    form.events.clear();
    VARIANT values[7] = {};
    VARIANT_BOOL cancel = VARIANT_FALSE;
    values[0].vt = VT_BYREF | VT_BOOL;
    values[0].pboolVal = &cancel;
    DISPID name = 0;
    DISPPARAMS named = {values, &name, 7, 1};
    for (const DISPID event :
         {DISPID_BEFORENAVIGATE2, DISPID_NEWWINDOW2, DISPID_DOCUMENTCOMPLETE, DISPID_NAVIGATEERROR})
      CHECK(fake.fire(fake.site(), event, named) == DISP_E_NONAMEDARGS);
    CHECK(cancel == VARIANT_FALSE);
    DISPPARAMS few = {values, nullptr, 1, 0};
    for (const DISPID event : {DISPID_BEFORENAVIGATE2, DISPID_NAVIGATECOMPLETE2,
                               DISPID_DOCUMENTCOMPLETE, DISPID_NAVIGATEERROR, DISPID_NEWWINDOW3})
      CHECK(fake.fire(fake.site(), event, few) == S_OK);
    CHECK(form.events.empty());
    CHECK(cancel == VARIANT_FALSE);
  });
}

TEST_CASE("events that come after the browser was let go reach nobody") {
  FakeWebBrowser fake;
  ComPtr<IUnknown> site;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    site = fake.site();
  });
  REQUIRE(site);
  DISPPARAMS none = {};
  CHECK(fake.fire(site, DISPID_DOCUMENTCOMPLETE, none) == DISP_E_MEMBERNOTFOUND);
  HWND window = reinterpret_cast<HWND>(1);
  CHECK(FAILED(site.as<IOleInPlaceSite>()->GetWindow(&window)));
  CHECK(window == nullptr);
  CHECK(site.as<IOleInPlaceSite>()->OnUIActivate() == S_OK);
}

// Keys and focus

TEST_CASE("the keys of a page reach it, whatever the form would do with them") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    REQUIRE(GetFocus() == fake.window());
    for (const WPARAM key : {VK_DELETE, VK_BACK, VK_RETURN, VK_LEFT}) form.type(key);
    CHECK(fake.keys() == std::vector<WPARAM>{VK_DELETE, VK_BACK, VK_RETURN, VK_LEFT});
    CHECK(GetFocus() == fake.window());
  });
}

TEST_CASE("Esc and the keys with Alt are the form's though the focus is in a page") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    form.type(VK_LEFT, WM_SYSKEYDOWN);
    form.type('n', WM_SYSCHAR);
    form.type(VK_ESCAPE);  // which closes this form
    CHECK(fake.keys().empty());
  });
}

TEST_CASE("the keys of another control are not the page's") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    const HWND list = GetDlgItem(form.hwnd(), IDC_QUILLET_LIST);
    PostMessageW(list, WM_KEYDOWN, VK_DELETE, 0);
    form.type(0, WM_NULL);
    CHECK(fake.keys().empty());
    SetFocus(list);
    form.type(VK_DELETE);
    CHECK(fake.keys().empty());
  });
}

TEST_CASE("the Tab key goes through a page and on to the next control") {
  FakeWebBrowser fake;
  fake.stops = 3;
  show([&](PageForm& form) {
    form.enter(fake);
    CHECK(fake.stop() == 1);
    form.type(VK_TAB);
    form.type(VK_TAB);
    CHECK(fake.stop() == 3);
    CHECK(GetFocus() == fake.window());
    const HWND next = GetNextDlgTabItem(form.hwnd(), form.page.hwnd(), FALSE);
    form.type(VK_TAB);
    CHECK(form.isLeft(fake));
    CHECK(GetFocus() == next);
    CHECK_FALSE(fake.isActive());
  });
}

TEST_CASE("the Tab key with Shift leaves a page for the control before it") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    const HWND former = GetNextDlgTabItem(form.hwnd(), form.page.hwnd(), TRUE);
    const HeldKeys held({VK_SHIFT});
    form.type(VK_TAB);
    CHECK(form.isLeft(fake));
    CHECK(GetFocus() == former);
  });
}

TEST_CASE("a page that the focus has left takes it again when it comes back") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    CHECK(fake.isActive());
    SetFocus(GetDlgItem(form.hwnd(), IDC_QUILLET_LIST));
    CHECK(fake.isActive());
    form.type(0, WM_NULL);
    CHECK_FALSE(fake.isActive());
    form.type(0, WM_NULL);
    CHECK(std::count(fake.calls().begin(), fake.calls().end(), L"UIDeactivate") == 1);
    form.page.focus();
    CHECK(GetFocus() == fake.window());
    // Before any message has come by.
    SetFocus(GetDlgItem(form.hwnd(), IDC_QUILLET_LIST));
    form.page.focus();
    CHECK(GetFocus() == fake.window());
    CHECK(fake.isActive());
  });
}

TEST_CASE("a page keeps the keyboard while another window has the focus") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    const HWND other = CreateWindowW(L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr,
                                     nullptr, nullptr, nullptr);
    SetFocus(other);
    PostMessageW(form.hwnd(), WM_NULL, 0, 0);
    form.type(0, WM_NULL);
    CHECK(fake.isActive());
    DestroyWindow(other);
  });
}

TEST_CASE("a page that was clicked gives the keyboard back too") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.setVisible(true);
    form.go(fake, L"http://one/");
    fake.click();
    CHECK(fake.isActive());
    form.type(0, WM_NULL);
    CHECK(fake.isActive());
    SetFocus(GetDlgItem(form.hwnd(), IDC_QUILLET_LIST));
    form.type(0, WM_NULL);
    CHECK_FALSE(fake.isActive());
  });
}

TEST_CASE("the focus does not stay in a page whose place is taken by a text") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    fake.isSlow = true;
    form.page.navigate(L"http://two/");
    form.page.setBodyHtml(L"<p>instead</p>", L"instead");
    CHECK_FALSE(IsWindowVisible(fake.window()));
    CHECK(GetFocus() == form.page.hwnd());
    CHECK_FALSE(fake.isActive());
    // Until its page has come, or another one is asked for.
    form.page.focus();
    CHECK(GetFocus() == form.page.hwnd());
    for (const bool arrives : {true, false}) {
      CAPTURE(arrives);
      if (arrives) fake.arrive(L"http://two/");
      if (!arrives) form.page.setBodyHtml(L"<p>instead</p>", L"instead");
      if (!arrives) form.page.navigate(L"http://three/");
      CHECK(IsWindowVisible(fake.window()));
      SetFocus(GetDlgItem(form.hwnd(), IDC_QUILLET_LIST));
      form.page.focus();
      CHECK(GetFocus() == fake.window());
      form.page.navigate(L"http://two/");
    }
  });
}

TEST_CASE("a page opens neither a window nor a dialog of the engine's own by a key") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.enter(fake);
    fake.clear();
    {
      const HeldKeys held({VK_CONTROL});
      for (const WPARAM key : {'N', 'O', 'L'}) form.type(key);
      CHECK(fake.keys().empty());
      form.type('F');
    }
    for (const WPARAM key : {'N', 'O', 'L'}) form.type(key);
    CHECK(fake.keys() == std::vector<WPARAM>{'F', 'N', 'O', 'L'});
    CHECK(fake.calls().empty());
  });
}

TEST_CASE("the window of a page has the size of its control") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    SetWindowPos(form.page.hwnd(), nullptr, 0, 0, 123, 77, SWP_NOMOVE | SWP_NOZORDER);
    checkFillsControl(fake, form);
  });
}

TEST_CASE("a browser that wants another place keeps that of its control") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    SetWindowPos(fake.window(), nullptr, 0, 0, 5, 5, SWP_NOMOVE | SWP_NOZORDER);
    const RECT wanted = {0, 0, 5, 5};
    CHECK(fake.site().as<IOleInPlaceSite>()->OnPosRectChange(&wanted) == S_OK);
    checkFillsControl(fake, form);
  });
}

TEST_CASE("what goes wrong behind a page's event is told to the page") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.create();
    form.page.onCommandStateChange = [](long, bool) { throw Error(errors::typeMismatch); };
    VARIANT arguments[2] = {};
    arguments[0].vt = VT_BOOL;
    arguments[1].vt = VT_I4;
    DISPPARAMS event = {arguments, nullptr, 2, 0};
    CHECK(fake.site().as<IDispatch>()->Invoke(DISPID_COMMANDSTATECHANGE, IID_NULL, 0,
                                              DISPATCH_METHOD, &event, nullptr, nullptr,
                                              nullptr) == E_FAIL);
  });
}

TEST_CASE("the body of a page can be replaced") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.go(fake, L"http://one/");
    form.page.setBodyHtml(L"<p>instead</p>", L"instead");
    CHECK(fake.bodyHtml() == L"<p>instead</p>");
  });
}

TEST_CASE("a document that has no body makes room for what is said in place of it") {
  FakeWebBrowser fake;
  fake.hasBody = false;
  show([&](PageForm& form) {
    form.enter(fake);
    CHECK(IsWindowVisible(fake.window()));
    form.page.setBodyHtml(L"<p>instead</p>", L"instead");
    CHECK(fake.bodyHtml().empty());
    CHECK_FALSE(IsWindowVisible(fake.window()));
  });
}

TEST_CASE("a body that is set before there is a page is put into the next one") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    form.page.setBodyHtml(L"<p>instead</p>", L"instead");
    CHECK(fake.bodyHtml().empty());
    fake.hasDocument = false;
    form.go(fake, L"http://one/");
    form.page.setBodyHtml(L"<p>instead</p>", L"instead");
    fake.hasDocument = true;
    fake.arrive(L"http://one/");
    CHECK(fake.bodyHtml() == L"<p>instead</p>");
  });
}

TEST_CASE("a body that is set while a page is on its way is put into that page") {
  FakeWebBrowser fake;
  show([&](PageForm& form) {
    leaveFirstPage(fake, form.page);
    fake.arrive(L"http://two/");
    CHECK(fake.address() == L"http://two/");
    CHECK(fake.bodyHtml() == L"<p>instead</p>");
    fake.isSlow = false;
    form.go(fake, L"http://three/");
    CHECK(fake.bodyHtml().empty());
  });
}

TEST_CASE("a page that was left takes no body from the one that is on its way") {
  for (const bool fails : {false, true}) {
    CAPTURE(fails);
    FakeWebBrowser fake;
    show([&](PageForm& form) {
      leaveFirstPage(fake, form.page);
      if (fails)
        fake.failLate(L"http://one/");
      else
        fake.completeLate(L"http://one/");
      CHECK(fake.bodyHtml().empty());
      form.page.setBodyHtml(L"<p>again</p>", L"again");
      CHECK(fake.bodyHtml().empty());
      fake.arrive(L"http://two/");
      CHECK(fake.bodyHtml() == L"<p>again</p>");
    });
  }
}

TEST_CASE("the system's own browser component can be hosted and left") {
  show([](PageForm& form) {
    form.page.create();
    form.page.navigate(L"about:blank");
    form.page.setVisible(true);
    form.page.focus();
    pumpUntil([&] { return !form.events.empty(); });
    CHECK_FALSE(form.events.empty());
    CHECK(form.events.front() == L"before about:blank");
  });
}
