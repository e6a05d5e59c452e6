// What the online catalogue's window does when something fails, at its start and later.
#include "tests/online/OnlineWindow.h"

namespace {

constexpr wchar_t missingStartPage[] =
    L"The required registry settings cannot be found. The product may have to be reinstalled.";
constexpr wchar_t missingStartPageLine[] =
    L"ERROR in procedure Form_Load of Form frmDWTOnline. Error : 513\tThe required registry "
    L"settings cannot be found. The product may have to be reinstalled.";

// A frame with a field that has the focus.
class Frame {
 public:
  Frame()
      : window_(CreateWindowExW(0, L"STATIC", L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300,
                                200, nullptr, nullptr, nullptr, nullptr)),
        field_(CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, window_,
                               nullptr, nullptr, nullptr)) {
    SetActiveWindow(window_);
    SetFocus(field_);
  }
  ~Frame() { DestroyWindow(window_); }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  HWND window() const noexcept { return window_; }
  HWND field() const noexcept { return field_; }

 private:
  HWND window_;
  HWND field_;
};

// The system's message box, with what the log held when it was shown.
class BoxWithLog {
 public:
  BoxWithLog(const DebugOutput& log, const wchar_t* line) {
    log_ = &log;
    line_ = line;
    logged = shown = false;
  }

  static inline bool shown = false;
  static inline bool logged = false;

 private:
  static int WINAPI show(HWND, LPCWSTR, LPCWSTR, UINT) {
    shown = true;
    logged = log_->has(line_);
    return IDOK;
  }
  static inline const DebugOutput* log_ = nullptr;
  static inline const wchar_t* line_ = nullptr;
  ImportPatch patch_{nullptr, "user32.dll", "MessageBoxW", show};
};

BOOL WINAPI noEntry(HMENU, UINT, UINT_PTR, LPCWSTR) {
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return FALSE;
}

HANDLE WINAPI noFile(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) {
  SetLastError(ERROR_ACCESS_DENIED);
  return INVALID_HANDLE_VALUE;
}

// A registry of more folders than a list can hold.
LSTATUS WINAPI endlessFolders(HKEY, DWORD, LPSTR name, LPDWORD length, LPDWORD, LPDWORD type,
                              LPBYTE, LPDWORD) {
  lstrcpyA(name, "C:");
  *length = 2;
  *type = REG_SZ;
  return ERROR_SUCCESS;
}

// The folders that the program wants to make, which are not made.
class MadeFolders {
 public:
  MadeFolders() { folders.clear(); }
  static inline Lines folders;

 private:
  static BOOL WINAPI make(LPCWSTR path, LPSECURITY_ATTRIBUTES) {
    folders.emplace_back(path);
    return TRUE;
  }
  ImportPatch patch_{nullptr, "kernel32.dll", "CreateDirectoryW", make};
};

// A registry that takes no values of certain names.
class RefusedValues {
 public:
  explicit RefusedValues(std::function<bool(const std::string& name)> refused) {
    refused_ = std::move(refused);
    real_ = patch_.original<Set>();
  }

 private:
  using Set = LSTATUS WINAPI(HKEY, LPCSTR, DWORD, DWORD, const BYTE*, DWORD);
  static LSTATUS WINAPI set(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                            DWORD size) {
    if (refused_(name)) return ERROR_ACCESS_DENIED;
    return real_(key, name, reserved, type, data, size);
  }
  static inline std::function<bool(const std::string&)> refused_;
  static inline Set* real_ = nullptr;
  ImportPatch patch_{nullptr, "advapi32.dll", "RegSetValueExA", set};
};

}  // namespace

// The start

TEST_CASE("a start that fails is logged before it is shown") {
  OnlineWindow online;
  online.registry.setString(HKEY_LOCAL_MACHINE, machineKey, L"DWTOnline", L"");
  const BoxWithLog box(online.log, missingStartPageLine);
  frmDWTOnline form(online.application());
  CHECK(form.RunOnline(false, nullptr) == 0);
  CHECK(box.shown);
  CHECK(box.logged);
}

TEST_CASE("a start that fails is shown over the frame and gives it the focus back") {
  const Frame frame;
  OnlineWindow online;
  online.registry.setString(HKEY_LOCAL_MACHINE, machineKey, L"DWTOnline", L"");
  frmDWTOnline form(online.application());
  form.RunOnline(false, frame.window());
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text == missingStartPage);
  CHECK(online.driver.boxes()[0].title == L"DWT Online");
  CHECK(online.driver.boxes()[0].owner == frame.window());
  CHECK(IsWindowEnabled(frame.window()));
  CHECK(GetActiveWindow() == frame.window());
  CHECK(GetFocus() == frame.field());
}

