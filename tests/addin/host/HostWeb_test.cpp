// The thin values over the host's objects, under both answers to each open question.
#include <functional>
#include <memory>

#include "addin/host/HostApplication.h"
#include "addin/host/web_path.h"
#include "common/ansi.h"
#include "common/errors.h"
#include "host/model/Host.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

struct OpenWeb {
  explicit OpenWeb(standin::HostOptions options = {}) : host(std::move(options), folder.path()) {
    application = HostApplication(com::Dispatch(ComPtr<IDispatch>(host.application())));
  }
  HostWeb web() const { return application.activeWeb().value(); }

  ScratchFolder folder;
  standin::Host host;
  HostApplication application;
};

// The body under each combination of the answers that decide about paths and what is absent.
void underEachAnswer(const std::function<void(const standin::HostOptions&)>& body) {
  for (unsigned bits = 0; bits < 64; ++bits) {
    CAPTURE(bits);
    standin::HostOptions options;
    options.absentFolderIsError = options.absentFileIsError = (bits & 1) != 0;
    options.nothingIsEmpty = (bits & 2) != 0;
    options.leadingSlashTaken = (bits & 4) != 0;
    options.trailingSlashTaken = (bits & 8) != 0;
    options.addExistingFolderGivesIt = (bits & 16) != 0;
    options.addMakesLevels = options.addTakesUrl = (bits & 32) != 0;
    body(options);
  }
}

Error errorOf(const std::function<void()>& body) {
  try {
    body();
  } catch (const Error& error) {
    return error;
  }
  return Error(0, L"no error");
}

// An object that fails one way only.
class Failing final : public IDispatch {
 public:
  HRESULT names = S_OK;
  DISPID id = 1;
  int asked = 0;  // for the number of a name
  int calls = 0;
  DISPID invoked = 0;  // at the last call
  std::function<HRESULT(VARIANT*, EXCEPINFO*)> invoke;

  STDMETHOD(QueryInterface)(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHOD_(ULONG, AddRef)() override { return 2; }
  STDMETHOD_(ULONG, Release)() override { return 1; }
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
    ++asked;
    *ids = id;
    return names;
  }
  STDMETHOD(Invoke)
  (DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO* exception,
   UINT*) override {
    ++calls;
    invoked = member;
    return invoke(result, exception);
  }

  com::Dispatch dispatch() { return com::Dispatch(ComPtr<IDispatch>(this)); }
};

HRESULT WINAPI fillIn(EXCEPINFO* exception) {
  exception->wCode = 77;
  exception->bstrDescription = SysAllocString(L"filled in late");
  return S_OK;
}

}  // namespace

