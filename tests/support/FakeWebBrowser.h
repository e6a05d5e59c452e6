// Stands in for the system's web browser control (CLSID_WebBrowser) while it lives: objects that
// this process creates of that class navigate nowhere, note what is asked of them and fire the
// events of pages that arrive. One at a time.
//
// As strict as the system's with its rendering engine: it reports files by their normalised
// address, its events come later, from the message loop; it has a window that takes the focus, eats
// the keys that it is offered, and does by itself what its user asks for unless it is refused.
// Otherwise it is as the component is without an engine: it echoes addresses, fires its events
// inside the call, and has no window.
#pragma once

#include <windows.h>

#include <exdispid.h>

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
  bool isStrict = true;
  bool canBeMade = true;
  bool refusesAll = false;  // navigations fail at once
  bool hasDocument = true;  // false: no page ever arrives, as without a rendering engine
  bool hasBody = true;      // false: their documents are of another kind than a page
  bool isSlow = false;      // pages arrive no sooner than the test lets them
  bool isBusy = false;      // what they say when they are asked
  // What a page does that is there again before the call returns.
  std::function<void()> onRefresh = [] {};
  int stops = 2;  // in a page, for the Tab key
  // Navigations to these addresses, as they were asked for, fire NavigateError with status 404.
  std::function<bool(const std::wstring&)> unreachable = [](const std::wstring&) { return false; };

  // What was asked of them, in order.
  const std::vector<std::wstring>& navigations() const noexcept { return navigations_; }
  const std::vector<std::wstring>& calls() const noexcept { return calls_; }
  void clear();
  // The page that is shown, and the inner HTML that its body was given; empty when it was not.
  const std::wstring& address() const noexcept { return address_; }
  const std::wstring& bodyHtml() const noexcept { return bodyHtml_; }
  int alive() const noexcept { return alive_; }
  // `address` as it is reported, and whether it is what is shown.
  std::wstring reported(const std::wstring& address) const;
  bool shows(const std::wstring& address) const { return address_ == reported(address); }
  // Whether no event is still to come by itself; waits for that.
  bool isResting() const noexcept;
  bool settle() const;
  // The window of the newest browser, and whether it is the one that keys are for.
  HWND window() const noexcept;
  bool isActive() const noexcept;
  // The place of the Tab key in the page, from 1 on; 0 outside.
  int stop() const noexcept;
  // The keys that the page has eaten.
  const std::vector<WPARAM>& keys() const noexcept { return keys_; }
  // What the newest browser was given as its site; null when it has none.
  ComPtr<IUnknown> site() const;
  // An ambient property of the site; 0 when it has none.
  long ambient(DISPID property);

  // As a page and its reader do it, in the newest browser. True: it was let happen.
  bool follow(const std::wstring& address);         // a link in the page itself
  bool followInFrame(const std::wstring& address);  // a link in a frame
  // As newer systems announce it, with the address, or as older ones.
  bool openWindow(DISPID event = DISPID_NEWWINDOW2);
  bool closeWindow();  // by script
  void click();        // into the page
  // A frame's page that cannot be loaded. True: the engine shows a page of its own about it.
  bool failInFrame(const std::wstring& address);
  void arrive(const std::wstring& address);  // a page that nobody asked for
  // Tells only now that a page is there which has been left already.
  void completeLate(const std::wstring& address);
  void failLate(const std::wstring& address);  // the same of one that cannot be loaded
  bool download(bool isDocument);
  void setCommandState(long command, bool enabled);
  // A raw event, also after the browser was let go.
  static HRESULT fire(const ComPtr<IUnknown>& site, DISPID event, DISPPARAMS& arguments);

 private:
  friend class FakeBrowserObject;
  friend class FakeBrowserFactory;

  std::vector<std::wstring> navigations_;
  std::vector<std::wstring> calls_;
  std::vector<WPARAM> keys_;
  std::wstring address_;
  std::wstring bodyHtml_;
  int alive_ = 0;
  class FakeBrowserObject* newest_ = nullptr;
  class FakeBrowserFactory* factory_ = nullptr;
  DWORD cookie_ = 0;
};
