#include "webcopy/frmCopyToWeb.h"

#include <commctrl.h>

#include <algorithm>

#include "tests/support/Frame.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"
#include "webcopy/resource.h"

using Lines = std::vector<std::wstring>;

namespace {

constexpr wchar_t dialogCaption[] = L"Copying Files To Web...";
constexpr wchar_t cancelLine[] = L"Copy to web operation has been cancelled!!!";

// The dialog over the fixture's host, run to its end.
struct CopySession {
  CopySession() {
    hostApplication() = fixture.application();
    fixture.makeBlue();
    driver.onDialog(dialogCaption, [this](HWND window) {
      dialog = window;
      opened();
    });
  }
  ~CopySession() { hostApplication() = HostApplication(); }

  bool run(const std::wstring& tag = {}) const {
    return frmCopyToWeb().CopyTemplateFolder(
        L"/dwts", {L"Blue skies", tag.empty() ? fixture.templateFolder() : tag}, owner);
  }
  // During the import of each file.
  void onImport(std::function<void()> action) const {
    fixture.host.faults().before(L"WebFiles.Add", std::move(action));
  }
  long position(int bar) const {
    return static_cast<long>(SendDlgItemMessageW(dialog, bar, PBM_GETPOS, 0, 0));
  }
  long maximum(int bar) const {
    return static_cast<long>(SendDlgItemMessageW(dialog, bar, PBM_GETRANGE, FALSE, 0));
  }

  CopyFixture fixture;
  ModalDriver driver;
  HWND owner = nullptr;
  HWND dialog = nullptr;
  std::function<void()> opened = [] {};
};

bool arrived(const CopySession& session, const wchar_t* file) {
  return session.fixture.disk.exists(std::wstring(L"webs\\site\\dwts\\Blue\\") + file);
}

bool logged(const CopySession& session, const std::wstring& line) {
  const Lines lines = session.fixture.log.messages();
  return std::any_of(lines.begin(), lines.end(), [&](const std::wstring& each) {
    return each.substr(std::min(each.size(), each.find_first_not_of(L' '))) == line;
  });
}

void checkCancelQuestion(const CopySession& session) {
  REQUIRE(session.driver.boxes().size() == 1);
  const ShownBox& box = session.driver.boxes().front();
  CHECK(box.text == L"Do you want to cancel the operation?");
  CHECK(box.title == dialogCaption);
  CHECK(box.icon == MB_ICONQUESTION);
  CHECK(box.buttons == Lines{L"Yes", L"No"});
  CHECK(box.owner == session.dialog);
}

}  // namespace

TEST_CASE("the copy dialog does its run when it is shown and closes itself") {
  CopySession session;
  CHECK(session.run());
  CHECK(arrived(session, L"home.dwt"));
  CHECK(arrived(session, L"images\\logo.gif"));
  CHECK(session.driver.dialogs() == Lines{dialogCaption});
  CHECK(session.driver.boxes().empty());
  CHECK_FALSE(IsWindow(session.dialog));
}

TEST_CASE("the copy dialog's texts are all there") {
  CopySession session;
  session.opened = [&] {
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLDWT) == L"DWT Name :");
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLTOWEB) == L"To Web :");
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLOVERALLPROGRESS) == L"Overall progress:");
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLCURRENTPROGRESS) == L"Current process:");
    CHECK(windowText(session.dialog, IDCANCEL) == L"Cancel");
    CHECK(toolTip(session.dialog, IDCANCEL) == L"Cancel the copying of the DWTs to the web");
  };
  CHECK(session.run());
  CHECK(session.dialog != nullptr);
}

TEST_CASE("the copy dialog's unused text box is there and hidden") {
  CopySession session;
  session.opened = [&] {
    const HWND box = GetDlgItem(session.dialog, IDC_COPYTOWEB_TXTSTATUSCURRENT);
    CHECK(box != nullptr);
    CHECK_FALSE(IsWindowVisible(box));
  };
  CHECK(session.run());
}

TEST_CASE("the copy dialog's focus is on its button") {
  CopySession session;
  bool focused = false;
  session.onImport([&] { focused = GetFocus() == GetDlgItem(session.dialog, IDCANCEL); });
  CHECK(session.run());
  CHECK(focused);
}