TEST_SUITE("calls by name") {
  TEST_CASE("An exception brings its own number and text") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO* exception) {
      exception->wCode = 1004;
      exception->bstrDescription = SysAllocString(L"The web is locked.");
      exception->bstrSource = SysAllocString(L"Host");
      return DISP_E_EXCEPTION;
    };
    const Error error = errorOf([&] { object.dispatch().call(L"Refresh"); });
    CHECK(error.number() == 1004);
    CHECK(error.description() == L"The web is locked.");
    CHECK(error.source() == L"Host");
  }

  TEST_CASE("An exception with a result code is numbered by it") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO* exception) {
      exception->scode = E_ACCESSDENIED;
      exception->bstrDescription = SysAllocString(L"No.");
      return DISP_E_EXCEPTION;
    };
    CHECK(errorOf([&] { object.dispatch().call(L"x"); }).number() == E_ACCESSDENIED);
  }

  TEST_CASE("An exception that is filled in late is asked for its text") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO* exception) {
      exception->pfnDeferredFillIn = fillIn;
      return DISP_E_EXCEPTION;
    };
    const Error error = errorOf([&] { object.dispatch().call(L"x"); });
    CHECK(error.number() == 77);
    CHECK(error.description() == L"filled in late");
  }

  TEST_CASE("An exception without a text gets the text of its number") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO* exception) {
      exception->wCode = 76;
      return DISP_E_EXCEPTION;
    };
    CHECK(errorOf([&] { object.dispatch().call(L"x"); }).description() == L"Path not found");
    object.invoke = [](VARIANT*, EXCEPINFO*) { return DISP_E_EXCEPTION; };
    const Error bare = errorOf([&] { object.dispatch().call(L"x"); });
    CHECK(bare.number() == DISP_E_EXCEPTION);
    CHECK(bare.description() == L"Automation error");
  }

  TEST_CASE("Failures of the call itself have the run-time's numbers") {
    Failing object;
    const auto number = [&](HRESULT result) {
      object.invoke = [=](VARIANT*, EXCEPINFO*) { return result; };
      return errorOf([&] { object.dispatch().value(L"x"); }).number();
    };
    CHECK(number(DISP_E_TYPEMISMATCH) == 13);
    CHECK(number(DISP_E_BADPARAMCOUNT) == 450);
    CHECK(number(DISP_E_MEMBERNOTFOUND) == 438);
    CHECK(number(E_OUTOFMEMORY) == 7);
    CHECK(number(E_FAIL) == 440);
    object.names = DISP_E_UNKNOWNNAME;
    CHECK(number(S_OK) == 438);
  }

  TEST_CASE("A call on nothing is error 91") {
    CHECK(errorOf([] { com::Dispatch().value(L"Name"); }).number() == 91);
    CHECK(errorOf([] { com::Dispatch().put(L"Name", 1L); }).number() == 91);
    CHECK_FALSE(com::Dispatch().lookUp(L"Name"));
  }

  TEST_CASE("Nothing where an object is due is error 91 and in a look-up no object") {
    for (const VARTYPE type : {VT_EMPTY, VT_NULL, VT_DISPATCH, VT_UNKNOWN}) {
      Failing object;
      object.invoke = [=](VARIANT* result, EXCEPINFO*) {
        result->vt = type;
        result->pdispVal = nullptr;
        return S_OK;
      };
      CHECK(errorOf([&] { object.dispatch().object(L"x"); }).number() == 91);
      CHECK_FALSE(object.dispatch().lookUp(L"x"));
    }
  }

  TEST_CASE("A value that is no object is a type mismatch and in a look-up no object") {
    Failing object;
    object.invoke = [](VARIANT* result, EXCEPINFO*) {
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(L"text");
      return S_OK;
    };
    CHECK(errorOf([&] { object.dispatch().object(L"x"); }).number() == 13);
    CHECK_FALSE(object.dispatch().lookUp(L"x"));
  }

  TEST_CASE("The name of a member is asked for once") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO*) { return S_OK; };
    const com::Dispatch dispatch = object.dispatch();
    dispatch.call(L"Refresh");
    const com::Dispatch copy = dispatch;
    copy.call(L"Refresh");
    CHECK(object.asked == 1);
    dispatch.call(L"Delete");
    dispatch.call(L"Refresh");
    CHECK(object.asked == 2);
    // Another object may have other numbers.
    object.dispatch().call(L"Refresh");
    CHECK(object.asked == 3);
  }

  TEST_CASE("A member that is no longer known by its number is asked for again") {
    Failing object;
    object.invoke = [&](VARIANT*, EXCEPINFO*) {
      return object.invoked == object.id ? S_OK : DISP_E_MEMBERNOTFOUND;
    };
    const com::Dispatch dispatch = object.dispatch();
    dispatch.call(L"Refresh");
    object.id = 7;
    dispatch.call(L"Refresh");
    CHECK(object.invoked == 7);
    CHECK(object.asked == 2);
    CHECK(object.calls == 3);
  }

  TEST_CASE("A member that is not there under any number is asked for no more than twice") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO*) { return DISP_E_MEMBERNOTFOUND; };
    CHECK(errorOf([&] { object.dispatch().call(L"Refresh"); }).number() == 438);
    CHECK(object.asked == 2);
    CHECK(object.calls == 2);
  }

  TEST_CASE("A name that was refused is asked for again at the next call") {
    Failing object;
    object.invoke = [](VARIANT*, EXCEPINFO*) { return S_OK; };
    object.names = DISP_E_UNKNOWNNAME;
    const com::Dispatch dispatch = object.dispatch();
    CHECK(errorOf([&] { dispatch.call(L"Refresh"); }).number() == 438);
    object.names = S_OK;
    dispatch.call(L"Refresh");
    CHECK(object.calls == 1);
  }

  TEST_CASE("A value that goes during its own call is called to the end") {
    Failing object;
    auto dispatch = std::make_unique<com::Dispatch>(object.dispatch());
    object.invoke = [&](VARIANT* result, EXCEPINFO*) {
      dispatch.reset();
      result->vt = VT_I4;
      result->lVal = 5;
      return S_OK;
    };
    CHECK(dispatch->value(L"Count").number() == 5);
  }

  TEST_CASE("A count that comes as a reference to a variant is read") {
    static VARIANT inner;
    inner.vt = VT_I2;
    inner.iVal = 12;
    Failing object;
    object.invoke = [](VARIANT* result, EXCEPINFO*) {
      result->vt = VT_VARIANT | VT_BYREF;
      result->pvarVal = &inner;
      return S_OK;
    };
    CHECK(object.dispatch().value(L"Count").number() == 12);
  }
}