TEST_CASE("a host that does not tell its version does not keep the window from its start") {
  OnlineWindow online;
  online.show([&] { MoveWindow(online.dialog, 20, 30, 760, 560, TRUE); });
  online.page.clear();
  online.hostFaults().refuse(L"Version", L"No version.", 440);
  RECT place = {};
  online.show([&] {
    GetWindowRect(online.dialog, &place);
    CHECK(online.destination() == online.disk / L"data\\Korvel Software\\DWTs");
  });
  CHECK(place.left == 20);
  CHECK(place.bottom == 590);
  CHECK(online.page.navigations() == Lines{startPage});
  CHECK(online.driver.boxes().empty());
  CHECK(online.log.has(
      L"ERROR in procedure Form_Load of Form frmDWTOnline. Error : 440\tNo version."));
}

TEST_CASE("a list of folders that cannot be read leaves the menu with browsing alone") {
  OnlineWindow online;
  listForMachine(online.registry, online.disk.path());
  const std::wstring chosen = online.disk.makeFolder(L"chosen");
  online.picker.choose(chosen);
  {
    const ImportPatch endless(nullptr, "advapi32.dll", "RegEnumValueA", endlessFolders);
    online.show([&] {
      online.choose(0);
      CHECK(online.destination() == chosen);
    });
  }
  CHECK(online.page.navigations() == Lines{startPage});
  CHECK(online.driver.boxes().empty());
  CHECK(online.log.has(
      L"Error in CreatePopupMenu procedure of frmDWTOnline. Error description :Overflow"));
}

TEST_CASE("without a folder for application data nothing is made and the window opens") {
  OnlineWindow online;
  const MadeFolders made;
  online.registry.setString(
      HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
      L"AppData", L"");
  // Behind the box of the start.
  const Meanwhile meanwhile(
      [&] { return !online.page.navigations().empty(); },
      [&] {
        CHECK_FALSE(online.page.follow(downloadPage(L"?dwt1=http://127.0.0.1/d.zip")));
        PostMessageW(FindWindowW(L"#32770", L"DWT Online"), WM_CLOSE, 0, 0);
      });
  frmDWTOnline form(online.application());
  CHECK(form.RunOnline(false, nullptr) == 0);
  CHECK(made.folders.empty());
  CHECK(online.page.navigations() == Lines{startPage});
  REQUIRE(online.driver.boxes().size() == 2);
  CHECK(online.driver.boxes()[0].text == L"Path not found");
  CHECK(online.driver.boxes()[0].title == L"DWT Online");
  CHECK(online.driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(online.log.has(
      L"ERROR in procedure Form_Load of Form frmDWTOnline. Error : 76\tPath not found"));
  CHECK(online.driver.boxes()[1].text ==
        L"Invalid path. Please select a valid file system path to search for DWT's.");
  CHECK(online.driver.boxes()[1].icon == MB_ICONASTERISK);
}

TEST_CASE("without a folder for application data a download into a chosen folder says why not") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  online.saveIn(online.disk.makeFolder(L"chosen"));
  online.registry.setString(
      HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
      L"AppData", L"");
  const short reason = online.show([&] {
    CHECK_FALSE(online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip"))));
    CHECK(online.open());
    CHECK(IsWindowEnabled(online.dialog));
  });
  CHECK(reason == 0);
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text ==
        L"The folder for application data could not be found. Without it there is no place to "
        L"download to.");
  CHECK(online.driver.boxes()[0].title == L"Quillet Viewer");
  CHECK(online.driver.boxes()[0].icon == MB_ICONHAND);
  CHECK(online.driver.boxes()[0].owner == online.dialog);
  CHECK(online.log.has(
      L"Handled Error : \\Korvel Software could not be created. in procedure Form_Load of Form "
      L"frmDownloadProgress"));
  CHECK(server.requests().empty());
}

// The destination

TEST_CASE("a drop-down menu that takes no entries is logged and not shown") {
  OnlineWindow online;
  const ImportPatch patch(nullptr, "user32.dll", "AppendMenuW", noEntry);
  online.show([&] { online.openDestinations(); });
  CHECK(online.log.has(
      L"Error in CreatePopupMenu procedure of frmDWTOnline. Error description :Out of memory"));
}

