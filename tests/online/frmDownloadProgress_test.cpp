// The download dialog over a real disk, real servers and the real browser control.
#include "online/frmDownloadProgress.h"

#include <commctrl.h>

#include <functional>

#include "common/forms/resource.h"
#include "common/handles.h"
#include "common/log.h"
#include "host/model/Host.h"
#include "online/frmDWTOnline.h"
#include "online/resource.h"
#include "tests/online/LoopbackServer.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/online/transfer/Internet.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/Frame.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

namespace {

using Texts = std::vector<std::wstring>;

constexpr wchar_t userSettings[] =
    L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";

std::string page(const std::string& text) { return ZipMaker().add("page.dwt", text).bytes(); }

// The dialog, and a machine of its own for it.
class DownloadDialog {
 public:
  DownloadDialog() : host_({}, web_.path(), themes_.path()) {
    modCommon::setLoggingFlag(1);
    registry.setString(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                       L"AppData", scratch.makeFolder(L"data"));
  }
  ~DownloadDialog() { modCommon::setLoggingFlag(0); }
  DownloadDialog(const DownloadDialog&) = delete;
  DownloadDialog& operator=(const DownloadDialog&) = delete;

  HostApplication application() const {
    return HostApplication(com::Dispatch(ComPtr<IDispatch>(host_.application())));
  }
  bool run(const std::wstring& query, const wchar_t* tag = L"U") {
    driver.onDialog(L"Downloading...", [this](HWND dialog) {
      window = dialog;
      if (shown) shown();
    });
    frmDownloadProgress dialog(application());
    return dialog.RunModal(destination, completed,
                           {.pageAddress = L"http://h/DWTOnlineDownload.htm" + query,
                            .applicationData = {},
                            .destinationFolder = scratch / L"templates",
                            .destinationTag = tag,
                            .agent = {}},
                           owner);
  }
  standin::Host& host() { return host_; }
  std::wstring text(int id) const { return windowText(window, id); }
  bool reading() const { return !text(IDC_DOWNLOAD_CURRENTSIZE).empty(); }
  bool cancelled() const {
    return output.has(
        L"Error 512 (Operation Cancelled.) in procedure Form_Activate of Form "
        L"frmDownloadProgress");
  }

  ScratchFolder scratch;
  ScratchRegistry registry;
  DebugOutput output;
  ModalDriver driver;
  std::function<void()> shown;
  HWND owner = nullptr;
  HWND window = nullptr;
  bool completed = false;
  std::wstring destination;  // as the dialog gave it back

 private:
  ScratchFolder web_;
  ScratchFolder themes_;
  standin::Host host_;
};

// Does something once, as soon as the thread's messages have made a condition true.
class When {
 public:
  When(std::function<bool()> condition, std::function<void()> action)
      : condition_(std::move(condition)), action_(std::move(action)) {
    current_ = this;
  }
  ~When() { current_ = nullptr; }
  When(const When&) = delete;
  When& operator=(const When&) = delete;
  void watch() const { SetTimer(nullptr, 0, 10, tick); }

 private:
  static void CALLBACK tick(HWND, UINT, UINT_PTR timer, DWORD) {
    if (current_ && !current_->condition_()) return;
    KillTimer(nullptr, timer);
    if (current_) current_->action_();
  }
  static inline const When* current_ = nullptr;

  std::function<bool()> condition_;
  std::function<void()> action_;
};

HttpServer::Answer endless() { return {HttpServer::head(50000000), false, true}; }

}  // namespace

TEST_CASE("the download dialog does its run when it is shown and closes itself") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  DownloadDialog dialog;
  CHECK(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(dialog.completed);
  CHECK(dialog.destination == dialog.scratch / L"templates");
  CHECK(dialog.scratch.readFile(L"templates\\page.dwt") == "a page");
  CHECK(dialog.driver.boxes().empty());
  CHECK_FALSE(IsWindow(dialog.window));
}

