#include <initializer_list>
#include <utility>

#include "catalogue/resource.h"
#include "tests/journey/Journey.h"
#include "tests/support/text_output.h"

namespace {

using Lines = std::vector<std::wstring>;

// The user clicks without a web, opens one, copies a template, and leaves.
void travel(std::initializer_list<std::pair<std::wstring, std::wstring>> answers) {
  standin::HostOptions options;
  for (const auto& [name, value] : answers) REQUIRE(options.set(name, value));
  Journey journey(options);
  journey.start();
  CHECK(journey.host.button(copyToWeb));
  CHECK(journey.host.button(dwtOnline));

  journey.host.closeWeb();
  journey.host.click(copyToWeb);
  REQUIRE(journey.modal.boxes().size() == 1);
  CHECK(journey.modal.boxes()[0].text == L"No web is currently open.");
  CHECK(journey.modal.boxes()[0].title == L"Microsoft FrontPage");

  journey.host.openWeb(journey.web);
  journey.copy(L"Night Ferry");
  CHECK(journey.titles() == Lines{L"Harbour Light", L"Night Ferry"});
  CHECK_FALSE(journey.leftOpen());
  REQUIRE(journey.modal.boxes().size() == 2);
  CHECK(journey.modal.boxes()[1].title == L"Dynamic Web Template Browser");
  CHECK(journey.modal.dialogs() ==
        Lines{L"Dynamic Web Template Browser", L"Copying Files To Web..."});

  Lines arrived;
  for (const auto& entry : journey.disk.tree())
    if (entry.rfind(L"webs\\my site\\dwts\\", 0) == 0) arrived.push_back(entry.substr(18));
  CHECK(arrived == Lines{L"", L"Night Ferry\\", L"Night Ferry\\css\\",
                         L"Night Ferry\\css\\ferry.css", L"Night Ferry\\ferry.dwt",
                         L"Night Ferry\\images\\", L"Night Ferry\\images\\deck plan.gif"});
  const std::string page = journey.disk.readFile(L"webs\\my site\\dwts\\Night Ferry\\ferry.dwt");
  CHECK(page.find("<meta name=\"Microsoft Theme\" content=\"nightferry 1111\">") != page.npos);
  CHECK(journey.disk.exists(L"webs\\my site\\_themes\\nightferry\\nightferry.elm"));

  journey.finish();
  const bool forgetsByItself = options.version.substr(0, 2) == L"6.";
  CHECK((journey.host.button(copyToWeb) != nullptr) == forgetsByItself);
  CHECK((journey.host.button(dwtOnline) != nullptr) == forgetsByItself);
}

}  // namespace

TEST_CASE("A template reaches the web in a plain host") { travel({}); }

TEST_CASE("A template reaches the web in a host whose nothing is an empty variant") {
  travel({{L"nothingIsEmpty", L"1"}});
}

TEST_CASE("A template reaches the web in a host that refuses to name no web") {
  travel({{L"noWebIsError", L"1"}});
}

TEST_CASE("A template reaches the web in a host that refuses absent folders") {
  travel({{L"absentFolderIsError", L"1"}});
}

TEST_CASE("A template reaches the web in a host that refuses absent files") {
  travel({{L"absentFileIsError", L"1"}});
}

TEST_CASE("A template reaches the web in a host that adds existing folders") {
  travel({{L"addExistingFolderGivesIt", L"1"}});
}

TEST_CASE("A template reaches the web in a host that adds several levels at once") {
  travel({{L"addMakesLevels", L"1"}});
}

TEST_CASE("A template reaches the web in a host that adds folders by address") {
  travel({{L"addTakesUrl", L"1"}});
}

TEST_CASE("A template reaches the web in a host that takes paths with a slash in front") {
  travel({{L"leadingSlashTaken", L"1"}});
}

TEST_CASE("A template reaches the web in a host that refuses paths with a slash behind") {
  travel({{L"trailingSlashTaken", L"0"}});
}

TEST_CASE("A template reaches the web in a host that makes addresses from the server on") {
  travel({{L"makeAbsFromServer", L"1"}});
}

