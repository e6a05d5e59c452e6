#include "host/model/Host.h"
#include "tests/host/LateBound.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using standin::Host;
using standin::HostOptions;

TEST_CASE("the application tells its name and a version of the 2003 generation") {
  const Host host;
  const LateBound application(host.application());
  CHECK(application.text(L"Name") == L"Microsoft FrontPage");
  CHECK(application.text(L"Version") == L"11.0.5510");
}

TEST_CASE("the version text is a switch") {
  HostOptions options;
  options.version = L"6.0.6356";
  const Host host(options);
  CHECK(LateBound(host.application()).text(L"Version") == L"6.0.6356");
}

TEST_CASE("without an open web ActiveWeb is a null object") {
  const Host host;
  const Answer answer = LateBound(host.application()).get(L"ActiveWeb");
  CHECK(answer.result == S_OK);
  CHECK(answer.value.type() == VT_DISPATCH);
  CHECK_FALSE(answer.value.object());
}

TEST_CASE("nothing can be an empty value instead of a null object") {
  const Host host;
  host.options().nothingIsEmpty = true;
  const Answer answer = LateBound(host.application()).get(L"ActiveWeb");
  CHECK(answer.result == S_OK);
  CHECK(answer.value.type() == VT_EMPTY);
}

TEST_CASE("without an open web ActiveWeb can be an error") {
  const Host host;
  host.options().noWebIsError = true;
  CHECK(LateBound(host.application()).get(L"ActiveWeb").result == DISP_E_EXCEPTION);
}

TEST_CASE("a web can be opened and closed while the host runs") {
  const ScratchFolder web;
  Host host;
  host.openWeb(web.path() + L"\\");
  CHECK(LateBound(host.application()).child(L"ActiveWeb"));
  host.closeWeb();
  CHECK_FALSE(LateBound(host.application()).child(L"ActiveWeb"));
}

TEST_CASE("objects of a web that was closed refuse") {
  const ScratchFolder web;
  Host host({}, web.path());
  const LateBound folder = LateBound(host.application()).child(L"ActiveWeb").child(L"RootFolder");
  host.openWeb(web.path());
  CHECK(folder.get(L"Url").result == DISP_E_EXCEPTION);
}

TEST_CASE("the web window is there without a web and can be activated") {
  const Host host;
  bool activated = false;
  host.session().activated = [&] { activated = true; };
  const LateBound window = LateBound(host.application()).child(L"ActiveWebWindow");
  CHECK(window.text(L"Caption") == L"Microsoft FrontPage");
  CHECK(window.call(L"Activate").result == S_OK);
  CHECK(activated);
  CHECK(window.get(L"Hwnd").result == DISP_E_UNKNOWNNAME);
}

TEST_CASE("MakeAbs joins a base and a relative address") {
  const Host host;
  const LateBound application(host.application());
  const auto made = [&](const wchar_t* base, const wchar_t* url) {
    return application.call(L"MakeAbs", {base, url}).value.text();
  };
  CHECK(made(L"file:///C:/My Webs", L"dwts/Blue") == L"file:///C:/My Webs/dwts/Blue");
  CHECK(made(L"C:\\My Webs", L"index.htm") == L"file:///C:/My Webs/index.htm");
  CHECK(made(L"http://server/sub/", L"./a/../b") == L"http://server/sub/b");
}

TEST_CASE("MakeAbs gives an absolute address back unchanged") {
  const Host host;
  CHECK(LateBound(host.application())
            .call(L"MakeAbs", {L"http://server", L"file:///C:/My Webs/a b.htm"})
            .value.text() == L"file:///C:/My Webs/a b.htm");
}

TEST_CASE("MakeAbs takes an object with an address as its base") {
  const ScratchFolder web;
  web.makeFolder(L"dwts");
  HostOptions options;
  options.webUrl = L"http://server/sub";
  const Host host(options, web.path());
  const LateBound application(host.application());
  const LateBound opened = application.child(L"ActiveWeb");
  const LateBound folder(opened.call(L"LocateFolder", {L"dwts"}));
  CHECK(application.call(L"MakeAbs", {opened.object(), L"a"}).value.text() ==
        L"http://server/sub/a");
  CHECK(application.call(L"MakeAbs", {folder.object(), L"a"}).value.text() ==
        L"http://server/sub/dwts/a");
  CHECK(application.call(L"MakeAbs", {host.application(), L"a"}).result == DISP_E_EXCEPTION);
}

// Somebody else's object with a "Url".
class ForeignPage final : public IDispatch {
 public:
  STDMETHOD(QueryInterface)(REFIID, void** object) override {
    *object = this;
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 1; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    *id = 1;
    return std::wstring_view(*names) == L"Url" ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHOD(Invoke)
  (DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(L"http://other/page");
    return S_OK;
  }
};

TEST_CASE("MakeAbs takes an object of another maker as its base") {
  const Host host;
  ForeignPage page;
  CHECK(LateBound(host.application())
            .call(L"MakeAbs", {static_cast<IDispatch*>(&page), L"a"})
            .value.text() == L"http://other/page/a");
}

TEST_CASE("a leading slash means the base or the server for MakeAbs") {
  const Host host;
  const LateBound application(host.application());
  const auto made = [&](const wchar_t* base) {
    return application.call(L"MakeAbs", {base, L"/dwts"}).value.text();
  };
  CHECK(made(L"http://server/sub") == L"http://server/sub/dwts");
  host.options().makeAbsFromServer = true;
  CHECK(made(L"http://server/sub") == L"http://server/dwts");
  CHECK(made(L"file:///C:/My Webs") == L"file:///C:/dwts");
}

TEST_CASE("the installed themes are the folders with their own two files") {
  const ScratchFolder themes;
  themes.writeFile(L"sumi\\sumi.inf", "[info]\r\ntitle=Sumi Painting\r\nformat=2.00\r\n");
  themes.writeFile(L"sumi\\sumi.elm");
  themes.writeFile(L"blends\\blends.inf");
  themes.writeFile(L"blends\\blends.elm");
  themes.writeFile(L"empty\\readme.txt");
  themes.writeFile(L"half\\half.inf");
  themes.writeFile(L"other half\\other half.elm");
  const Host host({}, {}, themes.path());
  const LateBound collection = LateBound(host.application()).child(L"Themes");
  CHECK(collection.number(L"Count") == 2);
  CHECK(collection.item(0).text(L"Name") == L"blends");
  CHECK(collection.item(1).text(L"Name") == L"sumi");
  CHECK(collection.item(1).text(L"Label") == L"Sumi Painting");
  CHECK(collection.item(1).text(L"Format") == L"2.00");
  CHECK(collection.get(L"Item", {2}).result == DISP_E_EXCEPTION);
  CHECK(collection.get(L"Item", {L"blends"}).result == DISP_E_TYPEMISMATCH);
}

TEST_CASE("without a folder of themes there are none") {
  const Host host;
  CHECK(LateBound(host.application()).child(L"Themes").number(L"Count") == 0);
}