TEST_CASE("the download dialog's labels and button say what they are for") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  DownloadDialog dialog;
  Texts labels;
  dialog.shown = [&] {
    for (HWND child = GetWindow(dialog.window, GW_CHILD); child;
         child = GetWindow(child, GW_HWNDNEXT))
      if (static_cast<short>(GetDlgCtrlID(child)) == -1) labels.push_back(windowText(child));
    CHECK(dialog.text(IDCANCEL) == L"Cancel");
    CHECK(toolTip(dialog.window, IDCANCEL) == L"Stop the download");
  };
  CHECK(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(labels == Texts{L"Current file:", L"Overall progress:"});
}

TEST_CASE("an address that asks for nothing is a message without a download dialog") {
  for (const wchar_t* query : {L"", L"?", L"?success=x", L"?theme1", L"?themeX=y"}) {
    DownloadDialog dialog;
    CHECK_FALSE(dialog.run(query));
    CHECK_FALSE(dialog.completed);
    REQUIRE(dialog.driver.boxes().size() == 1);
    CHECK(dialog.driver.boxes()[0].text == L"Could not extract download information.");
    CHECK(dialog.driver.boxes()[0].title == L"DWT Online");
    CHECK(dialog.driver.boxes()[0].icon == MB_ICONHAND);
    CHECK(dialog.driver.dialogs().empty());
  }
}

TEST_CASE("a host that does not tell its version is logged and templates are downloaded") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  DownloadDialog dialog;
  dialog.host().faults().refuse(L"Application.Version", L"no version", 440);
  CHECK(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(dialog.completed);
  CHECK(dialog.scratch.readFile(L"templates\\page.dwt") == "a page");
  CHECK(dialog.output.has(L"Error 440 (no version) in procedure RunModal of Form frmDownloadDlg"));
  CHECK(dialog.driver.boxes().empty());
}

TEST_CASE("a host that does not tell its version has no place for the user's themes") {
  const HttpServer server({{"/t.zip", HttpServer::ok(ZipMaker().add("blue/x.inf", "blue").bytes())},
                           {"/d.zip", HttpServer::ok(page("a page"))}});
  DownloadDialog dialog;
  dialog.host().faults().refuse(L"Application.Version", L"no version", 440);
  CHECK_FALSE(dialog.run(L"?theme1=" + server.url(L"/t.zip") + L"&dwt1=" + server.url(L"/d.zip")));
  CHECK(dialog.scratch.readFile(L"templates\\page.dwt") == "a page");
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text ==
        L"The folder for themes could not be found. Without it there is no place to unpack a theme "
        L"to.");
  CHECK(dialog.driver.boxes()[0].owner == dialog.window);
}

TEST_CASE("a failed template makes the download dialog say so") {
  const HttpServer server({{"/d.zip", HttpServer::ok("no archive")}});
  DownloadDialog dialog;
  CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK_FALSE(dialog.completed);
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text ==
        L"Cannot unzip file: \" " + (dialog.scratch / L"data\\Korvel Software\\d.zip") +
            L" \".\r\nIt does not appear to be a valid archive. If you downloaded this file, try "
            L"downloading the file again.");
  CHECK(dialog.driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(dialog.driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(dialog.driver.boxes()[0].owner == dialog.window);
}

TEST_CASE("the message about a missing file bears the caption of the download dialog") {
  const HttpServer server({});
  DownloadDialog dialog;
  CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text ==
        L"Unable to locate file \" http://127.0.0.1/d.zip \". The file does not exist or the URL "
        L"may be invalid.");
  CHECK(dialog.driver.boxes()[0].title == L"Validating URLs...");
  CHECK(dialog.driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(dialog.driver.boxes()[0].owner == dialog.window);
}

TEST_CASE("the overwrite question of the download dialog has Yes and No") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("new"))}});
  DownloadDialog dialog;
  dialog.scratch.writeFile(L"data\\Korvel Software\\d.zip", page("old"));
  dialog.driver.answer(IDNO);
  CHECK(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text ==
        L"The specified file already exists. Do you wish to overwrite the existing file?");
  CHECK(dialog.driver.boxes()[0].title == L"Downloading 1 of 1 files.");
  CHECK(dialog.driver.boxes()[0].buttons == Texts{L"Yes", L"No"});
  CHECK(dialog.scratch.readFile(L"templates\\page.dwt") == "old");
}

