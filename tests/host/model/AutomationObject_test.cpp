// How the objects answer calls that are right, wrong and refused.
#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using standin::Host;

TEST_CASE("an unknown member name is answered with DISP_E_UNKNOWNNAME") {
  const Host host;
  CHECK(LateBound(host.application()).get(L"Quit").result == DISP_E_UNKNOWNNAME);
}

TEST_CASE("member names are found in any letter case") {
  const Host host;
  CHECK(LateBound(host.application()).get(L"nAmE").value.text() == L"Microsoft FrontPage");
}

TEST_CASE("an argument of a wrong type is answered with DISP_E_TYPEMISMATCH") {
  const ScratchFolder web;
  const Host host({}, web.path());
  const LateBound opened = LateBound(host.application()).child(L"ActiveWeb");
  CHECK(opened.call(L"LocateFolder", {host.application()}).result == DISP_E_TYPEMISMATCH);
  CHECK(opened.call(L"Refresh", {L"perhaps"}).result == DISP_E_TYPEMISMATCH);
}

TEST_CASE("a number given as text is taken as automation takes it") {
  const Host host;
  const LateBound bars = LateBound(host.application()).child(L"CommandBars");
  CHECK(LateBound(bars.call(L"FindControl", {com::Variant::missing(), L"31252"})));
}

TEST_CASE("too many and too few arguments are answered with DISP_E_BADPARAMCOUNT") {
  const Host host;
  const LateBound application(host.application());
  CHECK(application.call(L"MakeAbs", {L"http://a"}).result == DISP_E_BADPARAMCOUNT);
  CHECK(application.call(L"MakeAbs", {L"http://a", L"b", L"c"}).result == DISP_E_BADPARAMCOUNT);
  CHECK(application.get(L"Name", {1}).result == DISP_E_BADPARAMCOUNT);
}

TEST_CASE("a required argument that is marked as missing is not optional") {
  const Host host;
  CHECK(LateBound(host.application())
            .call(L"MakeAbs", {L"http://a", com::Variant::missing()})
            .result == DISP_E_PARAMNOTOPTIONAL);
}

TEST_CASE("optional arguments may be marked as missing or left out") {
  const Host host;
  const LateBound bar = LateBound(host.application()).child(L"CommandBars").child(L"ActiveMenuBar");
  const auto missing = com::Variant::missing();
  CHECK(LateBound(bar.call(L"FindControl", {missing, 30002, missing, missing, missing})));
  CHECK(LateBound(bar.call(L"FindControl", {missing, 30002})));
}

TEST_CASE("arguments may be given by name") {
  const Host host;
  const LateBound bar = LateBound(host.application()).child(L"CommandBars").child(L"ActiveMenuBar");
  CHECK(LateBound(bar.callNamed(L"FindControl", {}, {{L"Recursive", true}, {L"Id", 31252}})));
  CHECK(bar.callNamed(L"FindControl", {}, {{L"Depth", 1}}).result == DISP_E_UNKNOWNNAME);
}

TEST_CASE("a put needs the value that is named as such") {
  const Host host;
  const LateBound control(host.control(standin::templatesMenuId));
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"Tag")};
  DISPID id = 0;
  control.object()->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  DISPPARAMS none = {};
  CHECK(control.object()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &none,
                                 nullptr, nullptr, nullptr) == DISP_E_BADPARAMCOUNT);
  const com::Variant value(L"tag");
  DISPPARAMS unnamed = {const_cast<VARIANT*>(&value.get()), nullptr, 1, 0};
  CHECK(control.object()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &unnamed,
                                 nullptr, nullptr, nullptr) == DISP_E_PARAMNOTFOUND);
}

TEST_CASE("a property cannot be called nor a read-only one be set") {
  const Host host;
  const LateBound application(host.application());
  CHECK(application.call(L"Version").result == DISP_E_MEMBERNOTFOUND);
  CHECK(application.put(L"Version", L"12").result == DISP_E_MEMBERNOTFOUND);
}