TEST_CASE("the copy dialog shows web and template and the file being worked on") {
  CopySession session;
  Lines files;
  session.onImport([&] {
    CHECK(IsWindowVisible(session.dialog));
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLDWTNAME) == L"Blue skies");
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_TXTWEBNAME) == session.fixture.url());
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLSTATUSOVERALL) ==
          L"Copying files and folders to the web...");
    files.push_back(windowText(session.dialog, IDC_COPYTOWEB_LBLSTATUSCURRENT));
  });
  session.fixture.host.faults().before(L"WebFile.ApplyTheme", [&] {
    CHECK(windowText(session.dialog, IDC_COPYTOWEB_LBLSTATUSOVERALL) ==
          L"Applying themes to the DWTs...");
    files.push_back(windowText(session.dialog, IDC_COPYTOWEB_LBLSTATUSCURRENT));
  });
  CHECK(session.run());
  CHECK(files == Lines{L"home.dwt", L"logo.gif", L"Applying theme to home..."});
}

TEST_CASE("a file name too long for the copy dialog is told in full by its tip") {
  CopySession session;
  const std::wstring name = std::wstring(120, L'w') + L".css";
  session.fixture.disk.writeFile(L"templates\\Blue\\" + name);
  Lines tips;
  session.onImport(
      [&] { tips.push_back(toolTip(session.dialog, IDC_COPYTOWEB_LBLSTATUSCURRENT)); });
  CHECK(session.run());
  std::ranges::sort(tips);
  CHECK(tips == Lines{L"", L"", name});
}

TEST_CASE("the tip of the address in the copy dialog is the whole address") {
  CopySession session;
  std::wstring tip;
  session.onImport([&] { tip = toolTip(session.dialog, IDC_COPYTOWEB_TXTWEBNAME); });
  CHECK(session.run());
  CHECK_FALSE(tip.empty());
  CHECK(tip == session.fixture.url());
}

TEST_CASE("the copy dialog's bars advance with the run") {
  CopySession session;
  std::vector<long> current;
  std::vector<long> overall;
  const auto look = [&] {
    current.push_back(session.position(IDC_COPYTOWEB_PBCURRENT));
    overall.push_back(session.position(IDC_COPYTOWEB_PBOVERALL));
  };
  session.onImport([&] {
    look();
    CHECK(session.maximum(IDC_COPYTOWEB_PBCURRENT) == 3);
    CHECK(session.maximum(IDC_COPYTOWEB_PBOVERALL) == 5);
  });
  session.fixture.host.faults().before(L"WebFile.ApplyTheme", look);
  session.fixture.host.faults().before(L"Web.Refresh", look);
  CHECK(session.run());
  CHECK(current == std::vector<long>{0, 1, 0, 1});
  CHECK(overall == std::vector<long>{2, 2, 4, 5});
}

TEST_CASE("the copy dialog has nothing left to paint when the host is called") {
  CopySession session;
  session.onImport([&] {
    for (const int control : {IDC_COPYTOWEB_LBLDWTNAME, IDC_COPYTOWEB_LBLSTATUSOVERALL,
                              IDC_COPYTOWEB_LBLSTATUSCURRENT, IDC_COPYTOWEB_PBCURRENT})
      CHECK_FALSE(GetUpdateRect(GetDlgItem(session.dialog, control), nullptr, FALSE));
  });
  CHECK(session.run());
}

TEST_CASE("Cancel answered with Yes stops the copy at its next check") {
  CopySession session;
  session.driver.answer(IDYES);
  session.onImport([&] { PostMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0); });
  CHECK_FALSE(session.run());
  checkCancelQuestion(session);
  CHECK(arrived(session, L"home.dwt"));
  CHECK_FALSE(arrived(session, L"images\\logo.gif"));
  CHECK(session.fixture.log.messages().back() == std::wstring(L"      ") + cancelLine);
}

TEST_CASE("a copy that is being cancelled shows that it takes no second Cancel") {
  CopySession session;
  session.driver.answer(IDYES);
  bool before = false;
  bool after = true;
  bool shown = false;
  session.onImport([&] {
    before = isEnabled(session.dialog, IDCANCEL);
    SendMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0);
    after = isEnabled(session.dialog, IDCANCEL);
    shown = IsWindowVisible(session.dialog) != FALSE;
    SendMessageW(session.dialog, WM_CLOSE, 0, 0);
  });
  CHECK_FALSE(session.run());
  CHECK(before);
  CHECK_FALSE(after);
  CHECK(shown);
  checkCancelQuestion(session);
}