TEST_CASE("the download dialog shows the file and both sizes while it reads") {
  const HttpServer server({{"/d.zip", endless()}});
  DownloadDialog dialog;
  const When reading([&] { return !dialog.text(IDC_DOWNLOAD_CURRENTSIZE).empty(); },
                     [&] {
                       CHECK(dialog.text(IDC_DOWNLOAD_CURRENT) == L"http://127.0.0.1/d.zip");
                       CHECK(dialog.text(IDC_DOWNLOAD_CURRENTSIZE).ends_with(L" of 47.6 MB"));
                       CHECK(dialog.text(IDC_DOWNLOAD_OVERALLSIZE) == L"47.6 MB");
                       CHECK(windowText(dialog.window) == L"Downloading 1 of 1 files.");
                       press(dialog.window, IDCANCEL);
                     });
  dialog.shown = [&] { reading.watch(); };
  CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK_FALSE(dialog.completed);
  CHECK(dialog.driver.boxes().empty());
  CHECK_FALSE(dialog.scratch.exists(L"data\\Korvel Software\\d.zip"));
  CHECK(dialog.output.has(
      L"Error 512 (Operation Cancelled.) in procedure Form_Activate of Form frmDownloadProgress"));
}

TEST_CASE("the close box of the download dialog cancels it") {
  const HttpServer server({{"/d.zip", endless()}});
  DownloadDialog dialog;
  const When reading([&] { return !dialog.text(IDC_DOWNLOAD_CURRENTSIZE).empty(); },
                     [&] { PostMessageW(dialog.window, WM_CLOSE, 0, 0); });
  dialog.shown = [&] { reading.watch(); };
  CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK_FALSE(dialog.scratch.exists(L"data\\Korvel Software\\d.zip"));
}

TEST_CASE("a download that cannot begin shows why and no dialog") {
  const Frame frame;
  DownloadDialog dialog;
  dialog.owner = frame.get();
  dialog.scratch.writeFile(L"templates", "a file in the way");
  CHECK_FALSE(dialog.run(L"?dwt1=http://127.0.0.1:1/d.zip"));
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text ==
        (dialog.scratch / L"templates") +
            L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(dialog.driver.boxes()[0].owner == frame.get());
  CHECK(dialog.driver.dialogs().empty());
}

TEST_CASE("a download that cannot open the internet says so over the window it was asked for in") {
  const Frame frame;
  InternetPatch internet;
  internet.noSession(12029);  // a number without a text
  DownloadDialog dialog;
  dialog.owner = frame.get();
  CHECK_FALSE(dialog.run(L"?dwt1=http://127.0.0.1:1/d.zip"));
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text == L"Could not open a connection to the internet.");
  CHECK(dialog.driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(dialog.driver.boxes()[0].owner == frame.get());
  CHECK(dialog.driver.dialogs().empty());
}

TEST_CASE("a download for all users puts its themes there and says to restart the host") {
  const HttpServer server(
      {{"/t.zip", HttpServer::ok(ZipMaker().add("blue/x.inf", "blue").bytes())}});
  DownloadDialog dialog;
  dialog.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Shared tools",
                            L"SharedFilesDir", dialog.scratch.makeFolder(L"shared") + L"\\");
  dialog.scratch.makeFolder(L"shared\\Themes11");
  CHECK(dialog.run(L"?theme1=" + server.url(L"/t.zip"), L"G"));
  REQUIRE(dialog.driver.boxes().size() == 1);
  CHECK(dialog.driver.boxes()[0].text ==
        L"One or more DWTs that were installed use FrontPage theme.\r\nYou must restart FrontPage "
        L"before you copy these DWTs to the web.");
  CHECK(dialog.driver.boxes()[0].title == L"DWT Online");
  CHECK(dialog.driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(dialog.scratch.exists(L"shared\\Themes11\\blue\\x.inf"));
}

