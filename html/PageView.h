// The window that shows a page.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "html/Layout.h"
#include "html/Picture.h"

namespace html {

// The window's text is the page's title. It scrolls with its bar, the wheel and the keys; the tab
// key goes from link to link, and Enter follows the one that is marked.
class PageView final : private PictureSizes {
 public:
  PageView() = default;
  ~PageView();
  PageView(const PageView&) = delete;
  PageView& operator=(const PageView&) = delete;

  bool create(HWND parent, const RECT& place);
  HWND handle() const noexcept { return window_; }

  void show(Page page);

  // A picture, by its address as it is written in the page; null when there is none. Asked once for
  // each address of a page.
  std::function<std::shared_ptr<const Picture>(const std::wstring& address)> onPicture;
  // A link was clicked; its address, as it is written in the page.
  std::function<void(const std::wstring& link)> onLink;
  // Draws the page on a printer or the like, leaf by leaf: `onLeaf` is called before each with true
  // and after it with false. False from it ends the printing.
  void print(HDC target, const std::function<bool(bool begins)>& onLeaf);

  // What was posted with `askLater` comes in.
  std::function<void()> onLater;
  void askLater() const { PostMessageW(window_, laterMessage, 0, 0); }

 private:
  // wParam 0, lParam the text of a link: scrolls to it and answers with its place in the window as
  // a pair of shorts, or with -1.
  static constexpr UINT linkMessage = WM_APP + 1;
  static constexpr UINT laterMessage = WM_APP + 2;
  friend bool linkPlace(HWND window, const std::wstring& text, POINT& place);

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;
  LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  SIZE sizeOf(const std::wstring& address) override;
  const Picture* picture(const std::wstring& address);

  void layOutAgain();
  void paint();
  void draw(HDC target, const RECT& client);
  void drawItem(HDC target, const Item& item, RECT place);
  void scrollTo(int top);
  void scrollBy(int distance) { scrollTo(top_ + distance); }
  void onScroll(int code);
  bool onKey(WPARAM key);
  bool takes(const MSG* message) const;
  int nextLink(bool backwards) const;
  void markLink(int link);
  void follow(int link);
  const Item* linkAt(POINT place) const;
  LRESULT placeOfLink(const std::wstring& text);

  HWND window_ = nullptr;
  Page page_;
  Fonts fonts_;
  std::map<std::wstring, std::shared_ptr<const Picture>> pictures_;
  Layout layout_;
  int top_ = 0;
  int marked_ = noLink;  // by the tab key
};

// For scripts, from any thread: where to click on the link of that text in a window's page. False
// when the window shows no page, or none with such a link.
bool linkPlace(HWND window, const std::wstring& text, POINT& place);

}  // namespace html