TEST_SUITE("paths in a web") {
  TEST_CASE("A path is cut into its levels whatever stands between them") {
    CHECK(webpath::levels(L"/dwts//plain\\images/") ==
          std::vector<std::wstring>{L"dwts", L"plain", L"images"});
    CHECK(webpath::levels(L"").empty());
    CHECK(webpath::levels(L"///").empty());
  }

  TEST_CASE("A path in normal form has no slash at either end") {
    CHECK(webpath::normal(L"/dwts") == L"dwts");
    CHECK(webpath::normal(L"dwts/") == L"dwts");
    CHECK(webpath::normal(L"/my dwts/a b/") == L"my dwts/a b");
    CHECK(webpath::normal(L"/") == L"");
  }

  TEST_CASE("Addresses are told from paths") {
    CHECK(webpath::isAbsolute(L"http://server/sub"));
    CHECK(webpath::isAbsolute(L"file:///C:/My Webs/site"));
    CHECK_FALSE(webpath::isAbsolute(L"/dwts"));
    CHECK_FALSE(webpath::isAbsolute(L"dwts/a://b"));
    CHECK_FALSE(webpath::isAbsolute(L"c:/dwts"));
    CHECK_FALSE(webpath::isAbsolute(L"c://dwts"));
    CHECK_FALSE(webpath::isAbsolute(L""));
  }
}

TEST_SUITE("spellings of an address") {
  using webpath::Spelling;

  TEST_CASE("Escapes are read as UTF-8") {
    CHECK(webpath::unescaped(L"my%20web") == L"my web");
    CHECK(webpath::unescaped(L"%c3%A4%E2%82%ac%F0%9F%98%80") == L"\u00e4\u20ac\xd83d\xde00");
    CHECK(webpath::unescaped(L"50%25") == L"50%");
    CHECK(webpath::unescaped(L"%2520") == L"%20");
    CHECK(webpath::unescaped(L"\u00e4 b") == L"\u00e4 b");
    CHECK(webpath::unescaped(L"") == L"");
  }

  TEST_CASE("What is no escape of a character stays as it is") {
    for (const wchar_t* text : {L"50%", L"50%2", L"%zz", L"%g0", L"%0g", L"a%00b"})
      CHECK(webpath::unescaped(text) == text);
  }

  TEST_CASE("Escapes that are no UTF-8 are read in the ANSI code page") {
    CHECK(webpath::unescaped(L"%E4%20b") == text::fromAnsi("\xe4 b"));
    CHECK(webpath::unescaped(L"%C3x") == text::fromAnsi("\xc3x"));
  }

  TEST_CASE("An address at or below another is told from one elsewhere") {
    const auto rest = [](const wchar_t* address, const wchar_t* root) {
      const auto below = webpath::below(address, root);
      return below ? below->path : L"none";
    };
    CHECK(rest(L"http://server/sub/dwts", L"http://server/sub") == L"/dwts");
    CHECK(rest(L"http://server/sub/dwts", L"http://server/sub/") == L"/dwts");
    CHECK(rest(L"http://server/sub", L"http://server/sub") == L"");
    CHECK(rest(L"http://server/sub/", L"http://server/sub") == L"/");
    CHECK(rest(L"HTTP:\\\\Server\\SUB\\a", L"http://server/sub") == L"\\a");
    CHECK(rest(L"http://server/subway", L"http://server/sub") == L"none");
    CHECK(rest(L"http://server", L"http://server/sub") == L"none");
    CHECK(rest(L"http://other/sub", L"http://server/sub") == L"none");
    CHECK(rest(L"http://server/sub", L"") == L"none");
    CHECK(rest(L"", L"http://server/sub") == L"none");
    CHECK(rest(L"/", L"/") == L"none");
  }

  TEST_CASE("The root that two addresses share tells how they are spelled") {
    const auto spelling = [](const wchar_t* address, const wchar_t* root) {
      const auto below = webpath::below(address, root);
      REQUIRE(below);
      return below->spelling;
    };
    CHECK(spelling(L"file:///C:/web/a%20b", L"file:///C:/web") == Spelling::unknown);
    CHECK(spelling(L"file:///C:/my%20web/a", L"file:///C:/my web") == Spelling::escaped);
    CHECK(spelling(L"file:///C:/my web/a", L"file:///C:/my%20web") == Spelling::plain);
    CHECK(spelling(L"file:///C:/a%2520b/a", L"file:///C:/a%20b") == Spelling::escaped);
    CHECK(spelling(L"file:///C:/a%20b/a", L"file:///C:/a%2520b") == Spelling::plain);
    CHECK(spelling(L"file:///C:/%6Dy%20web/a", L"file:///C:/my%20%77eb") == Spelling::escaped);
  }
}