TEST_CASE("an interface other than the null one is refused by Invoke") {
  const Host host;
  DISPPARAMS none = {};
  CHECK(host.application()->Invoke(1, IID_IDispatch, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                   &none, nullptr, nullptr, nullptr) == DISP_E_UNKNOWNINTERFACE);
}

TEST_CASE("an argument may be a reference to a variable") {
  const Host host;
  com::Variant text = L"http://server/page.htm";
  com::Variant reference;
  reference.put()->vt = VT_BYREF | VT_VARIANT;
  const_cast<VARIANT&>(reference.get()).pvarVal = const_cast<VARIANT*>(&text.get());
  const Answer answer =
      LateBound(host.application()).call(L"MakeAbs", {L"http://server", reference});
  CHECK(answer.value.text() == L"http://server/page.htm");
}

TEST_CASE("a refusal fills the exception record") {
  const Host host;
  host.faults().refuse(L"Application.Version", L"Not today.", 1234);
  const Answer answer = LateBound(host.application()).get(L"Version");
  CHECK(answer.result == DISP_E_EXCEPTION);
  CHECK(answer.source == L"Microsoft FrontPage");
  CHECK(answer.description == L"Not today.");
  CHECK(answer.code == 1234);
}

TEST_CASE("a planned refusal can skip calls and end again") {
  const Host host;
  const LateBound application(host.application());
  host.faults().refuse(L"Name", L"No.", E_FAIL, 1, 1);
  CHECK(application.get(L"Name").result == S_OK);
  CHECK(application.get(L"Name").result == DISP_E_EXCEPTION);
  CHECK(application.get(L"Name").result == S_OK);
}

TEST_CASE("a member can be made to do nothing and give nothing") {
  const ScratchFolder web;
  const Host host({}, web.path());
  host.faults().returnNothing(L"WebFolders.Add");
  const LateBound folders =
      LateBound(host.application()).child(L"ActiveWeb").child(L"RootFolder").child(L"Folders");
  const Answer answer = folders.call(L"Add", {L"new"});
  CHECK(answer.result == S_OK);
  CHECK_FALSE(answer.value.object());
  CHECK_FALSE(web.exists(L"new"));
}

TEST_CASE("calls are counted by member and by class and member") {
  const Host host;
  const LateBound control(host.control(standin::copyAnchorId));
  control.get(L"Caption");
  control.get(L"Style");
  CHECK(host.faults().calls(L"Caption") == 1);
  CHECK(host.faults().calls(L"CommandBarControl.Caption") == 1);
  CHECK(host.faults().calls(L"CommandBarButton.Caption") == 1);
  CHECK(host.faults().calls(L"CommandBarButton.Style") == 1);
}

TEST_CASE("calls of every member and names that were asked for are counted") {
  const Host host;
  const LateBound application(host.application());
  application.get(L"Name");
  application.get(L"Version");
  application.get(L"Nam");
  CHECK(host.faults().allCalls() == 2);
  CHECK(host.faults().namesAsked() == 3);
  host.faults().resetCalls();
  CHECK(host.faults().allCalls() == 0);
  CHECK(host.faults().namesAsked() == 0);
}

TEST_CASE("the arguments of the last call are kept") {
  const ScratchFolder web;
  const Host host({}, web.path());
  const LateBound open = LateBound(host.application()).child(L"ActiveWeb");
  CHECK(host.faults().lastArguments(L"Web.Refresh").empty());
  open.call(L"Refresh", {true});
  CHECK(host.faults().lastArguments(L"Web.Refresh") == std::vector<std::wstring>{L"-1"});
  open.call(L"Refresh", {false});
  CHECK(host.faults().lastArguments(L"Refresh") == std::vector<std::wstring>{L"0"});
  open.call(L"Refresh", {});
  CHECK(host.faults().lastArguments(L"Web.Refresh") == std::vector<std::wstring>{L""});
  open.call(L"LocateFolder", {L" a "});
  CHECK(host.faults().lastArguments(L"Web.LocateFolder") == std::vector<std::wstring>{L" a "});
}

