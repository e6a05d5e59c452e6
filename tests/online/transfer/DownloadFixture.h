// One download without its dialog: real folders, a real registry, a view that notes what it is
// shown.
#pragma once

#include <string>
#include <vector>

#include "common/handles.h"
#include "common/log.h"
#include "online/transfer/DownloadRun.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/online/transfer/RecordingView.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

using Texts = std::vector<std::wstring>;

inline std::string page(const std::string& text) {
  return ZipMaker().add("page.dwt", text).bytes();
}
inline std::string themeFile(const std::string& text) {
  return ZipMaker().add("blue/x.inf", text).bytes();
}

inline std::wstring notFound(const std::wstring& address) {
  return L"Unable to locate file \" " + address +
         L" \". The file does not exist or the URL may be invalid.";
}

inline constexpr wchar_t connectFailed[] = L"The attempt to connect to the server failed.";

// One download into folders of its own.
struct Download {
  ScratchFolder scratch;
  ScratchRegistry registry;
  RecordingView view;
  ModalDriver driver;
  DebugOutput output;
  DownloadRequest request;

  Download() {
    modCommon::setLoggingFlag(1);
    registry.setString(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                       L"AppData", scratch.makeFolder(L"data"));
    registry.setString(HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Office\\11.0\\Common\\General",
                       L"Themes", L"Themes");
    // Without this the system under the tests knows no access type.
    registry.setNumber(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings",
                       L"ProxyEnable", 0);
    registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Shared tools", L"SharedFilesDir",
                       scratch.makeFolder(L"shared") + L"\\");
    scratch.makeFolder(L"data\\Microsoft\\Themes");
    scratch.makeFolder(L"shared\\Themes11");
    request.destinationFolder = scratch / L"templates\\new";
    request.hostVersion = L"6.0";
  }
  ~Download() { modCommon::setLoggingFlag(0); }

  // Runs it as the dialog does; the answer is the completed flag. However it ends, nothing stays
  // open.
  bool run(const std::wstring& query) {
    const long before = handles::liveCount();
    request.pageAddress = L"http://h/DWTOnlineDownload.htm" + query;
    DownloadRun download(request, view);
    download.ExtractAndCanonicalizeUrl();
    const bool loaded = download.load();
    if (loaded) download.run();
    download.unload();
    CHECK(driver.boxes().empty());  // whatever is shown, the view shows
    CHECK(driver.dialogs().empty());
    CHECK(handles::liveCount() == before);
    return loaded && download.completed();
  }

  std::wstring staged(const std::wstring& name) const {
    return scratch / (L"data\\Korvel Software\\" + name);
  }
  bool isStaged(const std::wstring& name) const {
    return scratch.exists(L"data\\Korvel Software\\" + name);
  }
  std::string stagedBytes(const std::wstring& name) const {
    return scratch.readFile(L"data\\Korvel Software\\" + name);
  }
  void stage(const std::wstring& name, const std::string& bytes) const {
    scratch.writeFile(L"data\\Korvel Software\\" + name, bytes);
  }
  Texts failures() const {
    Texts texts;
    for (const auto& failure : view.failures) texts.push_back(failure.first);
    return texts;
  }
  bool cancelledIn(const wchar_t* procedure) const {
    return output.has(L"Error 512 (Operation Cancelled.) in procedure " + std::wstring(procedure) +
                      L" of Form frmDownloadProgress");
  }
};
