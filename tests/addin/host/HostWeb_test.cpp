// The open web as a thin value over the host's objects, under both answers to each open question.
#include <functional>

#include "addin/host/HostApplication.h"
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

}  // namespace

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

TEST_CASE("A path is what it says although the host would read it as an address") {
  for (const bool locateUnescapes : {false, true}) {
    CAPTURE(locateUnescapes);
    standin::HostOptions options;
    options.locateUnescapes = locateUnescapes;
    const OpenWeb open(options);
    for (const wchar_t* file : {L"a b\\c d.htm", L"page.htm"}) open.folder.writeFile(file);
    for (const wchar_t* file : {L"a%20b", L"%2e/page.htm", L"a%20b/c d.htm", L"a b/c%20d.htm",
                                L"page.htm#x", L"%2e%2e/page.htm", L"page%2ehtm"})
      CHECK_FALSE(open.web().locateFile(file));
    for (const wchar_t* folder : {L"a%20b", L"%2e", L"a b/%2e%2e", L"a b#", L"#"})
      CHECK_FALSE(open.web().locateFolder(folder));
    CHECK(open.web().createFolder(L"a%20b/%2e%2e/c#").isNew);
    open.folder.writeFile(L"a%20b\\%2e%2e\\PAGE.htm#x");
    CHECK(open.web().locateFolder(L"/A%20B/%2E%2e")->name() == L"%2e%2e");
    CHECK(open.web().locateFile(L"a%20b/%2e%2e/page.htm#X")->name() == L"PAGE.htm#x");
    CHECK_FALSE(open.web().createFolder(L"a%20b/%2e%2e/c#").isNew);
  }
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

TEST_CASE("The refusal to make a folder is told although the folders cannot be listed either") {
  for (const wchar_t* path : {L"/new", L"/50%20off"}) {
    CAPTURE(std::wstring(path));
    const OpenWeb open;
    open.host.faults().before(L"WebFolders.Add", [&] {
      open.host.faults().refuse(L"WebFolders.Count", L"They cannot be counted.");
    });
    open.host.faults().refuse(L"WebFolders.Add", L"The web is read-only.", 1234);
    CHECK(errorOf([&] { open.web().createFolder(path); }).description() ==
          L"The web is read-only.");
  }
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
