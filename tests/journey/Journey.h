// From the host's start to a template in the web and the host's end, through the registered module
// that COM loads.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "host/model/Host.h"
#include "tests/addin/ShippedModule.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"

inline constexpr wchar_t copyToWeb[] = L"Browse/Copy Dynamic Web Template to Web...";
inline constexpr wchar_t dwtOnline[] = L"Dynamic Web Templates Online...";

class Journey {
 public:
  explicit Journey(standin::HostOptions options = {});
  ~Journey();

  // As the host does it at its start, from the programmatic identifier on.
  void start();
  void finish(RemoveMode mode = hostShutdown);

  // Clicks the entry and runs `script` in the browser that comes up, once it has listed.
  void visit(std::function<void(HWND)> script);
  // The same; in the browser, copies the template of that title to the default folder.
  void copy(const std::wstring& title);

  // The titles that the browser listed.
  const std::vector<std::wstring>& titles() const noexcept { return titles_; }
  // Whether the copy left the browser open.
  bool leftOpen() const noexcept { return leftOpen_; }

 private:
  static void CALLBACK onTimer(HWND, UINT, UINT_PTR timer, DWORD);
  void copyIn(HWND browser, const std::wstring& title);

  RegisteredModule registered_;
  std::vector<std::wstring> titles_;
  std::function<void(HWND)> script_;
  HWND browser_ = nullptr;
  bool leftOpen_ = false;

 public:
  ScratchRegistry registry;
  ScratchFolder disk;  // "templates", "themes" and "webs"
  std::wstring web;
  standin::Host host;
  FakeWebBrowser page;
  ModalDriver modal;
  DebugOutput log;
  ComPtr<IDTExtensibility2> addIn;
};
