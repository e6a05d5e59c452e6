// The operations of the connection class, one by one.
#include "addin/DWTemplate.h"

#include "addin/host/HostApplication.h"
#include "addin/resource.h"
#include "common/handles.h"
#include "common/log.h"
#include "common/module.h"
#include "host/model/Host.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

namespace {

struct Menu {
  explicit Menu(standin::HostOptions options = {}) : host(std::move(options)) {
    application = HostApplication(com::Dispatch(ComPtr<IDispatch>(host.application())));
    hostApplication() = application;
  }

  // What varies from test to test; the rest is as the first entry has it.
  struct Request {
    com::Variant parent = 31252L;
    bool parentIsId = true;
    com::Variant anchor = 7121L;
    bool anchorIsId = true;
    HBITMAP picture = nullptr;
    bool append = true;
    long type = 1;
    bool group = false;
  };
  std::optional<HostControl> create(const Request& request) {
    return addIn->CreateFPMenuItem(bar(), request.parent, request.parentIsId, request.anchor,
                                   request.anchorIsId, L"the tag", L"Zoom", request.picture,
                                   request.append, request.type, request.group);
  }
  std::optional<HostCommandBar> bar() { return application.commandBars().activeMenuBar(); }
  standin::CommandBarControl* made() { return host.control(L"the tag"); }

  ModalDriver modal;
  standin::Host host;
  HostApplication application;
  ComPtr<DWTemplate> addIn = DWTemplate::make();
};

handles::Gdi picture() {
  return handles::Gdi(LoadImageW(module::instance(), MAKEINTRESOURCEW(IDB_COPYTOWEB), IMAGE_BITMAP,
                                 0, 0, LR_DEFAULTCOLOR));
}

}  // namespace

TEST_CASE("Without a command bar there is no menu item and no message") {
  Menu menu;
  CHECK_FALSE(menu.addIn->CreateFPMenuItem(std::nullopt, 31252L, true, 7121L, true, L"t", L"c",
                                           nullptr, true, 1, false));
  CHECK(menu.modal.boxes().empty());
}

TEST_CASE("The result is the new control") {
  Menu menu;
  const auto item = menu.create({});
  REQUIRE(item);
  CHECK(item->tag() == L"the tag");
  CHECK(item->caption() == L"&Zoom");
  CHECK(item->index() == 2);
}

TEST_CASE("An entry that is there already is returned unchanged") {
  Menu menu;
  auto& entry = menu.host.addEntry(30003, 1, L"Old");
  entry.tag = L"the tag";
  const auto item = menu.create({});
  REQUIRE(item);
  CHECK(item->caption() == L"Old");
  CHECK(menu.host.captions().size() == 6);
}

TEST_CASE("The parent menu can be named by its tag") {
  Menu menu;
  menu.host.control(30007)->tag = L"tools menu";
  Menu::Request request;
  request.parent = L"tools menu";
  request.parentIsId = false;
  REQUIRE(menu.create(request));
  CHECK(menu.host.captions(30007).back() == L"&Zoom");
}

TEST_CASE("The anchor can be named by its tag") {
  Menu menu;
  menu.host.control(7125)->tag = L"the anchor";
  Menu::Request request;
  request.anchor = L"the anchor";
  request.anchorIsId = false;
  const auto item = menu.create(request);
  REQUIRE(item);
  CHECK(item->index() == 5);
}

TEST_CASE("An anchor that is missing ends quietly when the end will not do") {
  Menu menu;
  Menu::Request request;
  request.anchor = 4711L;
  request.append = false;
  CHECK_FALSE(menu.create(request));
  CHECK(menu.host.captions().size() == 6);
  CHECK(menu.modal.boxes().empty());
}

TEST_CASE("An anchor that is there is used also when the end will not do") {
  Menu menu;
  Menu::Request request;
  request.append = false;
  CHECK(menu.create(request));
}

TEST_CASE("The first of two equal anchors counts") {
  Menu menu;
  menu.host.addEntry(standin::templatesMenuId, 7121, L"Again");
  const auto item = menu.create({});
  REQUIRE(item);
  CHECK(item->index() == 2);
}

TEST_CASE("Controls behind the anchor are not asked for before the entry has its place") {
  Menu menu;
  menu.host.faults().refuse(L"CommandBarControls.Item", L"No.", E_FAIL, 1);
  const auto item = menu.create({});
  REQUIRE(item);
  CHECK(item->index() == 2);
  CHECK(item->caption() == L"Zoom");
}