TEST_SUITE("open web") {
  TEST_CASE("Without an open web there is none however the host says so") {
    for (const bool error : {false, true}) {
      for (const bool empty : {false, true}) {
        standin::HostOptions options;
        options.noWebIsError = error;
        options.nothingIsEmpty = empty;
        const standin::Host host(options);
        const HostApplication application(com::Dispatch(ComPtr<IDispatch>(host.application())));
        CHECK_FALSE(application.activeWeb());
      }
    }
  }

  TEST_CASE("Name and version are the host's") {
    const OpenWeb open;
    CHECK(open.application.name() == L"Microsoft FrontPage");
    CHECK(open.application.version() == L"11.0.5510");
  }

  TEST_CASE("The web's address has no slash at its end") {
    standin::HostOptions options;
    options.webUrl = L"http://server/sub/";
    CHECK(OpenWeb(options).web().url() == L"http://server/sub");
    options.webUrl = L"http://server/sub";
    CHECK(OpenWeb(options).web().url() == L"http://server/sub");
  }

  TEST_CASE("A folder is found by a path of every shape") {
    underEachAnswer([](const standin::HostOptions& options) {
      const OpenWeb open(options);
      open.folder.makeFolder(L"dwts\\Plain Page");
      const HostWeb web = open.web();
      for (const std::wstring& path :
           {std::wstring(L"/dwts/Plain Page"), std::wstring(L"dwts/Plain Page"),
            std::wstring(L"dwts/Plain Page/"), std::wstring(L"/DWTS/plain page/"),
            std::wstring(L"dwts\\Plain Page"), web.url() + L"/dwts/Plain Page",
            web.url() + L"//dwts/Plain Page/"}) {
        CAPTURE(path);
        const auto folder = web.locateFolder(path);
        REQUIRE(folder);
        CHECK(folder->url().size() == (web.url() + L"/dwts/Plain Page").size());
      }
    });
  }

  TEST_CASE("An address is recognised in any letter case") {
    const OpenWeb open;
    open.folder.makeFolder(L"dwts");
    std::wstring upper = open.web().url() + L"/dwts";
    CharUpperW(upper.data());
    CHECK(open.web().relative(upper) == L"DWTS");
    CHECK(open.web().locateFolder(upper));
  }

  TEST_CASE("An address of another web finds nothing and makes nothing") {
    standin::HostOptions options;
    options.webUrl = L"http://server/sub";
    const OpenWeb open(options);
    open.folder.makeFolder(L"dwts");
    CHECK_FALSE(open.web().locateFolder(L"http://server/subway/dwts"));
    CHECK_FALSE(open.web().locateFolder(L"http://other/sub/dwts"));
    CHECK(open.web().relative(L"http://server/subway") == L"http://server/subway");
    CHECK(errorOf([&] { open.web().createFolder(L"http://other/sub/new"); }).number() == 76);
    CHECK(open.folder.tree() == std::vector<std::wstring>{L"dwts\\"});
  }

  TEST_CASE("The web's own address and a single slash are its root folder") {
    const OpenWeb open;
    for (const std::wstring& path :
         {std::wstring(), std::wstring(L"/"), open.web().url(), open.web().url() + L"/"}) {
      const auto folder = open.web().locateFolder(path);
      REQUIRE(folder);
      CHECK(folder->url() == open.web().url());
    }
    CHECK_FALSE(open.web().locateFile(L"/"));
  }

  TEST_CASE("What is absent is nothing however the host says so") {
    underEachAnswer([](const standin::HostOptions& options) {
      const OpenWeb open(options);
      open.folder.writeFile(L"page.htm", "x");
      open.folder.makeFolder(L"dwts");
      CHECK_FALSE(open.web().locateFolder(L"/missing"));
      CHECK_FALSE(open.web().locateFolder(L"page.htm"));
      CHECK_FALSE(open.web().locateFile(L"/missing.htm"));
      CHECK_FALSE(open.web().locateFile(L"dwts"));
    });
  }

  TEST_CASE("A file is found by path and by address") {
    underEachAnswer([](const standin::HostOptions& options) {
      const OpenWeb open(options);
      open.folder.writeFile(L"dwts\\a b.dwt", "x");
      CHECK(open.web().locateFile(L"/dwts/a b.dwt"));
      const auto file = open.web().locateFile(open.web().url() + L"/dwts/a b.dwt");
      REQUIRE(file);
      CHECK(file->name() == L"a b.dwt");
      CHECK(file->extension() == L"dwt");
      CHECK(file->url() == open.web().url() + L"/dwts/a b.dwt");
    });
  }

  TEST_CASE("A folder is made level by level where it is missing") {
    underEachAnswer([](const standin::HostOptions& options) {
      const OpenWeb open(options);
      open.folder.makeFolder(L"dwts");
      const HostFolder made = open.web().createFolder(L"/dwts/Plain/images/").folder;
      CHECK(made.name() == L"images");
      CHECK(open.folder.tree() ==
            std::vector<std::wstring>{L"dwts\\", L"dwts\\Plain\\", L"dwts\\Plain\\images\\"});
    });
  }

  TEST_CASE("A folder is made at an absolute address of the web") {
    underEachAnswer([](const standin::HostOptions& options) {
      const OpenWeb open(options);
      open.web().createFolder(open.web().url() + L"/dwts/New");
      CHECK(open.folder.tree() == std::vector<std::wstring>{L"dwts\\", L"dwts\\New\\"});
    });
  }

  TEST_CASE("A folder that is there is the answer and nothing is added") {
    underEachAnswer([](const standin::HostOptions& options) {
      const OpenWeb open(options);
      open.folder.makeFolder(L"dwts");
      CHECK(open.web().createFolder(L"/dwts").folder.name() == L"dwts");
      CHECK(open.host.faults().calls(L"WebFolders.Add") == 0);
    });
  }

  TEST_CASE("A folder that appears while it is being added is the answer") {
    OpenWeb open;
    open.host.faults().before(L"WebFolders.Add", [&] { open.folder.makeFolder(L"dwts"); });
    CHECK(open.web().createFolder(L"/dwts").folder.name() == L"dwts");
  }

  TEST_CASE("A folder that a refused addition proves to be there is found by path or by name") {
    for (const wchar_t* refused : {L"Web.LocateFolder", L"WebFolders.Item"}) {
      OpenWeb open;
      open.host.faults().before(L"WebFolders.Add", [&] { open.folder.makeFolder(L"dwts"); });
      open.host.faults().refuse(refused, L"No.");
      const MadeFolder made = open.web().createFolder(L"/dwts");
      CHECK(made.folder.name() == L"dwts");
      CHECK_FALSE(made.isNew);
    }
  }

  TEST_CASE("A folder is told to be new only when it was added") {
    const OpenWeb open;
    CHECK(open.web().createFolder(L"/dwts").isNew);
    CHECK_FALSE(open.web().createFolder(L"/dwts").isNew);
    CHECK(open.web().createFolder(L"/dwts/new").isNew);
  }

  TEST_CASE("An address that may be escaped means what is there and else what it says") {
    standin::HostOptions options;
    options.webUrl = L"http://server/sub";
    const OpenWeb open(options);
    const HostWeb web = open.web();
    const std::wstring address = L"http://server/sub/my%20dwts";
    CHECK(web.relative(address) == L"my%20dwts");
    open.folder.writeFile(L"my dwts\\page.htm");
    CHECK(web.relative(address) == L"my dwts");
    CHECK(web.locateFolder(address)->name() == L"my dwts");
    CHECK(web.locateFile(address + L"/page.htm")->name() == L"page.htm");
    open.folder.writeFile(L"my%20dwts\\page.htm");
    CHECK(web.relative(address) == L"my%20dwts");
    CHECK(web.locateFolder(address)->name() == L"my%20dwts");
    CHECK(web.locateFile(address + L"/page.htm")->url() == address + L"/page.htm");
  }

  TEST_CASE("An address is read as the web's own tells that it is spelled") {
    for (const bool webEscaped : {false, true}) {
      CAPTURE(webEscaped);
      standin::HostOptions options;
      options.webUrl = webEscaped ? L"http://server/my%20web" : L"http://server/my web";
      const OpenWeb open(options);
      open.folder.makeFolder(L"a b");
      open.folder.makeFolder(L"a%20b");
      const HostWeb web = open.web();
      CHECK(web.relative(L"http://server/my%20web/a%20b") == (webEscaped ? L"a%20b" : L"a b"));
      CHECK(web.relative(L"http://server/my web/a%20b") == L"a%20b");
      if (webEscaped) CHECK_FALSE(web.locateFolder(L"http://server/my web/a%2520b"));
    }
  }

  TEST_CASE("A folder that cannot be made raises the host's own error") {
    OpenWeb open;
    open.host.faults().refuse(L"WebFolders.Add", L"The web is read-only.", 1234);
    const Error error = errorOf([&] { open.web().createFolder(L"/dwts/new"); });
    CHECK(error.number() == 1234);
    CHECK(error.description() == L"The web is read-only.");
  }

  TEST_CASE("A host that gives nothing for a new folder is error 91") {
    OpenWeb open;
    open.host.faults().returnNothing(L"WebFolders.Add");
    CHECK(errorOf([&] { open.web().createFolder(L"/dwts"); }).number() == 91);
  }

  TEST_CASE("Sub-folders are listed in the host's order and counted without reading them") {
    const OpenWeb open;
    open.folder.makeFolder(L"b");
    open.folder.makeFolder(L"a");
    const HostFolder root = open.web().rootFolder();
    std::vector<std::wstring> names;
    for (const auto& folder : root.folders()) names.push_back(folder.name());
    CHECK(names == std::vector<std::wstring>{L"a", L"b"});
    CHECK(root.hasFolders());
    CHECK_FALSE(root.folders().front().hasFolders());
  }

  TEST_CASE("An import lands in the folder and an existing file is refused") {
    OpenWeb open;
    ScratchFolder local;
    const std::wstring file = local.writeFile(L"logo.gif", "GIF");
    const HostFolder root = open.web().rootFolder();
    CHECK(root.files().import(file).name() == L"logo.gif");
    CHECK(open.folder.readFile(L"logo.gif") == "GIF");
    CHECK_FALSE(errorOf([&] { root.files().import(file); }).description().empty());
    CHECK(errorOf([&] { root.files().import(file); }).number() != 0);
  }

  TEST_CASE("A file can be deleted through the host") {
    const OpenWeb open;
    open.folder.writeFile(L"old.htm", "x");
    open.web().locateFile(L"old.htm")->remove();
    CHECK(open.folder.tree().empty());
  }

  TEST_CASE("A relative address is made absolute and an absolute one stays") {
    const OpenWeb open;
    CHECK(open.application.makeAbsolute(open.web().url(), L"dwts") == open.web().url() + L"/dwts");
    CHECK(open.application.makeAbsolute(open.web().url(), L"http://a/b") == L"http://a/b");
  }

  TEST_CASE("An installed theme is found in any letter case and no other") {
    ScratchFolder themes;
    themes.writeFile(L"blends\\blends.inf", "[info]\r\ntitle=Blends\r\n");
    themes.writeFile(L"blends\\blends.elm");
    themes.writeFile(L"arctic\\arctic.inf", "[info]\r\ntitle=Arctic\r\n");
    themes.writeFile(L"arctic\\arctic.elm");
    const standin::Host host({}, {}, themes.path());
    const HostApplication application(com::Dispatch(ComPtr<IDispatch>(host.application())));
    CHECK(application.hasTheme(L"arctic"));
    CHECK(application.hasTheme(L"BLENDS"));
    CHECK_FALSE(application.hasTheme(L"blend"));
    CHECK_FALSE(application.hasTheme(L""));
  }

  TEST_CASE("No theme behind the wanted one is looked at") {
    ScratchFolder themes;
    for (const wchar_t* name : {L"arctic", L"blends"}) {
      themes.writeFile(std::wstring(name) + L"\\" + name + L".inf");
      themes.writeFile(std::wstring(name) + L"\\" + name + L".elm");
    }
    const standin::Host host({}, {}, themes.path());
    const HostApplication application(com::Dispatch(ComPtr<IDispatch>(host.application())));
    CHECK(application.hasTheme(L"arctic"));
    CHECK(host.faults().calls(L"Theme.Name") == 1);
  }
}
