// Stands in for the system's web browser control (CLSID_WebBrowser) while it lives: objects that
// this process creates of that class navigate nowhere, note what is asked of them and fire the
// events of pages that arrive. One at a time.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "common/com.h"

class FakeWebBrowser {
 public:
  FakeWebBrowser();
  ~FakeWebBrowser();
  FakeWebBrowser(const FakeWebBrowser&) = delete;
  FakeWebBrowser& operator=(const FakeWebBrowser&) = delete;

  // How the browsers made from now on behave.
  bool canBeMade = true;
  bool hasDocument = true;  // false: no page ever arrives, as without a rendering engine
  bool isSlow = false;      // pages arrive no sooner than the test lets them
  bool isBusy = false;      // what they say when they are asked
  // Navigations to these addresses fire NavigateError with status 404.
  std::function<bool(const std::wstring&)> unreachable = [](const std::wstring&) { return false; };

  // What was asked of them, in order.
  const std::vector<std::wstring>& navigations() const noexcept { return navigations_; }
  const std::vector<std::wstring>& calls() const noexcept { return calls_; }
  void clear();
  // The page that is shown, and the inner HTML that its body was given; empty when it was not.
  const std::wstring& address() const noexcept { return address_; }
  const std::wstring& bodyHtml() const noexcept { return bodyHtml_; }
  int alive() const noexcept { return alive_; }
  // What the newest browser was given as its site; null when it has none.
  ComPtr<IUnknown> site() const;
  // An ambient property of the site; 0 when it has none.
  long ambient(DISPID property);

  // As a page and its reader do it, in the newest browser. True: it was let happen.
  bool follow(const std::wstring& address);         // a link in the page itself
  bool followInFrame(const std::wstring& address);  // a link in a frame
  bool openWindow();
  void arrive(const std::wstring& address);  // a page that nobody asked for
  // Tells only now that a page is there which has been left already.
  void completeLate(const std::wstring& address);
  void failLate(const std::wstring& address);  // the same of one that cannot be loaded
  bool download(bool isDocument);
  void setCommandState(long command, bool enabled);

 private:
  friend class FakeBrowserObject;
  friend class FakeBrowserFactory;

  std::vector<std::wstring> navigations_;
  std::vector<std::wstring> calls_;
  std::wstring address_;
  std::wstring bodyHtml_;
  int alive_ = 0;
  class FakeBrowserObject* newest_ = nullptr;
  class FakeBrowserFactory* factory_ = nullptr;
  DWORD cookie_ = 0;
};
