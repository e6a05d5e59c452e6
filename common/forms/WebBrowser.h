// The system's web browser control as a control of a form.
#pragma once

#include <exdisp.h>

#include <functional>
#include <string>

#include "common/com.h"
#include "common/forms/WindowClass.h"
#include "common/forms/controls.h"

namespace forms {

// In the dialog resource: CONTROL of class "QuilletWebBrowser". The browser itself is made when it
// is first needed. Pages show no context menu and no script errors, open no windows, and are no
// drop target.
//
// The events have the names of the browser's own (DWebBrowserEvents2). `topFrame` tells the page
// itself from a frame in it. They may fire inside navigate().
class WebBrowser : public Control {
 public:
  static constexpr wchar_t className[] = L"QuilletWebBrowser";
  static constexpr wchar_t blankPage[] = L"about:blank";

  WebBrowser(Form& form, int id);
  ~WebBrowser() override;

  // For pages that are only looked at: no scripts, components and downloads, no sounds and videos,
  // and nothing from the network. Set before the browser is made.
  void setPassive(bool passive) noexcept { passive_ = passive; }

  // Makes the browser when there is none yet. Raises errors::cannotCreateObject (429).
  void create();

  // To a URL or local path. A refusal of the browser raises an Error; a page that does not arrive
  // fires onNavigateError instead.
  void navigate(const std::wstring& address);
  void goBack();
  void goForward();
  void stop();
  void refresh();
  void print();  // as the user would, with the system's own dialog

  // What navigate() was last given, and whether that page has neither arrived nor failed yet. A
  // page that arrives under another address does not count as that page.
  const std::wstring& requested() const noexcept { return requested_; }
  bool isOnItsWay() const noexcept { return onItsWay_; }

  // Whether it is loading something, as far as it says.
  bool busy() const noexcept;

  // What is shown now; empty before the first page.
  std::wstring address() const;

  // Replaces the inner HTML of the page's body: of the page that is on its way, if one is. Until
  // there is a page, the control itself shows `text` in its place. It lasts until navigate().
  void setBodyHtml(const std::wstring& html, const std::wstring& text);

  // Keys of the page, when the focus is in it. For the form's preTranslate, which sees every
  // message: a page that the focus has left lets go of the keyboard.
  bool preTranslate(MSG& message);

  std::function<void(const std::wstring& address, bool topFrame, bool& cancel)> onBeforeNavigate2;
  std::function<void(const std::wstring& address, bool topFrame)> onNavigateComplete2;
  std::function<void(const std::wstring& address, bool topFrame)> onDocumentComplete;
  // Cancelled, the browser shows no page of its own about the error.
  std::function<void(const std::wstring& address, bool topFrame, bool& cancel)> onNavigateError;
  std::function<void(long command, bool enable)> onCommandStateChange;

 private:
  class Site;

  void onAttached() override;
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;
  LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);

  void activate();
  void connectEvents();
  void tearDown() noexcept;
  void resizeObject() noexcept;
  void showObject(bool shown) noexcept;
  void paintText(HDC target) noexcept;
  bool replaceBody(const std::wstring& html);
  IWebBrowser2& browser();
  bool isTopFrame(IDispatch* frame) const noexcept;
  bool settle(const std::wstring& address, bool topFrame);
  void documentComplete(const std::wstring& address, bool topFrame);
  void leaveByTab(bool backwards) noexcept;
  bool hasFocus() const noexcept;
  void focusPage() noexcept;
  void letGoOfKeyboard() noexcept;

  WindowClass class_;
  ComPtr<Site> site_;
  ComPtr<IOleObject> object_;
  ComPtr<IWebBrowser2> browser_;
  ComPtr<IConnectionPoint> events_;
  DWORD cookie_ = 0;
  bool passive_ = false;
  bool hasKeyboard_ = false;  // the page thinks that keys are for it
  std::wstring requested_;
  bool onItsWay_ = false;
  // For the requested page, as often as it arrives: one of the same address that was left may have
  // come in its place.
  std::wstring body_;
  std::wstring text_;     // shown while there is no page
  std::wstring caption_;  // what the control is called while its body was not replaced
};

}  // namespace forms