TEST_CASE("The begin-group flag is handed on") {
  Menu menu;
  Menu::Request request;
  request.group = true;
  REQUIRE(menu.create(request));
  CHECK(menu.made()->beginGroup);
}

TEST_CASE("A menu item without a picture keeps its style") {
  Menu menu;
  REQUIRE(menu.create({}));
  CHECK(menu.made()->asButton()->style() == 0);
  CHECK_FALSE(menu.made()->asButton()->face());
}

TEST_CASE("A button with a picture shows icon and caption") {
  Menu menu;
  const handles::Gdi face = picture();
  Menu::Request request;
  request.picture = static_cast<HBITMAP>(face.get());
  REQUIRE(menu.create(request));
  CHECK(menu.made()->asButton()->style() == 3);
  CHECK(menu.made()->asButton()->face());
}

TEST_CASE("A pop-up gets no picture") {
  Menu menu;
  const handles::Gdi face = picture();
  Menu::Request request;
  request.picture = static_cast<HBITMAP>(face.get());
  request.type = 10;
  REQUIRE(menu.create(request));
  CHECK(menu.host.faults().calls(L"CommandBarButton.PasteFace") == 0);
}

TEST_CASE("A host that gives no new control back has no result") {
  for (const bool empty : {false, true}) {
    standin::HostOptions options;
    options.nothingIsEmpty = empty;
    Menu menu(options);
    menu.host.faults().returnNothing(L"CommandBarControls.Add");
    CHECK_FALSE(menu.create({}));
    CHECK(menu.modal.boxes().empty());
  }
}

TEST_CASE("Each entry without its parent menu shows its own message") {
  standin::HostOptions options;
  options.templatesMenu = false;
  Menu menu(options);
  CHECK_FALSE(menu.create({}));
  CHECK_FALSE(menu.create({}));
  CHECK(menu.modal.boxes().size() == 2);
}

TEST_CASE("A parent that opens no menu ends the addition without a message and a line") {
  standin::HostOptions options;
  options.templatesMenuType = 1;
  Menu menu(options);
  modCommon::setLoggingFlag(1);
  const DebugOutput output;
  CHECK_FALSE(menu.create({}));
  modCommon::setLoggingFlag(0);
  CHECK(output.messages().empty());
  CHECK(menu.modal.boxes().empty());
}

TEST_CASE("Removing an entry answers true whether or not it was there") {
  Menu menu;
  menu.create({});
  CHECK(menu.addIn->RemoveAddInCommandBarButton(1, L"the tag"));
  CHECK_FALSE(menu.made());
  CHECK(menu.addIn->RemoveAddInCommandBarButton(1, L"the tag"));
}

TEST_CASE("Removing an entry finds it in any bar") {
  Menu menu;
  auto& entry = menu.host.addEntry(30003, 1, L"Elsewhere");
  entry.tag = L"the tag";
  CHECK(menu.addIn->RemoveAddInCommandBarButton(0, L"the tag"));
  CHECK_FALSE(menu.made());
}

TEST_CASE("At shutdown of a host of version 6 nothing is removed and the answer is false") {
  standin::HostOptions options;
  options.version = L"6.0.6356";
  Menu menu(options);
  menu.create({});
  CHECK_FALSE(menu.addIn->RemoveAddInCommandBarButton(0, L"the tag"));
  CHECK(menu.made());
  CHECK(menu.host.faults().calls(L"CommandBars.FindControl") == 0);
}

TEST_CASE("A deletion that the host refuses is answered with false and no message") {
  Menu menu;
  menu.create({});
  menu.host.faults().refuse(L"CommandBarControl.Delete", L"No.");
  CHECK_FALSE(menu.addIn->RemoveAddInCommandBarButton(1, L"the tag"));
  CHECK(menu.modal.boxes().empty());
}

TEST_CASE("Captions that cannot be read leave the new caption as it is") {
  Menu menu;
  const auto parent = menu.bar()->find(ControlKey::ofId(31252));
  REQUIRE(parent);
  menu.host.faults().refuse(L"CommandBarControl.Caption", L"No.");
  CHECK(menu.addIn->AddAcceleratorKey(*parent, L"Zoom") == L"Zoom");
}