TEST_CASE("Cancel answered with No lets the copy go on") {
  CopySession session;
  session.driver.answer(IDNO);
  bool asked = false;
  bool stillEnabled = false;
  session.onImport([&] {
    if (asked) stillEnabled = isEnabled(session.dialog, IDCANCEL);
    if (!asked) PostMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0);
    asked = true;
  });
  CHECK(session.run());
  checkCancelQuestion(session);
  CHECK(arrived(session, L"images\\logo.gif"));
  CHECK_FALSE(logged(session, cancelLine));
  CHECK(stillEnabled);
}

TEST_CASE("the close box of the copy dialog acts as Cancel") {
  CopySession session;
  session.driver.answer(IDYES);
  session.onImport([&] { PostMessageW(session.dialog, WM_CLOSE, 0, 0); });
  CHECK_FALSE(session.run());
  checkCancelQuestion(session);
  CHECK_FALSE(arrived(session, L"images\\logo.gif"));
}

TEST_CASE("Escape in the copy dialog acts as Cancel") {
  CopySession session;
  session.driver.answer(IDYES);
  session.onImport(
      [&] { PostMessageW(GetDlgItem(session.dialog, IDCANCEL), WM_KEYDOWN, VK_ESCAPE, 1); });
  CHECK_FALSE(session.run());
  checkCancelQuestion(session);
}

TEST_CASE("a copy that is cancelled as soon as its dialog opens touches nothing") {
  CopySession session;
  session.driver.answer(IDYES);
  session.opened = [&] { PostMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0); };
  CHECK_FALSE(session.run());
  checkCancelQuestion(session);
  CHECK(session.fixture.webTree().empty());
}

TEST_CASE("the question whether to cancel holds the copy up from its first moment on") {
  CopySession session;
  session.driver.answer(IDYES);
  session.opened = [&] { SendMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0); };
  CHECK_FALSE(session.run());
  checkCancelQuestion(session);
  CHECK(session.fixture.host.faults().calls(L"Application.ActiveWeb") == 0);
  CHECK(session.fixture.webTree().empty());
}

TEST_CASE("the overwrite question is asked over the copy dialog") {
  CopySession session;
  session.fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  session.driver.answer(IDNO);
  CHECK_FALSE(session.run());
  REQUIRE(session.driver.boxes().size() == 1);
  const ShownBox& box = session.driver.boxes().front();
  CHECK(box.text ==
        L"The DWT named \r\n \" /dwts/Blue. \"\r\n already exists. Do you want to overwrite the "
        L"existing DWT with the new DWT?");
  CHECK(box.title == dialogCaption);
  CHECK(box.icon == MB_ICONQUESTION);
  CHECK(box.buttons == Lines{L"Yes", L"No"});
  CHECK(session.fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\home.dwt") == "old");
  CHECK_FALSE(IsWindow(session.dialog));
}

TEST_CASE("the overwrite question answered with Yes copies") {
  CopySession session;
  session.fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "old");
  session.driver.answer(IDYES);
  CHECK(session.run());
  CHECK(session.fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\home.dwt") != "old");
}

TEST_CASE("a template folder that cannot be opened is shown and closes the copy dialog") {
  CopySession session;
  const std::wstring missing = session.fixture.templateFolder(L"Gone");
  CHECK_FALSE(session.run(missing));
  REQUIRE(session.driver.boxes().size() == 1);
  const ShownBox& box = session.driver.boxes().front();
  CHECK(box.text == L"Could not open : \r\n" + missing);
  CHECK(box.title == dialogCaption);
  CHECK(box.icon == MB_ICONASTERISK);
  CHECK(box.buttons == Lines{L"OK"});
}

TEST_CASE("an error of the copy is shown and closes the copy dialog") {
  CopySession session;
  session.fixture.host.faults().refuse(L"Application.MakeAbs", L"No.");
  CHECK_FALSE(session.run());
  REQUIRE(session.driver.boxes().size() == 1);
  const ShownBox& box = session.driver.boxes().front();
  CHECK(box.text == L"An error was encountered while copying the DWT's.");
  CHECK(box.title == dialogCaption);
  CHECK(box.icon == MB_ICONHAND);
  CHECK(box.buttons == Lines{L"OK"});
  CHECK(box.owner == session.dialog);
}

TEST_CASE("a template that is its own copy is refused with a message and keeps its files") {
  CopySession session;
  session.fixture.disk.writeFile(L"webs\\site\\dwts\\Blue\\home.dwt", "mine");
  const std::wstring folder = session.fixture.disk / L"webs\\site\\dwts\\Blue";
  CHECK_FALSE(session.run(folder));
  REQUIRE(session.driver.boxes().size() == 1);
  const ShownBox& box = session.driver.boxes()[0];
  CHECK(box.text == L"Cannot copy \" " + folder +
                        L" \". \r\n The destination folder is the same as the source folder.");
  CHECK(box.title == dialogCaption);
  CHECK(box.icon == MB_ICONHAND);
  CHECK(session.fixture.disk.readFile(L"webs\\site\\dwts\\Blue\\home.dwt") == "mine");
  CHECK_FALSE(IsWindow(session.dialog));
}

TEST_CASE("a refused import closes the copy dialog without a message") {
  CopySession session;
  session.fixture.host.faults().refuse(L"WebFiles.Add", L"No.");
  CHECK_FALSE(session.run());
  CHECK(session.driver.boxes().empty());
  CHECK(logged(session, L"DWT copied successfully"));
}

TEST_CASE("an error after a refused import is shown over the copy dialog") {
  CopySession session;
  const Frame frame;
  session.owner = frame.get();
  session.fixture.host.faults().refuse(L"WebFiles.Add", L"No.");
  session.fixture.host.faults().refuse(L"Web.Refresh", L"No.");
  CHECK_FALSE(session.run());
  REQUIRE(session.driver.boxes().size() == 1);
  CHECK(session.driver.boxes().front().text ==
        L"An error was encountered while copying the DWT's.");
  CHECK(session.driver.boxes().front().title == dialogCaption);
  CHECK(session.driver.boxes().front().owner == session.dialog);
}

TEST_CASE("a cancelled copy leaves no error line of the dialog itself") {
  CopySession session;
  session.driver.answer(IDYES);
  session.onImport([&] { PostMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0); });
  CHECK_FALSE(session.run());
  for (const auto& line : session.fixture.log.messages())
    CHECK(line.find(L"ERROR in procedure") == line.npos);
}