TEST_CASE("A template reaches the web in a host whose root folder is a web") {
  travel({{L"rootIsWeb", L"1"}});
}

TEST_CASE("A template reaches the web in a host that lists its own folders") {
  travel({{L"vtiFoldersListed", L"1"}});
}

TEST_CASE("A template reaches the web in a host that refuses places past a menu's end") {
  travel({{L"beforePastEndRefused", L"1"}});
}

TEST_CASE("A template reaches the web in a host with its older automation object") {
  travel({{L"explorerObject", L"1"}});
}

TEST_CASE("The host comes to the front by its older automation object if it has one") {
  const std::wstring folders = L"Manage Dynamic Web Template Folders";
  for (const bool registered : {false, true}) {
    CAPTURE(registered);
    standin::HostOptions options;
    options.explorerObject = registered;
    Journey journey(options);
    int raised = 0;
    journey.host.session().activated = [&] { ++raised; };
    journey.start();
    journey.visit([&](HWND browser) {
      journey.modal.onDialog(folders, [](HWND dialog) { press(dialog, IDCANCEL); });
      press(browser, IDC_QUILLET_SELECT);
      press(browser, IDCANCEL);
    });
    CHECK(journey.modal.dialogs() == Lines{L"Dynamic Web Template Browser", folders});
    CHECK(raised == (registered ? 1 : 0));
    journey.finish();
  }
}

TEST_CASE("A template reaches the web in a host without the anchor entries") {
  travel({{L"copyAnchor", L"0"}, {L"onlineAnchor", L"0"}});
}

TEST_CASE("A template reaches the web in a host of version 6") {
  travel({{L"version", L"6.0.6356"}});
}

TEST_CASE("A template reaches a web on a server") { travel({{L"webUrl", L"http://server/sub"}}); }

TEST_CASE("A template reaches the web in a host that gives every second answer") {
  travel({{L"version", L"6.0"},
          {L"webUrl", L"http://server"},
          {L"nothingIsEmpty", L"1"},
          {L"noWebIsError", L"1"},
          {L"absentFolderIsError", L"1"},
          {L"absentFileIsError", L"1"},
          {L"addExistingFolderGivesIt", L"1"},
          {L"addMakesLevels", L"1"},
          {L"addTakesUrl", L"1"},
          {L"leadingSlashTaken", L"1"},
          {L"trailingSlashTaken", L"0"},
          {L"makeAbsFromServer", L"1"},
          {L"rootIsWeb", L"1"},
          {L"vtiFoldersListed", L"1"},
          {L"beforePastEndRefused", L"1"},
          {L"explorerObject", L"1"}});
}

TEST_CASE("The journey can be made twice in one host") {
  Journey journey;
  journey.start();
  journey.copy(L"Harbour Light");
  CHECK(journey.disk.exists(L"webs\\my site\\dwts\\Harbour\\harbour.dwt"));
  journey.finish(userClosed);
  CHECK_FALSE(journey.host.button(copyToWeb));

  journey.start();
  journey.copy(L"Night Ferry");
  CHECK(journey.disk.exists(L"webs\\my site\\dwts\\Night Ferry\\ferry.dwt"));
  journey.finish(userClosed);
  CHECK_FALSE(journey.host.button(copyToWeb));
}

TEST_CASE("A host that refuses an import leaves the browser open for another try") {
  Journey journey;
  journey.host.faults().refuse(L"WebFiles.Add", L"The disk is full.");
  journey.start();
  journey.copy(L"Harbour Light");
  CHECK(journey.leftOpen());
  CHECK_FALSE(journey.disk.exists(L"webs\\my site\\dwts\\Harbour\\harbour.dwt"));
  CHECK(journey.disk.exists(L"templates\\Harbour\\harbour.dwt"));
  journey.finish();
}

TEST_CASE("After the journey nothing of the host is held and the module can be unloaded") {
  Journey journey;
  journey.start();
  journey.copy(L"Harbour Light");
  journey.finish();
  const ShippedModule module;
  CHECK(module.canUnload());
  journey.host.application()->AddRef();
  CHECK(journey.host.application()->Release() == 1);
}