TEST_CASE("a misspelt member name in a plan is not accepted") {
  const Host host;
  CHECK_THROWS(host.faults().refuse(L"WebFolders.Ad", L"No."));
  CHECK_THROWS(host.faults().calls(L"Nam"));
}

TEST_CASE("an action can run before a call") {
  const Host host;
  int runs = 0;
  host.faults().before(L"Application.Name", [&] { ++runs; });
  LateBound(host.application()).get(L"Name");
  CHECK(runs == 1);
}

TEST_CASE("objects that outlive the host answer without a web and without menus") {
  const ScratchFolder web;
  ComPtr<IDispatch> application;
  ComPtr<IDispatch> opened;
  {
    const Host host({}, web.path());
    application = ComPtr<IDispatch>(host.application());
    opened = LateBound(host.application()).get(L"ActiveWeb").value.object();
  }
  CHECK_FALSE(LateBound(application.get()).child(L"ActiveWeb"));
  CHECK_FALSE(LateBound(application.get()).child(L"CommandBars").child(L"ActiveMenuBar"));
  CHECK(LateBound(opened.get()).get(L"Url").result == DISP_E_EXCEPTION);
}

TEST_CASE("released objects are gone") {
  const ScratchFolder web;
  const Host host({}, web.path());
  const long before = host.liveObjects();
  {
    const LateBound folder =
        LateBound(host.application()).child(L"ActiveWeb").child(L"RootFolder").child(L"Folders");
    CHECK(host.liveObjects() == before + 1);
  }
  CHECK(host.liveObjects() == before);
}

TEST_CASE("every option can be set by its name") {
  standin::HostOptions options;
  for (const auto& name : standin::HostOptions::names()) CHECK(options.set(name, L"1"));
  CHECK(options.version == L"1");
  CHECK(options.absentFileIsError);
  CHECK(options.set(L"menuBarType", L"0"));
  CHECK(options.menuBarType == 0);
}

TEST_CASE("an unknown option and a value that does not fit are refused") {
  standin::HostOptions options;
  CHECK_FALSE(options.set(L"colour", L"1"));
  CHECK_FALSE(options.set(L"menuBarType", L"bar"));
  CHECK_FALSE(options.set(L"nothingIsEmpty", L"maybe"));
}

TEST_CASE("a watched call is answered as its watcher says") {
  const Host host;
  const LateBound application(host.application());
  std::vector<std::wstring> calls;
  host.faults().watch([&](const standin::HostCall& call) -> std::optional<com::Variant> {
    calls.push_back(std::to_wstring(call.number) + L" " + call.member);
    if (call.number == 2) return com::Variant(L"another");
    if (call.number == 4) throw standin::Refusal{7, L""};
    if (call.number == 6) throw standin::Failure{RPC_E_DISCONNECTED};
    if (call.number == 7) throw standin::Failure{RPC_E_DISCONNECTED};
    return std::nullopt;
  });
  CHECK(application.get(L"Name").value.text() == L"another");
  CHECK(application.get(L"Name").result == DISP_E_EXCEPTION);
  CHECK(application.get(L"Name").result == RPC_E_DISCONNECTED);
  CHECK(application.get(L"Name").result == RPC_E_DISCONNECTED);
  CHECK(calls == std::vector<std::wstring>{L"1 the name Application.Name", L"2 Application.Name",
                                           L"3 the name Application.Name", L"4 Application.Name",
                                           L"5 the name Application.Name", L"6 Application.Name",
                                           L"7 the name Application.Name"});
  host.faults().watch(nullptr);
  CHECK(application.get(L"Name").value.text() == L"Microsoft FrontPage");
  CHECK(calls.size() == 7);
}
