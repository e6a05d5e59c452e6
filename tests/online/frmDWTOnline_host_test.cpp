// The online catalogue's window and the host behind it.
#include "tests/online/OnlineWindow.h"
#include "tests/support/machine.h"

TEST_CASE("a host that gives no version gets the online window all the same") {
  for (const bool empty : {false, true}) {
    CAPTURE(empty);
    standin::HostOptions options;
    options.nothingIsEmpty = empty;
    OnlineWindow window(options);
    window.host().faults().returnNothing(L"Application.Version");
    window.saveIn(window.disk.path());
    window.show([&] {
      CHECK(window.open());
      CHECK(window.destination() == window.disk.path());
      CHECK(window.page.navigations() == Lines{startPage});
    });
    CHECK_FALSE(IsWindow(window.dialog));
    CHECK(window.driver.boxes().empty());
  }
}

TEST_CASE("the online window brings the host to the front once by its version's name") {
  machine::mayChange();
  standin::HostOptions options;
  options.explorerObject = true;
  options.version = L"11.0.8173";
  OnlineWindow window(options);
  int raised = 0;
  window.host().session().activated = [&] { ++raised; };
  window.show([&] { CHECK(raised == 1); });
  CHECK(raised == 1);
}
