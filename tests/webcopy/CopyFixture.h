// A web open in the stand-in host, templates on the disk and installed themes: what a copy needs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/log.h"
#include "host/model/Host.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ScratchFolder.h"
#include "webcopy/CopyRun.h"

// Shows nothing; keeps what it was told, in order.
class RecordingView final : public CopyRunView {
 public:
  std::vector<std::wstring> events;
  int checks = 0;
  int refusedCheck = 0;  // the check that is answered with no; 0: none
  std::function<void()> onCheck = [] {};
  bool answer = true;  // to every question

  // The events that begin with `kind`.
  std::vector<std::wstring> of(const std::wstring& kind) const;
  bool has(const std::wstring& event) const;

  bool keepGoing() override;
  void showWeb(const std::wstring& url) override { add(L"web: ", url); }
  void showTemplate(const std::wstring& title) override { add(L"template: ", title); }
  void showOverallStatus(const std::wstring& text) override { add(L"overall status: ", text); }
  void showCurrentStatus(const std::wstring& text) override { add(L"current status: ", text); }
  void resetOverall(short maximum) override { add(L"overall 0 of ", std::to_wstring(maximum)); }
  void stepOverall() override { add(L"overall step", {}); }
  void resetCurrent(short maximum) override { add(L"current 0 of ", std::to_wstring(maximum)); }
  void stepCurrent() override { add(L"current step", {}); }
  void finishCurrent() override { add(L"current full", {}); }
  bool ask(const std::wstring& text) override {
    add(L"ask: ", text);
    return answer;
  }
  void inform(const std::wstring& text) override { add(L"inform: ", text); }
  void fail(const std::wstring& text) override { add(L"fail: ", text); }
  std::wstring caption() const override { return L"The caption"; }
  void unload() override { add(L"unload", {}); }

 private:
  void add(const wchar_t* kind, const std::wstring& text) { events.push_back(kind + text); }
};

// A host that answers otherwise than a plain one where the published reference leaves it open.
standin::HostOptions otherThanPlain(bool standin::HostOptions::*answer);

// The log is on while it lives.
struct CopyFixture {
  explicit CopyFixture(standin::HostOptions options = {});
  ~CopyFixture();

  ScratchFolder disk;
  standin::Host host;
  DebugOutput log;

  // The template Blue: one page with the theme Blends 1F, a picture in a sub-folder, the host's own
  // folder.
  void makeBlue() const;
  // "C:\...\templates\Blue"
  std::wstring templateFolder(const std::wstring& name = L"Blue") const;
  // An address of the open web.
  std::wstring url(const std::wstring& path = {}) const;
  // Everything below a folder of the web.
  std::vector<std::wstring> webTree(const std::wstring& folder = {}) const;
  void installTheme(const std::wstring& name) const;
  HostApplication application() const;
};

// One run over the fixture, with the log and the events it left.
struct RunResult {
  bool copied = false;
  bool cancelled = false;  // 512 was raised once more
  std::wstring cancelDescription;
  std::wstring cancelSource;
};

RunResult runCopy(CopyFixture& fixture, RecordingView& view,
                  const std::wstring& destination = L"/dwts", const std::wstring& tag = {});