TEST_CASE("the real browser control hands the download page to the window") {
  const HttpServer server({{"/d.zip", HttpServer::ok(page("a page"))}});
  DownloadDialog dialog;
  dialog.registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                            L"DWTOnline",
                            server.url(L"/DWTOnlineDownload.htm?dwt1=" + server.url(L"/d.zip")));
  dialog.registry.setString(HKEY_CURRENT_USER, userSettings, L"DWTDownloadDir",
                            dialog.scratch / L"downloads");
  frmDWTOnline window(dialog.application());
  CHECK(window.RunOnline(false, nullptr) == 1);
  CHECK(dialog.scratch.readFile(L"downloads\\page.dwt") == "a page");
  for (const auto& request : server.requests())
    CHECK(request.find("DWTOnlineDownload") == std::string::npos);
}

TEST_CASE("the download dialog's Cancel closes each of its handles once") {
  const HttpServer server({{"/d.zip", endless()}});
  const InternetPatch internet;
  const long before = handles::liveCount();
  {
    DownloadDialog dialog;
    const When reading([&] { return dialog.reading(); }, [&] { press(dialog.window, IDCANCEL); });
    dialog.shown = [&] { reading.watch(); };
    CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(dialog.cancelled());
  }
  CHECK(internet.staleCloses() == 0);
  CHECK(handles::liveCount() == before);
}

TEST_CASE("a host that closes in the middle of a download stops it at its next check") {
  const HttpServer server({{"/d.zip", endless()}});
  DownloadDialog dialog;
  const When reading([&] { return dialog.reading(); }, [] { PostQuitMessage(7); });
  dialog.shown = [&] { reading.watch(); };
  CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(dialog.cancelled());
  CHECK_FALSE(dialog.scratch.exists(L"data\\Korvel Software\\d.zip"));
  CHECK(dialog.driver.boxes().empty());
  MSG message = {};
  CHECK(pumpUntil([&] { return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); }));
  CHECK(message.wParam == 7);
}

TEST_CASE("a download whose owner goes in the middle stops at its next check") {
  const HttpServer server({{"/d.zip", endless()}});
  DownloadDialog dialog;
  dialog.owner = CreateWindowW(L"Static", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 700,
                               500, nullptr, nullptr, nullptr, nullptr);
  const When reading([&] { return dialog.reading(); }, [&] { DestroyWindow(dialog.owner); });
  dialog.shown = [&] { reading.watch(); };
  CHECK_FALSE(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(dialog.cancelled());
  CHECK_FALSE(dialog.scratch.exists(L"data\\Korvel Software\\d.zip"));
  CHECK(dialog.driver.boxes().empty());
  CHECK_FALSE(IsWindow(dialog.window));
}

TEST_CASE("while archives are unpacked the download dialog cannot be cancelled") {
  ZipMaker::Extras extras;
  extras.password = "sesame";
  const HttpServer server(
      {{"/d.zip", HttpServer::ok(ZipMaker().add("page.dwt", "a page", extras).bytes())}});
  DownloadDialog dialog;
  bool asked = false;
  dialog.driver.onDialog(L"Quillet Viewer", [&](HWND box) {
    asked = true;
    CHECK(GetWindow(box, GW_OWNER) == dialog.window);
    CHECK(windowText(dialog.window) == L"Installing...");
    CHECK_FALSE(isEnabled(dialog.window, IDCANCEL));
    const auto overall = GetDlgItem(dialog.window, IDC_DOWNLOAD_OVERALLBAR);
    CHECK(SendMessageW(overall, PBM_GETRANGE, FALSE, 0) == 2);
    CHECK(SendMessageW(overall, PBM_GETPOS, 0, 0) == 1);
    const auto current = GetDlgItem(dialog.window, IDC_DOWNLOAD_CURRENTBAR);
    CHECK(SendMessageW(current, PBM_GETPOS, 0, 0) == SendMessageW(current, PBM_GETRANGE, FALSE, 0));
    // Neither by its button nor by its close box.
    SendMessageW(dialog.window, WM_CLOSE, 0, 0);
    CHECK(IsWindowVisible(dialog.window));
    SetDlgItemTextW(box, IDC_INPUTBOX_TXTINPUT, L"sesame");
    press(box, IDOK);
  });
  CHECK(dialog.run(L"?dwt1=" + server.url(L"/d.zip")));
  CHECK(asked);
  CHECK(dialog.scratch.readFile(L"templates\\page.dwt") == "a page");
}