TEST_CASE("the windows of the host are disabled while a template is copied") {
  CopySession session;
  const HWND frame = CreateWindowW(L"Static", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50,
                                   700, 500, nullptr, nullptr, nullptr, nullptr);
  session.owner = frame;
  bool disabled = false;
  HWND owner = nullptr;
  session.onImport([&] {
    disabled = !IsWindowEnabled(frame);
    owner = GetWindow(session.dialog, GW_OWNER);
  });
  CHECK(session.run());
  CHECK(disabled);
  CHECK(owner == frame);
  CHECK(IsWindowEnabled(frame));
  DestroyWindow(frame);
}

TEST_CASE(
    "the windows of the host stay disabled until the host has been called for the last time") {
  enum class End { refusedImport, declinedOverwrite, cancel };
  for (const End end : {End::refusedImport, End::declinedOverwrite, End::cancel}) {
    CAPTURE(static_cast<int>(end));
    CopySession session;
    const Frame frame;
    session.owner = frame.get();
    int calls = 0;
    int enabled = 0;
    const auto look = [&] {
      ++calls;
      if (IsWindowEnabled(frame.get())) ++enabled;
    };
    for (const wchar_t* member : {L"Web.Refresh", L"WebFile.Url", L"Application.Themes"})
      session.fixture.host.faults().before(member, look);
    if (end == End::refusedImport)
      session.fixture.host.faults().refuse(L"WebFiles.Add", L"No.", E_FAIL, 1);
    if (end == End::declinedOverwrite) {
      session.fixture.disk.makeFolder(L"webs\\site\\dwts\\Blue");
      session.driver.answer(IDNO);
    }
    if (end == End::cancel) {
      session.driver.answer(IDYES);
      session.fixture.host.faults().before(L"WebFile.Url", [&] {
        look();
        SendMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0);
      });
    }
    CHECK_FALSE(session.run());
    CHECK(calls >= (end == End::declinedOverwrite ? 1 : 3));
    CHECK(enabled == 0);
    CHECK(IsWindowEnabled(frame.get()));
    CHECK_FALSE(IsWindow(session.dialog));
  }
}

