// What other tests lean on: the whole host in one object.
#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

TEST_CASE("the fixture gives a host with a web and a menu in one line") {
  const ScratchFolder web;
  standin::Host host({}, web.path());
  CHECK(LateBound(host.application()).child(L"ActiveWeb"));
  CHECK(host.captions().front() == L"&Attach Dynamic Web Template...");
  CHECK(host.click(L"Update All Pages"));
  CHECK_FALSE(host.click(L"Update No Pages"));
  CHECK(host.faults().calls(L"Application.ActiveWeb") == 1);
}

TEST_CASE("a test can make a menu of its own") {
  standin::Host host;
  host.clearEntries();
  host.addEntry(standin::templatesMenuId, 7121, L"Save && &Send");
  CHECK(host.captions() == std::vector<std::wstring>{L"Save && &Send"});
  CHECK(host.button(L"Save & Send")->id == 7121);
  CHECK_THROWS(host.captions(99999));
}
