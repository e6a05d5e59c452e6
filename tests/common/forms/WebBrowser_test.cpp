#include "common/forms/WebBrowser.h"

#include "catalogue/resource.h"
#include "common/forms/PictureBox.h"
#include "common/lifetime.h"
#include "tests/support/FakeWebBrowser.h"
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

  forms::PictureBox box;
  forms::WebBrowser page;
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
    CHECK((fake.ambient(-5512) & 0x80) == 0);
  });
  show([&](PageForm& form) {
    form.page.setPassive(true);
    form.page.create();
    CHECK_FALSE(fake.download(false));
    CHECK(fake.download(true));
    CHECK((fake.ambient(-5512) & 0x780) == 0x780);
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