TEST_CASE("a copy that goes on after its end was decided takes no Cancel") {
  CopySession session;
  bool enabled = true;
  session.fixture.host.faults().refuse(L"WebFiles.Add", L"No.");
  session.fixture.host.faults().before(L"Web.Refresh", [&] {
    enabled = isEnabled(session.dialog, IDCANCEL);
    SendMessageW(session.dialog, WM_CLOSE, 0, 0);
  });
  CHECK_FALSE(session.run());
  CHECK_FALSE(enabled);
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a Cancel that the host lets through while it imports frees no window before its time") {
  CopySession session;
  const HWND frame = CreateWindowW(L"Static", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50,
                                   700, 500, nullptr, nullptr, nullptr, nullptr);
  session.owner = frame;
  session.driver.answer(IDYES);
  bool disabled = false;
  session.onImport([&] {
    SendMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0);
    SendMessageW(session.dialog, WM_COMMAND, IDCANCEL, 0);
    disabled = !IsWindowEnabled(frame);
  });
  CHECK_FALSE(session.run());
  checkCancelQuestion(session);
  CHECK(disabled);
  CHECK(IsWindowEnabled(frame));
  CHECK_FALSE(arrived(session, L"images\\logo.gif"));
  DestroyWindow(frame);
}

TEST_CASE("a copy without an owner is shown over the host's frame") {
  WNDCLASSW type = {};
  type.lpfnWndProc = DefWindowProcW;
  type.lpszClassName = L"FrontPageExplorerWindow40";
  RegisterClassW(&type);
  const HWND frame = CreateWindowW(type.lpszClassName, L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                   50, 50, 700, 500, nullptr, nullptr, nullptr, nullptr);
  CopySession session;
  HWND owner = nullptr;
  session.opened = [&] { owner = GetWindow(session.dialog, GW_OWNER); };
  CHECK(session.run());
  CHECK(frame != nullptr);
  CHECK(owner == frame);
  DestroyWindow(frame);
  UnregisterClassW(type.lpszClassName, nullptr);
}

TEST_CASE("a copy whose owner goes before it has begun is none") {
  CopySession session;
  session.owner = CreateWindowW(L"Static", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 700,
                                500, nullptr, nullptr, nullptr, nullptr);
  session.opened = [&] { DestroyWindow(session.owner); };
  CHECK_FALSE(session.run());
  CHECK(session.fixture.webTree().empty());
  CHECK(session.fixture.host.faults().calls(L"Application.ActiveWeb") == 0);
}

TEST_CASE("the copy dialog comes to the top when its run begins") {
  CopySession session;
  const HWND other = CreateWindowW(L"Static", L"other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                   nullptr, nullptr, nullptr, nullptr);
  session.opened = [&] {
    SetWindowPos(other, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  };
  bool above = false;
  session.fixture.host.faults().before(L"Application.ActiveWeb", [&] {
    HWND window = GetTopWindow(nullptr);
    while (window != session.dialog && window != other) window = GetWindow(window, GW_HWNDNEXT);
    above = window == session.dialog;
  });
  CHECK(session.run());
  CHECK(above);
  DestroyWindow(other);
}

TEST_CASE("a host that closes before the copy has begun gets no template and its message back") {
  CopySession session;
  session.opened = [] { PostQuitMessage(7); };
  session.fixture.host.closeWeb();
  CHECK_FALSE(session.run());
  MSG message = {};
  CHECK(pumpUntil([&] { return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); }));
  CHECK(message.wParam == 7);
}

TEST_CASE("a host that closes in the middle of a copy stops it at its next check") {
  CopySession session;
  session.onImport([] { PostQuitMessage(7); });
  CHECK_FALSE(session.run());
  CHECK(arrived(session, L"home.dwt"));
  CHECK_FALSE(arrived(session, L"images\\logo.gif"));
  CHECK(logged(session, cancelLine));
  CHECK(session.driver.boxes().empty());
  MSG message = {};
  CHECK(pumpUntil([&] { return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); }));
  CHECK(message.wParam == 7);
}

TEST_CASE("a copy whose owner goes in the middle stops at its next check") {
  CopySession session;
  const HWND frame = CreateWindowW(L"Static", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50,
                                   700, 500, nullptr, nullptr, nullptr, nullptr);
  session.owner = frame;
  session.onImport([&] { DestroyWindow(frame); });
  CHECK_FALSE(session.run());
  CHECK(arrived(session, L"home.dwt"));
  CHECK_FALSE(arrived(session, L"images\\logo.gif"));
  CHECK(logged(session, cancelLine));
  CHECK_FALSE(IsWindow(session.dialog));
}

TEST_CASE("a copy leaves no handle open") {
  const long before = handles::liveCount();
  {
    CopySession session;
    CHECK(session.run());
  }
  CHECK(handles::liveCount() == before);
}