TEST_CASE("a browsed folder that cannot be written to is not chosen") {
  OnlineWindow online;
  online.saveIn(online.disk.path());
  const std::wstring chosen = online.disk.makeFolder(L"chosen");
  online.picker.choose(chosen);
  const ImportPatch none(nullptr, "kernel32.dll", "CreateFileW", noFile);
  online.show([&] {
    online.choose(0);
    CHECK(online.destination() == online.disk.path());
  });
  REQUIRE(online.driver.boxes().size() == 1);
  CHECK(online.driver.boxes()[0].text ==
        chosen + L"\r\nInvalid file path or you do not have write permission to this location.");
  CHECK(online.driver.boxes()[0].title == L"DWT Online");
  CHECK(online.driver.boxes()[0].owner == online.dialog);
}

namespace {

// The restart message, under which the window's owner goes.
class OwnerGoes {
 public:
  explicit OwnerGoes(HWND owner) {
    owner_ = owner;
    shown = 0;
  }

  static inline int shown = 0;

 private:
  static int WINAPI show(HWND, LPCWSTR text, LPCWSTR, UINT) {
    if (std::wstring(text).starts_with(L"One or more DWTs that were installed")) ++shown;
    DestroyWindow(owner_);
    return IDOK;
  }
  static inline HWND owner_ = nullptr;
  ImportPatch patch_{nullptr, "user32.dll", "MessageBoxW", show};
};

}  // namespace

// The download

TEST_CASE("a window whose owner goes under the restart message neither browses nor waits") {
  const HttpServer server(
      {{"/t.zip", HttpServer::ok(ZipMaker().add("blue/x.inf", "blue").bytes())}});
  for (const wchar_t* success : {L"", L"&success=http://127.0.0.1/done.htm"}) {
    OnlineWindow online;
    online.host().options().version = L"6.0";
    const Frame frame;
    online.owner = frame.window();
    const UnloadTimer timer;
    const OwnerGoes message(frame.window());
    const short reason = online.show([&] {
      CHECK_FALSE(online.page.follow(downloadPage(L"?theme1=" + server.url(L"/t.zip") + success)));
      CHECK_FALSE(IsWindow(online.dialog));
    });
    CHECK(message.shown == 1);
    CHECK(reason == 1);
    CHECK(online.page.navigations() == Lines{startPage});
    CHECK(timer.intervals().empty());
    CHECK_FALSE(online.saved(L"DWTDownloadDir").empty());
  }
}

TEST_CASE("the window is switched off before the destination is remembered") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  std::vector<bool> off;
  {
    const RefusedValues watch([&](const std::string&) {
      off.push_back(!IsWindowEnabled(online.dialog));
      return false;
    });
    online.show([&] {
      online.page.isSlow = true;
      online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=a"));
      CHECK(off == std::vector<bool>{true, true});
    });
  }
}

TEST_CASE("a folder that cannot be listed is remembered and the success page is shown") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  const std::wstring folder = online.disk.makeFolder(L"new");
  online.saveIn(folder);
  {
    const RefusedValues refused(
        [](const std::string& name) { return name.find(":\\") != name.npos; });
    const short reason = online.show([&] {
      online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=about:blank"));
    });
    CHECK(reason == 1);
  }
  CHECK(online.saved(L"DWTDownloadDir") == folder);
  CHECK(online.page.navigations() == Lines{startPage, L"about:blank"});
  CHECK(online.registry.valueNames(HKEY_CURRENT_USER, userFolders).empty());
  CHECK(
      online.log.has(L"ERROR in procedure wbDWTOnline_BeforeNavigate2 of Form frmDWTOnline. "
                     L"Error : 5\tInvalid procedure call or argument"));
}

TEST_CASE("a destination that cannot be remembered does not keep the window from closing") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  const UnloadTimer timer;
  const RefusedValues refused([](const std::string& name) { return name == "DWTDownloadDir"; });
  const short reason = online.show([&] {
    online.page.follow(downloadPage(L"?dwt1=" + server.url(L"/d.zip")));
    CHECK(timer.intervals() == std::vector<UINT>{500});
    timer.tick(online.dialog);
    timer.tick(online.dialog);
    CHECK_FALSE(online.open());
  });
  CHECK(reason == 1);
}

TEST_CASE("a host that refuses its version has its templates downloaded all the same") {
  const HttpServer server({{"/d.zip", HttpServer::ok(archive())}});
  OnlineWindow online;
  online.saveIn(online.disk.makeFolder(L"new"));
  online.hostFaults().refuse(L"Version", L"No version.", 440);
  const short reason = online.show([&] {
    CHECK_FALSE(online.page.follow(
        downloadPage(L"?dwt1=" + server.url(L"/d.zip") + L"&success=about:blank")));
  });
  CHECK(reason == 1);
  CHECK(online.disk.readFile(L"new\\home.dwt") == "a page");
  CHECK(online.driver.boxes().empty());
  CHECK(online.log.has(L"Error 440 (No version.) in procedure RunModal of Form frmDownloadDlg"));
}
